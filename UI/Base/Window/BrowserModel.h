#pragma once

#include "Server/DataModel/AssetEvents.h"

#include <QAbstractItemModel>
#include <QIcon>

#include <unordered_map>

namespace Rendra::Graphics {
class Node;
}
namespace Vs {
class Component;
}

namespace Vu {

/// The component tree of one asset as Qt's views want it. Knows only of those branches that were looked at,
/// so that a large assembly costs nothing until it is opened. The check mark is the visibility in the views.
class BrowserModel : public QAbstractItemModel, private Vs::AssetEventSite
{
public:
    enum Role { ComponentIdRole = Qt::UserRole };

    explicit BrowserModel(QObject* parent);
    ~BrowserModel() override;

    /// Null for none. The model forgets an asset that closes by itself.
    void asset(Vs::Asset* asset);
    Vs::Asset* asset() const { return m_asset; }

    const Vs::Component* component(const QModelIndex& index) const;
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

private:
    /// Where a component stands below its parent, of those branches that were looked at.
    struct Place
    {
        const Vs::Component* parent;
        int row;
    };

    void assetComponentsChanged(Vs::ComponentsEvent* event) override;
    void assetRenamed(Vs::AssetEvent* event) override;
    void assetClosed(Vs::AssetEvent* event) override;
    void learn(const Vs::Component* parent) const;
    Rendra::Graphics::Node* node(const Vs::Component* component) const;

    Vs::Asset* m_asset = nullptr;
    mutable std::unordered_map<const Vs::Component*, Place> m_places;
    QIcon m_assemblyIcon, m_partIcon;
};

} // namespace Vu
