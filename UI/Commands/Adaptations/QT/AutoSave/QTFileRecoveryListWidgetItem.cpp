#include "UI/Commands/Adaptations/QT/AutoSave/QTFileRecoveryListWidgetItem.h"

#include "UI/Base/Window/PlainText.h"
#include "UI/Commands/AutoSave/RecoveryFiles.h"

namespace Vu::Commands {

QTFileRecoveryListWidgetItem::QTFileRecoveryListWidgetItem(const Vs::AutoSavedFileInfo& file,
                                                           QListWidget* list)
    : QListWidgetItem(QString::fromStdWString(RecoveryFiles::rowOf(file)), list), m_file(file)
{
    // A long name is elided; the path distinguishes two files of the same name.
    const std::wstring& source = file.oriSourceFile();
    setData(
        Qt::ToolTipRole,
        PlainText::tooltip(text() + (source.empty() ? QString() : u'\n' + QString::fromStdWString(source))));
}

} // namespace Vu::Commands
