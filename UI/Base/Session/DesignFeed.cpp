#include "UI/Base/Session/DesignFeed.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Session/Private/StepFeed.h"
#include "UI/Base/Session/SessionEvents.h"

#include <algorithm>

namespace Vu {
namespace {

/// What may bring other steps, or another document, into sight.
class ChangeWatch : private Vs::AssetEventSite, private SessionEventSite
{
public:
    ChangeWatch()
    {
        Vs::AssetEventSource::get()->subscribe(this);
        SessionEventSource::get()->subscribe(this);
    }

private:
    void assetComponentsChanged(Vs::ComponentsEvent*) override { DesignFeed::get()->changed(); }
    void assetSettingsChanged(Vs::AssetEvent*) override { DesignFeed::get()->changed(); }
    void assetDirtyChanged(Vs::AssetEvent*) override { DesignFeed::get()->changed(); }
    void assetClosed(Vs::AssetEvent*) override { DesignFeed::get()->changed(); }
    void currentSessionChanged(SessionEvent*) override { DesignFeed::get()->changed(); }
    void sessionPostActivateForAsset(SessionEvent*) override { DesignFeed::get()->changed(); }
    void sessionDeactivated(SessionEvent*) override { DesignFeed::get()->changed(); }
};

} // namespace

DesignFeed* DesignFeed::get()
{
    static auto* const feed = new DesignFeed;
    static const auto* const watch = new ChangeWatch;
    static_cast<void>(watch);
    return feed;
}

DesignFeed::DesignFeed()
{
    static StepFeed steps;
    m_sources.push_back(&steps);
}

void DesignFeed::add(FeedSource* source)
{
    m_sources.push_back(source);
    changed();
}

void DesignFeed::remove(FeedSource* source)
{
    std::erase(m_sources, source);
    changed();
}

void DesignFeed::changed()
{
    forEach([](FeedEventSite* site) { site->feedChanged(); });
}

std::vector<FeedEntry> DesignFeed::entries(Vs::Document& document) const
{
    std::vector<FeedEntry> all;
    for (FeedSource* source : m_sources)
        source->addEntries(document, all);
    std::stable_sort(all.begin(), all.end(),
                     [](const FeedEntry& a, const FeedEntry& b) { return a.time > b.time; });
    return all;
}

} // namespace Vu
