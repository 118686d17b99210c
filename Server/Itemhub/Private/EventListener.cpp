#include "Server/Itemhub/Private/EventListener.h"

#include "Server/Base/Strings.h"
#include "Server/Base/Task.h"
#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Server/Itemhub/Private/Session.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace Vs::Itemhub {
namespace {

/// How long the service waits for an event; well below the time after which a connection counts as dead.
constexpr int kWait = 25;
constexpr std::chrono::seconds kFirstPause{1}, kLongestPause{300};

void tell(const ItemEvent& happened)
{
    ItemhubUtilities::results().post([happened] {
        ItemhubItemEvent event(happened.kind, happened.itemId, happened.attachmentId, happened.version,
                               Strings::widen(happened.account));
        ItemhubEventSource::get()->fireItemChanged(&event);
    });
}

void tellFavourites()
{
    ItemhubUtilities::results().post([] {
        ItemhubEvent event;
        ItemhubEventSource::get()->fireFavoritesChanged(&event);
    });
}

/// Of the requests made while this machine was asleep, only the last can still be wanted.
void tellDashboard(std::vector<std::int64_t> requests)
{
    constexpr std::ptrdiff_t kMost = 10;
    if (std::ssize(requests) > kMost)
        requests.erase(requests.begin(), requests.end() - kMost);
    for (const std::int64_t request : requests)
        ItemhubUtilities::results().post([request] {
            ItemhubDashboardEvent event(request);
            ItemhubEventSource::get()->fireDashboardAsked(&event);
        });
}

void tell(const std::vector<ItemEvent>& events, const std::string& account)
{
    bool ofFavourites = false;
    std::vector<std::int64_t> requests;
    for (const ItemEvent& event : events) {
        if (event.kind == "program.asked")
            requests.push_back(event.requestId);
        else if (!event.kind.starts_with("favourite.") && !event.kind.starts_with("program."))
            tell(event);
        else if (event.account == account)
            ofFavourites = true;
    }
    if (ofFavourites)
        tellFavourites();
    tellDashboard(std::move(requests));
}

/// The serial of the newest event: somebody who has just signed in sees the current state anyway.
std::int64_t newest(ItemStore& store, const Watch& watch)
{
    for (std::int64_t after = 0;;) {
        const ItemEvents events = store.events(after, 0, watch);
        if (events.events.empty() || events.next <= after)
            return std::max(after, events.next);
        after = events.next;
    }
}

} // namespace

EventListener& EventListener::get()
{
    static auto* const listener = new EventListener;
    return *listener;
}

void EventListener::start(std::shared_ptr<ItemStore> store, const std::string& account)
{
    stop();
    m_ends = false;
    m_thread = std::thread([this, store = std::move(store), account] { loop(store, account); });
}

void EventListener::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ends = true;
        m_changed.notify_all();
    }
    if (m_thread.joinable())
        m_thread.join();
}

bool EventListener::pause(std::chrono::seconds time)
{
    std::unique_lock lock(m_mutex);
    return !m_changed.wait_for(lock, time, [this] { return m_ends.load(); });
}

void EventListener::loop(const std::shared_ptr<ItemStore>& store, const std::string& account)
{
    const Watch watch{[this](auto, auto) { return !m_ends; }};
    std::optional<std::int64_t> serial;
    bool hasFailed = false;
    for (std::chrono::seconds time = kFirstPause; !m_ends;) {
        try {
            if (!serial)
                serial = newest(*store, watch);
            // After a failure, find out quickly when the service responds again.
            const ItemEvents events = store->events(*serial, hasFailed ? 0 : kWait, watch);
            hasFailed = false;
            Session::get().answered(store.get(), true);
            tell(events.events, account);
            // A service that was restored from a backup counts on from there.
            serial = events.next;
            time = kFirstPause;
            continue;
        } catch (const ItemStore::Cancelled&) {
            return;
        } catch (const Web::ConnectionException&) {
            Session::get().answered(store.get(), false);
        } catch (const std::exception&) {
            // Nobody requested this; an explicit request reports what is wrong.
        }
        hasFailed = true;
        if (!pause(time))
            return;
        time = std::min(2 * time, kLongestPause);
    }
}

} // namespace Vs::Itemhub
