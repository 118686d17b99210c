#include "Server/Network/Connection.h"

#include "Server/Network/Exchange.h"
#include "Server/Network/Origin.h"

#include <QNetworkProxy>

#include <algorithm>
#include <new>
#include <sys/socket.h>

namespace Vs::Network {

namespace {

constexpr std::chrono::milliseconds kTick{100};
// The buffer size for reading from a file and from the network.
constexpr long kBuffer = 256L * 1024;
// A server that refuses a large body may say so before the body is sent; many say nothing.
constexpr long kMsForRefusal = 300;

/// A program started meanwhile, such as a browser, must not inherit the socket: the server would never learn
/// that this program is gone.
curl_socket_t openSocket(void*, curlsocktype, curl_sockaddr* address)
{
    return socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

void* newHandle()
{
    CURL* const handle = curl_easy_init();
    if (!handle)
        throw std::bad_alloc();
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L); // Don't wait for a pending name lookup.
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_HTTP_VERSION, long(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(handle, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(handle, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(handle, CURLOPT_USERAGENT, "Quillet");
    curl_easy_setopt(handle, CURLOPT_BUFFERSIZE, kBuffer);
    curl_easy_setopt(handle, CURLOPT_UPLOAD_BUFFERSIZE, kBuffer);
    curl_easy_setopt(handle, CURLOPT_EXPECT_100_TIMEOUT_MS, kMsForRefusal);
    curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(handle, CURLOPT_OPENSOCKETFUNCTION, openSocket);
    return handle;
}

/// The system's proxy, but never for connections within this machine.
QNetworkProxy proxyFor(QUrl url)
{
    url.setScheme("http");
    if (isProtected(url))
        return QNetworkProxy::NoProxy;
    url.setScheme("https");
    const auto proxies = QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url));
    return proxies.isEmpty() ? QNetworkProxy(QNetworkProxy::NoProxy) : proxies.first();
}

void setProxy(CURL* handle, const QUrl& url)
{
    const QNetworkProxy proxy = proxyFor(url);
    QUrl address;
    if (proxy.type() != QNetworkProxy::NoProxy) {
        address.setScheme(proxy.type() == QNetworkProxy::Socks5Proxy ? "socks5h" : "http");
        address.setHost(proxy.hostName());
        address.setPort(proxy.port());
    }
    // An empty text overrides a proxy from the environment.
    curl_easy_setopt(handle, CURLOPT_PROXY, address.toEncoded().constData());
    const QByteArray user = proxy.user().toUtf8(), password = proxy.password().toUtf8();
    curl_easy_setopt(handle, CURLOPT_PROXYUSERNAME, user.isEmpty() ? nullptr : user.constData());
    curl_easy_setopt(handle, CURLOPT_PROXYPASSWORD, user.isEmpty() ? nullptr : password.constData());
    curl_easy_setopt(handle, CURLOPT_PROXYAUTH, long(CURLAUTH_ANY));
}

void setLogin(CURL* handle, const DigestLogin& login)
{
    const bool isDigest = !login.user.isEmpty();
    curl_easy_setopt(handle, CURLOPT_HTTPAUTH, long(isDigest ? CURLAUTH_DIGEST : CURLAUTH_BASIC));
    curl_easy_setopt(handle, CURLOPT_USERNAME, isDigest ? login.user.constData() : nullptr);
    curl_easy_setopt(handle, CURLOPT_PASSWORD, isDigest ? login.password.constData() : nullptr);
}

/// Adds a request to the library's handle. Even removing it calls the exchange, which therefore has to
/// outlive this.
class UnderWay
{
public:
    UnderWay(CURLM* all, CURL* handle) : m_all(all), m_handle(handle) { curl_multi_add_handle(all, handle); }
    ~UnderWay() { curl_multi_remove_handle(m_all, m_handle); }
    UnderWay(const UnderWay&) = delete;
    UnderWay& operator=(const UnderWay&) = delete;

private:
    CURLM* const m_all;
    CURL* const m_handle;
};

} // namespace

/// An idle handle, for the duration of a request.
class Connection::Handle
{
public:
    explicit Handle(Connection& connection) : m_connection(connection)
    {
        if (m_connection.m_free.empty())
            m_connection.m_free.emplace_back(newHandle(), curl_easy_cleanup);
        m_handle = std::move(m_connection.m_free.back());
        m_connection.m_free.pop_back();
    }
    ~Handle() { m_connection.m_free.push_back(std::move(m_handle)); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    CURL* get() const { return m_handle.get(); }

private:
    Connection& m_connection;
    std::unique_ptr<void, void (*)(void*)> m_handle{nullptr, curl_easy_cleanup};
};

Connection::Connection() : m_all(nullptr, [](void* all) { curl_multi_cleanup(all); })
{
    static const CURLcode kStarted = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (kStarted == CURLE_OK)
        m_all.reset(curl_multi_init());
    if (!m_all)
        throw std::bad_alloc();
}

Connection::~Connection() = default;

void Connection::work(const Exchange& exchange)
{
    int running = 0;
    curl_multi_perform(m_all.get(), &running);
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_all.get(), &left)) {
        Exchange* done = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &done);
        done->finish(message->data.result, m_certificate);
    }
    if (exchange.isDone())
        return;
    const auto time =
        std::chrono::ceil<std::chrono::milliseconds>(exchange.deadline() - Exchange::Clock::now());
    curl_multi_poll(m_all.get(), nullptr, 0, int(std::clamp(time, {}, kTick).count()), nullptr);
}

Answer Connection::run(const Request& request, const DigestLogin& login, const Tick& tick)
{
    const Handle handle(*this);
    Exchange exchange(request, handle.get(), m_patience);
    setProxy(handle.get(), request.url);
    setLogin(handle.get(), login);
    m_certificate.watch(handle.get());
    if (exchange.isDone())
        return exchange.takeAnswer();
    const UnderWay underWay(m_all.get(), handle.get());
    auto next = Exchange::Clock::now() + kTick;
    while (!exchange.isDone()) {
        work(exchange);
        exchange.look();
        if (exchange.isDone() || Exchange::Clock::now() < next)
            continue;
        if (tick && !tick(exchange.bytesDone(), exchange.bytesInAll()))
            exchange.end({CloudErrorState::Cancelled, {}});
        next = Exchange::Clock::now() + kTick;
    }
    return exchange.takeAnswer();
}

} // namespace Vs::Network
