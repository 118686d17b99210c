#include "UI/Base/Program/Private/Answers.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/TranscriptTrigger.h"
#include "UI/Base/Command/Private/Localized.h"

#include <boost/algorithm/string/join.hpp>

#include <deque>
#include <utility>

namespace Vu {
namespace {

struct Answer
{
    Answers::Kind kind;
    std::vector<std::wstring> words;
};

struct State
{
    std::deque<Answer> expected;
    bool fresh = false; ///< They were brought by the line that runs.
    std::vector<Answer> given;
};

State& state()
{
    static auto* const answers = new State;
    return *answers;
}

constexpr const wchar_t* kArea = L"Transcripting";
constexpr const wchar_t* kButton = L"Answer";
constexpr const wchar_t* kFiles = L"AnswerFiles";

} // namespace

void Answers::expect(Kind kind, std::vector<std::wstring> answer)
{
    state().expected.push_back({kind, std::move(answer)});
    state().fresh = true;
}

bool Answers::take(Kind kind, std::vector<std::wstring>& answer)
{
    if (!isExpected(kind))
        return false;
    answer = std::move(state().expected.front().words);
    state().expected.pop_front();
    return true;
}

bool Answers::isExpected(Kind kind)
{
    return !state().expected.empty() && state().expected.front().kind == kind;
}

void Answers::lineRan()
{
    if (!std::exchange(state().fresh, false) && !state().expected.empty()) {
        const Answer unused = std::exchange(state().expected, {}).front();
        Vs::TranscriptMgr::get()->lineFails(
            localizedFormat("AnswerNotAsked", "The answer \"%1%\" given before this line was not asked for.",
                            boost::algorithm::join(unused.words, L" ")));
    }
}

void Answers::given(Kind kind, std::vector<std::wstring> answer)
{
    if (Vs::TranscriptMgr::get()->takesEntries())
        state().given.push_back({kind, std::move(answer)});
}

void Answers::forgetGiven()
{
    state().given.clear();
}

void Answers::writeGiven()
{
    for (const Answer& answer : std::exchange(state().given, {})) {
        std::wstring line = kArea;
        line += answer.kind == Kind::Button ? L'.' + std::wstring(kButton) : L'.' + std::wstring(kFiles);
        for (const std::wstring& word : answer.words)
            line += L' ' + Vs::Strings::quote(word);
        Vs::writeTranscriptLine(line);
    }
}

namespace {

Vs::TextCommandResult expectAll(Answers::Kind kind, const Vs::TextCommandParameters& parameters)
{
    std::vector<std::wstring> words;
    for (unsigned i = 0; i < parameters.parameters(); ++i)
        words.push_back(parameters[i]);
    Answers::expect(kind, std::move(words));
    return {0, {}};
}

class TextCmdTranscriptingAnswer : public Vs::PythonEntry<TextCmdTranscriptingAnswer, Vs::TextCommand>
{
public:
    TextCmdTranscriptingAnswer()
        : PythonEntry(kArea, kButton,
                      L"<button> Answers the question that the next line asks: Ok, Cancel, Yes, No, or the "
                      L"number of the button, from 0.",
                      "%s", false, true)
    {
    }
    Vs::TextCommandResult execute(const Vs::TextCommandParameters& parameters) override
    {
        return expectAll(Answers::Kind::Button, parameters);
    }
};

class TextCmdTranscriptingAnswerFiles
    : public Vs::PythonEntry<TextCmdTranscriptingAnswerFiles, Vs::TextCommand>
{
public:
    TextCmdTranscriptingAnswerFiles()
        : PythonEntry(kArea, kFiles,
                      L"[<filename> ...] Answers the next line's question for files; none cancels it.", "",
                      false, true)
    {
    }
    Vs::TextCommandResult execute(const Vs::TextCommandParameters& parameters) override
    {
        return expectAll(Answers::Kind::Files, parameters);
    }
};

TextCmdTranscriptingAnswer theAnswer;
TextCmdTranscriptingAnswerFiles theAnswerFiles;

} // namespace
} // namespace Vu
