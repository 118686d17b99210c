#include "Server/DataModel/ComponentsListener.h"

#include "Server/DataModel/AssetEvents.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace Vs {

/// The one site of all listeners.
class ComponentsListeners : private AssetEventSite
{
public:
    static ComponentsListeners& get()
    {
        // Never destroyed, like the source itself.
        static auto* const listeners = new ComponentsListeners;
        return *listeners;
    }

    void add(ComponentsListener* listener, const Asset* asset)
    {
        assertMainThread();
        m_ofAsset[asset].push_back(listener);
    }

    void remove(ComponentsListener* listener, const Asset* asset)
    {
        assertMainThread();
        const auto found = m_ofAsset.find(asset);
        std::erase(found->second, listener);
        if (found->second.empty())
            m_ofAsset.erase(found);
    }

private:
    ComponentsListeners() { AssetEventSource::get()->subscribe(this); }

    void assetComponentsChanged(ComponentsEvent* event) override
    {
        const auto found = m_ofAsset.find(event->asset());
        if (found == m_ofAsset.end())
            return;
        const std::vector<ComponentsListener*> all = found->second;
        for (ComponentsListener* listener : all)
            if (listens(listener, event->asset()))
                listener->assetComponentsChanged(event);
    }

    bool listens(const ComponentsListener* listener, const Asset* asset) const
    {
        const auto found = m_ofAsset.find(asset);
        return found != m_ofAsset.end() &&
               std::find(found->second.begin(), found->second.end(), listener) != found->second.end();
    }

    std::unordered_map<const Asset*, std::vector<ComponentsListener*>> m_ofAsset;
};

ComponentsListener::ComponentsListener(const Asset* asset) : m_asset(asset)
{
    ComponentsListeners::get().add(this, asset);
}

ComponentsListener::~ComponentsListener()
{
    ComponentsListeners::get().remove(this, m_asset);
}

} // namespace Vs
