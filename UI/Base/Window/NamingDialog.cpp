#include "UI/Base/Window/NamingDialog.h"

#include "UI/Base/Program/FileDialog.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>

namespace Vu {

NamingDialog::NamingDialog(QWidget* parent, const QString& caption, const QString& start,
                           const QString& filter, Suffix suffix)
    : QFileDialog(parent, caption, start, filter)
{
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    selectFile(start);
    if (suffix == Suffix::AsTyped)
        return;
    // The dialog must know the suffix before it asks whether a file may be replaced.
    const auto useSuffix = [this](const QString& entry) {
        const std::wstring added = FileDialogRules::withSuffix(L"x", entry.toStdWString()).substr(1);
        setDefaultSuffix(QString::fromStdWString(added));
    };
    useSuffix(selectedNameFilter());
    connect(this, &QFileDialog::filterSelected, this, useSuffix);
}

QString NamingDialog::name() const
{
    if (result() != Accepted)
        return {};
    return m_quoted.isEmpty() ? selectedFiles().value(0) : m_quoted;
}

void NamingDialog::accept()
{
    m_quoted.clear();
    const auto* line = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    // The desktop's own dialog has no such line, and knows itself what it does.
    if (!line || !line->isVisible() || !line->text().contains(QLatin1Char('"'))) {
        QFileDialog::accept();
        return;
    }
    QFileInfo file(directory(), line->text());
    if (file.isDir()) {
        setDirectory(file.filePath());
        return;
    }
    if (!defaultSuffix().isEmpty() && !file.fileName().contains(QLatin1Char('.')))
        file.setFile(file.filePath() + QLatin1Char('.') + defaultSuffix());
    if (file.exists() &&
        QMessageBox::warning(
            this, windowTitle(),
            QFileDialog::tr("%1 already exists.\nDo you want to replace it?").arg(file.fileName()),
            QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::No)
        return;
    m_quoted = file.absoluteFilePath();
    QDialog::accept();
}

} // namespace Vu
