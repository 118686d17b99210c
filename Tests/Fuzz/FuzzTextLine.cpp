// Any bytes as a line of text: it must answer 0, or 1 with a reason, and what a command gets must come out
// the same when it is written down again.

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TextCompletion.h"
#include "Server/Base/TranscriptParameters.h"
#include "Tests/Fuzz/Fuzz.h"

#include <tuple>

namespace {

class Area : public Vs::PythonEntry<Area, Vs::TextCommandSubjectArea>
{
public:
    Area() : PythonEntry(L"A", L"Lines that are tried", true) {}
};

/// Keeps what it gets.
class Command : public Vs::TextCommand
{
public:
    Command(const wchar_t* name, const char* format)
        : TextCommand(L"A", name, L"<x> [/F] Is tried", format, true, true)
    {
    }
    Vs::TextCommandResult execute(const Vs::TextCommandParameters& parameters) override
    {
        got = parameters;
        ++runs;
        return {0, {}};
    }
    Vs::PythonFunction pythonEntry() override { return nullptr; }

    static inline Vs::TextCommandParameters got;
    static inline int runs = 0;
};

Area theArea;
Command theFree(L"Free", ""), theTyped(L"Typed", "%s%f%d%v%p3");

/// The line that says what the command got.
std::wstring written(const Vs::TextCommandParameters& parameters)
{
    std::wstring line = L"A.Free";
    for (unsigned i = 0; i < parameters.parameters(); ++i)
        line += L' ' + Vs::Strings::quote(parameters[i]);
    for (const std::wstring& flag : parameters.flags())
        line += L" /" + flag;
    return line;
}

void tryLine(const std::wstring& line)
{
    const int before = Command::runs;
    const Vs::TextCommandResult result = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line);
    require(result.first <= 1 && (result.first == 0 || !result.second.empty()), "a failure without a reason");
    if (Command::runs == before)
        return;
    const Vs::TextCommandParameters first = Command::got;
    const std::wstring again = written(first);
    if (again.size() > Vs::TextCommandMgr::kLongestLine)
        return;
    std::ignore = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(again);
    require(Command::runs == before + 2 && first.flags() == Command::got.flags() &&
                first.parameters() == Command::got.parameters(),
            "what was written down reads otherwise");
    for (unsigned i = 0; i < first.parameters(); ++i)
        require(first[i] == Command::got[i], "a parameter has become another");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::wstring text = Vs::Strings::fromBytes(bytes);
    require(Vs::Strings::toBytes(text) == bytes, "the bytes of a file's name have changed");
    tryLine(text);
    tryLine(L"A.Free " + text);
    tryLine(L"A.Typed " + text);
    try {
        tryLine(Vs::substituteParameters(text, {{"name", std::string(bytes)}, {"x", "\" \\"}}));
    } catch (const Vs::Exception&) {
        // It names a parameter that isn't there.
    }
    const size_t cursor = size > 0 ? data[0] % (text.size() + 1) : 0;
    std::ignore = Vs::TextCompletion::complete(text, cursor);
    require(Vs::TextCompletion::wordStart(text, cursor) <= cursor, "a word begins behind its end");
    return 0;
}
