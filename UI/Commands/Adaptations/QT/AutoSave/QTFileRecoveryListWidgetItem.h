#pragma once

#include "Server/DataModel/Recovery/AutoSavedFileInfo.h"

#include <QListWidgetItem>

namespace Vu::Commands {

/// One row of the list of recovery files.
class QTFileRecoveryListWidgetItem : public QListWidgetItem
{
public:
    /// The list takes ownership of the item.
    QTFileRecoveryListWidgetItem(const Vs::AutoSavedFileInfo& file, QListWidget* list);

    const Vs::AutoSavedFileInfo& file() const { return m_file; }

private:
    Vs::AutoSavedFileInfo m_file;
};

} // namespace Vu::Commands
