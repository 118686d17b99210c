#include "UI/Application/Console.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "UI/Application/LineRunner.h"
#include "UI/Base/Application.h"

#include <QEventLoop>
#include <QSocketNotifier>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <editline/readline.h>
#include <poll.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Quillet {
namespace {

constexpr const char* kPrompt = "quillet> ";
constexpr int kHistoryLength = 1000;

std::string where(size_t line)
{
    return "<stdin>:" + std::to_string(line);
}

/// Waits for standard input while windows and queues stay alive. Returns false when the program is to end.
bool waitForInput()
{
    Vu::Application* application = Vu::Application::get();
    application->processEvents();
    if (application->exiting())
        return false;
    if (Vu::Application::headless()) {
        pollfd input = {STDIN_FILENO, POLLIN, 0};
        while (::poll(&input, 1, -1) < 0 && errno == EINTR)
            ;
        return true;
    }
    QEventLoop loop;
    QSocketNotifier notifier(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &loop, &QEventLoop::quit);
    loop.exec();
    return !application->exiting();
}

/// The line editor calls plain functions, which find their console here while it runs.
class TerminalConsole
{
public:
    TerminalConsole(LineRunner& runner, const std::string& historyFile)
        : m_runner(runner), m_historyFile(historyFile)
    {
        s_running = this;
        rl_readline_name = "quillet";
        rl_attempted_completion_function = &complete;
        rl_completer_word_break_characters = const_cast<char*>(" \t\n");
        using_history();
        stifle_history(kHistoryLength);
        if (!m_historyFile.empty())
            read_history(m_historyFile.c_str());
    }
    ~TerminalConsole()
    {
        if (!m_historyFile.empty())
            write_history(m_historyFile.c_str());
        s_running = nullptr;
    }
    TerminalConsole(const TerminalConsole&) = delete;
    TerminalConsole& operator=(const TerminalConsole&) = delete;

    void run()
    {
        rl_callback_handler_install(kPrompt, &lineRead);
        while (!m_ended && waitForInput())
            rl_callback_read_char();
        rl_callback_handler_remove();
    }

private:
    static void lineRead(char* text)
    {
        if (!text) {
            std::putchar('\n');
            s_running->m_ended = true;
            return;
        }
        const std::string line = text;
        std::free(text);
        if (!line.empty())
            add_history(line.c_str());
        // While the line runs, Ctrl-C is the program's own and not the editor's.
        rl_callback_handler_remove();
        s_running->m_runner.runLine(Vs::Strings::widen(line), where(++s_running->m_line));
        s_running->m_runner.flush();
        rl_callback_handler_install(kPrompt, &lineRead);
    }

    static char** complete(const char*, int, int end)
    {
        rl_attempted_completion_over = 1;
        const std::string before(rl_line_buffer, static_cast<size_t>(end));
        const std::wstring wide = Vs::Strings::widen(before);
        const std::vector<std::wstring> candidates = Vs::TextCommandMgr::get()->complete(wide, wide.size());
        if (candidates.empty())
            return nullptr;
        // The editor wants the common beginning first, then all candidates, then null; it frees them.
        size_t common = candidates.front().size();
        for (const std::wstring& candidate : candidates)
            for (size_t i = 0; i < common; ++i)
                if (i >= candidate.size() || candidate[i] != candidates.front()[i])
                    common = i;
        const size_t listed = candidates.size() > 1 ? candidates.size() : 0;
        auto** result = static_cast<char**>(std::malloc((listed + 2) * sizeof(char*)));
        result[0] = strdup(Vs::Strings::narrow(candidates.front().substr(0, common)).c_str());
        for (size_t i = 0; i < listed; ++i)
            result[i + 1] = strdup(Vs::Strings::narrow(candidates[i]).c_str());
        result[listed + 1] = nullptr;
        // A name goes on behind the dot of its area.
        rl_completion_append_character = candidates.front().ends_with(L'.') ? '\0' : ' ';
        return result;
    }

    static inline TerminalConsole* s_running = nullptr;
    LineRunner& m_runner;
    std::string m_historyFile;
    size_t m_line = 0;
    bool m_ended = false;
};

/// Lines from a pipe or a file: no prompt, and the first failure ends it unless told otherwise.
class PipeConsole
{
public:
    explicit PipeConsole(LineRunner& runner) : m_runner(runner) {}

    bool run()
    {
        while (waitForInput() && readSome())
            ;
        return m_goOn;
    }

private:
    /// Returns false at the end.
    bool readSome()
    {
        char buffer[1 << 16];
        const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count < 0) {
            if (errno == EINTR || errno == EAGAIN)
                return true;
            m_goOn =
                m_runner.fail(std::string("<stdin>: Lines cannot be read: ") + std::strerror(errno) + '.');
            return false;
        }
        if (count == 0) {
            if (!m_rest.empty())
                runLine(std::exchange(m_rest, {}));
            m_runner.flush();
            return false;
        }
        m_rest.append(buffer, static_cast<size_t>(count));
        size_t begin = 0;
        for (size_t end; m_goOn && !Vu::Application::get()->exiting() &&
                         (end = m_rest.find('\n', begin)) != std::string::npos;
             begin = end + 1)
            runLine(m_rest.substr(begin, end - begin));
        m_rest.erase(0, begin);
        m_runner.flush();
        return m_goOn;
    }

    void runLine(std::string line)
    {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        m_goOn = m_runner.runLine(Vs::Strings::widen(line), where(++m_line));
    }

    LineRunner& m_runner;
    std::string m_rest;
    size_t m_line = 0;
    bool m_goOn = true;
};

} // namespace

bool runConsole(LineRunner& runner, const std::string& historyFile)
{
    if (!isatty(STDIN_FILENO) || !isatty(STDOUT_FILENO))
        return PipeConsole(runner).run();
    TerminalConsole(runner, historyFile).run();
    return true;
}

} // namespace Quillet
