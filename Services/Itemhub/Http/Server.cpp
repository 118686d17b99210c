#include "Services/Itemhub/Http/Server.h"

#include "Services/Itemhub/Http/Socket.h"
#include "Services/Itemhub/Http/Workers.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <cstdio>
#include <exception>
#include <httplib.h>
#include <mutex>
#include <stdexcept>

namespace Itemhub::Http {

namespace {

constexpr std::chrono::seconds kKeepAlive{15};
constexpr int kMostRequests = 1'000'000; ///< Per connection.
constexpr size_t kPiece = 256UL * 1024;

/// The connection of the request that this thread is handling.
thread_local Socket* t_socket = nullptr;

size_t lengthOf(const httplib::Request& request)
{
    const std::string text = request.get_header_value("Content-Length");
    size_t length = 0;
    std::from_chars(text.data(), text.data() + text.size(), length);
    return length;
}

bool hasBody(const httplib::Request& request)
{
    return request.has_header("Transfer-Encoding") || lengthOf(request) > 0;
}

/// What the library reads from and writes to.
class Stream : public httplib::Stream
{
public:
    explicit Stream(Socket& socket) : m_socket(socket)
    {
        sockaddr_storage address{};
        socklen_t length = sizeof address;
        std::array<char, NI_MAXHOST> host{};
        std::array<char, NI_MAXSERV> service{};
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        if (getpeername(m_socket.descriptor(), generic, &length) == 0 &&
            getnameinfo(generic, length, host.data(), host.size(), service.data(), service.size(),
                        NI_NUMERICHOST | NI_NUMERICSERV) == 0) {
            m_peer = host.data();
            m_port = std::atoi(service.data());
        }
    }

    bool is_readable() const override { return m_socket.isReadable(); }
    bool is_writable() const override { return m_socket.isWritable(); }
    ssize_t read(char* data, size_t size) override { return m_socket.read(data, size); }
    ssize_t write(const char* data, size_t size) override { return m_socket.write(data, size); }
    void get_remote_ip_and_port(std::string& ip, int& port) const override
    {
        ip = m_peer;
        port = m_port;
    }
    void get_local_ip_and_port(std::string&, int&) const override {}
    socket_t socket() const override { return m_socket.descriptor(); }

private:
    Socket& m_socket;
    std::string m_peer; ///< The client's address, looked up once.
    int m_port = -1;
};

class Received : public Request
{
public:
    Received(const httplib::Request& request, const httplib::ContentReader* reader, bool behindProxy)
        : m_request(request), m_reader(reader), m_behindProxy(behindProxy)
    {
    }

    const std::string& method() const override { return m_request.method; }
    const std::string& path() const override { return m_request.path; }
    const std::string& target() const override { return m_request.target; }
    std::string header(std::string_view name) const override
    {
        return m_request.get_header_value(std::string(name));
    }
    bool hasHeader(std::string_view name) const override { return m_request.has_header(std::string(name)); }
    Fields parameters() const override { return Fields(m_request.params.begin(), m_request.params.end()); }

    std::string remoteAddress() const override
    {
        if (const std::string chain = m_behindProxy ? header("X-Forwarded-For") : std::string();
            !chain.empty()) {
            // Only the last entry is the proxy's own; all earlier ones may be forged.
            const size_t begin = chain.find_last_of(", ");
            return chain.substr(begin == std::string::npos ? 0 : begin + 1);
        }
        return m_request.remote_addr;
    }

    std::optional<std::string> parameter(const std::string& name) const override
    {
        const auto found = m_request.params.find(name);
        return found == m_request.params.end() ? std::nullopt : std::optional(found->second);
    }

    bool readBody(const Taker& take, const Patience& patience) override
    {
        if (!m_reader)
            return true;
        const httplib::ContentReader& read = *std::exchange(m_reader, nullptr);
        t_socket->patience(patience);
        return read(httplib::ContentReceiver(take));
    }

private:
    const httplib::Request& m_request;
    const httplib::ContentReader* m_reader; ///< Null if there is no body or it has been read.
    bool m_behindProxy;
};

/// Passes on a file's bytes; the library counts the offset from 0.
httplib::ContentProvider providerOf(const std::shared_ptr<Response::File>& file)
{
    return [file](size_t offset, size_t length, httplib::DataSink& sink) {
        thread_local std::string piece(kPiece, '\0');
        const ssize_t got = ::pread(file->descriptor, piece.data(), std::min(length, piece.size()),
                                    static_cast<off_t>(file->offset + offset));
        return got > 0 && sink.write(piece.data(), static_cast<size_t>(got));
    };
}

void fill(httplib::Response& out, Response&& response)
{
    out.status = response.status;
    // The library appends to the headers common to all responses.
    for (const auto& [name, value] : response.headers)
        out.headers.erase(name);
    for (const auto& [name, value] : response.headers)
        out.set_header(name, value);
    if (response.file) {
        if (response.file->length > 0)
            out.set_content_provider(static_cast<size_t>(response.file->length), response.type,
                                     providerOf(response.file));
        else
            out.set_header("Content-Type", response.type);
    } else if (response.stream) {
        out.set_chunked_content_provider(
            response.type, [stream = std::move(response.stream)](size_t, httplib::DataSink& sink) {
                const auto write = [&sink](std::string_view piece) {
                    return sink.write(piece.data(), piece.size()) && t_socket->flush() && sink.is_writable();
                };
                if (!stream(write))
                    sink.done();
                return true;
            });
    } else if (!response.body.empty()) {
        out.body = std::move(response.body);
        out.set_header("Content-Type", response.type);
    }
}

} // namespace

class Server::Impl : public httplib::Server
{
public:
    Impl(Http::Server::Handler handler, const Http::Server::Options& options)
        : m_handler(std::move(handler)), m_behindProxy(options.behindProxy), m_most(options.mostConnections)
    {
        set_tcp_nodelay(true);
        set_keep_alive_timeout(kKeepAlive.count());
        set_keep_alive_max_count(kMostRequests);
        // By default the library shares its port with other listeners; two servers on one port are a mistake
        // here.
        set_socket_options([](socket_t socket) {
            const int yes = 1;
            setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        });
        set_default_headers({{"X-Content-Type-Options", "nosniff"},
                             {"X-Frame-Options", "DENY"},
                             {"Referrer-Policy", "no-referrer"},
                             {"Cross-Origin-Resource-Policy", "same-origin"},
                             {"Cache-Control", "no-store"},
                             {"Content-Security-Policy", "default-src 'none'; frame-ancestors 'none'"}});
        new_task_queue = [this] {
            // The library calls this once it runs: it drops a stop that came before.
            if (m_ended)
                stopListening();
            return new Queue(m_most);
        };
        const auto withBody = [this](const httplib::Request& request, httplib::Response& response,
                                     const httplib::ContentReader& reader) {
            answer(request, response, &reader);
        };
        // Matches any path: the one handler does the routing.
        const std::string any = "[\\s\\S]*";
        Post(any, withBody);
        Put(any, withBody);
        Patch(any, withBody);
        Delete(any, withBody);
        set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
            const bool takesBody = request.method == "POST" || request.method == "PUT" ||
                                   request.method == "PATCH" || request.method == "DELETE";
            if (takesBody && hasBody(request))
                return HandlerResponse::Unhandled;
            answer(request, response, nullptr);
            return HandlerResponse::Handled;
        });
    }

    /// Also before listening has begun, which then ends at once.
    void end()
    {
        m_ended = true;
        stopListening();
    }

private:
    void stopListening()
    {
        const std::lock_guard lock(m_stopping);
        if (is_running() && svr_sock_ != INVALID_SOCKET)
            httplib::Server::stop();
    }

    /// Adapts the workers to the library's interface.
    class Queue : public httplib::TaskQueue
    {
    public:
        explicit Queue(size_t most) : m_workers(most) {}
        void enqueue(std::function<void()> job) override { m_workers.add(std::move(job)); }
        void shutdown() override { m_workers.stop(); }

    private:
        Workers m_workers;
    };

    void answer(const httplib::Request& request, httplib::Response& response,
                const httplib::ContentReader* reader)
    {
        Received received(request, reader, m_behindProxy);
        try {
            // Programs disagree about which of the two counts, which attackers exploit (request smuggling).
            if (request.has_header("Transfer-Encoding") && request.has_header("Content-Length"))
                throw Problem(400, "two_lengths",
                              "A request has a Content-Length or a Transfer-Encoding, not both.");
            fill(response, m_handler(received));
        } catch (const Problem& problem) {
            fill(response, responseOf(problem));
        } catch (const std::exception& error) {
            std::fprintf(stderr, "quillet-itemhub: %s %s: %s\n", request.method.c_str(), request.path.c_str(),
                         error.what());
            fill(response, responseOf(Problem(500, "failed", "The service failed; its log says why.")));
        }
        if (t_socket->unread() > 0 || request.has_header("Transfer-Encoding"))
            response.set_header("Connection", "close");
    }

    bool process_and_close_socket(socket_t descriptor) override
    {
        Socket socket(descriptor);
        Stream stream(socket);
        t_socket = &socket;
        bool goesOn = true, chunked = false;
        for (int left = kMostRequests; goesOn && left > 0 && waitForRequest(socket); --left) {
            bool closed = false, understood = false;
            chunked = false;
            socket.beginHead();
            goesOn = process_request(stream, left == 1, closed, [&](httplib::Request& request) {
                // Ranges are for blobs, and handled by their route; the library would cut any response, even
                // an error.
                request.ranges.clear();
                understood = true;
                chunked = request.has_header("Transfer-Encoding");
                socket.beginBody(chunked ? 0 : lengthOf(request));
            });
            // After a malformed head, there is no telling where the next request begins.
            goesOn = socket.flush() && goesOn && understood && !closed && !chunked && socket.unread() == 0;
        }
        t_socket = nullptr;
        socket.close(chunked || socket.unread() > 0);
        return goesOn;
    }

    /// In short intervals, so that idle connections don't delay shutdown.
    bool waitForRequest(Socket& socket) const
    {
        constexpr std::chrono::milliseconds kLook{200};
        for (std::chrono::milliseconds waited{0}; waited < kKeepAlive && svr_sock_ != INVALID_SOCKET;
             waited += kLook)
            if (socket.waitForRequest(kLook))
                return true;
        return false;
    }

    Http::Server::Handler m_handler;
    bool m_behindProxy;
    size_t m_most;
    std::atomic<bool> m_ended{false};
    std::mutex m_stopping;
};

Server::Server(Handler handler, const Options& options)
    : m_impl(std::make_unique<Impl>(std::move(handler), options))
{
}

Server::~Server() = default;

int Server::bind(const std::string& address, int port)
{
    const int bound = port == 0                             ? m_impl->bind_to_any_port(address)
                      : m_impl->bind_to_port(address, port) ? port
                                                            : -1;
    if (bound <= 0)
        throw std::runtime_error("Cannot listen at " + address + " port " + std::to_string(port) +
                                 ": the address is not this machine's, or another program has the port.");
    return bound;
}

void Server::run()
{
    m_impl->listen_after_bind();
}

void Server::stop()
{
    m_impl->end();
}

} // namespace Itemhub::Http
