#include "Server/Network/Exchange.h"

#include <algorithm>

namespace Vs::Network {

namespace {

// How much a sink is given at a time.
constexpr qsizetype kPiece = qsizetype(256) * 1024;

// For a larger body, the server is given time to refuse before it is sent. For a smaller one, that would only
// cost a round trip.
constexpr qint64 kLarge = qint64(1) << 20;

// Until the data sent has left this machine.
constexpr std::chrono::milliseconds kUntilCut{100};

Exchange& exchangeOf(void* given)
{
    return *static_cast<Exchange*>(given);
}

} // namespace

Exchange::Exchange(const Request& request, CURL* handle, std::chrono::milliseconds patience)
    : m_request(request), m_handle(handle), m_patience(patience), m_body(request)
{
    setRequest();
    setCallbacks();
    if (!m_body.trouble().empty())
        end({CloudErrorState::CacheFailed, m_body.trouble()});
}

void Exchange::setRequest()
{
    curl_easy_setopt(m_handle, CURLOPT_URL, m_request.url.toEncoded().constData());
    // Options persist from the previous request: only those set again belong to this one.
    curl_easy_setopt(m_handle, CURLOPT_NOBODY, 0L);
    curl_easy_setopt(m_handle, CURLOPT_HTTPGET, 1L);
    const bool hasBody = m_body.size() > 0 || m_request.method == "PUT" || m_request.method == "POST";
    if (m_request.method == "HEAD")
        curl_easy_setopt(m_handle, CURLOPT_NOBODY, 1L);
    else if (hasBody)
        curl_easy_setopt(m_handle, CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(m_handle, CURLOPT_INFILESIZE_LARGE, curl_off_t(hasBody ? m_body.size() : -1));
    curl_easy_setopt(m_handle, CURLOPT_CUSTOMREQUEST, m_request.method.constData());
    const auto add = [&](const QByteArray& line) {
        m_headers.reset(curl_slist_append(m_headers.release(), line.constData()));
    };
    // On some servers a compressed response has a different ETag and an unknown length.
    add("Accept-Encoding: identity");
    if (m_body.size() <= kLarge)
        add("Expect:");
    for (const Header& header : m_request.headers)
        add(header.first + (header.second.isEmpty() ? ";" : ": ") + header.second);
    curl_easy_setopt(m_handle, CURLOPT_HTTPHEADER, m_headers.get());
}

void Exchange::setCallbacks()
{
    curl_easy_setopt(m_handle, CURLOPT_PRIVATE, this);
    curl_easy_setopt(m_handle, CURLOPT_ERRORBUFFER, m_text.data());
    curl_easy_setopt(m_handle, CURLOPT_READFUNCTION, onRead);
    curl_easy_setopt(m_handle, CURLOPT_READDATA, this);
    curl_easy_setopt(m_handle, CURLOPT_SEEKFUNCTION, onSeek);
    curl_easy_setopt(m_handle, CURLOPT_SEEKDATA, this);
    curl_easy_setopt(m_handle, CURLOPT_HEADERFUNCTION, onHeader);
    curl_easy_setopt(m_handle, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(m_handle, CURLOPT_WRITEFUNCTION, onContent);
    curl_easy_setopt(m_handle, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(m_handle, CURLOPT_XFERINFOFUNCTION, onProgress);
    curl_easy_setopt(m_handle, CURLOPT_XFERINFODATA, this);
    curl_easy_setopt(m_handle, CURLOPT_PREREQFUNCTION, beforeRequest);
    curl_easy_setopt(m_handle, CURLOPT_PREREQDATA, this);
}

// The library resends a request on its own when a reused connection ends before the response. Doing a MOVE
// twice has destroyed both files, so that decision is left to the caller. After a response it is a new
// request, with authentication.
int Exchange::beforeRequest(void* exchange, char*, char*, int, int)
{
    Exchange& self = exchangeOf(exchange);
    if (self.m_isSent && !self.m_hasHeaders)
        return CURL_PREREQFUNC_ABORT;
    self.m_isSent = true;
    self.m_hasHeaders = false;
    self.m_lastByte = Clock::now();
    return CURL_PREREQFUNC_OK;
}

size_t Exchange::onRead(char* data, size_t one, size_t count, void* exchange)
{
    Exchange& self = exchangeOf(exchange);
    const size_t size = self.m_body.read(data, one * count);
    if (size > 0)
        return size;
    if (!self.m_body.trouble().empty()) {
        self.m_cause = {CloudErrorState::CacheFailed, self.m_body.trouble()};
        return CURL_READFUNC_ABORT;
    }
    if (!self.m_body.isAtCut())
        return 0;
    self.m_cutAt = Clock::now() + kUntilCut;
    return CURL_READFUNC_PAUSE;
}

int Exchange::onSeek(void* exchange, curl_off_t position, int from)
{
    return from == SEEK_SET && exchangeOf(exchange).m_body.seek(position) ? CURL_SEEKFUNC_OK
                                                                          : CURL_SEEKFUNC_FAIL;
}

size_t Exchange::onHeader(char* data, size_t one, size_t count, void* exchange)
{
    Exchange& self = exchangeOf(exchange);
    const QByteArrayView line(data, qsizetype(one * count));
    self.m_lastByte = Clock::now();
    if (line.startsWith("HTTP/")) // The library gives the status, but not the reason phrase.
        self.m_answer.reason = line.trimmed().toByteArray().split(' ').mid(2).join(' ');
    else if (line.trimmed().isEmpty() && self.statusNow() >= 200)
        self.m_hasHeaders = true;
    return one * count;
}

size_t Exchange::onContent(char* data, size_t one, size_t count, void* exchange)
{
    Exchange& self = exchangeOf(exchange);
    const qsizetype size = qsizetype(one) * qsizetype(count);
    self.m_lastByte = Clock::now();
    self.m_answer.received += size;
    const long status = self.statusNow();
    if (self.m_request.sink && status >= 200 && status < 300) {
        curl_off_t all = -1;
        curl_easy_getinfo(self.m_handle, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &all);
        self.m_bytesDone = std::uint64_t(self.m_answer.received);
        self.m_bytesInAll = std::uint64_t(std::max<curl_off_t>(all, 0));
        self.m_piece.reserve(kPiece + size);
        self.m_piece.append(data, size);
        return self.m_piece.size() < kPiece || self.pour() ? one * count : 0;
    }
    if (self.m_answer.content.size() + size > self.m_request.mostContent) {
        self.m_cause = {CloudErrorState::BadAnswer,
                        "the answer is larger than " + std::to_string(self.m_request.mostContent) + " bytes"};
        return 0;
    }
    self.m_answer.content.append(data, size);
    return one * count;
}

int Exchange::onProgress(void* exchange, curl_off_t, curl_off_t, curl_off_t all, curl_off_t sent)
{
    Exchange& self = exchangeOf(exchange);
    if (self.m_request.sink || all <= 0 || std::uint64_t(sent) == self.m_bytesDone)
        return 0;
    self.m_lastByte = Clock::now();
    self.m_bytesDone = std::uint64_t(sent);
    self.m_bytesInAll = std::uint64_t(all);
    return 0;
}

bool Exchange::pour()
{
    if (m_piece.isEmpty())
        return true;
    m_cause = m_request.sink(m_piece);
    m_piece.resize(0);         // Keeps its capacity for the next piece.
    m_lastByte = Clock::now(); // The time taken by the sink doesn't count against the server.
    return m_cause.isOk();
}

Exchange::Clock::time_point Exchange::deadline() const
{
    return std::min(m_lastByte + m_patience, m_cutAt.value_or(Clock::time_point::max()));
}

void Exchange::look()
{
    if (m_isDone || Clock::now() < deadline())
        return;
    if (m_cutAt)
        return end({CloudErrorState::Unreachable, "the connection was cut"});
    end({CloudErrorState::Unreachable,
         "not a byte was sent or received for " + std::to_string(m_patience.count() / 1000) + " s"});
}

void Exchange::end(Result cause)
{
    if (m_isDone)
        return;
    m_answer.failure = std::move(cause);
    m_isDone = true;
}

long Exchange::statusNow() const
{
    long status = 0;
    curl_easy_getinfo(m_handle, CURLINFO_RESPONSE_CODE, &status);
    return status;
}

void Exchange::takeHeaders()
{
    curl_header* header = nullptr;
    while ((header = curl_easy_nextheader(m_handle, CURLH_HEADER, -1, header)))
        m_answer.headers.emplace_back(header->name, header->value);
}

/// The library accepts truncated headers as complete, and the end of a connection as that of a response
/// without a length; that is only right if the server said so.
bool Exchange::isEndSeen() const
{
    const long status = statusNow();
    if (!m_hasHeaders)
        return false;
    return m_request.method == "HEAD" || status == 204 || status == 304 ||
           !m_answer.header("Content-Length").isEmpty() || !m_answer.header("Transfer-Encoding").isEmpty() ||
           m_answer.header("Connection").toLower().contains("close");
}

void Exchange::finish(CURLcode code, const Certificate& certificate)
{
    if (m_isDone)
        return;
    takeHeaders();
    // The sink also gets what came before an interruption: a download resumes after it.
    if (m_cause.isOk() && m_request.sink)
        pour();
    if (code == CURLE_OK && m_cause.isOk() && isEndSeen()) {
        m_answer.status = int(statusNow());
    } else if (m_cause.isOk()) {
        m_answer.failure = failureOf(code, certificate);
        m_answer.wasReset = m_answer.failure.state == CloudErrorState::Unreachable;
    } else {
        m_answer.failure = m_cause;
    }
    m_isDone = true;
}

Result Exchange::failureOf(CURLcode code, const Certificate& certificate) const
{
    const std::string text = m_text[0] ? m_text.data() : curl_easy_strerror(code);
    long proxy = 0;
    curl_easy_getinfo(m_handle, CURLINFO_HTTP_CONNECTCODE, &proxy);
    if (proxy >= 300)
        return {CloudErrorState::Unreachable, "the network's proxy answered " + std::to_string(proxy)};
    switch (code) {
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_INVALIDCERTSTATUS:
        return {CloudErrorState::Certificate,
                (certificate.fault.empty() ? text : certificate.fault) +
                    (certificate.fingerprint.empty()
                         ? ""
                         : " (SHA-256 fingerprint " + certificate.fingerprint + ")")};
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING:
        return {CloudErrorState::BadAnswer, text};
    case CURLE_COULDNT_RESOLVE_HOST:
        return {CloudErrorState::Unreachable, "no host of this name was found"};
    case CURLE_COULDNT_CONNECT:
        return {CloudErrorState::Unreachable, "nothing answers there"};
    case CURLE_OK:
    case CURLE_ABORTED_BY_CALLBACK:
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
        return {CloudErrorState::Unreachable, "the connection ended before the answer did"};
    default:
        return {CloudErrorState::Unreachable, text};
    }
}

} // namespace Vs::Network
