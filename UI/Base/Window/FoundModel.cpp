#include "UI/Base/Window/FoundModel.h"

#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/PlainText.h"

#include <QGuiApplication>
#include <QPalette>

namespace Vu {

FoundModel::FoundModel(SearchIndex index, QObject* parent)
    : QAbstractTableModel(parent), m_index(std::move(index))
{
}

void FoundModel::find(const QString& words)
{
    beginResetModel();
    m_found = m_index.find(words);
    m_canStart.clear();
    endResetModel();
}

const SearchEntry* FoundModel::entry(int row) const
{
    return row >= 0 && row < rowCount() ? m_found[static_cast<size_t>(row)] : nullptr;
}

CommandDefinition* FoundModel::definition(const SearchEntry& entry)
{
    return entry.command.empty() ? nullptr
                                 : CommandDefinitionMgr::get()->findCommandDefinitionById(entry.command);
}

bool FoundModel::canStart(int row) const
{
    const SearchEntry* found = entry(row);
    if (!found || found->command.empty())
        return found != nullptr;
    const auto known = m_canStart.constFind(found);
    if (known != m_canStart.constEnd())
        return *known;
    CommandContext context = CommandContext::activeContext();
    const CommandDefinition* command = definition(*found);
    return *m_canStart.insert(found, command && command->isAvailable(&context));
}

int FoundModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_found.size());
}

int FoundModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kColumns;
}

QString FoundModel::text(int row, int column) const
{
    const SearchEntry& found = *entry(row);
    if (column == kKeys)
        return found.keys;
    if (column == kLine)
        return found.isRecent ? QString::fromStdWString(localized("PaletteRecent", "Recent line"))
                              : found.line;
    return canStart(row) ? found.title
                         : QString::fromStdWString(localizedFormat("PaletteNotNow", "%1% (can't start now)",
                                                                   found.title.toStdWString()));
}

QVariant FoundModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || !entry(index.row()))
        return {};
    if (role == Qt::DisplayRole)
        return text(index.row(), index.column());
    if (role == Qt::AccessibleTextRole)
        return QStringList{text(index.row(), kTitle), text(index.row(), kLine), text(index.row(), kKeys)}
            .join(QStringLiteral(", "));
    if (role == Qt::ToolTipRole)
        return PlainText::tooltip(entry(index.row())->line);
    if (role == Qt::ForegroundRole && !canStart(index.row()))
        return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
    if (role == Qt::TextAlignmentRole && index.column() == kKeys)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

} // namespace Vu
