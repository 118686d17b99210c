#include "Server/Base/Python/Prompt.h"

#include "Server/Base/Python/Arguments.h"
#include "Server/Base/Python/OwnCode.h"
#include "Server/Base/Strings.h"

#include <exception>
#include <pybind11/stl.h>

namespace Vs::Python {

namespace py = pybind11;

namespace {

/// The console on a terminal: like Python's own, except for the line editor.
constexpr const char* kConsole = R"(
import builtins, code, keyword, re, sys

class _Console(code.InteractiveConsole):
    def runcode(self, code):
        super().runcode(code)
        sys.stdout.flush()

def console(names):
    if 'quillet' not in names:
        exec('import quillet\nfrom quillet import design', names)
    return _Console(locals=names).push

def completions(names, beginning):
    word = re.search(r'[\w.]*$', beginning).group()
    # What the line editor takes for one word with it.
    before = re.split(r'[ \t"\\\'`@$><=;|&{(]', beginning[:len(beginning) - len(word)])[-1]
    of, dot, start = word.rpartition('.')
    # Of numbers and of what isn't there yet there is nothing to tell.
    there = dir(eval(of, names)) if dot else [*names, *dir(builtins), *keyword.kwlist]
    return sorted({before + of + dot + one for one in there if one.startswith(start)
                   and (start or dot) and (start.startswith('_') or not one.startswith('_'))})
)";

} // namespace

bool Prompt::push(const std::string& line)
{
    if (!m_push) {
        py::dict own;
        execute(kConsole, own);
        m_push = own["console"](m_names);
        m_complete = own["completions"];
    }
    return m_push(pythonText(Strings::fromBytes(line))).cast<bool>();
}

void Prompt::abandon()
{
    try {
        if (m_push)
            m_push.attr("__self__").attr("resetbuffer")();
    } catch (const std::exception&) {
        // Scripts may have put anything in its place.
    }
}

std::vector<std::string> Prompt::completions(const std::string& beginning)
{
    try {
        if (m_complete)
            return m_complete(m_names, pythonText(Strings::fromBytes(beginning)))
                .cast<std::vector<std::string>>();
    } catch (const std::exception&) {
        // What can't be completed is left as it is.
    }
    return {};
}

} // namespace Vs::Python
