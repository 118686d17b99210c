#pragma once

#include "Server/Base/Event.h"

#include <string>
#include <vector>

namespace Vs {

class Asset;
class AssetType;
class Component;

class AssetEvent : public Implements<AssetEvent, Event>
{
public:
    explicit AssetEvent(Asset* asset, Timing timing = Timing::After) : Implements(timing), m_asset(asset) {}
    Asset* asset() const { return m_asset; }

private:
    Asset* m_asset;
};

/// Which components of an asset a change touched.
class ComponentsEvent : public Implements<ComponentsEvent, AssetEvent>
{
public:
    struct Changes
    {
        bool all = false;                      ///< The whole tree is new; the lists are empty.
        std::vector<const Component*> added;   ///< Only the topmost of a new branch.
        std::vector<const Component*> changed; ///< Name, placement, colour, visibility or body.
        std::vector<std::string> removed;      ///< Ids of the topmost components of branches that are gone.
    };

    ComponentsEvent(Asset* asset, Changes changes)
        : Implements(asset, Timing::After), m_changes(std::move(changes))
    {
    }
    const Changes& changes() const { return m_changes; }

private:
    Changes m_changes;
};

class AssetTypeEvent : public Implements<AssetTypeEvent, Event>
{
public:
    explicit AssetTypeEvent(AssetType* type, Timing timing = Timing::After) : Implements(timing), m_type(type)
    {
    }
    AssetType* assetType() const { return m_type; }

private:
    AssetType* m_type;
};

/// What happens to assets and asset types. Each operation does nothing unless overridden.
class AssetEventSite : public EventSite
{
public:
    virtual void assetTypeRegistered(AssetTypeEvent*) {}
    virtual void assetTypeUnregistered(AssetTypeEvent*) {}
    virtual void assetCreated(AssetEvent*) {}
    virtual void assetRenamed(AssetEvent*) {}
    /// Became dirty, smudged or clean.
    virtual void assetDirtyChanged(AssetEvent*) {}
    virtual void assetComponentsChanged(ComponentsEvent*) {}
    /// A value of Asset::setting changed, or an undo or redo restored some.
    virtual void assetSettingsChanged(AssetEvent*) {}
    /// The asset is about to be destroyed; everything of it still exists.
    virtual void assetClosed(AssetEvent*) {}
};

class AssetEventSource : public EventSource<AssetEventSite>
{
public:
    static AssetEventSource* get()
    {
        static auto* const source = new AssetEventSource;
        return source;
    }

    void fireAssetTypeRegistered(AssetTypeEvent* event) { fire(&AssetEventSite::assetTypeRegistered, event); }
    void fireAssetTypeUnregistered(AssetTypeEvent* event)
    {
        fire(&AssetEventSite::assetTypeUnregistered, event);
    }
    void fireAssetCreated(AssetEvent* event) { fire(&AssetEventSite::assetCreated, event); }
    void fireAssetRenamed(AssetEvent* event) { fire(&AssetEventSite::assetRenamed, event); }
    void fireAssetDirtyChanged(AssetEvent* event) { fire(&AssetEventSite::assetDirtyChanged, event); }
    void fireAssetComponentsChanged(ComponentsEvent* event)
    {
        fire(&AssetEventSite::assetComponentsChanged, event);
    }
    void fireAssetSettingsChanged(AssetEvent* event) { fire(&AssetEventSite::assetSettingsChanged, event); }
    void fireAssetClosed(AssetEvent* event) { fire(&AssetEventSite::assetClosed, event); }
};

} // namespace Vs
