#include "UI/Base/Window/BrowserModel.h"

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/Component/Component.h"
#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetAdapter.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/BrowserIcons.h"
#include "UI/Base/Window/PlainText.h"

#include <QApplication>
#include <QPalette>
#include <QPixmap>

#include <algorithm>
#include <map>

namespace Vu {
namespace {

// The target of an index that isn't a component's: the folder, or one of the views, which the row identifies.
const char kFolder = 0, kView = 0;

bool pointsAt(const QModelIndex& index, const char& mark)
{
    return index.isValid() && index.constInternalPointer() == &mark;
}

Vs::NameView::NamedViews* namedViewsOf(const Vs::Asset* asset)
{
    Vs::AssetAdapter* adapter = asset ? asset->adapter() : nullptr;
    auto* settings =
        Vs::cast<Vs::CommonData::CommonDataAssetSettings>(adapter ? adapter->assetSettings() : nullptr);
    return settings ? settings->namedViews() : nullptr;
}

} // namespace

BrowserModel::BrowserModel(QObject* parent)
    : QAbstractItemModel(parent),
      m_assemblyIcon(BrowserIcons::assembly()),
      m_partIcon(BrowserIcons::part()),
      m_damagedIcon(BrowserIcons::damagedPart()),
      m_viewIcon(BrowserIcons::camera())
{
    m_subscriptions.add(Vs::AssetEventSource::get(), this);
}

BrowserModel::~BrowserModel() = default;

void BrowserModel::asset(Vs::Asset* asset)
{
    if (asset == m_asset)
        return;
    beginResetModel();
    m_asset = asset;
    m_damaged.clear();
    if (asset)
        m_damaged = Vs::DamagedParts::of(*asset);
    m_namedViews = namedViewsOf(asset);
    m_views = m_namedViews ? m_namedViews->views() : Vs::NameView::NamedViews::Views();
    m_rows.asset(asset);
    m_filter.clear();
    endResetModel();
}

void BrowserModel::filter(const QString& words)
{
    std::vector<std::wstring> filter;
    for (const QString& word : words.split(u' ', Qt::SkipEmptyParts))
        filter.push_back(word.toStdWString());
    if (filter == m_filter)
        return;
    beginResetModel();
    m_filter = std::move(filter);
    m_rows.filter(m_filter);
    endResetModel();
}

BrowserRows::Row* BrowserModel::rowOf(const QModelIndex& index) const
{
    if (!index.isValid() || pointsAt(index, kFolder) || pointsAt(index, kView))
        return nullptr;
    return static_cast<BrowserRows::Row*>(index.internalPointer());
}

QModelIndex BrowserModel::indexOf(const BrowserRows::Row& row) const
{
    return row.parent ? createIndex(static_cast<int>(m_rows.position(row)), 0, &row) : rootIndex();
}

const Vs::Component* BrowserModel::component(const QModelIndex& index) const
{
    const BrowserRows::Row* row = rowOf(index);
    return row ? m_rows.component(*row) : nullptr;
}

Vs::StrongRef<Vs::NameView::NamedView> BrowserModel::namedView(const QModelIndex& index) const
{
    return pointsAt(index, kView) ? m_views.at(static_cast<size_t>(index.row())) : nullptr;
}

Vs::NameView::NamedViews* BrowserModel::namedViews(const QModelIndex& index) const
{
    return pointsAt(index, kFolder) ? m_namedViews : nullptr;
}

QModelIndex BrowserModel::rootIndex() const
{
    return m_asset ? createIndex(m_namedViews ? 1 : 0, 0, &m_rows.root()) : QModelIndex();
}

QModelIndex BrowserModel::namedViewsIndex() const
{
    return m_namedViews ? createIndex(0, 0, &kFolder) : QModelIndex();
}

QModelIndex BrowserModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!m_asset || column != 0 || row < 0)
        return {};
    if (row >= rowCount(parent))
        return {};
    if (!parent.isValid())
        return row == rootIndex().row() ? rootIndex() : namedViewsIndex();
    if (pointsAt(parent, kFolder))
        return createIndex(row, 0, &kView);
    return createIndex(row, 0, rowOf(parent)->children[static_cast<size_t>(row)].get());
}

QModelIndex BrowserModel::parent(const QModelIndex& index) const
{
    if (pointsAt(index, kView))
        return namedViewsIndex();
    const BrowserRows::Row* row = rowOf(index);
    return row && row->parent ? indexOf(*row->parent) : QModelIndex();
}

int BrowserModel::rowCount(const QModelIndex& parent) const
{
    if (!m_asset)
        return 0;
    if (!parent.isValid())
        return m_namedViews ? 2 : 1;
    if (pointsAt(parent, kFolder))
        return static_cast<int>(m_views.size());
    BrowserRows::Row* above = rowOf(parent);
    return above ? static_cast<int>(m_rows.count(*above)) : 0;
}

int BrowserModel::columnCount(const QModelIndex&) const
{
    return 1;
}

bool BrowserModel::hasChildren(const QModelIndex& parent) const
{
    const BrowserRows::Row* row = rowOf(parent);
    return row ? m_rows.hasChildren(*row) : rowCount(parent) > 0;
}

QModelIndex BrowserModel::indexOf(const std::string& componentId)
{
    const BrowserRows::Row* row = m_rows.reveal(componentId);
    return row ? indexOf(*row) : QModelIndex();
}

/// The faces of the component that were lost with a damaged file; empty for none.
QString BrowserModel::damageOf(const Vs::Component& component) const
{
    const auto found = m_damaged.find(component.id);
    if (found == m_damaged.end())
        return {};
    const auto& [lost, all] = found->second;
    return QString::fromStdWString(localizedFormat(
        "BrowserDamaged", "%1% of %2% faces are damaged in the file and not shown", lost, all));
}

QVariant BrowserModel::viewData(const Vs::NameView::NamedView& view, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return QString::fromStdWString(view.name());
    case Qt::ToolTipRole:
        return PlainText::tooltip(
            view.isFixed() ? localized("BrowserStandardView", "Standard view; double-click to look from here")
                           : localized("BrowserNamedView", "Double-click to look from here"));
    case Qt::DecorationRole:
        return m_viewIcon;
    default:
        return {};
    }
}

QVariant BrowserModel::data(const QModelIndex& index, int role) const
{
    if (const Vs::StrongRef<Vs::NameView::NamedView> view = namedView(index))
        return viewData(*view, role);
    if (namedViews(index)) {
        if (role == Qt::DisplayRole)
            return QString::fromStdWString(localized("BrowserNamedViews", "Named Views"));
        return role == Qt::DecorationRole ? QVariant(m_viewIcon) : QVariant();
    }
    const Vs::Component* shown = component(index);
    if (!shown)
        return {};
    const bool root = shown == m_asset->components();
    switch (role) {
    case Qt::DisplayRole:
        if (root)
            return QString::fromStdWString(m_asset->name());
        return shown->name.empty() ? QString::fromStdWString(localized("ComponentUnnamed", "(unnamed)"))
                                   : QString::fromStdWString(shown->name);
    case Qt::EditRole:
        return QString::fromStdWString(shown->name);
    case Qt::ToolTipRole:
        if (const QString damage = damageOf(*shown); !damage.isEmpty())
            return PlainText::tooltip(shown->name.text() + L": " + damage.toStdWString());
        if (shown->children.empty())
            return PlainText::tooltip(shown->name);
        return PlainText::tooltip(shown->children.size() == 1
                                      ? localizedFormat("ComponentCountOne", "%1%: 1 component", shown->name)
                                      : localizedFormat("ComponentCount", "%1%: %2% components", shown->name,
                                                        shown->children.size()));
    case Qt::DecorationRole:
        if (m_damaged.contains(shown->id))
            return m_damagedIcon;
        return shown->children.empty() && shown->body ? m_partIcon : m_assemblyIcon;
    case Qt::AccessibleDescriptionRole:
        return damageOf(*shown);
    case Qt::CheckStateRole:
        return root ? QVariant() : QVariant(shown->visible ? Qt::Checked : Qt::Unchecked);
    case Qt::ForegroundRole:
        return isHidden(index) ? QVariant(QApplication::palette().placeholderText()) : QVariant();
    case ComponentIdRole:
        return QString::fromStdString(shown->id);
    default:
        return {};
    }
}

bool BrowserModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role == Qt::EditRole) {
        if (m_renamer && isRenameable(index) && value != data(index, Qt::EditRole))
            m_renamer(index, value.toString().toStdWString());
        return isRenameable(index);
    }
    if (role != Qt::CheckStateRole || !m_shower || !isCheckable(index))
        return false;
    m_shower(index, value.toInt() == Qt::Checked);
    return true;
}

bool BrowserModel::isCheckable(const QModelIndex& index) const
{
    const Vs::Component* shown = component(index);
    return shown && shown != m_asset->components();
}

bool BrowserModel::isHidden(const QModelIndex& index) const
{
    const Vs::Component* shown = component(index);
    return shown && (!shown->visible || isHidden(index.parent()));
}

// The root's name is that of the asset.
bool BrowserModel::isRenameable(const QModelIndex& index) const
{
    if (const Vs::StrongRef<Vs::NameView::NamedView> view = namedView(index))
        return view->enableModify();
    const Vs::Component* shown = component(index);
    return shown && shown != m_asset->components();
}

Qt::ItemFlags BrowserModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    flags.setFlag(Qt::ItemIsUserCheckable, isCheckable(index));
    flags.setFlag(Qt::ItemIsEditable, isRenameable(index));
    return flags;
}

void BrowserModel::assetComponentsChanged(Vs::ComponentsEvent* event)
{
    if (event->asset() != m_asset)
        return;
    const Vs::ComponentsEvent::Changes& changes = event->changes();
    // A filter may now leave different components, with no record of which were added or removed.
    if (changes.all || m_rows.isFiltered()) {
        // The view expands again what was expanded, by the components' ids.
        beginResetModel();
        m_rows.asset(m_asset);
        m_rows.filter(m_filter);
        endResetModel();
        return;
    }
    removeRowsOf(changes.removed);
    insertRowsOf(changes.added);
    for (const Vs::Component* changed : changes.changed)
        if (const BrowserRows::Row* row = m_rows.find(changed->id))
            emit dataChanged(indexOf(*row), indexOf(*row));
}

namespace {

/// By the ids of their parents.
using Children = std::map<std::string, std::vector<std::string>>;

} // namespace

void BrowserModel::removeRowsOf(const std::vector<std::string>& components)
{
    Children gone;
    for (const std::string& id : components)
        gone[Vs::parentId(id)].push_back(id);
    for (const auto& [parent, ids] : gone) {
        BrowserRows::Row* above = m_rows.find(parent);
        if (!above)
            continue;
        for (const BrowserRows::Run& run : m_rows.gone(*above, ids)) {
            beginRemoveRows(indexOf(*above), static_cast<int>(run.first),
                            static_cast<int>(run.first + run.ids.size()) - 1);
            m_rows.erase(*above, run);
            endRemoveRows();
        }
        emit dataChanged(indexOf(*above), indexOf(*above));
    }
}

void BrowserModel::insertRowsOf(const std::vector<const Vs::Component*>& components)
{
    Children come;
    for (const Vs::Component* component : components)
        come[Vs::parentId(component->id)].push_back(component->id);
    for (const auto& [parent, ids] : come) {
        BrowserRows::Row* above = m_rows.find(parent);
        if (!above)
            continue;
        for (const BrowserRows::Run& run : m_rows.come(*above, ids)) {
            beginInsertRows(indexOf(*above), static_cast<int>(run.first),
                            static_cast<int>(run.first + run.ids.size()) - 1);
            m_rows.insert(*above, run);
            endInsertRows();
        }
        emit dataChanged(indexOf(*above), indexOf(*above));
    }
}

void BrowserModel::assetRenamed(Vs::AssetEvent* event)
{
    if (event->asset() == m_asset)
        emit dataChanged(rootIndex(), rootIndex());
}

// Views are added, removed or changed one at a time, and undo may cause any of these; the rows before and
// after it stay as they are, with their selection.
void BrowserModel::assetSettingsChanged(Vs::AssetEvent* event)
{
    if (event->asset() != m_asset || !m_namedViews)
        return;
    const auto sameName = [](const auto& a, const auto& b) { return a->name() == b->name(); };
    Vs::NameView::NamedViews::Views views = m_namedViews->views();
    const auto differs = std::mismatch(m_views.begin(), m_views.end(), views.begin(), views.end(), sameName);
    const auto first = differs.first - m_views.begin();
    const auto tail = std::mismatch(m_views.rbegin(), std::make_reverse_iterator(differs.first),
                                    views.rbegin(), std::make_reverse_iterator(differs.second), sameName);
    const auto oldRows = m_views.rend() - tail.first - first, newRows = views.rend() - tail.second - first;
    const QModelIndex folder = namedViewsIndex();
    const int row = static_cast<int>(first);
    if (oldRows == newRows) {
        m_views = std::move(views);
        if (newRows > 0)
            emit dataChanged(index(row, 0, folder), index(row + static_cast<int>(newRows) - 1, 0, folder));
        return;
    }
    if (oldRows > 0) {
        beginRemoveRows(folder, row, row + static_cast<int>(oldRows) - 1);
        m_views.erase(m_views.begin() + first, m_views.begin() + first + oldRows);
        endRemoveRows();
    }
    if (newRows > 0) {
        beginInsertRows(folder, row, row + static_cast<int>(newRows) - 1);
        m_views = std::move(views);
        endInsertRows();
    } else {
        m_views = std::move(views);
    }
}

void BrowserModel::assetClosed(Vs::AssetEvent* event)
{
    if (event->asset() == m_asset)
        asset(nullptr);
}

} // namespace Vu
