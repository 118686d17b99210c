#pragma once

#include "Server/CommonData/NamedViews.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/DamagedParts.h"
#include "UI/Base/Window/BrowserRows.h"

#include <QAbstractItemModel>
#include <QIcon>

#include <functional>
#include <string>
#include <unordered_map>

namespace Vs {
class Component;
}

namespace Vu {

/// The component tree of one asset as a Qt item model, and above it the folder of its named views. Holds only
/// those branches that were expanded, so a large assembly costs nothing until it is opened. A component's
/// check mark is its visibility; components that are hidden, or in something hidden, are grey.
class BrowserModel : public QAbstractItemModel, private Vs::AssetEventSite
{
public:
    enum Role { ComponentIdRole = Qt::UserRole };

    explicit BrowserModel(QObject* parent);
    ~BrowserModel() override;

    /// Null for none. The model drops a closing asset by itself.
    void asset(Vs::Asset* asset);
    Vs::Asset* asset() const { return m_asset; }
    /// Keeps the components whose names have all of the words (BrowserRows::filter), until another asset is
    /// shown.
    void filter(const QString& words);
    /// The first components whose own names have them, at most so many.
    std::vector<std::string> firstFound(size_t most) const { return m_rows.firstFound(most); }

    /// Null for anything but a component.
    const Vs::Component* component(const QModelIndex& index) const;
    /// Null for anything but a named view.
    Vs::StrongRef<Vs::NameView::NamedView> namedView(const QModelIndex& index) const;
    /// Of the asset, if the index is their folder; else null.
    Vs::NameView::NamedViews* namedViews(const QModelIndex& index) const;

    /// Of the topmost component, and of the folder of the named views; invalid without an asset, or one that
    /// has none.
    QModelIndex rootIndex() const;
    QModelIndex namedViewsIndex() const;
    /// The index of a component; builds the branch above it. Invalid if there is none of that id.
    QModelIndex indexOf(const std::string& componentId);

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Called when the user has typed another name for a named view or a component; the model shows it once
    /// the asset has it.
    using Renamer = std::function<void(const QModelIndex& index, const std::wstring& newName)>;
    void renamer(Renamer renamer) { m_renamer = std::move(renamer); }
    /// Called when the user wants to show or hide a component.
    using Shower = std::function<void(const QModelIndex& index, bool visible)>;
    void shower(Shower shower) { m_shower = std::move(shower); }

private:
    void assetComponentsChanged(Vs::ComponentsEvent* event) override;
    void assetRenamed(Vs::AssetEvent* event) override;
    void assetSettingsChanged(Vs::AssetEvent* event) override;
    void assetClosed(Vs::AssetEvent* event) override;
    QString damageOf(const Vs::Component& component) const;
    QVariant viewData(const Vs::NameView::NamedView& view, int role) const;
    bool isRenameable(const QModelIndex& index) const;
    bool isCheckable(const QModelIndex& index) const;
    bool isHidden(const QModelIndex& index) const;
    BrowserRows::Row* rowOf(const QModelIndex& index) const;
    QModelIndex indexOf(const BrowserRows::Row& row) const;
    void removeRowsOf(const std::vector<std::string>& components);
    void insertRowsOf(const std::vector<const Vs::Component*>& components);

    Vs::Asset* m_asset = nullptr;
    Vs::NameView::NamedViews* m_namedViews = nullptr;
    Vs::NameView::NamedViews::Views m_views; ///< In the order shown.
    mutable BrowserRows m_rows;
    std::vector<std::wstring> m_filter;
    std::unordered_map<std::string, Vs::DamagedParts::Loss> m_damaged; ///< By Component::id.
    Renamer m_renamer;
    Shower m_shower;
    QIcon m_assemblyIcon, m_partIcon, m_damagedIcon, m_viewIcon;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
