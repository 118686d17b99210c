#include "UI/Base/Window/QtDialogs.h"

#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Window/LocalPath.h"
#include "UI/Base/Window/NamingDialog.h"
#include "UI/Base/Window/PlainText.h"

#include <QFileDialog>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>

namespace Vu {
namespace {

/// By EStandardButton.
constexpr QMessageBox::ButtonRole kRoles[] = {QMessageBox::AcceptRole, QMessageBox::RejectRole,
                                              QMessageBox::YesRole, QMessageBox::NoRole};

QMessageBox::ButtonRole roleOf(const Display::Button& button)
{
    if (button.standard >= 0)
        return kRoles[button.standard];
    return button.isDefault ? QMessageBox::AcceptRole : QMessageBox::DestructiveRole;
}

struct Picture
{
    int icon;
    char16_t sign;
    QRgb colour;
};

/// By EMessageIcon. Sign and colour both identify the kind, so that either is enough.
constexpr Picture kPictures[] = {
    {kQuestionIcon, u'?', 0xff2374c6},
    {kInformationIcon, u'i', 0xff2374c6},
    {kWarningIcon, u'!', 0xffc77700},
    {kErrorIcon, u'\u00d7', 0xffc0392b},
};

constexpr int kPictureSide = 40;

/// Null for no icon.
QPixmap pictureOf(int icon, double scale)
{
    for (const Picture& row : kPictures) {
        if (row.icon != icon)
            continue;
        QPixmap picture(QSize(kPictureSide, kPictureSide) * scale);
        picture.setDevicePixelRatio(scale);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgba(row.colour));
        painter.drawEllipse(1, 1, kPictureSide - 2, kPictureSide - 2);
        QFont font = painter.font();
        font.setPixelSize(kPictureSide * 5 / 8);
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(QRect(0, 0, kPictureSide, kPictureSide), Qt::AlignCenter, QString(QChar(row.sign)));
        return picture;
    }
    return {};
}

} // namespace

int QtDialogs::askMessage(const std::wstring& title, const std::wstring& text, int icon,
                          const std::vector<Display::Button>& buttons, int cancel, QWidget* parent)
{
    const std::unique_ptr<QMessageBox> made = PlainText::messageBox(
        parent, title.empty() ? QStringLiteral("Quillet") : QString::fromStdWString(title),
        QString::fromStdWString(text));
    QMessageBox& box = *made;
    box.setIconPixmap(pictureOf(icon, box.devicePixelRatioF()));
    if (auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
        label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        // A single line is centred beside the icon.
        label->setMinimumHeight(kPictureSide);
    }
    constexpr int kBorder = 16;
    box.layout()->setContentsMargins(kBorder, kBorder, kBorder, kBorder);
    std::vector<QAbstractButton*> added;
    for (const Display::Button& button : buttons) {
        QPushButton* push = box.addButton(QString::fromStdWString(button.text), roleOf(button));
        if (button.isDefault)
            box.setDefaultButton(push);
        added.push_back(push);
    }
    box.setEscapeButton(added[static_cast<size_t>(cancel)]);
    box.exec();
    for (size_t i = 0; i < added.size(); ++i)
        if (added[i] == box.clickedButton())
            return static_cast<int>(i);
    return cancel;
}

std::vector<std::wstring> QtDialogs::askFileNames(const FileDialog::Request& request,
                                                  const std::wstring& start, QWidget* parent)
{
    const QString caption = QString::fromStdWString(request.caption);
    const QString filter = QString::fromStdWString(FileDialogRules::dialogFilter(request.filter));
    const QString from = QString::fromStdWString(start);
    const QStringList kLocal{QStringLiteral("file")};
    QList<QUrl> chosen;
    if (request.several) {
        chosen = QFileDialog::getOpenFileUrls(parent, caption, QUrl::fromLocalFile(from), filter, nullptr, {},
                                              kLocal);
    } else if (request.forOpen) {
        chosen << QFileDialog::getOpenFileUrl(parent, caption, QUrl::fromLocalFile(from), filter, nullptr, {},
                                              kLocal);
    } else {
        NamingDialog dialog(parent, caption, from, filter,
                            request.asTyped ? NamingDialog::Suffix::AsTyped : NamingDialog::Suffix::OfFilter,
                            QString::fromStdWString(FileDialogRules::dialogFilter(request.entry)));
        dialog.exec();
        chosen << QUrl::fromLocalFile(dialog.name());
    }
    std::vector<std::wstring> names;
    for (const QUrl& name : chosen)
        if (name.isLocalFile())
            names.push_back(pathOf(name));
    return names;
}

} // namespace Vu
