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

/// At which point of a change an event is fired.
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

/// A listener. A site must unsubscribe before it is destroyed, which Subscriptions as its last member do by
/// themselves. A forgotten one stops the program there, not where the next event would reach a destroyed
/// object.
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
/// from inside a notification: one that unsubscribed is no longer called, one that subscribed is called from
/// the next event on. Main thread only.
///
/// A source is one object of the process, made at the first call of its `get()` and never destroyed: add-ins
/// unsubscribe while the process is shutting down.
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

    /// Subscribing the same site again changes nothing.
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
        // Among thousands of sites, one that isn't subscribed isn't searched for, and the last is found
        // first.
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

/// Keeps a site subscribed until destroyed. As the last member of the site it ends first, while everything
/// that an event might need still exists; a destructor that itself fires events calls clear() before. Main
/// thread only.
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
