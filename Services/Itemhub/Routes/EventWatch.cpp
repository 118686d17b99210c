#include "Services/Itemhub/Routes/EventWatch.h"

#include "Services/Itemhub/Store/Events.h"

namespace Itemhub::Routes {

namespace {

constexpr std::chrono::milliseconds kInterval{200};
constexpr std::chrono::seconds kTold{5}; ///< Where the database sends notifications.

} // namespace

EventWatch::EventWatch(const Store::Database& database, size_t most) : m_database(database), m_most(most) {}

EventWatch::~EventWatch()
{
    stop();
    if (m_thread.joinable())
        m_thread.join();
    m_listener.reset();
}

EventWatch::Place::Place(EventWatch& watch) : m_watch(watch)
{
    const std::lock_guard lock(m_watch.m_mutex);
    m_granted = m_watch.m_places < m_watch.m_most;
    m_watch.m_places += m_granted ? 1 : 0;
}

EventWatch::Place::~Place()
{
    const std::lock_guard lock(m_watch.m_mutex);
    m_watch.m_places -= m_granted ? 1 : 0;
}

qint64 EventWatch::waitBeyond(qint64 serial, std::chrono::milliseconds time)
{
    std::unique_lock lock(m_mutex);
    // No connection is needed while waiting.
    m_database.giveBack();
    if (!m_thread.joinable() && !m_stopped) {
        m_thread = std::thread([this] { look(); });
        m_listener = std::make_unique<Store::Listener>(m_database, [this] { wake(); });
    }
    ++m_waiting;
    m_work.notify_one();
    m_news.wait_for(lock, time, [&] { return m_serial > serial || m_stopped; });
    --m_waiting;
    return m_serial;
}

void EventWatch::wake()
{
    const std::lock_guard lock(m_mutex);
    m_hurry = true;
    if (m_waiting > 0)
        m_work.notify_one();
}

void EventWatch::stop()
{
    const std::lock_guard lock(m_mutex);
    m_stopped = true;
    m_news.notify_all();
    m_work.notify_all();
}

void EventWatch::look()
{
    std::unique_lock lock(m_mutex);
    while (!m_stopped) {
        m_work.wait(lock, [this] { return m_stopped || m_waiting > 0; });
        m_hurry = false;
        lock.unlock();
        qint64 serial = 0;
        try {
            serial = Store::lastSerial(m_database.connection());
        } catch (const Store::StoreError&) {
            // The waiters' own queries will report it.
        }
        m_database.giveBack();
        lock.lock();
        if (serial > m_serial) {
            m_serial = serial;
            m_news.notify_all();
        }
        const std::chrono::milliseconds pause = m_listener->isListening() ? kTold : kInterval;
        m_work.wait_for(lock, pause, [this] { return m_stopped || m_hurry; });
    }
}

} // namespace Itemhub::Routes
