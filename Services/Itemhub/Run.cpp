#include "Services/Itemhub/Run.h"

#include "Services/Itemhub/Access/Grants.h"
#include "Services/Itemhub/Http/Server.h"
#include "Services/Itemhub/Routes/Api.h"
#include "Services/Itemhub/Routes/UploadRoutes.h"
#include "Services/Itemhub/Store/Events.h"
#include "Services/Itemhub/Store/Items.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <mutex>
#include <poll.h>
#include <pthread.h>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace Itemhub {

namespace {

constexpr const char* kLocal = "local"; ///< The customer and the account of a local service.

/// Signals shut the service down cleanly, on a thread that waits for them; all other threads are started
/// later and don't receive them.
class EndBySignal
{
public:
    EndBySignal()
    {
        std::signal(SIGPIPE, SIG_IGN);
        sigemptyset(&m_signals);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
            sigaddset(&m_signals, signal);
        pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
    }

    ~EndBySignal() { finish(); }

    /// What ends is no longer there afterwards.
    void finish()
    {
        if (!m_thread.joinable())
            return;
        // NOLINTNEXTLINE(bugprone-bad-signal-to-kill-thread): the thread waits for it and ends by itself.
        pthread_kill(m_thread.native_handle(), SIGTERM);
        m_thread.join();
    }

    EndBySignal(const EndBySignal&) = delete;
    EndBySignal& operator=(const EndBySignal&) = delete;

    template <class Stop>
    void watch(Stop stop)
    {
        m_thread = std::thread([this, stop] {
            int signal = 0;
            sigwait(&m_signals, &signal);
            stop();
        });
    }

private:
    sigset_t m_signals{};
    std::thread m_thread;
};

/// Removes expired data, at the start and periodically.
class Housekeeping
{
public:
    explicit Housekeeping(Routes::Service& service)
        : m_thread([this, &service] {
              std::unique_lock lock(m_mutex);
              do
                  work(service);
              while (!m_end.wait_for(lock, std::chrono::minutes(10), [this] { return m_ended; }));
          })
    {
    }

    ~Housekeeping()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_ended = true;
        }
        m_end.notify_all();
        m_thread.join();
    }

private:
    static void work(Routes::Service& service)
    {
        try {
            Store::removeExpiredTokens(service.database.connection());
            Routes::removeExpiredUploads(service);
            removeOld(service);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "quillet-itemhub: what has expired stays: %s\n", error.what());
        }
        service.database.giveBack();
    }

    static void removeOld(Routes::Service& service)
    {
        Store::Connection& store = service.database.connection();
        if (const qint64 days = service.config.eventDays)
            Store::removeEventsBefore(store, daysAgo(days));
        if (const qint64 days = service.config.auditDays)
            Store::removeAuditBefore(store, daysAgo(days));
    }

    static qint64 daysAgo(qint64 days)
    {
        constexpr qint64 kDay = 24LL * 3600 * 1000, kMostDays = 36'500;
        return Store::now() - std::min(days, kMostDays) * kDay;
    }

    std::mutex m_mutex;
    std::condition_variable m_end;
    bool m_ended = false;
    std::thread m_thread;
};

/// The token of this run, for the single account of the single customer, which the first run creates.
Access::Granted localToken(Routes::Service& service)
{
    constexpr qint64 kLifetime = 366LL * 24 * 3600 * 1000;
    Store::Connection& store = service.database.connection();
    Store::Transaction change(store);
    qint64 account = 0;
    if (const auto tenant = Store::findTenant(store, kLocal)) {
        account = Store::findAccount(store, *tenant, kLocal).value().id;
    } else {
        const qint64 made = Store::addTenant(store, kLocal);
        account = Store::addAccount(store, made, kLocal, {});
        Store::setMembership(store, account, Store::kAllWorkspaces, Store::Role::Admin);
        Store::addWorkspace(store, made, "Designs");
    }
    Store::removeExpiredTokens(store);
    Access::Granted granted = Access::grantBearer(
        store,
        {.account = account, .scope = Store::Role::Admin, .label = "this run", .lifetimeMs = kLifetime});
    change.commit();
    return granted;
}

/// A part of a host name, which is case-insensitive.
QString randomName()
{
    constexpr size_t kBytes = 10;
    return QString::fromLatin1(Access::randomText(kBytes).toLatin1().toHex());
}

void removeToken(Routes::Service& service, qint64 token)
{
    try {
        Store::Connection& store = service.database.connection();
        const qint64 tenant = Store::findTenant(store, kLocal).value();
        Store::removeToken(store, Store::findAccount(store, tenant, kLocal).value().id, token);
    } catch (const std::exception&) {
        // It expires by itself.
    }
}

/// Waits until the other end of the pipe is closed everywhere.
void waitForOtherEnd(int pipe)
{
    pollfd entry{pipe, 0, 0};
    while (::poll(&entry, 1, -1) <= 0 || !(entry.revents & (POLLERR | POLLHUP | POLLNVAL))) {
    }
}

bool writeLine(int pipe, const QByteArray& line)
{
    return ::write(pipe, line.constData(), static_cast<size_t>(line.size())) == line.size();
}

} // namespace

int serve(const Config& config)
{
    EndBySignal end;
    Routes::Service service(config);
    Routes::Api api(service);
    Http::Server server([&](Http::Request& request) { return api.answer(request); },
                        {config.behindProxy, static_cast<size_t>(config.connections)});
    const int port = server.bind(config.address.toStdString(), config.port);
    service.database.giveBack();
    const Housekeeping housekeeping(service);
    std::fprintf(stderr, "quillet-itemhub: serves at %s port %d\n", config.address.toUtf8().constData(),
                 port);
    end.watch([&] {
        service.events.stop();
        server.stop();
    });
    server.run();
    end.finish();
    return 0;
}

int serveLocally(const QString& folder, int pipe)
{
    EndBySignal end;
    Config config = localConfig(folder);
    Routes::Service service(config);
    Routes::Api api(service);
    Http::Server server([&](Http::Request& request) { return api.answer(request); }, {});
    const int port = server.bind(config.address.toStdString(), 0);
    service.config.url = QString("http://127.0.0.1:%1").arg(port);
    // Cookies ignore ports: with this name, browsers send the page's to no other server on this machine.
    service.config.pageUrl = QString("http://items-%1.localhost:%2").arg(randomName()).arg(port);
    const Access::Granted token = localToken(service);
    const QJsonObject line{{"url", service.config.url}, {"customer", kLocal}, {"token", token.token}};
    if (!writeLine(pipe, QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n'))
        throw std::runtime_error("Nobody reads the pipe to which address and token go.");
    const Housekeeping housekeeping(service);
    const auto stop = [&] {
        service.events.stop();
        server.stop();
    };
    end.watch(stop);
    std::thread([pipe] {
        waitForOtherEnd(pipe);
        ::kill(::getpid(), SIGTERM);
    }).detach();
    server.run();
    end.finish();
    removeToken(service, token.id);
    return 0;
}

} // namespace Itemhub
