#pragma once

#include "Server/Base/ChildProcess.h"

#include <boost/filesystem/path.hpp>

#include <chrono>
#include <string>
#include <vector>

struct pollfd;

namespace Quillet {

/// The result of a transcript.
struct TestResult
{
    enum class Kind {
        Passed,
        Failed,  ///< A line failed.
        Crashed, ///< A signal ended the process, or it couldn't start.
        TimedOut,
    };
    Kind kind = Kind::Passed;
    std::string message; ///< One line; empty on success.
    double seconds = 0;
    std::string details;        ///< What a check says beside it of what differs, one thing per line.
    std::string stack;          ///< Of a crash, the call stack, one call per line.
    std::string output, errors; ///< The last part of what the process wrote.
};

/// Runs one transcript in a process of its own, which leads a process group; the destructor kills both.
class TestProcess
{
public:
    enum class Start {
        Anew,
        /// As a copy of this process, which has opened the libraries.
        Copied
    };
    /// Opens the libraries that most transcripts need, which takes most of a start, so that copies of this
    /// process have them. Returns how to start processes then.
    static Start openLibraries();

    /// Starts it. `folder` is for its settings and for what it writes to ${out}; `options` are added to those
    /// of its command line. Throws std::system_error.
    TestProcess(const boost::filesystem::path& transcript, const boost::filesystem::path& folder,
                const std::vector<std::string>& options, Start start);
    ~TestProcess();
    TestProcess(const TestProcess&) = delete;
    TestProcess& operator=(const TestProcess&) = delete;

    /// Adds the descriptors to wait for.
    void addDescriptors(std::vector<pollfd>& waiting) const;
    /// Reads what the process has written. Returns whether it has ended.
    bool proceed();
    /// Seconds since the start.
    double seconds() const;
    /// Asks it to stop, as Ctrl-C does, at the first call, and kills its group if that hasn't helped.
    void stop(double secondsLimit);

    /// Once it has ended.
    TestResult result() const;

private:
    class Stream
    {
    public:
        ~Stream();
        /// Opens a pipe; returns its write end.
        int open();
        void read();
        int descriptor() const { return m_descriptor; }
        const std::string& text() const { return m_text; }

    private:
        int m_descriptor = -1;
        std::string m_text;
    };
    void start(std::vector<std::string> words, Start start);
    std::string failure() const;

    boost::filesystem::path m_transcript;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    Stream m_output, m_errors;
    Vs::ChildProcess m_process;
    int m_descriptor = -1; ///< Readable when the process has ended.
    int m_state = 0;       ///< As from waitpid.
    double m_stopAsked = 0;
    double m_secondsLimit = 0;
    double m_seconds = 0;
};

} // namespace Quillet
