#include "UI/Base/Window/NamingDialog.h"

#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Window/PlainText.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>

namespace Vu {

NamingDialog::NamingDialog(QWidget* parent, const QString& caption, const QString& start,
                           const QString& filter, Suffix suffix, const QString& entry)
    : QFileDialog(parent, caption, start, filter)
{
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    selectFile(start);
    if (nameFilters().contains(entry))
        selectNameFilter(entry);
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

bool NamingDialog::mayReplace(const QString& name)
{
    return PlainText::confirmed(this, windowTitle(),
                                QFileDialog::tr("%1 already exists.\nDo you want to replace it?").arg(name));
}

void NamingDialog::accept()
{
    m_quoted.clear();
    const auto* line = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    // The desktop's own dialog has no such line, and handles names itself.
    if (!line || !line->isVisible()) {
        QFileDialog::accept();
        return;
    }
    const bool quoted = line->text().contains(QLatin1Char('"'));
    QFileInfo file(quoted ? QFileInfo(directory(), line->text()) : QFileInfo(selectedFiles().value(0)));
    if (quoted && file.isDir()) {
        setDirectory(file.filePath());
        return;
    }
    if (quoted && !defaultSuffix().isEmpty() && !file.fileName().contains(QLatin1Char('.')))
        file.setFile(file.filePath() + QLatin1Char('.') + defaultSuffix());
    if (file.exists() && !file.isDir() && !mayReplace(file.fileName()))
        return;
    if (quoted) {
        m_quoted = file.absoluteFilePath();
        // The file dialog's own check would take the quotes for a part of the name.
        QDialog::accept(); // NOLINT(bugprone-parent-virtual-call)
        return;
    }
    // Qt's own question would treat a name that looks like HTML as HTML.
    setOption(DontConfirmOverwrite);
    QFileDialog::accept();
}

} // namespace Vu
