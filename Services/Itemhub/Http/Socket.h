#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace Itemhub::Http {

/// The byte stream of one connection. It bounds what a client may send before it is authenticated: a
/// request's head is limited in length and time, whatever the parsing library would accept. Small writes are
/// combined. Used by one thread.
class Socket
{
public:
    static constexpr size_t kLongestHead = 32UL * 1024;
    static constexpr std::chrono::seconds kHeadTime{10};

    explicit Socket(int descriptor); ///< Remains owned by the caller.

    [[nodiscard]] int descriptor() const { return m_descriptor; }

    /// Waits for the first byte of a request; false at the end of the connection or when the time is up.
    [[nodiscard]] bool waitForRequest(std::chrono::milliseconds time);
    /// From here on a head is read, within its limits.
    void beginHead();
    /// From here on a body of that length is read.
    void beginBody(size_t length);
    /// Called while this body is read, whenever the client is silent for a moment; returns whether to keep
    /// waiting.
    void patience(std::function<bool()> asked) { m_patience = std::move(asked); }
    /// The part of the body that hasn't been read yet.
    [[nodiscard]] size_t unread() const { return m_unread; }

    /// Like recv: the number of bytes, 0 at the end, -1 on failure or timeout.
    ssize_t read(char* data, size_t size);
    /// Buffers small writes until flush. @returns size, or -1
    ssize_t write(const char* data, size_t size);
    bool flush();
    [[nodiscard]] bool isReadable();
    [[nodiscard]] bool isWritable();

    /// Closes the connection. If the client may still be sending, its data is drained for a moment, so that
    /// it reads the response before it learns that nobody is listening.
    void close(bool mayBeSending);

private:
    [[nodiscard]] bool waitFor(short events, std::chrono::milliseconds time) const;
    [[nodiscard]] bool waitForBytes() const;
    [[nodiscard]] bool fill();
    bool send(const char* data, size_t size);

    int m_descriptor;
    std::vector<char> m_in; ///< The buffer; received data ends at m_filled.
    std::string m_out;
    size_t m_taken = 0, m_filled = 0;
    size_t m_head = 0;   ///< The number of bytes that the head may still have.
    size_t m_unread = 0; ///< Of the body.
    bool m_inHead = false;
    std::function<bool()> m_patience;
    std::chrono::steady_clock::time_point m_headEnd;
};

} // namespace Itemhub::Http
