#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace Itemhub::Http {

/// The bytes of one connection. It bounds what a client may send before anybody knows who it is: a request's
/// head has a length and a time, whatever the library that parses it would take. Small writes go out
/// together. Used by one thread.
class Socket
{
public:
    static constexpr size_t kLongestHead = 32UL * 1024;
    static constexpr std::chrono::seconds kHeadTime{10};

    explicit Socket(int descriptor); ///< Stays the caller's.

    [[nodiscard]] int descriptor() const { return m_descriptor; }

    /// Waits for the first byte of a request; false at the end of the connection or of the time.
    [[nodiscard]] bool waitForRequest(std::chrono::milliseconds time);
    /// From here, what is read is a head, with its limits.
    void beginHead();
    /// From here it is a body of that length.
    void beginBody(size_t length);
    /// Is asked of this body, whenever the client is silent for a moment, whether to wait longer.
    void patience(std::function<bool()> asked) { m_patience = std::move(asked); }
    /// Of the body, what nobody has read yet.
    [[nodiscard]] size_t unread() const { return m_unread; }

    /// As recv: the number of bytes, 0 at the end, -1 at a failure or after a time without any.
    ssize_t read(char* data, size_t size);
    /// Keeps the bytes until flush if they are few. @returns size, or -1
    ssize_t write(const char* data, size_t size);
    bool flush();
    [[nodiscard]] bool isReadable();
    [[nodiscard]] bool isWritable();

    /// Ends the connection. Of a client that may still be sending, what comes is thrown away for a moment, so
    /// that it reads the answer before it learns that nobody listens.
    void close(bool mayBeSending);

private:
    [[nodiscard]] bool waitFor(short events, std::chrono::milliseconds time) const;
    [[nodiscard]] bool waitForBytes() const;
    [[nodiscard]] bool fill();
    bool send(const char* data, size_t size);

    int m_descriptor;
    std::vector<char> m_in; ///< Of the buffer, what came ends at m_filled.
    std::string m_out;
    size_t m_taken = 0, m_filled = 0;
    size_t m_head = 0;   ///< Bytes that the head may still have.
    size_t m_unread = 0; ///< Of the body.
    bool m_inHead = false;
    std::function<bool()> m_patience;
    std::chrono::steady_clock::time_point m_headEnd;
};

} // namespace Itemhub::Http
