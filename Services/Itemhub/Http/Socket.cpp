#include "Services/Itemhub/Http/Socket.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Itemhub::Http {

namespace {

constexpr size_t kBuffer = 64UL * 1024;
constexpr std::chrono::seconds kBodyTime{30};  ///< Without receiving a byte.
constexpr std::chrono::seconds kWriteTime{30}; ///< Without sending a byte.

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kSilence{500};

} // namespace

Socket::Socket(int descriptor) : m_descriptor(descriptor), m_in(kBuffer) {}

bool Socket::waitFor(short events, milliseconds time) const
{
    pollfd entry{m_descriptor, events, 0};
    int result = 0;
    do
        result = ::poll(&entry, 1, static_cast<int>(std::max(time, milliseconds(0)).count()));
    while (result < 0 && errno == EINTR);
    return result > 0;
}

bool Socket::waitForRequest(milliseconds time)
{
    return m_taken < m_filled || waitFor(POLLIN, time);
}

void Socket::beginHead()
{
    m_inHead = true;
    m_patience = nullptr;
    m_head = kLongestHead;
    m_unread = 0;
    m_headEnd = steady_clock::now() + kHeadTime;
}

void Socket::beginBody(size_t length)
{
    m_inHead = false;
    m_unread = length;
}

bool Socket::waitForBytes() const
{
    const auto end = m_inHead ? m_headEnd : steady_clock::now() + kBodyTime;
    for (;;) {
        const auto left = duration_cast<milliseconds>(end - steady_clock::now());
        if (left.count() <= 0)
            return false;
        if (waitFor(POLLIN, m_patience ? std::min(left, kSilence) : left))
            return true;
        if (m_patience && !m_patience())
            return false;
    }
}

bool Socket::fill()
{
    // An interim response such as "100 Continue" must be sent before the client goes on.
    if (!flush())
        return false;
    ssize_t got = ::recv(m_descriptor, m_in.data(), m_in.size(), MSG_DONTWAIT);
    if (got < 0 && (errno == EAGAIN || errno == EINTR))
        got = waitForBytes() ? ::recv(m_descriptor, m_in.data(), m_in.size(), 0) : -1;
    m_taken = 0;
    m_filled = static_cast<size_t>(std::max<ssize_t>(got, 0));
    return got > 0;
}

ssize_t Socket::read(char* data, size_t size)
{
    if (m_inHead)
        size = std::min(size, m_head);
    // A head that is too long ends here as if the client had disconnected.
    if (size == 0 || (m_taken == m_filled && !fill()))
        return m_inHead ? -1 : 0;
    const size_t count = std::min(size, m_filled - m_taken);
    std::memcpy(data, m_in.data() + m_taken, count);
    m_taken += count;
    if (m_inHead)
        m_head -= count;
    else
        m_unread -= std::min(count, m_unread);
    return static_cast<ssize_t>(count);
}

bool Socket::send(const char* data, size_t size)
{
    while (size > 0) {
        const ssize_t sent = ::send(m_descriptor, data, size, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent > 0) {
            data += sent;
            size -= static_cast<size_t>(sent);
        } else if (errno != EINTR && !(errno == EAGAIN && waitFor(POLLOUT, kWriteTime))) {
            return false;
        }
    }
    return true;
}

ssize_t Socket::write(const char* data, size_t size)
{
    if (m_out.size() + size < kBuffer) {
        m_out.append(data, size);
        return static_cast<ssize_t>(size);
    }
    return flush() && send(data, size) ? static_cast<ssize_t>(size) : -1;
}

bool Socket::flush()
{
    const bool sent = send(m_out.data(), m_out.size());
    m_out.clear();
    return sent;
}

bool Socket::isReadable()
{
    return m_taken < m_filled || waitFor(POLLIN, m_inHead ? kHeadTime : kBodyTime);
}

bool Socket::isWritable()
{
    return waitFor(POLLOUT, kWriteTime);
}

void Socket::close(bool mayBeSending)
{
    constexpr size_t kMost = 4 << 20;
    constexpr milliseconds kLonger{1000};
    flush();
    ::shutdown(m_descriptor, SHUT_WR);
    const auto end = steady_clock::now() + kLonger;
    std::array<char, 16UL * 1024> nowhere;
    for (size_t thrown = 0; mayBeSending && thrown < kMost;) {
        const auto left = duration_cast<milliseconds>(end - steady_clock::now());
        if (left.count() <= 0 || !waitFor(POLLIN, left))
            break;
        const ssize_t got = ::recv(m_descriptor, nowhere.data(), nowhere.size(), MSG_DONTWAIT);
        if (got <= 0)
            break;
        thrown += static_cast<size_t>(got);
    }
    ::close(m_descriptor);
}

} // namespace Itemhub::Http
