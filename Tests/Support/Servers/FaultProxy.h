#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace TestSupport {

/// What goes wrong with one request. Bytes of an answer count from the first one of its status line, those of
/// a request from the first one of its body.
struct Fault
{
    enum class Kind {
        Delay,       ///< The request reaches the server after `seconds`.
        Reset,       ///< The connection is reset; the server never hears of the request.
        CutRequest,  ///< The server gets `bytes` of the body, then both connections are closed.
        CutAnswer,   ///< The server does it; the client gets `bytes` of its answer, then the end.
        LoseAnswer,  ///< The server does it; the client's connection is reset before the answer.
        Stall,       ///< Nothing is read or answered any more, for as long as the client waits.
        StallAnswer, ///< The server does it; the client gets `bytes` of its answer and waits.
        Answer       ///< The server never hears of it; the client gets `status`, `headers` and `pieces`.
    };

    Kind kind;
    double seconds = 0;
    std::uint64_t bytes = 0;
    int status = 0;
    std::vector<std::string> headers; ///< "Retry-After: 1"; those about length and connection are made.
    /// The pieces of the body, one a call, until one is empty. None if there is no function.
    std::function<std::string()> pieces;

    static Fault delay(double seconds) { return {.kind = Kind::Delay, .seconds = seconds}; }
    static Fault reset() { return {.kind = Kind::Reset}; }
    static Fault cutRequest(std::uint64_t bytes) { return {.kind = Kind::CutRequest, .bytes = bytes}; }
    static Fault cutAnswer(std::uint64_t bytes) { return {.kind = Kind::CutAnswer, .bytes = bytes}; }
    static Fault loseAnswer() { return {.kind = Kind::LoseAnswer}; }
    static Fault stall() { return {.kind = Kind::Stall}; }
    static Fault stallAnswer(std::uint64_t bytes) { return {.kind = Kind::StallAnswer, .bytes = bytes}; }
    static Fault answer(int status, const std::string& body = {}, std::vector<std::string> headers = {});
};

/// Stands between clients and a server on this machine and disturbs what a test says; everything else passes
/// as it is, by connections that stay open as both sides want it.
///
///     FaultProxy proxy(server.port());
///     proxy.onRequest([](const FaultProxy::Request& request) -> std::optional<Fault> {
///         if (request.method == "PUT" && request.ofMethod == 2)
///             return Fault::loseAnswer();
///         return std::nullopt;
///     });
///     client.connect(proxy.address());
///
/// Http alone. The test's thread may call everything at any time.
class FaultProxy
{
public:
    struct Request
    {
        int number = 0;     ///< Of all, from 1.
        int ofMethod = 0;   ///< Of those with its method, from 1.
        int connection = 0; ///< Which of the clients' connections it came by, from 1.
        std::string method;
        std::string target;                         ///< As it stands in the request: "/parts/wheel%20.vlra".
        std::map<std::string, std::string> headers; ///< By names in lower case.
        std::uint64_t bodySize = 0;                 ///< Of what has been read of it.
    };
    /// Asked once for each request, one at a time, when its headers are known. Called on the proxy's threads;
    /// it may not ask the proxy.
    using Decision = std::function<std::optional<Fault>(const Request&)>;

    /// Takes connections at a free port from now on and passes them to that port. Throws std::exception if it
    /// can't.
    explicit FaultProxy(int serverPort);
    /// Ends all connections, stalled ones too.
    ~FaultProxy();
    FaultProxy(const FaultProxy&) = delete;
    FaultProxy& operator=(const FaultProxy&) = delete;

    int port() const;
    std::string address() const; ///< With a slash at the end.
    void onRequest(Decision decision);
    /// All requests up to now, in the order in which they came.
    std::vector<Request> requests() const;
    void forgetRequests(); ///< And counts from 1 again.

private:
    class Shared;
    class Connection;

    std::shared_ptr<Shared> m_shared;
};

} // namespace TestSupport
