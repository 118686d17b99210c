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

    /// Each returns whether the run may go on: all was well, or failures don't end it.
    /// A file that cannot be opened is told in the window as well; `failure`, where it is given, takes what a
    /// line that fails says.
    bool openFile(const std::string& path);
    bool runLine(const std::wstring& line, const std::string& where, std::wstring* failure = nullptr);
    bool replay(const std::string& path);
    bool runScript(const std::string& path, const std::vector<std::wstring>& arguments);

    /// A failure that has no line: a file of the command line, say.
    bool fail(const std::string& message);

    bool keepGoing() const { return m_options.keepGoing; }
    /// Whether anything failed so far.
    bool failed() const { return m_failed; }
    /// What a script that failed gave to sys.exit; 0 if none did.
    int scriptCode() const { return m_scriptCode; }

    void message(const std::wstring& text) override;
    void error(const std::wstring& text) override;
    /// Brings out what standard output holds back.
    void flush();

private:
    void echo(const std::wstring& line);
    /// Warnings wait for the end of the line that runs: what its own failure says anyway isn't told twice.
    void warn(const std::wstring& text);
    void tellWarnings(const std::wstring& failure = {});
    /// What was worse than its reference allows, behind the place of the line; the run has failed then.
    void tellMissedBounds(const std::string& where);

    Options m_options;
    std::mutex m_warningsMutex; ///< Warnings come from any thread.
    std::vector<std::wstring> m_warnings;
    std::vector<std::wstring> m_missedBounds;
    std::atomic<bool> m_lineRuns = false;
    bool m_failed = false;
    int m_scriptCode = 0;
    Vs::WarningHandler m_handler; ///< The last: it may be called once it exists.
};

} // namespace Quillet
