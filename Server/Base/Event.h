#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Require.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <type_traits>
#include <utility>
#include <vector>

namespace Vs {

/// When in the course of a change an event is fired.
enum class Timing {
    Before = 0,       ///< The change is about to happen.
    After = 1,        ///< The change has happened.
    Notification = 2, ///< Nothing need have changed; whoever shows the subject refreshes.
};

class Event : public Implements<Event>
{
public:
    explicit Event(Timing timing = Timing::After) : m_timing(timing) {}
    Timing timing() const { return m_timing; }

private:
    Timing m_timing;
};

/// What listens. A site must unsubscribe before it goes, which Subscriptions as its last member do by
/// themselves. One that is forgotten stops the program there, and not where the next event would meet what is
/// left of it.
class EventSite
{
public:
    EventSite() = default;
    EventSite(const EventSite&) {}
    EventSite& operator=(const EventSite&) { return *this; }
    virtual ~EventSite() { require(m_subscriptions == 0, "a site that goes is subscribed nowhere"); }

private:
    template <class Site>
    friend class EventSource;
    unsigned m_subscriptions = 0; ///< How many sources know it.
};

/// Tells its sites of events, in the order of their subscription. A site may subscribe or unsubscribe anyone
/// from inside a notification: one that left is not told any more, one that came is told from the next event
/// on. Main thread only.
///
/// A source is one object of the process, made at the first call of its `get()` and never destroyed: add-ins
/// unsubscribe while the process goes down.
template <class Site>
class EventSource
{
public:
    EventSource() = default;
    EventSource(const EventSource&) = delete;
    EventSource& operator=(const EventSource&) = delete;
    ~EventSource()
    {
        for (Site* site : m_sites)
            if (site)
                --asSite(*site).m_subscriptions;
    }

    /// A second subscription of the same site changes nothing.
    void subscribe(Site* site)
    {
        assertMainThread();
        require(site != nullptr, "a site that subscribes is there");
        if (asSite(*site).m_subscriptions > 0 && subscribed(site))
            return;
        m_sites.push_back(site);
        ++asSite(*site).m_subscriptions;
    }
    void unsubscribe(Site* site)
    {
        assertMainThread();
        // Of thousands of sites, one that is nowhere isn't looked for, and what came last goes first.
        if (!site || asSite(*site).m_subscriptions == 0)
            return;
        const auto found = std::find(m_sites.rbegin(), m_sites.rend(), site);
        if (found == m_sites.rend())
            return;
        --asSite(*site).m_subscriptions;
        if (m_depth > 0)
            *found = nullptr;
        else
            m_sites.erase(std::next(found).base());
    }
    bool subscribed(const Site* site) const
    {
        return std::find(m_sites.begin(), m_sites.end(), site) != m_sites.end();
    }

protected:
    template <class EventType>
    void fire(void (Site::*handler)(EventType*), EventType* event)
    {
        forEach([&](Site* site) { (site->*handler)(event); });
    }

    template <class Action>
    void forEach(Action&& action)
    {
        assertMainThread();
        // A site that throws ends this notification, and leaves the source in order.
        struct Round
        {
            EventSource& source;
            explicit Round(EventSource& owner) : source(owner) { ++source.m_depth; }
            ~Round()
            {
                if (--source.m_depth == 0)
                    std::erase(source.m_sites, nullptr);
            }
        } round(*this);
        const size_t count = m_sites.size();
        for (size_t i = 0; i < count; ++i)
            if (m_sites[i])
                action(m_sites[i]);
    }

private:
    static EventSite& asSite(EventSite& site) { return site; }

    std::vector<Site*> m_sites;
    int m_depth = 0;
};

/// Keeps a site subscribed until it goes. As the last member of the site they end first, while everything
/// that an event might need is still there; where the destructor itself sets off events, it calls clear()
/// before. Main thread only.
class Subscriptions
{
public:
    Subscriptions() = default;
    Subscriptions(const Subscriptions&) = delete;
    Subscriptions& operator=(const Subscriptions&) = delete;
    ~Subscriptions() { clear(); }

    /// Subscribes the site; the source must outlive this.
    template <class Site>
    void add(EventSource<Site>* source, std::type_identity_t<Site>* site)
    {
        source->subscribe(site);
        m_ends.push_back([source, site] { source->unsubscribe(site); });
    }
    void clear()
    {
        for (const std::function<void()>& end : std::exchange(m_ends, {}))
            end();
    }

private:
    std::vector<std::function<void()>> m_ends;
};

} // namespace Vs
