#include "UI/Commands/Adaptations/QT/Cloud/FolderName.h"

#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudTexts.h"

#include <QBoxLayout>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>

namespace Vu::Commands {

using CloudTexts::text;

std::string folderAbove(const std::string& folder)
{
    const size_t cut = folder.rfind('/');
    return cut == std::string::npos || cut == 0 ? "/" : folder.substr(0, cut);
}

std::string inFolder(const std::string& folder, const QString& name)
{
    return (folder == "/" ? folder : folder + '/') + name.toStdString();
}

QString faultOfName(const QString& name)
{
    constexpr qsizetype kLongest = 255;
    const auto isUnfit = [](QChar letter) {
        return letter == QLatin1Char('/') || letter == QLatin1Char('\\') ||
               letter.category() == QChar::Other_Control;
    };
    if (name == QLatin1String(".") || name == QLatin1String("..") ||
        std::any_of(name.begin(), name.end(), isUnfit))
        return text("CloudNameSigns", "A name cannot contain slashes or control characters.");
    if (name.toUtf8().size() > kLongest)
        return text("CloudNameLong", "The name is too long: at most 255 bytes.");
    return {};
}

QString askFolderName(QWidget* parent)
{
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("cloudFolderName"));
    dialog.setWindowTitle(text("CloudNewFolderTitle", "New Folder"));
    auto* column = new QVBoxLayout(&dialog);
    auto* name = new QLineEdit(dialog.windowTitle(), &dialog);
    name->setAccessibleName(text("CloudName", "Name"));
    name->selectAll();
    constexpr int kWidth = 320;
    name->setMinimumWidth(kWidth);
    QLabel* fault = PlainText::label(&dialog);
    QPalette colours = fault->palette();
    colours.setColor(QPalette::WindowText, errorColour());
    fault->setPalette(colours);
    auto* buttons = new QDialogButtonBox(&dialog);
    QPushButton* make = buttons->addButton(text("CloudMakeFolder", "Make"), QDialogButtonBox::AcceptRole);
    buttons->addButton(text("CloudLoginCancel", "Cancel"), QDialogButtonBox::RejectRole);
    for (QWidget* each : std::initializer_list<QWidget*>{name, fault, buttons})
        column->addWidget(each);
    QObject::connect(name, &QLineEdit::textChanged, &dialog, [=](const QString& typed) {
        fault->setText(faultOfName(typed.trimmed()));
        make->setEnabled(fault->text().isEmpty() && !typed.trimmed().isEmpty());
    });
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    return dialog.exec() == QDialog::Accepted ? name->text().trimmed() : QString();
}

} // namespace Vu::Commands
