#pragma once

#include "Server/Skyvault/SkyvaultNodeData.h"

#include <QAbstractTableModel>
#include <QDateTime>
#include <QIcon>
#include <QStringList>

#include <vector>

namespace Vu::Commands {

/// The content of one folder of the drive as a table: name, size, time of change. Folders come first. Ten
/// thousand entries cost one sort; a row's texts are created when it is drawn.
class CloudFolderModel : public QAbstractTableModel
{
public:
    enum Column { Name, Size, Modified, kColumns };

    explicit CloudFolderModel(QObject* parent);

    void nodes(const std::vector<Vs::SkyvaultNodeData>& nodes);
    /// Only files that match these wildcards, such as "*.vlra", and all folders are listed; none means all
    /// files.
    void patterns(const QStringList& patterns);
    /// Only those whose names have this text.
    void search(const QString& text);

    const Vs::SkyvaultNodeData& node(int row) const { return m_nodes[m_rows[static_cast<size_t>(row)].node]; }
    QString name(int row) const { return m_rows[static_cast<size_t>(row)].name; }
    /// -1 if none is listed under that name.
    int rowOf(const QString& name) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    struct Row
    {
        size_t node;
        QString name;
        QDateTime modified; ///< Local; invalid if the server doesn't provide it.
        bool isFolder;
        std::uint64_t size;
    };

    void choose();
    void order();
    const QIcon& iconOf(const Row& row) const;

    std::vector<Vs::SkyvaultNodeData> m_nodes;
    std::vector<Row> m_all, m_rows;
    QStringList m_patterns;
    QString m_search;
    int m_column = Name;
    Qt::SortOrder m_order = Qt::AscendingOrder;
    QIcon m_folder;
    mutable std::vector<std::pair<QString, QIcon>> m_icons; ///< By suffix, as they are first needed.
};

} // namespace Vu::Commands
