#pragma once

#include <boost/filesystem/path.hpp>

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace Vs {

/// What `${NAME}` stands for in a transcript, by NAME; UTF-8.
using TranscriptParameters = std::map<std::string, std::string>;

/// Reads a text transcript line by line, however long the file is. UTF-8, lines end in LF or CR LF, a byte
/// order mark at the start is passed over.
class TranscriptFile
{
public:
    /// Throws Vs::Exception that names the file and the cause when it cannot be read.
    explicit TranscriptFile(boost::filesystem::path path);

    const boost::filesystem::path& path() const { return m_path; }
    /// The number of the line that `next` gave last, counted from 1.
    size_t line() const { return m_line; }

    /// The next line without its end. Returns false at the end of the file. Throws Vs::Exception when the
    /// medium fails or a line is longer than TextCommandMgr takes; the line is counted and passed over then.
    bool next(std::wstring& text);

private:
    struct Close
    {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    boost::filesystem::path m_path;
    std::unique_ptr<std::FILE, Close> m_file;
    std::string m_buffer;
    size_t m_line = 0;
};

/// The line with each `${NAME}` replaced by its value; a name without one is replaced by nothing. The value
/// keeps its blanks and quotes: where it needs quotes to stay inside its word, it gets them. What doesn't
/// look like `${NAME}` (letters, digits, `_`) stays as it is, and `$${` stands for `${`.
std::wstring substituteParameters(std::wstring_view line, const TranscriptParameters& parameters);
/// The line as a recording must write it, so that substituteParameters gives it back.
std::wstring escapeParameters(std::wstring_view line);

struct ReplayOptions
{
    TranscriptParameters parameters;
    bool keepGoing = false; ///< Go on after a line that failed.
    /// Called with each line before it runs, after substitution and without comments and empty lines.
    std::function<void(const std::wstring& line)> beforeLine;
    /// Called after each line that ran, with its status: the chance to run what it left in the queues.
    std::function<void(unsigned status)> afterLine;
};

struct ReplayResult
{
    size_t lines = 0;    ///< Lines that ran, comments and empty lines not counted.
    size_t failures = 0; ///< Lines that answered another status than 0, and an unreadable file.
    bool cancelled = false;

    bool ok() const { return failures == 0 && !cancelled; }
};

} // namespace Vs
