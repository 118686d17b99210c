#include "Server/Base/Progress.h"
#include "Server/Base/TranscriptReplay.h"
#include "Tests/Server/Base/ProbeCommand.h"

#include <boost/filesystem/fstream.hpp>

#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

class TranscriptsTest : public testing::Test
{
protected:
    TranscriptsTest() { Vs::TextCommandMgr::get()->output(&output); }
    ~TranscriptsTest() override { Vs::TextCommandMgr::get()->output(nullptr); }

    Vs::ReplayResult replay(const std::string& content, const Vs::ReplayOptions& options = {})
    {
        path = folder.write("lines.txt", content);
        return Vs::TranscriptMgr::get()->replay(path.wstring(), Vs::kTextTranscript, options);
    }
    std::wstring place(int line) const { return L"error: " + path.wstring() + L':' + std::to_wstring(line); }

    TestSupport::ScratchFolder folder;
    boost::filesystem::path path;
    RecordingOutput output;
    ProbeArea area{L"Probe", false};
    ProbeCommand call{L"Probe", L"Call", L"Answers with what it got."};
};

TEST_F(TranscriptsTest, RunLineByLineWhateverTheirLineEnds)
{
    const Vs::ReplayResult result =
        replay("\xEF\xBB\xBF# first\r\nProbe.Call a\r\n\n  \nProbe.Call gr\xC3\xB6\xC3\x9F"
               "e\nProbe.Call last");
    EXPECT_TRUE(result.ok());
    EXPECT_EQ(result.lines, 3u);
    EXPECT_EQ(output.text, L"[a]\n[größe]\n[last]\n");
}

TEST_F(TranscriptsTest, StopAtTheLineThatFailsAndNameIt)
{
    const Vs::ReplayResult result = replay("Probe.Call a\n\nProbe.Nothing\nProbe.Call b\n");
    EXPECT_EQ(result.failures, 1u);
    EXPECT_EQ(result.lines, 2u);
    EXPECT_NE(output.text.find(place(3) + L": There is no text command"), std::wstring::npos);
    EXPECT_EQ(call.calls, 1);
}

TEST_F(TranscriptsTest, GoOnAfterFailuresWhenToldSo)
{
    Vs::ReplayOptions options;
    options.keepGoing = true;
    std::string statuses;
    options.afterLine = [&](size_t, unsigned status) { statuses += std::to_string(status); };
    const std::string garbage("Probe.Call \0\x01\xff\xfe \"\n", 18);
    const Vs::ReplayResult result =
        replay("Probe.Nothing\n" + garbage + std::string(5 << 20, 'x') + "\nProbe.Call b\n", options);
    EXPECT_EQ(result.failures, 3u);
    EXPECT_EQ(result.lines, 4u);
    EXPECT_EQ(call.calls, 1);
    EXPECT_EQ(statuses, "110");
    EXPECT_NE(output.text.find(place(3)), std::wstring::npos);
}

TEST_F(TranscriptsTest, FillInTheirParameters)
{
    Vs::ReplayOptions options;
    options.parameters = {
        {"model", "/a b/x.step"}, {"out", "/tmp/out"}, {"say", "\"hi\" \\"}, {"n", "3"}, {"empty", ""}};
    std::wstring shown;
    options.beforeLine = [&](const std::wstring& line) { shown = line; };
    struct Row
    {
        const char* line;
        const wchar_t* answer;
    };
    const Row rows[] = {
        {"Probe.Call ${model} ${n}", L"[/a b/x.step][3]\n"},
        {"Probe.Call ${empty}", L""},
        {"Probe.Call a ${empty} \"${empty}\"", L"[a][]\n"},
        {"Probe.Call ${none:-} ${none:-b c} \"<${none:-d e}>\" ${n:-9} ${none:-",
         L"[b c][<d e>][3][${none:-]\n"},
        {"Probe.Call Path=${model} ${out}/p${n}.png", L"[Path=/a b/x.step][/tmp/out/p3.png]\n"},
        {"Probe.Call \"<${say}>\" ${say}", L"[<\"hi\" \\>][\"hi\" \\]\n"},
        {"Probe.Call $n ${} ${n $ ${a b}", L"[$n][${}][${n][$][${a][b}]\n"},
        {"Probe.Call \"\\\"${n}\"", L"[\"3]\n"},
    };
    for (const Row& row : rows) {
        output.text.clear();
        EXPECT_TRUE(replay(row.line, options).ok()) << row.line;
        EXPECT_EQ(output.text, row.answer) << row.line;
    }
    EXPECT_EQ(shown, L"Probe.Call \"\\\"3\"");

    output.text.clear();
    EXPECT_TRUE(replay("# ${none}\n", options).ok());
    EXPECT_FALSE(replay("Probe.Call ${outt}/x\n", options).ok());
    EXPECT_NE(output.text.find(place(1) + L": There is no parameter \"outt\""), std::wstring::npos);
}

TEST_F(TranscriptsTest, GiveBackWhatWasRecordedWithDollars)
{
    for (const wchar_t* line :
         {L"Probe.Call ${n}", L"Probe.Call $${n} $$${n}", L"Probe.Call \"a ${n}\" $ {n} $"})
        EXPECT_EQ(Vs::substituteParameters(Vs::escapeParameters(line), {{"n", "3"}}), line);
    EXPECT_EQ(Vs::substituteParameters(L"$${n} ${n}", {{"n", "3"}}), L"${n} 3");
}

TEST_F(TranscriptsTest, ThatCannotBeReadAreOneFailure)
{
    auto* manager = Vs::TranscriptMgr::get();
    for (const auto& wrong : {folder.path() / "missing.txt", folder.path()})
        EXPECT_EQ(manager->replay(wrong.wstring(), Vs::kTextTranscript, {}).failures, 1u);
    EXPECT_NE(output.text.find(L"missing.txt cannot be read: No such file"), std::wstring::npos);
    EXPECT_NE(output.text.find(L"is a folder"), std::wstring::npos);
    EXPECT_EQ(manager->replay(L"/dev/zero", Vs::kTextTranscript, {}).failures, 1u);
    EXPECT_NE(output.text.find(L"it has a line that is longer than"), std::wstring::npos);
}

TEST_F(TranscriptsTest, EndWhenTheyAreCancelled)
{
    call.action = [] { Vs::Progress::requestCancel(); };
    const Vs::ReplayResult result = replay("Probe.Call a\nProbe.Call b\n");
    EXPECT_TRUE(result.cancelled);
    EXPECT_FALSE(result.ok());
    EXPECT_EQ(call.calls, 1);
    call.action = nullptr;
    EXPECT_TRUE(replay("Probe.Call a\nProbe.Call b\n").ok());
}

size_t residentPages()
{
    size_t total = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident;
}

TEST_F(TranscriptsTest, OfManyLinesNeedNoMoreMemoryThanShortOnes)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "A sanitizer keeps what was freed.";
#endif
    Vs::TextCommandMgr::get()->output(nullptr);
    std::string content;
    for (int i = 0; i < 200000; ++i)
        content += "Probe.Call some text /Flag\n";
    path = folder.write("long.txt", content);
    content = {};
    const auto run = [&] {
        return Vs::TranscriptMgr::get()->replay(path.wstring(), Vs::kTextTranscript, {}).lines;
    };
    EXPECT_EQ(run(), 200000u);
    const size_t before = residentPages();
    EXPECT_EQ(run(), 200000u);
    EXPECT_LE(residentPages(), before + (1 << 20) / static_cast<size_t>(sysconf(_SC_PAGESIZE)));
}

} // namespace
