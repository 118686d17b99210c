#pragma once

#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/Warning.h"

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

namespace Quillet {

/// Runs text lines for the command line: answers go to standard output, failures to standard error as
/// `WHERE:LINE: message`. While it lives it is the output of the text command manager.
class LineRunner : public Vs::TextOutput
{
public:
    struct Options
    {
        bool keepGoing = false;
        bool echo = false;
    };

    explicit LineRunner(Options options);
    ~LineRunner() override;

    /// Each returns whether the run may continue: there was no failure, or failures don't end it. A file that
    /// can't be opened is reported in the window as well; `failure`, if given, receives the message of a
    /// failed line.
    bool openFile(const std::string& path);
    bool runLine(const std::wstring& line, const std::string& where, std::wstring* failure = nullptr);
    /// The same for a line that the user has written, with `${NAME}` as in transcripts.
    bool runWrittenLine(const std::wstring& line, const std::string& where);
    bool replay(const std::string& path);
    bool runScript(const std::string& path, const std::vector<std::wstring>& arguments);

    /// A failure without a line, such as that of a file on the command line.
    bool fail(const std::string& message);

    bool keepGoing() const { return m_options.keepGoing; }
    /// Whether anything has failed so far.
    bool failed() const { return m_failed; }
    /// The number that a failed script passed to sys.exit; 0 if none did.
    int scriptCode() const { return m_scriptCode; }

    void message(const std::wstring& text) override;
    void error(const std::wstring& text) override;
    /// Flushes standard output.
    void flush();

private:
    void echo(const std::wstring& line);
    /// Warnings wait for the end of the running line, so that what its own failure says anyway isn't reported
    /// twice.
    void warn(const std::wstring& text);
    void tellWarnings(const std::wstring& failure = {});
    /// Results worse than their references allow, after the location of the line; the run has then failed.
    void tellMissedBounds(const std::string& where);

    Options m_options;
    std::mutex m_warningsMutex; ///< Warnings come from any thread.
    std::vector<std::wstring> m_warnings;
    std::vector<std::wstring> m_missedBounds;
    std::atomic<bool> m_lineRuns = false;
    bool m_failed = false;
    int m_scriptCode = 0;
    Vs::WarningHandler m_handler; ///< The last member: it may be called as soon as it exists.
};

} // namespace Quillet
