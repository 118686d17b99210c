#pragma once

namespace Vs {

class Asset;
class ComponentsEvent;

/// Listens to changes of one asset's components (AssetEventSite::assetComponentsChanged). Unlike an
/// AssetEventSite, it costs nothing when another asset changes, however many of them are open. Main thread
/// only.
class ComponentsListener
{
public:
    ComponentsListener(const ComponentsListener&) = delete;
    ComponentsListener& operator=(const ComponentsListener&) = delete;

protected:
    /// Listens from now on; nothing of the asset is used but its address.
    explicit ComponentsListener(const Asset* asset);
    virtual ~ComponentsListener();

private:
    friend class ComponentsListeners;
    /// In the order in which the asset's listeners were added. One that is removed meanwhile is no longer
    /// notified.
    virtual void assetComponentsChanged(ComponentsEvent* event) = 0;

    const Asset* m_asset;
};

} // namespace Vs
