#pragma once

#include "Server/Itemhub/ItemhubEvents.h"
#include "UI/Base/Session/DesignFeed.h"
#include "UI/Base/Session/DocumentFacts.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Vu::Commands {

/// Adds versions of items and comments on them to the feeds of the items' documents, and the names of the
/// item and the document's version to the properties panel. The service is asked on threads when one of these
/// is first drawn, and again after something has happened to the item. Main thread only.
class ItemhubFeed : private FeedSource, private Vs::ItemhubEventSite
{
public:
    ItemhubFeed();
    ~ItemhubFeed() override;
    ItemhubFeed(const ItemhubFeed&) = delete;
    ItemhubFeed& operator=(const ItemhubFeed&) = delete;

private:
    void addEntries(Vs::Document& document, std::vector<FeedEntry>& entries) override;
    void sessionChanged(Vs::ItemhubEvent*) override;
    void itemChanged(Vs::ItemhubItemEvent* event) override;
    std::vector<DocumentFacts::Fact> factsOf(const Vs::Document& document);

    struct Known
    {
        std::vector<FeedEntry> entries;
        std::wstring caption;                        ///< Of the item.
        std::map<std::int64_t, std::wstring> labels; ///< By version number; may be empty.
        bool isCurrent = false;
        bool isAsked = false;
    };
    void ask(std::int64_t item);
    void answered(std::int64_t item, Known known);

    std::map<std::int64_t, Known> m_known; ///< By items.
    DocumentFacts m_facts;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
