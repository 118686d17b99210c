#include "UI/Application/Terminal.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <editline/readline.h>

namespace Quillet {
namespace {

constexpr int kHistoryLength = 1000;

/// The line editor calls plain functions, which find their console here while it runs.
class Editor
{
public:
    explicit Editor(const Terminal& terminal) : m_terminal(terminal)
    {
        s_running = this;
        rl_readline_name = "quillet";
        rl_attempted_completion_function = &complete;
        rl_completer_word_break_characters = const_cast<char*>(" \t\n");
        using_history();
        stifle_history(kHistoryLength);
        if (!m_terminal.historyFile.empty())
            read_history(m_terminal.historyFile.c_str());
    }
    ~Editor()
    {
        if (!m_terminal.historyFile.empty())
            write_history(m_terminal.historyFile.c_str());
        s_running = nullptr;
    }
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;

    void run()
    {
        rl_callback_handler_install(m_terminal.prompt(), &lineRead);
        while (!m_ended && !m_terminal.ended && m_terminal.wait())
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
        // While the line runs, Ctrl-C belongs to the program, not to the editor.
        rl_callback_handler_remove();
        const std::string kept = s_running->m_terminal.run(line);
        if (!kept.empty())
            add_history(kept.c_str());
        if (!s_running->m_terminal.ended)
            rl_callback_handler_install(s_running->m_terminal.prompt(), &lineRead);
    }

    static char** complete(const char*, int, int end)
    {
        rl_attempted_completion_over = 1;
        const std::vector<std::string> candidates =
            s_running->m_terminal.complete(std::string(rl_line_buffer, static_cast<size_t>(end)));
        if (candidates.empty())
            return nullptr;
        // The editor expects the common prefix first, then all candidates, then null; it frees them.
        size_t common = candidates.front().size();
        for (const std::string& candidate : candidates)
            for (size_t i = 0; i < common; ++i)
                if (i >= candidate.size() || candidate[i] != candidates.front()[i])
                    common = i;
        const size_t listed = candidates.size() > 1 ? candidates.size() : 0;
        auto** result = static_cast<char**>(std::malloc((listed + 2) * sizeof(char*)));
        result[0] = strdup(candidates.front().substr(0, common).c_str());
        for (size_t i = 0; i < listed; ++i)
            result[i + 1] = strdup(candidates[i].c_str());
        result[listed + 1] = nullptr;
        // A name continues after the dot of its area.
        constexpr int kNone = 0, kBlank = ' ';
        rl_completion_append_character = candidates.front().ends_with('.') ? kNone : kBlank;
        return result;
    }

    static inline Editor* s_running = nullptr;
    const Terminal& m_terminal;
    bool m_ended = false;
};

} // namespace
} // namespace Quillet

void quilletRunTerminal(const Quillet::Terminal& terminal)
{
    Quillet::Editor(terminal).run();
}
