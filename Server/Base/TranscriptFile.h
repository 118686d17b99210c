#pragma once

#include <boost/filesystem/path.hpp>

#include <cstdio>
#include <memory>
#include <string>

namespace Vs {

/// Reads a text transcript line by line, however long the file is. UTF-8, lines end in LF or CR LF, a byte
/// order mark at the start is skipped. A file that is deleted meanwhile is read to its end; one that is
/// written to is given up, since what is read then was never the content of any file.
class TranscriptFile
{
public:
    /// Throws Vs::Exception that names the file and the cause when it cannot be read.
    explicit TranscriptFile(boost::filesystem::path path);

    const boost::filesystem::path& path() const { return m_path; }
    /// The number of the line that `next` returned last, counted from 1.
    size_t line() const { return m_line; }

    /// The next line without its end. Returns false at the end of the file. Throws Vs::Exception when the
    /// medium fails, the file was changed, or a line is longer than TextCommandMgr takes; the line is counted
    /// and skipped then.
    [[nodiscard]] bool next(std::wstring& text);
    /// Whether there is no further line.
    [[nodiscard]] bool atEnd();
    /// How much of the file has been read, from 0 to 1.
    double fraction() const;

private:
    struct Close
    {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    /// What changes when somebody writes to the file.
    struct State
    {
        long long size = 0, seconds = 0, nanoseconds = 0;
        bool regular = false;
        friend bool operator==(const State&, const State&) = default;
    };
    State state() const;
    bool fill();
    size_t readRaw();
    [[noreturn]] void giveUp(const std::string& why);

    boost::filesystem::path m_path;
    std::unique_ptr<std::FILE, Close> m_file;
    State m_opened;
    std::string m_chunk; ///< What was read from the file last,
    size_t m_at = 0;     ///< and where in it the next line begins.
    long long m_read = 0;
    bool m_givenUp = false;
    std::string m_buffer;
    size_t m_line = 0;
};

} // namespace Vs
