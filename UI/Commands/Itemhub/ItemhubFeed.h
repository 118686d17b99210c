#pragma once

#include "Server/Itemhub/ItemhubEvents.h"
#include "UI/Base/Session/DesignFeed.h"

#include <cstdint>
#include <map>
#include <vector>

namespace Vu::Commands {

/// Brings versions of items and what people have said about them to the feeds of the items' documents. The
/// service is asked on threads when a feed is drawn for the first time, and again after something has
/// happened to the item. Main thread only.
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
    void ask(std::int64_t item);
    void answered(std::int64_t item, const std::vector<FeedEntry>& entries);

    struct Known
    {
        std::vector<FeedEntry> entries;
        bool isCurrent = false;
        bool isAsked = false;
    };
    std::map<std::int64_t, Known> m_known; ///< By items.
};

} // namespace Vu::Commands
