#pragma once

#include "Server/Network/Body.h"
#include "Server/Network/Connection.h"
#include "Server/Network/Request.h"

#include <array>
#include <chrono>
#include <curl/curl.h>
#include <memory>

namespace Vs::Network {

/// One request and its response, with exclusive use of a libcurl handle.
class Exchange
{
public:
    using Clock = std::chrono::steady_clock;

    Exchange(const Request& request, CURL* handle, std::chrono::milliseconds patience);
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    bool isDone() const { return m_isDone; }
    std::uint64_t bytesDone() const { return m_bytesDone; }
    std::uint64_t bytesInAll() const { return m_bytesInAll; }
    /// When it times out unless data is transferred before.
    Clock::time_point deadline() const;
    /// Ends it if that time has passed.
    void look();
    /// Ends it for a reason of our own.
    void end(Result cause);
    /// The library is done with it.
    void finish(CURLcode code, const Certificate& certificate);
    Answer takeAnswer() { return std::move(m_answer); }

private:
    static size_t onRead(char* data, size_t one, size_t count, void* exchange);
    static int onSeek(void* exchange, curl_off_t position, int from);
    static size_t onHeader(char* data, size_t one, size_t count, void* exchange);
    static size_t onContent(char* data, size_t one, size_t count, void* exchange);
    static int onProgress(void* exchange, curl_off_t downAll, curl_off_t down, curl_off_t upAll,
                          curl_off_t up);
    static int beforeRequest(void* exchange, char*, char*, int, int);

    void setRequest();
    void setCallbacks();
    /// Passes the buffered data to the sink.
    bool pour();
    bool isEndSeen() const;
    void takeHeaders();
    Result failureOf(CURLcode code, const Certificate& certificate) const;
    long statusNow() const;

    const Request& m_request;
    CURL* const m_handle;
    const std::chrono::milliseconds m_patience;
    std::unique_ptr<curl_slist, void (*)(curl_slist*)> m_headers{nullptr, curl_slist_free_all};
    std::array<char, CURL_ERROR_SIZE> m_text{}; ///< The library's text for an error.
    Body m_body;
    Clock::time_point m_lastByte = Clock::now();
    std::optional<Clock::time_point> m_cutAt; ///< When everything before a cut has been sent.
    std::uint64_t m_bytesDone = 0, m_bytesInAll = 0;
    QByteArray m_piece; ///< Buffered for the sink.
    Answer m_answer;
    Result m_cause; ///< Our reason, if we ended it.
    bool m_isSent = false, m_hasHeaders = false, m_isDone = false;
};

} // namespace Vs::Network
