#include "Server/Base/TranscriptFile.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"
#include "Server/Base/SystemCalls.h"
#include "Server/Base/TextCommandMgr.h"

#include <boost/filesystem/operations.hpp>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace Vs {

namespace {

constexpr size_t kBufferSize = 1 << 16;
/// A character has at most four bytes; whatever is longer than that is counted but not kept.
constexpr size_t kLongest = TextCommandMgr::kLongestLine * 4;

} // namespace

TranscriptFile::TranscriptFile(boost::filesystem::path path) : m_path(std::move(path))
{
    boost::system::error_code error;
    if (boost::filesystem::is_directory(m_path, error))
        throw Exception("The transcript " + m_path.string() + " is a folder.");
    m_file.reset(std::fopen(m_path.c_str(), "rbe"));
    if (!m_file)
        throw Exception("The transcript " + m_path.string() + " cannot be read: " + std::strerror(errno) +
                        '.');
    m_opened = state();
}

TranscriptFile::State TranscriptFile::state() const
{
    struct stat now = {};
    if (fstat(fileno(m_file.get()), &now) != 0)
        return {};
    return {now.st_size, now.st_mtim.tv_sec, now.st_mtim.tv_nsec, S_ISREG(now.st_mode)};
}

double TranscriptFile::fraction() const
{
    const long long behind = static_cast<long long>(m_chunk.size() - m_at);
    return m_opened.size > 0 ? static_cast<double>(m_read - behind) / static_cast<double>(m_opened.size)
                             : 0.0;
}

void TranscriptFile::giveUp(const std::string& why)
{
    m_givenUp = true;
    m_chunk.clear();
    m_at = 0;
    ++m_line;
    throw Exception("The transcript cannot be read further: " + why + '.');
}

/// Makes bytes available for a line, unless the file is at its end.
bool TranscriptFile::fill()
{
    if (m_at < m_chunk.size())
        return true;
    if (m_givenUp)
        return false;
    m_at = 0;
    m_chunk.resize(kBufferSize);
    // A pipe returns what it has.
    const ssize_t got =
        persistent([this] { return read(fileno(m_file.get()), m_chunk.data(), kBufferSize); });
    if (got < 0)
        giveUp(std::strerror(errno));
    m_chunk.resize(static_cast<size_t>(got));
    m_read += got;
    if (m_opened.regular && !(state() == m_opened))
        giveUp("it was changed while it was read");
    return !m_chunk.empty();
}

bool TranscriptFile::atEnd()
{
    return !fill();
}

/// Appends the bytes up to the end of the line to the buffer, at most as many as a line may have; returns how
/// many there were.
size_t TranscriptFile::readRaw()
{
    m_buffer.clear();
    size_t length = 0;
    while (fill()) {
        const size_t end = m_chunk.find('\n', m_at);
        const size_t stop = end == std::string::npos ? m_chunk.size() : end;
        if (length + (stop - m_at) <= kLongest)
            m_buffer.append(m_chunk, m_at, stop - m_at);
        length += stop - m_at;
        // A file has an end.
        if (length > kLongest && !m_opened.regular)
            giveUp("it has a line that is longer than the " + std::to_string(TextCommandMgr::kLongestLine) +
                   " characters that are allowed");
        m_at = end == std::string::npos ? stop : stop + 1;
        if (end != std::string::npos)
            break;
    }
    return length;
}

bool TranscriptFile::next(std::wstring& text)
{
    if (!fill())
        return false;
    const size_t length = readRaw();
    ++m_line;
    if (length > kLongest) {
        m_buffer = {};
        throw Exception("The line is longer than the " + std::to_string(TextCommandMgr::kLongestLine) +
                        " characters that are allowed.");
    }
    if (m_line == 1 && m_buffer.starts_with("\xEF\xBB\xBF"))
        m_buffer.erase(0, 3);
    if (!m_buffer.empty() && m_buffer.back() == '\r')
        m_buffer.pop_back();
    text = Strings::fromBytes(m_buffer);
    return true;
}

} // namespace Vs
