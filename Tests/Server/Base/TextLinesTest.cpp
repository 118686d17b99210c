#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TextCompletion.h"
#include "Tests/Server/Base/ProbeCommand.h"
#include "Tests/Support/Seed.h"

#include <boost/lexical_cast.hpp>

#include <gtest/gtest.h>
#include <random>

namespace {

using Vs::TextCommandMgr;
using Vs::TextCommandResult;
namespace TextCompletion = Vs::TextCompletion;

Vs::TextCommandResult run(const std::wstring& line)
{
    return TextCommandMgr::get()->executeCommandWithoutOutput(line);
}

/// The command `Probe.Call`, which answers with the parameters and flags that it received.
class TextLinesTest : public testing::Test
{
protected:
    ProbeArea area{L"Probe", false};
    ProbeCommand call{L"Probe", L"Call", L"<text> [<number>] [/Loud] Answers with what it got."};
    ProbeCommand typed{L"Probe", L"Typed", L"Checks its parameters.", "%s%d%f%v%p3"};
};

TEST_F(TextLinesTest, HandOverParametersAndFlagsAsWritten)
{
    struct Row
    {
        const wchar_t* line;
        const wchar_t* answer;
    };
    const Row rows[] = {
        {L"Probe.Call", L""},
        {L"  Probe.Call\ta  b ", L"[a][b]"},
        {L"Probe.Call \"a b\" \"\" c", L"[a b][][c]"},
        {L"Probe.Call \"say \\\"hi\\\"\" \"back\\\\slash\" \"C:\\new\"",
         L"[say \"hi\"][back\\slash][C:\\new]"},
        {L"Probe.Call Path=\"a b\"/c back\\slash", L"[Path=a b/c][back\\slash]"},
        {L"Probe.Call /Loud x /on", L"[x]/Loud/on"},
        {L"Probe.Call /tmp/a.step /a.step / /größe \"/Loud\"", L"[/tmp/a.step][/a.step][/][/größe][/Loud]"},
        {L"Probe.Call # no comment", L"[#][no][comment]"},
        {L"Probe.Call \"line\nbreak\" ünï", L"[line\nbreak][ünï]"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(run(row.line), TextCommandResult(0, row.answer)) << Vs::Strings::narrow(row.line);
}

TEST_F(TextLinesTest, ThatAreEmptyOrCommentsAnswerNothing)
{
    for (const wchar_t* line : {L"", L"   ", L"\t\r\n", L"# Probe.Call x", L"   #"})
        EXPECT_EQ(run(line), TextCommandResult(0, L""));
    EXPECT_EQ(call.calls, 0);
}

TEST_F(TextLinesTest, ReadBackWhateverWasQuoted)
{
    std::mt19937 random(TestSupport::seed());
    const std::wstring alphabet = L"ab /\\\"#\t${}=ä\U0001F600.";
    for (int round = 0; round < 2000; ++round) {
        std::wstring text(random() % 8, L' ');
        for (wchar_t& character : text)
            character = alphabet[random() % alphabet.size()];
        const TextCommandResult result = run(L"Probe.Call " + Vs::Strings::quote(text));
        ASSERT_EQ(result, TextCommandResult(0, L"[" + text + L"]")) << Vs::Strings::narrow(text);
    }
}

TEST_F(TextLinesTest, TellWhereAQuoteWasLeftOpen)
{
    const TextCommandResult result = run(L"Probe.Call ok \"never closed");
    EXPECT_EQ(result.first, 1u);
    EXPECT_NE(result.second.find(L"column 15"), std::wstring::npos);
    EXPECT_EQ(run(L"Probe.Call \"ends in a backslash\\\"").first, 1u);
    EXPECT_EQ(call.calls, 0);
}

TEST_F(TextLinesTest, SuggestTheNameThatWasMeant)
{
    EXPECT_NE(run(L"Prob.Call").second.find(L"Did you mean \"Probe\"?"), std::wstring::npos);
    EXPECT_NE(run(L"probe.Call").second.find(L"Did you mean \"Probe\"?"), std::wstring::npos);
    EXPECT_NE(run(L"Probe.Cal 1").second.find(L"Did you mean \"Probe.Call\"?"), std::wstring::npos);
    EXPECT_EQ(run(L"Probe.SomethingElse").second, L"There is no text command \"Probe.SomethingElse\".");
    for (const wchar_t* line :
         {L"Probe", L"Probe.", L".Call", L"..", L"nonsense", L"\"Probe.Call\"", L"Probe.Call.x"})
        EXPECT_EQ(run(line).first, 1u) << Vs::Strings::narrow(line);
}

TEST_F(TextLinesTest, ArePassedToTheCommandOnlyIfTheirFormatFits)
{
    EXPECT_EQ(run(L"Probe.Typed a -3 1e-3 0,0,1 \"( 1, 2.5 ,-3 )\" more").first, 0u);
    EXPECT_EQ(run(L"Probe.Typed a").first, 0u);
    const int before = typed.calls;
    struct Row
    {
        const wchar_t* parameters;
        const wchar_t* expected;
    };
    const Row rows[] = {
        {L"a 1.5", L"parameter 2 must be a whole number"},
        {L"a 99999999999999999999", L"parameter 2 must be a whole number"},
        {L"a 1 nan", L"parameter 3 must be a number"},
        {L"a 1 1e999", L"parameter 3 must be a number"},
        {L"a 1 +-2", L"parameter 3 must be a number"},
        {L"a 1 \"\"", L"parameter 3 must be a number"},
        {L"a 1 1 0,0", L"parameter 4 must be a vector"},
        {L"a 1 1 0,0,1 1,2,3,4", L"parameter 5 must be a point"},
        {L"a 1 1 0,0,1 1,2,", L"parameter 5 must be a point"},
        {L"a 1 1 0,0,1 (1,2,3", L"parameter 5 must be a point"},
    };
    for (const Row& row : rows) {
        const TextCommandResult result = run(std::wstring(L"Probe.Typed ") + row.parameters);
        EXPECT_EQ(result.first, 1u);
        EXPECT_NE(result.second.find(row.expected), std::wstring::npos) << Vs::Strings::narrow(result.second);
    }
    EXPECT_EQ(typed.calls, before);
}

TEST_F(TextLinesTest, SayNumbersThatFitTheirTypes)
{
    const Vs::TextCommandParameters parameters({L"+1.5", L"( 1,+2 ,-3e1)", L"+300", L"x"}, {});
    EXPECT_EQ(parameters.real(0), 1.5);
    EXPECT_EQ(parameters.point(1), (std::array<double, 3>{1, 2, -30}));
    EXPECT_EQ(parameters.integer(2), 300);
    const auto refusal = [](auto&& read) {
        try {
            read();
        } catch (const Vs::Exception& error) {
            return error.message();
        }
        return std::wstring();
    };
    EXPECT_EQ(refusal([&] { static_cast<void>(parameters.integer<signed char>(2)); }),
              L"parameter 3 must be a whole number from -128 to 127, not \"+300\".");
    EXPECT_EQ(refusal([&] { static_cast<void>(parameters.real(3)); }),
              L"parameter 4 must be a number, not \"x\".");
    EXPECT_THROW(static_cast<void>(parameters.real(4)), std::out_of_range);
}

TEST_F(TextLinesTest, AreRefusedForWhatTheHelpDoesNotNameWhereTheAreaIsChecked)
{
    using Checks = Vs::TextCommandSubjectArea::Checks;
    const NumberedArea<3> checkedArea(L"Checked", false, Checks::Everything);
    const NumberedArea<4> lenientArea(L"Lenient", false, Checks::Flags);
    ProbeCommand copy{L"Checked", L"Copy",
                      L"<path> X|Y [Middle|Point <x> <y>] [/Keep] Copies, /Quietly if asked."};
    ProbeCommand all{L"Checked", L"All", L"<first> [<further> ...] Takes all."};
    ProbeCommand none{L"Checked", L"None", L"Takes <nothing>, 1/2 of it."};
    ProbeCommand lenient{L"Lenient", L"Copy", L"<path> [/Keep] Copies."};
    const std::pair<const wchar_t*, const wchar_t*> taken[] = {
        {L"Checked.Copy a X /Keep /Quietly", L"[a][X]/Keep/Quietly"},
        {L"Checked.Copy a X /keep", L"[a][X]/Keep"},
        {L"Checked.Copy a X Point 1 2", L"[a][X][Point][1][2]"},
        {L"Checked.Copy \"/keap\" X", L"[/keap][X]"},
        {L"Checked.All a b c d e", L"[a][b][c][d][e]"},
        {L"Checked.None", L""},
        {L"Lenient.Copy a b c /KEEP", L"[a][b][c]/Keep"},
    };
    for (const auto& [line, answer] : taken)
        EXPECT_EQ(run(line), TextCommandResult(0, answer)) << Vs::Strings::narrow(line);
    const std::pair<const wchar_t*, const wchar_t*> refused[] = {
        {L"Checked.Copy a X /keap", L"Checked.Copy has no flag /keap. Did you mean /Keep?"},
        {L"Lenient.Copy /model",
         L"Lenient.Copy has no flag /model. There are: /Keep. A path that begins with / needs quotes: "
         L"\"/model\"."},
        {L"Checked.Copy a X Point 1 2 3", L"Checked.Copy takes 5 parameters at most, and \"3\" is one more. "
                                          L"Text with blanks needs quotes."},
        {L"Checked.None /2", L"Checked.None has no flag /2. A path that begins with / needs quotes: \"/2\"."},
        {L"Checked.None a", L"Checked.None takes no parameters, and \"a\" is one more. Text with blanks "
                            L"needs quotes."},
    };
    const int before = copy.calls + none.calls + lenient.calls;
    for (const auto& [line, why] : refused)
        EXPECT_EQ(run(line), TextCommandResult(1, why)) << Vs::Strings::narrow(line);
    EXPECT_EQ(copy.calls + none.calls + lenient.calls, before);
}

TEST_F(TextLinesTest, AnswerWhateverACommandThrowsWithItsName)
{
    const auto answer = [&](std::function<void()> raise) {
        call.action = std::move(raise);
        return run(L"Probe.Call");
    };
    for (const TextCommandResult& result :
         {answer([] { (void)boost::lexical_cast<int>("x"); }), answer([] { throw Vs::Exception("no luck"); }),
          answer([] { throw std::bad_alloc(); }), answer([] { throw 42; }),
          answer([] { (void)std::vector<int>().at(1); })}) {
        EXPECT_EQ(result.first, 1u);
        EXPECT_TRUE(result.second.starts_with(L"Probe.Call: "));
    }
    EXPECT_EQ(answer([] { throw Vs::Exception("no luck"); }).second, L"Probe.Call: no luck");
}

TEST_F(TextLinesTest, MayRunOthersButNotWithoutEnd)
{
    TextCommandResult inner;
    call.action = [&] { inner = run(L"Probe.Call"); };
    EXPECT_EQ(run(L"Probe.Call").first, 0u);
    EXPECT_GT(call.calls, 10);
    call.action = [&] { EXPECT_EQ(run(L"Probe.Typed a").first, 0u); };
    EXPECT_EQ(run(L"Probe.Call").first, 0u);
}

TEST_F(TextLinesTest, OfAMegabyteAreAnsweredAndLongerOnesRefused)
{
    const std::wstring text(TextCommandMgr::kLongestLine - 20, L'x');
    EXPECT_EQ(run(L"Probe.Call " + text).second.size(), text.size() + 2);
    const TextCommandResult unknown = run(text);
    EXPECT_EQ(unknown.first, 1u);
    EXPECT_LT(unknown.second.size(), 300u);
    EXPECT_LT(run(L"Probe.Typed a " + text).second.size(), 300u);
    EXPECT_EQ(run(text + text).first, 1u);
}

TEST_F(TextLinesTest, HelpListsAreasCommandsAndTheirTexts)
{
    EXPECT_NE(run(L"help").second.find(L"\n  Probe  "), std::wstring::npos);
    EXPECT_NE(run(L"? Probe").second.find(L"\n  Probe.Call  <text>"), std::wstring::npos);
    EXPECT_EQ(run(L"help Probe.Call").second, L"Probe.Call  " + call.help());
    EXPECT_EQ(run(L"help Nothing").first, 1u);
    EXPECT_EQ(TextCompletion::placeholders(call), L"<text> [<number>] [/Loud]");
    ProbeCommand usage{L"Probe", L"Usage", L"Does it.\nUsage: Probe.Usage <a> <b>"};
    EXPECT_EQ(TextCompletion::placeholders(usage), L"<a> <b>");
    EXPECT_EQ(TextCompletion::placeholders(typed), L"");
}

TEST_F(TextLinesTest, CompleteAreasCommandsFlagsAndFiles)
{
    const auto complete = [](const std::wstring& line) {
        return TextCompletion::complete(line, line.size());
    };
    using Texts = std::vector<std::wstring>;
    const NumberedArea<1> late(L"Process", true);
    const NumberedArea<2> early(L"Prone", false);
    EXPECT_EQ(complete(L"Pro"), (Texts{L"Probe.", L"Prone.", L"Process."}));
    EXPECT_EQ(complete(L"Probe."), (Texts{L"Probe.Call", L"Probe.Typed"}));
    EXPECT_EQ(complete(L"help Probe.C"), Texts{L"Probe.Call"});
    EXPECT_EQ(complete(L"Probe.Call x /L"), Texts{L"/Loud"});
    EXPECT_EQ(complete(L"Nothing.At all"), Texts{});
    EXPECT_EQ(complete(L"pRO"), complete(L"Pro"));
    EXPECT_EQ(complete(L"probe.c"), Texts{L"Probe.Call"});
    EXPECT_EQ(complete(L"Probe.Call x /lOU"), Texts{L"/Loud"});
    TextCompletion::firstParameter(L"Probe.Typed", [] { return Texts{L"Second", L"SECTION", L"First"}; });
    EXPECT_EQ(complete(L"Probe.Typed sec"), (Texts{L"SECTION", L"Second"}));
    EXPECT_EQ(complete(L"Probe.Typed Second sec"), Texts{}) << "only the first";
    EXPECT_EQ(TextCompletion::complete(L"Pro xyz", 3), complete(L"Pro"));

    const TestSupport::ScratchFolder folder;
    folder.write("a b.step", "");
    folder.write("abc.step", "");
    const std::wstring path = folder.path().wstring();
    EXPECT_EQ(complete(L"Probe.Call " + path + L"/ab"), Texts{Vs::Strings::quote(path + L"/abc.step")});
    const std::wstring line = L"Probe.Call \"" + path + L"/a b";
    EXPECT_EQ(complete(line), Texts{Vs::Strings::quote(path + L"/a b.step")});
    EXPECT_EQ(TextCompletion::wordStart(line, line.size()), 11u);
}

TEST_F(TextLinesTest, ReportWhatIsWronglyRegisteredByName)
{
    const auto complaint = [] {
        try {
            TextCommandMgr::get()->validate();
        } catch (const Vs::Exception& error) {
            return std::string(error.what());
        }
        return std::string();
    };
    EXPECT_EQ(complaint(), "");
    {
        ProbeCommand twin{L"Probe", L"Call", L"Again."};
        EXPECT_NE(complaint().find("two text commands called \"Probe.Call\""), std::string::npos);
        EXPECT_EQ(TextCommandMgr::get()->find(L"Probe", L"Call"), &call);
    }
    {
        ProbeCommand silent{L"Probe", L"Silent", L""};
        EXPECT_NE(complaint().find("\"Probe.Silent\" has no help"), std::string::npos);
    }
    {
        ProbeCommand nameless{L"Probe", L"", L"Help."};
        EXPECT_NE(complaint().find("\"Probe.\""), std::string::npos);
    }
    {
        ProbeCommand lost{L"Nowhere", L"Lost", L"Help."};
        EXPECT_NE(complaint().find("\"Nowhere.Lost\""), std::string::npos);
    }
    {
        ProbeCommand odd{L"Probe", L"Odd", L"Help.", "%q"};
        EXPECT_NE(complaint().find("\"Probe.Odd\""), std::string::npos);
    }
    EXPECT_EQ(complaint(), "");
}

TEST_F(TextLinesTest, GoToTheOutputWithTheirAnswers)
{
    RecordingOutput output;
    TextCommandMgr* manager = TextCommandMgr::get();
    manager->output(&output);
    manager->executeCommand(L"Probe.Call x");
    manager->executeCommand(L"Probe.Call");
    manager->executeCommand(L"Probe.Nothing");
    EXPECT_EQ(manager->executeCommandWithoutOutput(L"Probe.Call y").second, L"[y]");
    manager->output(nullptr);
    EXPECT_EQ(output.text, L"[x]\nerror: There is no text command \"Probe.Nothing\".\n");
}

} // namespace
