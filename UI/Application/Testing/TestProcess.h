#pragma once

#include "Server/Base/ChildProcess.h"

#include <boost/filesystem/path.hpp>

#include <chrono>
#include <string>
#include <vector>

struct pollfd;

namespace Quillet {

/// How a transcript ended.
struct TestResult
{
    enum class Kind {
        Passed,
        Failed,  ///< A line failed.
        Crashed, ///< A signal ended the process, or it could not start.
        TimedOut,
    };
    Kind kind = Kind::Passed;
    std::string message; ///< One line; empty if all is well.
    double seconds = 0;
    std::string stack;          ///< Of a crash, the calls that led to it, one a line.
    std::string output, errors; ///< The ends of what the process wrote.
};

/// Runs one transcript in a process of its own, which leads a process group, and is killed with it by the
/// destructor.
class TestProcess
{
public:
    /// Starts it. `folder` is for its settings and for what it writes to ${out}; `options` are added to those
    /// of its command line. Throws std::system_error.
    TestProcess(const boost::filesystem::path& transcript, const boost::filesystem::path& folder,
                const std::vector<std::string>& options);
    ~TestProcess();
    TestProcess(const TestProcess&) = delete;
    TestProcess& operator=(const TestProcess&) = delete;

    /// Adds what is to be waited for.
    void addDescriptors(std::vector<pollfd>& waiting) const;
    /// Takes in what the process has written. Returns whether it has ended.
    bool proceed();
    /// Seconds since the start.
    double seconds() const;
    /// Asks it to stop, as Ctrl-C does, at the first call, and kills its group when that hasn't helped.
    void stop(double secondsLimit);

    /// Once it has ended.
    TestResult result() const;

private:
    class Stream
    {
    public:
        ~Stream();
        /// Opens a pipe; returns its writing end.
        int open();
        void read();
        int descriptor() const { return m_descriptor; }
        const std::string& text() const { return m_text; }

    private:
        int m_descriptor = -1;
        std::string m_text;
    };
    void start(std::vector<std::string> words);
    std::string failure() const;

    boost::filesystem::path m_transcript;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    Stream m_output, m_errors;
    Vs::ChildProcess m_process;
    int m_descriptor = -1; ///< Readable when the process has ended.
    int m_state = 0;       ///< As waitpid gives it.
    double m_stopAsked = 0;
    double m_secondsLimit = 0;
    double m_seconds = 0;
};

} // namespace Quillet
