#include "Server/Base/TranscriptReplay.h"

#include "Server/Base/Exception.h"
#include "Server/Base/NumberText.h"
#include "Server/Base/Private/TextLine.h"
#include "Server/Base/Progress.h"
#include "Server/Base/PythonManager.h"
#include "Server/Base/ScriptDebugger.h"
#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptFile.h"
#include "Server/Base/TranscriptKind.h"

#include <boost/filesystem/path.hpp>

#include <optional>
#include <string>

namespace Vs {

namespace {

/// A file of garbage fails at each of its million lines.
constexpr size_t kMostErrors = 100;

/// Why the first line says that this version can't play the file; empty if it can.
std::wstring laterLayout(const std::wstring& line)
{
    const std::wstring head = Strings::widen(kTextTranscriptHead);
    const auto layout =
        line.starts_with(head) ? readNumber<int>(std::wstring_view(line).substr(head.size())) : std::nullopt;
    return layout && *layout > kTextTranscriptLayout
               ? L"The transcript was recorded by a later version of the program."
               : std::wstring();
}

std::wstring titleOf(const std::wstring& path)
{
    return L"Replay: " + boost::filesystem::path(path).filename().wstring();
}

void tell(const ReplayOptions& options, const std::wstring& failure)
{
    if (options.quiet)
        return;
    TextOutput* output = TextCommandMgr::get()->output();
    if (TranscriptHost* host = TranscriptMgr::get()->host())
        host->failed(failure);
    else if (output)
        output->error(failure);
}

/// Whoever started the replay in a window sees the answers of its lines there.
void tellAnswer(const std::wstring& answer)
{
    for (TextOutput* output : {TextCommandMgr::get()->output(), PythonManager::get()->display()})
        if (output)
            output->message(answer);
}

class AddedParameters
{
public:
    explicit AddedParameters(const TranscriptParameters& added) : m_before(TranscriptMgr::get()->parameters())
    {
        TranscriptParameters all = added;
        all.insert(m_before.begin(), m_before.end());
        TranscriptMgr::get()->parameters(std::move(all));
    }
    ~AddedParameters() { TranscriptMgr::get()->parameters(std::move(m_before)); }
    AddedParameters(const AddedParameters&) = delete;
    AddedParameters& operator=(const AddedParameters&) = delete;

private:
    TranscriptParameters m_before;
};

class TextReplay
{
public:
    TextReplay(const std::wstring& path, const ReplayOptions& options)
        : m_path(path), m_options(options), m_debug(debugInfoFor(path)), m_progress(titleOf(path))
    {
    }

    ReplayResult run()
    {
        // The debugger may resume later what it has begun.
        std::optional<TranscriptMgr::Run> run;
        if (!m_debug)
            run.emplace();
        try {
            const TranscriptMgr::Replay replaying(m_path, kTextTranscript);
            open();
            while (m_options.keepGoing || m_result.failures == 0)
                if (!step())
                    break;
        } catch (const Exception& error) {
            failed(0, error.message());
        }
        if (const std::wstring left = run ? run->end() : std::wstring(); !left.empty())
            failed(0, m_path + L": " + left);
        return m_result;
    }

private:
    /// A failure of the line, or of the file as a whole if that is 0.
    void failed(size_t line, const std::wstring& message)
    {
        ++m_result.failures;
        m_result.failedLine = line;
        const std::wstring text =
            line > 0 ? m_path + L':' + std::to_wstring(line) + L": " + message : message;
        if (m_options.status && m_result.failures <= kMostErrors)
            m_options.status->addError(text);
        tell(m_options, text);
    }

    /// The debugger follows the transcript that it has loaded, unless another one is replaying it.
    static ScriptDebugInfo* debugInfoFor(const std::wstring& path)
    {
        TranscriptMgr* transcripts = TranscriptMgr::get();
        ScriptDebugInfo* debug = transcripts->scriptDebugInfo();
        return !transcripts->replaying() && debug->scriptPath() == path ? debug : nullptr;
    }

    void open()
    {
        m_file.emplace(m_path);
        if (!m_debug || passOver(m_debug->stepLine()))
            return;
        // It had reached its end: this is a new pass.
        m_file.emplace(m_path);
        m_debug->stepLine(0);
        m_debug->resetBreakPoints();
    }

    /// Returns whether anything is left after that many lines.
    bool passOver(int lines)
    {
        std::wstring line;
        while (m_file->line() < static_cast<size_t>(lines))
            if (!readLine(line))
                return false;
        return lines == 0 || !m_file->atEnd();
    }

    bool readLine(std::wstring& line)
    {
        try {
            return m_file->next(line);
        } catch (const Exception&) {
            return true; // It was reported when the line was reached.
        }
    }

    /// Runs the next line. Returns whether there may be another.
    bool step()
    {
        std::optional<std::wstring> unreadable;
        try {
            if (!m_file->next(m_line))
                return false;
        } catch (const Exception& error) {
            unreadable = error.message();
        }
        const size_t number = m_file->line();
        if (m_debug && stopsBefore(static_cast<int>(number)))
            return false;
        if (unreadable) {
            ++m_result.lines;
            failed(number, *unreadable);
        } else {
            runLine(number);
        }
        if (m_debug && (m_options.keepGoing || m_result.failures == 0))
            m_debug->stepLine(static_cast<int>(number));
        m_result.cancelled = !m_progress.update(m_file->fraction()) || Progress::cancelled();
        m_first = false;
        return !m_result.cancelled && !m_options.oneLine;
    }

    /// Where a person has stopped or stepped, execution resumes from there.
    bool stopsBefore(int line)
    {
        const bool stops = m_debug->stopsAt(line);
        const bool aimedAt = !m_first && ScriptDebugger::get()->leadsTo(m_path, line);
        return !m_options.oneLine && (aimedAt || (stops && !(m_first && line > 1)));
    }

    void runLine(size_t number)
    {
        if (saysNothing(m_line)) {
            if (const std::wstring later = number == 1 ? laterLayout(m_line) : std::wstring(); !later.empty())
                failed(number, later);
            return;
        }
        ScriptDebugger* debugger = ScriptDebugger::get();
        if (const int line = static_cast<int>(number); !m_debug && debugger->waitsBefore(m_path, line)) {
            debugger->wait(m_path, line);
            if (Progress::cancelled())
                return;
        }
        ++m_result.lines;
        const bool mustFail = takeMark(m_line);
        TextCommandResult answer{};
        try {
            const std::optional<std::wstring> reason = mustFail ? takeReason(m_line) : std::nullopt;
            answer = answerOf(m_line);
            if (mustFail)
                answer = judged(answer, reason.value_or(std::wstring()));
        } catch (const Exception& error) {
            answer = {1, error.message()};
        }
        if (m_debug)
            m_debug->comeBack();
        if (answer.first != 0)
            failed(number, answer.second);
        else if (!answer.second.empty())
            tellAnswer(answer.second);
        if (m_options.afterLine)
            m_options.afterLine(number, answer.first);
    }

    static bool saysNothing(const std::wstring& line)
    {
        TextLine words(line);
        return !words.skipBlanks() || line[words.position()] == L'#';
    }

    /// Removes the mark of a line that has to fail. Returns whether there was one.
    static bool takeMark(std::wstring& line)
    {
        TextLine words(line);
        if (!words.skipBlanks() || line[words.position()] != L'!')
            return false;
        const size_t at = words.position();
        line.erase(0, at + 1);
        return true;
    }

    /// Takes the last word off the line, if it is in double quotes: a part of the reason for which the line
    /// has to fail.
    static std::optional<std::wstring> takeReason(std::wstring& line)
    {
        const size_t end = line.find_last_not_of(L" \t");
        if (end == std::wstring::npos || line[end] != L'"')
            return std::nullopt;
        TextLine words(line);
        size_t start = 0;
        std::wstring last;
        while (words.skipBlanks()) {
            start = words.position();
            static_cast<void>(words.next(last));
        }
        if (line[start] != L'"')
            return std::nullopt;
        line.erase(start);
        return substituteParameters(last, TranscriptMgr::get()->parameters());
    }

    /// The result of a line that has to fail, as that of a line that behaved as required.
    static TextCommandResult judged(const TextCommandResult& answer, const std::wstring& reason)
    {
        if (answer.first == 0)
            return {1, L"The line was to fail, and has done what it says."};
        if (answer.second.find(reason) == std::wstring::npos)
            return {1, L"The line was to fail for another reason, \"" + reason + L"\". It has failed: " +
                           answer.second};
        return {0, {}};
    }

    /// Fills the line in and runs it.
    TextCommandResult answerOf(std::wstring& line)
    {
        TranscriptMgr* transcripts = TranscriptMgr::get();
        try {
            if (line.find(L'$') != std::wstring::npos)
                line = substituteParameters(line, transcripts->parameters());
        } catch (const Exception& error) {
            return {1, error.message()};
        }
        if (m_options.beforeLine)
            m_options.beforeLine(line);
        return transcripts->settled([&] { return TextCommandMgr::get()->executeCommandWithoutOutput(line); });
    }

    const std::wstring& m_path;
    const ReplayOptions& m_options;
    ScriptDebugInfo* m_debug;
    const ScriptDebugger::Level m_level;
    ProgressScope m_progress;
    std::optional<TranscriptFile> m_file;
    std::wstring m_line;
    ReplayResult m_result;
    bool m_first = true;
};

/// Plays a Python transcript, statement by statement.
class PythonReplay
{
public:
    PythonReplay(const std::wstring& path, const ReplayOptions& options)
        : m_path(path), m_options(options), m_progress(titleOf(path))
    {
    }

    ReplayResult run()
    {
        Status status;
        const ScriptSteps steps{m_options.beforeLine,
                                [this](size_t line, const Status& failure) { return after(line, failure); }};
        TranscriptMgr::Run run;
        try {
            const TranscriptMgr::Replay replaying(m_path, kPythonTranscript);
            PythonManager::get()->runTranscript(m_path, steps, status);
        } catch (const Exception& error) {
            status.addError(error.message());
        }
        if (m_result.lines == 0)
            after(0, status);
        if (const std::wstring left = run.end(); !left.empty()) {
            ++m_result.failures;
            status.addError(m_path + L": " + left);
            tell(m_options, m_path + L": " + left);
        }
        if (m_options.status)
            m_options.status->merge(status);
        return m_result;
    }

private:
    /// Returns whether the next statement is to run.
    bool after(size_t line, const Status& failure)
    {
        ++m_result.lines;
        m_result.cancelled = Progress::cancelled();
        if (failure.isError() && !m_result.cancelled) {
            ++m_result.failures;
            m_result.failedLine = line;
            tell(m_options, failure.toString());
        }
        if (m_options.afterLine)
            m_options.afterLine(line, failure.isError() ? 1 : 0);
        m_result.cancelled = m_result.cancelled || Progress::cancelled();
        return !m_result.cancelled && (m_options.keepGoing || failure.isOk());
    }

    const std::wstring& m_path;
    const ReplayOptions& m_options;
    const ProgressScope m_progress;
    ReplayResult m_result;
};

} // namespace

ReplayResult playTranscript(const std::wstring& path, ETranscriptType type, const ReplayOptions& options)
{
    const AddedParameters parameters(options.parameters);
    ScriptDebugger::File file(path);
    const ReplayResult result =
        type == kPythonTranscript ? PythonReplay(path, options).run() : TextReplay(path, options).run();
    if (!options.keepGoing)
        file.stopped(static_cast<int>(result.failedLine));
    return result;
}

} // namespace Vs
