#pragma once

#include "UI/Base/Window/SearchIndex.h"

#include <QAbstractTableModel>
#include <QHash>

namespace Vu {

class CommandDefinition;

/// The results of the search palette, in rows of title, line and keys. Whether a command can start is only
/// asked when its row is first painted.
class FoundModel : public QAbstractTableModel
{
public:
    enum Column { kTitle, kLine, kKeys, kColumns };

    FoundModel(SearchIndex index, QObject* parent);

    void find(const QString& words);
    /// Null if out of range.
    const SearchEntry* entry(int row) const;
    /// Null for a line.
    static CommandDefinition* definition(const SearchEntry& entry);
    bool canStart(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    QString text(int row, int column) const;

    SearchIndex m_index;
    std::vector<const SearchEntry*> m_found;
    mutable QHash<const SearchEntry*, bool> m_canStart;
};

} // namespace Vu
