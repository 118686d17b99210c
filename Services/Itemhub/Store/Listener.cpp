#include "Services/Itemhub/Store/Listener.h"

#include <QEventLoop>
#include <QSqlDriver>
#include <QTimer>

namespace Itemhub::Store {

namespace {

using namespace std::chrono_literals;

constexpr auto kLook = 2s;  ///< How often to check whether the server is still there.
constexpr auto kPause = 1s; ///< Until reconnecting to a lost server.

} // namespace

Listener::Listener(const Database& database, std::function<void()> heard)
    : m_database(database), m_heard(std::move(heard))
{
    if (!database.dialect().eventChannel().isEmpty())
        m_thread = std::thread([this] { work(); });
}

Listener::~Listener()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
        if (m_loop)
            QMetaObject::invokeMethod(m_loop, &QEventLoop::quit, Qt::QueuedConnection);
    }
    m_end.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void Listener::work()
{
    std::unique_lock lock(m_mutex);
    while (!m_stopped) {
        lock.unlock();
        try {
            listen();
        } catch (const StoreError&) {
            // The waiters' own queries will report it.
        }
        m_isListening = false;
        // From now on events have to be polled for.
        m_heard();
        lock.lock();
        m_end.wait_for(lock, kPause, [this] { return m_stopped; });
    }
}

void Listener::listen()
{
    Connection connection(m_database);
    QEventLoop loop;
    QObject::connect(connection.driver(), &QSqlDriver::notification, &loop, [this] { m_heard(); });
    if (!connection.driver()->subscribeToNotification(m_database.dialect().eventChannel()))
        return;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        try {
            connection.runPlain("SELECT 1");
        } catch (const StoreError&) {
            loop.quit();
        }
    });
    look.start(kLook);
    {
        const std::lock_guard lock(m_mutex);
        if (m_stopped)
            return;
        m_loop = &loop;
    }
    m_isListening = true;
    m_heard(); // For events recorded before.
    loop.exec();
    const std::lock_guard lock(m_mutex);
    m_loop = nullptr;
}

} // namespace Itemhub::Store
