#include "UI/Commands/Adaptations/QT/Cloud/CloudFolderModel.h"

#include "UI/Base/Window/PlainText.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudTexts.h"
#include "UI/Commands/Adaptations/QT/Shell/FilePreview.h"
#include "UI/Commands/Adaptations/QT/Shell/Icons.h"

#include <QCollator>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <compare>

namespace Vu::Commands {
namespace {

QCollator naturalOrder()
{
    // Without a language, Qt compares letter by letter, even numbers.
    const bool hasLanguage = QLocale().language() != QLocale::C;
    QCollator order(hasLanguage ? QLocale() : QLocale(QLocale::English));
    order.setNumericMode(true);
    order.setCaseSensitivity(Qt::CaseInsensitive);
    return order;
}

} // namespace

CloudFolderModel::CloudFolderModel(QObject* parent)
    : QAbstractTableModel(parent), m_folder(CloudTexts::icon("Folder"))
{
}

void CloudFolderModel::nodes(const std::vector<Vs::SkyvaultNodeData>& nodes)
{
    beginResetModel();
    m_nodes = nodes;
    m_all.clear();
    m_all.reserve(nodes.size());
    const QString form = QString::fromStdString(Vs::SkyvaultNodeData::timeFormat());
    for (size_t i = 0; i < m_nodes.size(); ++i) {
        const Vs::SkyvaultNodeData& node = m_nodes[i];
        QDateTime modified = QDateTime::fromString(QString::fromStdString(node.modified()), form);
        modified.setTimeSpec(Qt::UTC);
        m_all.push_back(
            {i, CloudTexts::shown(node.name()), modified.toLocalTime(), node.isFolder(), node.size()});
    }
    choose();
    endResetModel();
}

void CloudFolderModel::patterns(const QStringList& patterns)
{
    beginResetModel();
    m_patterns = patterns;
    choose();
    endResetModel();
}

void CloudFolderModel::search(const QString& text)
{
    beginResetModel();
    m_search = text;
    choose();
    endResetModel();
}

void CloudFolderModel::choose()
{
    std::vector<QRegularExpression> wanted;
    for (const QString& pattern : m_patterns)
        if (pattern != QLatin1String("*") && pattern != QLatin1String("*.*"))
            wanted.push_back(QRegularExpression::fromWildcard(pattern, Qt::CaseInsensitive));
        else
            wanted.emplace_back(QString());
    m_rows.clear();
    std::copy_if(m_all.begin(), m_all.end(), std::back_inserter(m_rows), [&](const Row& row) {
        const bool fits = row.isFolder || wanted.empty() ||
                          std::any_of(wanted.begin(), wanted.end(),
                                      [&](const auto& each) { return each.match(row.name).hasMatch(); });
        return fits && row.name.contains(m_search, Qt::CaseInsensitive);
    });
    order();
}

void CloudFolderModel::order()
{
    const QCollator collator = naturalOrder();
    std::vector<std::pair<QCollatorSortKey, size_t>> keys;
    keys.reserve(m_rows.size());
    for (size_t i = 0; i < m_rows.size(); ++i)
        keys.emplace_back(collator.sortKey(m_rows[i].name), i);
    const auto less = [&](const auto& a, const auto& b) {
        const Row& one = m_rows[a.second];
        const Row& other = m_rows[b.second];
        if (one.isFolder != other.isFolder)
            return one.isFolder;
        const bool isUp = m_order == Qt::AscendingOrder;
        if (m_column == Size && one.size != other.size)
            return (one.size < other.size) == isUp;
        if (m_column == Modified && one.modified != other.modified)
            return (one.modified < other.modified) == isUp;
        const int named = a.first.compare(b.first);
        return isUp || m_column != Name ? named < 0 : named > 0;
    };
    std::stable_sort(keys.begin(), keys.end(), less);
    std::vector<Row> sorted;
    sorted.reserve(m_rows.size());
    for (const auto& key : keys)
        sorted.push_back(std::move(m_rows[key.second]));
    m_rows = std::move(sorted);
}

void CloudFolderModel::sort(int column, Qt::SortOrder order)
{
    beginResetModel();
    m_column = column;
    m_order = order;
    this->order();
    endResetModel();
}

int CloudFolderModel::rowOf(const QString& name) const
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [&](const Row& row) { return row.name == name; });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

int CloudFolderModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CloudFolderModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(kColumns);
}

const QIcon& CloudFolderModel::iconOf(const Row& row) const
{
    if (row.isFolder)
        return m_folder;
    const QString suffix = row.name.section(QLatin1Char('.'), -1).toLower();
    for (const auto& [known, icon] : m_icons)
        if (known == suffix)
            return icon;
    return m_icons.emplace_back(suffix, iconOfFile(row.name.toStdWString())).second;
}

QVariant CloudFolderModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const Row& row = m_rows[static_cast<size_t>(index.row())];
    if (role == Qt::DecorationRole && index.column() == Name)
        return iconOf(row);
    if (role == Qt::ToolTipRole && index.column() == Name)
        return PlainText::tooltip(row.name);
    if (role == Qt::TextAlignmentRole && index.column() == Size)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    // An empty cell gives a screen reader nothing to read.
    if (role == Qt::AccessibleTextRole && index.column() == Size && row.isFolder)
        return CloudTexts::text("CloudIsFolder", "Folder");
    if (role == Qt::AccessibleTextRole && index.column() == Modified && !row.modified.isValid())
        return CloudTexts::text("CloudNoTime", "Unknown time");
    if (role != Qt::DisplayRole)
        return {};
    if (index.column() == Name)
        return row.name;
    if (index.column() == Size)
        return row.isFolder
                   ? QString()
                   : QLocale().formattedDataSize(static_cast<qint64>(row.size), 1) + QStringLiteral("  ");
    return row.modified.isValid() ? dayText(row.modified, QDateTime::currentDateTime()) : QString();
}

QVariant CloudFolderModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant((section == Size ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    return section == Name   ? CloudTexts::text("CloudColumnName", "Name")
           : section == Size ? CloudTexts::text("CloudColumnSize", "Size") + QStringLiteral("  ")
                             : CloudTexts::text("CloudColumnModified", "Changed");
}

} // namespace Vu::Commands
