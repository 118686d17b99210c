#include "Server/Skyvault/Client/Http/Connection.h"

#include "Server/Skyvault/Client/Http/Address.h"

#include <QNetworkProxy>
#include <QPointer>

namespace Vs::Cloud {

namespace {

constexpr std::chrono::milliseconds kTick{100};

/// The system's, but never between this machine and itself.
class Proxies : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override
    {
        QUrl url = query.url();
        url.setScheme("http");
        if (isProtected(url))
            return {QNetworkProxy::NoProxy};
        return systemProxyForQuery(query);
    }
};

} // namespace

Connection::Connection()
{
    m_thread.setObjectName("cloud drive");
    m_manager = new QNetworkAccessManager;
    m_manager->setProxyFactory(new Proxies);
    m_manager->setAutoDeleteReplies(false);
    m_manager->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_manager, &QObject::deleteLater);
    m_thread.start();
}

Connection::~Connection()
{
    m_thread.quit();
    m_thread.wait();
}

Answer Connection::run(const Request& request, const DigestLogin& login,
                       const std::function<bool(std::uint64_t, std::uint64_t)>& tick)
{
    const auto state = std::make_shared<ExchangeState>();
    auto* const exchange = new Exchange(request, login, m_patience, state);
    const QPointer<Exchange> alive(exchange); // It goes by itself, on its own thread.
    exchange->moveToThread(&m_thread);
    QMetaObject::invokeMethod(exchange, [exchange, manager = m_manager] { exchange->start(*manager); });
    std::unique_lock lock(state->mutex);
    while (!state->done) {
        if (state->changed.wait_for(lock, kTick, [&] { return state->done; }))
            break;
        lock.unlock();
        if (tick && !state->cancelled && !tick(state->bytesDone, state->bytesInAll)) {
            state->cancelled = true;
            QMetaObject::invokeMethod(m_manager, [alive] {
                if (alive)
                    alive->cancel();
            });
        }
        lock.lock();
    }
    return std::move(state->answer);
}

} // namespace Vs::Cloud
