#include "Tests/Support/Servers/FaultProxy.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <poll.h>
#include <set>
#include <sstream>
#include <sys/socket.h>
#include <thread>
#include <utility>

namespace TestSupport {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;
using boost::system::error_code;

namespace {

constexpr std::uint64_t kNoLimit = ~std::uint64_t();

} // namespace

Fault Fault::answer(int status, const std::string& body, std::vector<std::string> headers)
{
    Fault fault{.kind = Kind::Answer, .status = status, .headers = std::move(headers)};
    if (!body.empty())
        fault.pieces = [left = body]() mutable { return std::exchange(left, {}); };
    return fault;
}

/// What all connections and the test share.
class FaultProxy::Shared
{
public:
    explicit Shared(int port) : server(tcp::endpoint(asio::ip::address_v4::loopback(), std::uint16_t(port)))
    {
    }

    asio::io_context context;
    tcp::acceptor acceptor{context, tcp::endpoint(asio::ip::address_v4::loopback(), 0)};
    const tcp::endpoint server;

    mutable std::mutex mutex;
    std::condition_variable ending;
    bool isEnding = false;
    Decision decision;
    std::vector<Request> requests;
    std::map<std::string, int> counts;
    std::set<int> sockets; ///< Open ones, whose reads and writes the end must break.
    std::vector<std::thread> threads;
    std::thread accepting;

    /// The socket's calls return at once when the proxy ends. False if it does already.
    bool enter(int socket)
    {
        const std::lock_guard lock(mutex);
        sockets.insert(socket);
        return !isEnding;
    }

    void close(tcp::socket& socket)
    {
        const std::lock_guard lock(mutex);
        sockets.erase(socket.native_handle());
        error_code ignored;
        socket.close(ignored);
    }
};

/// One connection of a client, with the one to the server that belongs to it.
class FaultProxy::Connection
{
public:
    Connection(std::shared_ptr<Shared> shared, tcp::socket client, int number)
        : m_shared(std::move(shared)),
          m_client(std::move(client)),
          m_server(m_shared->context),
          m_number(number)
    {
    }

    void run()
    {
        error_code ignored; // Small pieces are passed as they come, and not held back for others.
        m_client.set_option(tcp::no_delay(true), ignored);
        if (m_shared->enter(m_client.native_handle()))
            while (passOne()) {
            }
        m_shared->close(m_client);
        m_shared->close(m_server);
    }

private:
    using RequestParser = http::request_parser<http::buffer_body>;
    using AnswerParser = http::response_parser<http::buffer_body>;

    /// Passes one request and its answer; false when the connection is at its end.
    bool passOne()
    {
        RequestParser parser;
        parser.body_limit(kNoLimit);
        error_code error;
        http::read_header(m_client, m_fromClient, parser, error);
        if (error)
            return false;
        size_t index = 0;
        const std::optional<Fault> fault = note(parser.get(), index);
        if (parser.get()[http::field::expect] == "100-continue") {
            parser.get().erase(http::field::expect);
            write(m_client, "HTTP/1.1 100 Continue\r\n\r\n");
        }
        if (fault && fault->kind == Fault::Kind::Reset)
            return reset();
        if (fault && fault->kind == Fault::Kind::Stall)
            return stall();
        if (fault && fault->kind == Fault::Kind::Answer)
            return answer(parser, *fault, index);
        if (fault && fault->kind == Fault::Kind::Delay)
            wait(fault->seconds);
        if (!passRequest(parser, fault, index))
            return false;
        return passAnswer(parser, fault);
    }

    std::optional<Fault> note(const http::request_header<>& header, size_t& index)
    {
        Request request{.connection = m_number,
                        .method = header.method_string().to_string(),
                        .target = header.target().to_string()};
        for (const auto& field : header)
            request.headers[boost::to_lower_copy(field.name_string().to_string())] =
                field.value().to_string();
        const std::lock_guard lock(m_shared->mutex);
        index = m_shared->requests.size();
        request.number = int(index) + 1;
        request.ofMethod = ++m_shared->counts[request.method];
        m_shared->requests.push_back(request);
        return m_shared->decision ? m_shared->decision(request) : std::nullopt;
    }

    void noteBody(size_t index, size_t bytes)
    {
        const std::lock_guard lock(m_shared->mutex);
        if (index < m_shared->requests.size())
            m_shared->requests[index].bodySize += bytes;
    }

    bool passRequest(RequestParser& parser, const std::optional<Fault>& fault, size_t index)
    {
        if (!isServerOpen() && !connectServer())
            return false;
        const bool cuts = fault && fault->kind == Fault::Kind::CutRequest;
        std::uint64_t left = cuts ? fault->bytes : kNoLimit;
        // A server may answer and close before it has read all, so that a write that fails is no fault yet.
        bool isTaken = write(m_server, text(parser.get()));
        const bool isWhole = readBody(m_client, m_fromClient, parser, [&](const char* piece, size_t size) {
            noteBody(index, size);
            const size_t passed = size_t(std::min<std::uint64_t>(size, left));
            left -= passed;
            isTaken = isTaken && writePiece(m_server, parser.get().chunked(), piece, passed);
            return left > 0;
        });
        if (cuts || !isWhole)
            return false;
        if (parser.get().chunked() && isTaken)
            write(m_server, "0\r\n\r\n");
        return true;
    }

    bool passAnswer(const RequestParser& request, const std::optional<Fault>& fault)
    {
        AnswerParser parser;
        parser.body_limit(kNoLimit);
        parser.skip(request.get().method() == http::verb::head);
        error_code error;
        do {
            http::read_header(m_server, m_fromServer, parser, error);
        } while (!error && parser.get().result() == http::status::continue_);
        if (error)
            return false;
        if (fault && fault->kind == Fault::Kind::LoseAnswer)
            return reset();
        const bool stalls = fault && fault->kind == Fault::Kind::StallAnswer;
        m_left = stalls || (fault && fault->kind == Fault::Kind::CutAnswer) ? fault->bytes : kNoLimit;
        const bool isPassed = writeLimited(text(parser.get())) && passBody(parser);
        if (!isPassed)
            return stalls && m_left == 0 ? stall() : false;
        if (!parser.keep_alive())
            m_shared->close(m_server);
        return parser.keep_alive() && request.keep_alive();
    }

    bool passBody(AnswerParser& parser)
    {
        const bool isChunked = parser.get().chunked();
        bool isPassed = true;
        const bool isWhole = readBody(m_server, m_fromServer, parser, [&](const char* piece, size_t size) {
            return isPassed = writeLimited(framed(isChunked, piece, size));
        });
        return isPassed && isWhole && (!isChunked || writeLimited("0\r\n\r\n"));
    }

    bool answer(RequestParser& parser, const Fault& fault, size_t index)
    {
        const bool isWhole = readBody(m_client, m_fromClient, parser, [&](const char*, size_t size) {
            noteBody(index, size);
            return true;
        });
        std::string head = "HTTP/1.1 " + std::to_string(fault.status) + " Fault\r\n";
        for (const std::string& header : fault.headers)
            head += header + "\r\n";
        const bool hasBody = fault.pieces && parser.get().method() != http::verb::head;
        head += hasBody ? "Transfer-Encoding: chunked\r\n\r\n" : "Content-Length: 0\r\n\r\n";
        bool isPassed = isWhole && write(m_client, head);
        if (!hasBody)
            return isPassed && parser.keep_alive();
        for (std::string piece = fault.pieces(); isPassed && !piece.empty(); piece = fault.pieces())
            isPassed = writePiece(m_client, true, piece.data(), piece.size());
        return isPassed && write(m_client, "0\r\n\r\n") && parser.keep_alive();
    }

    /// Hands the body to `take` piece by piece, until that says no; true if it came to its end.
    template <typename Parser, typename Take>
    static bool readBody(tcp::socket& socket, boost::beast::flat_buffer& buffer, Parser& parser, Take take)
    {
        char piece[32768];
        while (!parser.is_done()) {
            parser.get().body().data = piece;
            parser.get().body().size = sizeof piece;
            error_code error;
            http::read_some(socket, buffer, parser, error);
            if (error && error != http::error::need_buffer)
                return false;
            const size_t size = sizeof piece - parser.get().body().size;
            if (size && !take(piece, size))
                return false;
        }
        return true;
    }

    template <typename Header>
    static std::string text(const Header& header)
    {
        std::ostringstream text;
        text << header.base();
        return text.str();
    }

    static std::string framed(bool isChunked, const char* piece, size_t size)
    {
        const std::string bytes(piece, size);
        if (!isChunked)
            return bytes;
        std::ostringstream text;
        text << std::hex << size << "\r\n" << bytes << "\r\n";
        return text.str();
    }

    static bool write(tcp::socket& socket, const std::string& text)
    {
        error_code error;
        asio::write(socket, asio::buffer(text), error);
        return !error;
    }

    static bool writePiece(tcp::socket& socket, bool isChunked, const char* piece, size_t size)
    {
        return size == 0 || write(socket, framed(isChunked, piece, size));
    }

    /// Gives the client as much as it may have; false when that is used up.
    bool writeLimited(const std::string& text)
    {
        const size_t size = size_t(std::min<std::uint64_t>(text.size(), m_left));
        m_left -= size;
        return write(m_client, text.substr(0, size)) && m_left > 0;
    }

    /// Whether it is connected, and the server hasn't closed meanwhile.
    bool isServerOpen()
    {
        if (!m_server.is_open())
            return false;
        pollfd state{m_server.native_handle(), POLLIN | POLLRDHUP, 0};
        if (poll(&state, 1, 0) == 0)
            return true;
        m_shared->close(m_server);
        return false;
    }

    bool connectServer()
    {
        error_code error;
        m_fromServer.clear();
        m_server.connect(m_shared->server, error);
        m_server.set_option(tcp::no_delay(true), error);
        return !error && m_shared->enter(m_server.native_handle());
    }

    bool reset()
    {
        error_code ignored;
        m_client.set_option(asio::socket_base::linger(true, 0), ignored);
        return false;
    }

    bool stall()
    {
        pollfd state{m_client.native_handle(), POLLRDHUP, 0};
        poll(&state, 1, -1);
        return false;
    }

    void wait(double seconds)
    {
        std::unique_lock lock(m_shared->mutex);
        m_shared->ending.wait_for(lock, std::chrono::duration<double>(seconds),
                                  [&] { return m_shared->isEnding; });
    }

    const std::shared_ptr<Shared> m_shared;
    tcp::socket m_client, m_server;
    const int m_number;
    boost::beast::flat_buffer m_fromClient, m_fromServer;
    std::uint64_t m_left = 0; ///< What the client may still have of the present answer.
};

FaultProxy::FaultProxy(int serverPort) : m_shared(std::make_shared<Shared>(serverPort))
{
    m_shared->accepting = std::thread([shared = m_shared] {
        for (int number = 1;; ++number) {
            error_code error;
            tcp::socket client(shared->context);
            shared->acceptor.accept(client, error);
            const std::lock_guard lock(shared->mutex);
            if (shared->isEnding)
                return;
            if (!error)
                shared->threads.emplace_back([connection = std::make_shared<Connection>(
                                                  shared, std::move(client), number)] { connection->run(); });
        }
    });
}

FaultProxy::~FaultProxy()
{
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->isEnding = true;
        ::shutdown(m_shared->acceptor.native_handle(), SHUT_RDWR);
        for (const int socket : m_shared->sockets)
            ::shutdown(socket, SHUT_RDWR);
    }
    m_shared->ending.notify_all();
    m_shared->accepting.join();
    for (std::thread& thread : m_shared->threads)
        thread.join();
}

int FaultProxy::port() const
{
    return m_shared->acceptor.local_endpoint().port();
}

std::string FaultProxy::address() const
{
    return "http://127.0.0.1:" + std::to_string(port()) + '/';
}

void FaultProxy::onRequest(Decision decision)
{
    const std::lock_guard lock(m_shared->mutex);
    m_shared->decision = std::move(decision);
}

std::vector<FaultProxy::Request> FaultProxy::requests() const
{
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->requests;
}

void FaultProxy::forgetRequests()
{
    const std::lock_guard lock(m_shared->mutex);
    m_shared->requests.clear();
    m_shared->counts.clear();
}

} // namespace TestSupport
