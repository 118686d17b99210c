#include "Server/Base/Status.h"
#include "Server/Base/TranscriptKind.h"
#include "Server/Base/TranscriptReplay.h"
#include "Server/Base/TranscriptSecrets.h"
#include "Server/Base/TranscriptTrigger.h"
#include "Tests/Server/Base/ProbeCommand.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>

namespace {

namespace fs = boost::filesystem;
using Vs::TranscriptMgr;

/// Counts its notifications, and keeps the messages.
class Host : public Vs::TranscriptHost
{
public:
    Host() { TranscriptMgr::get()->host(this); }
    ~Host() override { TranscriptMgr::get()->host(nullptr); }
    void settle() override { ++settled; }
    void failed(const std::wstring& message) override { told += message + L'\n'; }

    int settled = 0;
    std::wstring told;
};

class RecordingTest : public testing::Test
{
protected:
    RecordingTest() { Vs::TextCommandMgr::get()->output(&output); }
    ~RecordingTest() override
    {
        TranscriptMgr::get()->endRecording();
        Vs::TextCommandMgr::get()->output(nullptr);
        debug().scriptPath({});
        debug().removeAllBreakPoints();
    }

    static Vs::ScriptDebugInfo& debug() { return *TranscriptMgr::get()->scriptDebugInfo(); }
    std::wstring file(const std::string& name) const { return (folder.path() / name).wstring(); }
    std::string recorded(const std::string& name, const std::vector<std::wstring>& lines)
    {
        const std::wstring path = file(name);
        EXPECT_TRUE(TranscriptMgr::get()->startRecording(path, TranscriptMgr::typeOf(path)));
        for (const std::wstring& line : lines)
            Vs::writeTranscriptLine(line);
        TranscriptMgr::get()->endRecording();
        return contentOf(name);
    }
    std::string contentOf(const std::string& name) const
    {
        fs::ifstream stream(folder.path() / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }
    Vs::ReplayResult replay(const std::wstring& path, const Vs::ReplayOptions& options = {})
    {
        return TranscriptMgr::get()->replay(path, Vs::kTextTranscript, options);
    }
    /// Where execution is once the debugger has continued.
    int goesOn()
    {
        Vs::Status status;
        TranscriptMgr::get()->replay(debug().scriptPath(), status, Vs::kTextTranscript);
        return debug().stepLine();
    }
    int steps()
    {
        Vs::Status status;
        TranscriptMgr::get()->stepReplay(debug().scriptPath(), status, Vs::kTextTranscript);
        return debug().stepLine();
    }

    TestSupport::ScratchFolder folder;
    RecordingOutput output;
    ProbeArea area{L"Probe", false};
    ProbeCommand call{L"Probe", L"Call", L"Answers with what it got."};
};

TEST_F(RecordingTest, WritesEachLineAtOnceInTheFormThatTheFileNameAsksFor)
{
    EXPECT_EQ(recorded("a.txt", {L"Probe.Call \"a b\" /Flag", L"# seen ", L"Probe.Call ${x} \"two\nlines\""}),
              "# quillet-transcript 1\nProbe.Call \"a b\" /Flag\n# seen \nProbe.Call $${x} \"two lines\"\n");
    EXPECT_EQ(recorded("a.PY", {L"Probe.Call \"a b\" 1 /Flag /Flag", L"# seen ", L"Probe.Call \"\\\"\\\\\" ö",
                                L"Probe.class 1", L"Probe.Call /2", L"Probe.Call \"open", L"help Probe"}),
              "# Transcript\nimport quillet\nimport Probe\nProbe.Call(\"a b\", \"1\", Flag=True)\n# seen \n"
              "Probe.Call(\"\\\"\\\\\", \"\xC3\xB6\")\nquillet.run(\"Probe.class 1\")\n"
              "quillet.run(\"Probe.Call /2\")\nquillet.run(\"Probe.Call \\\"open\")\n"
              "quillet.run(\"help Probe\")\n");
    EXPECT_EQ(TranscriptMgr::typeOf(L"/a.py/b"), Vs::kTextTranscript);
    EXPECT_EQ(TranscriptMgr::typeOf(L"none"), Vs::kTextTranscript);

    ASSERT_TRUE(TranscriptMgr::get()->startRecording(file("now.txt"), Vs::kTextTranscript));
    Vs::writeTranscriptLine(L"Probe.Call 1");
    EXPECT_EQ(contentOf("now.txt"), "# quillet-transcript 1\nProbe.Call 1\n");
    const TranscriptMgr::Unrecorded unrecorded;
    Vs::writeTranscriptLine(L"Probe.Call 2");
    EXPECT_EQ(contentOf("now.txt"), "# quillet-transcript 1\nProbe.Call 1\n");
}

TEST_F(RecordingTest, ASecretIsWrittenAsAParameterAndPlayedWithTheOneThatIsGiven)
{
    Vs::TranscriptSecrets::keep(L"TOKEN", L"s3cret");
    Vs::TranscriptSecrets::keep(L"OTHER", L"a \"${b} c");
    Vs::TranscriptSecrets::keep(L"NONE", L"");
    EXPECT_EQ(recorded("secret.txt",
                       {L"Probe.Call s3cret Key=s3cret", L"Probe.Call \"Key=a \\\"${b} c\" s3crets /s3cret"}),
              "# quillet-transcript 1\nProbe.Call ${TOKEN} Key=${TOKEN}\nProbe.Call \"Key=${OTHER}\" s3crets "
              "/s3cret\n");
    EXPECT_EQ(recorded("secret.py", {L"Probe.Call s3cret Key=s3cret ${TOKEN}"}),
              "# Transcript\nimport quillet\nimport Probe\nProbe.Call(quillet.parameters[\"TOKEN\"], "
              "\"Key=\" + quillet.parameters[\"TOKEN\"], \"${TOKEN}\")\n");
    EXPECT_TRUE(replay(file("secret.txt"), {.parameters = {{"TOKEN", "another one"}, {"OTHER", "b"}}}).ok());
    EXPECT_EQ(output.text, L"[another one][Key=another one]\n[Key=b][s3crets]/s3cret\n");
}

TEST_F(RecordingTest, AFilesNameThatIsNoUtf8IsWrittenSoThatItIsFoundAgain)
{
    const std::wstring line = L"Probe.Call bad\xDCFF";
    EXPECT_EQ(recorded("bytes.txt", {line}), "# quillet-transcript 1\nProbe.Call bad\xff\n");
    EXPECT_TRUE(recorded("bytes.py", {line}).ends_with("Probe.Call(\"bad\\udcff\")\n"));
    EXPECT_TRUE(replay(file("bytes.txt")).ok());
    EXPECT_EQ(output.text, L"[bad\xDCFF]\n");
}

TEST_F(RecordingTest, TakesThePlaceOfATranscriptButOfNothingElse)
{
    const std::vector<std::pair<std::string, std::string>> kept = {
        {"notes.txt", "Buy milk\n"},
        {"image.txt", std::string("\x89PNG\r\n\x1a\n\0\0", 10)},
        {"script.py", "import os\nprint(os.getcwd())\n"},
        {"config.txt", "# Probe.Call is a setting\nsize = 3\n"},
        {"comments.txt", "# all of it\n"},
        {"long.txt", std::string(5000000, 'x')},
        {"model.vlra", "PK\x03\x04"},
        {"other.txt", "Probe.Unknown 1\n"},
        {"model.step", "ISO-10303-21;\nHEADER;\n"},
    };
    for (const auto& [name, content] : kept) {
        const std::wstring path = folder.write(name, content).wstring();
        Vs::Status status;
        EXPECT_FALSE(TranscriptMgr::get()->startRecording(path, TranscriptMgr::typeOf(path), status)) << name;
        EXPECT_TRUE(status.matchingError("something else than a transcript")) << name;
        EXPECT_TRUE(status.matchingError(name)) << name;
        EXPECT_FALSE(TranscriptMgr::get()->recording());
        EXPECT_EQ(contentOf(name), content);
    }
    folder.write("empty.txt", "");
    folder.write("old.txt", "\xEF\xBB\xBF\r\n# by hand\r\n  Probe.Call ${x}\r\nBuy milk\r\n");
    folder.write("bare.txt", "# quillet-transcript 1\n");
    for (const char* name : {"new.txt", "empty.txt", "old.txt", "new.txt", "bare.txt"})
        EXPECT_EQ(recorded(name, {L"Probe.Call 1"}), "# quillet-transcript 1\nProbe.Call 1\n") << name;
    const std::string python = recorded("new.py", {L"Probe.Call 1"});
    EXPECT_EQ(recorded("new.py", {L"Probe.Call 1"}), python);
}

TEST_F(RecordingTest, WithoutARecordingNothingIsWritten)
{
    Vs::writeTranscriptLine(L"Probe.Call 1");
    EXPECT_FALSE(TranscriptMgr::get()->recording());
    EXPECT_EQ(TranscriptMgr::get()->recordingFile(), L"");
}

TEST_F(RecordingTest, AMediumThatFailsEndsItWithOneMessage)
{
    Host host;
    ASSERT_TRUE(TranscriptMgr::get()->startRecording(L"/dev/full", Vs::kTextTranscript));
    Vs::writeTranscriptLine(L"Probe.Call 1");
    Vs::writeTranscriptLine(L"Probe.Call 2");
    EXPECT_FALSE(TranscriptMgr::get()->recording());
    EXPECT_EQ(
        host.told,
        L"The transcript \"/dev/full\" ends here, since it cannot be written: No space left on device.\n");
    host.told.clear();
    EXPECT_FALSE(TranscriptMgr::get()->startRecording(file("none/a.txt"), Vs::kTextTranscript));
    EXPECT_NE(host.told.find(L"cannot be written: No such file or directory."), std::wstring::npos);
}

TEST_F(RecordingTest, ATranscriptIsNeitherReplayedNorRecordedByItself)
{
    const fs::path path = folder.write("self.txt", "Probe.Call a\nProbe.Call b\n");
    fs::create_symlink(path, folder.path() / "link.txt");
    std::wstring refusals;
    call.action = [&] {
        Vs::Status status;
        TranscriptMgr::get()->startRecording(file("link.txt"), Vs::kTextTranscript, status);
        Vs::ReplayOptions options;
        options.status = &status;
        options.quiet = true;
        EXPECT_FALSE(replay(file("link.txt"), options).ok());
        refusals += status.toString() + L'\n';
    };
    EXPECT_TRUE(replay(path.wstring()).ok());
    EXPECT_EQ(call.calls, 2);
    EXPECT_NE(refusals.find(L"link.txt\" cannot be written: it is being replayed."), std::wstring::npos);
    EXPECT_NE(refusals.find(L"link.txt is being replayed already"), std::wstring::npos);
    EXPECT_EQ(contentOf("self.txt"), "Probe.Call a\nProbe.Call b\n");
}

TEST_F(RecordingTest, AFileThatGoesIsReplayedToItsEndAndOneThatChangesIsGivenUp)
{
    std::string content;
    for (int i = 0; i < 20000; ++i)
        content += "Probe.Call line\n";
    const fs::path path = folder.write("long.txt", content);
    call.action = [&] { fs::remove(path); };
    EXPECT_EQ(replay(path.wstring()).lines, 20000u);

    folder.write("long.txt", content);
    call.calls = 0;
    call.action = [&] {
        if (call.calls == 1)
            fs::ofstream(path, std::ios::app) << "Probe.Call more\n";
    };
    Host host;
    EXPECT_EQ(replay(path.wstring()).failures, 1u);
    EXPECT_LT(call.calls, 20000);
    EXPECT_NE(host.told.find(L"cannot be read further: it was changed while it was read."),
              std::wstring::npos);
    EXPECT_EQ(host.settled, call.calls);
}

TEST_F(RecordingTest, ARelativePathIsLookedUpBesideTheTranscript)
{
    const TranscriptMgr* transcripts = TranscriptMgr::get();
    const fs::path path = folder.write("a.txt", "Probe.Call\n");
    folder.write("here.step", "");
    std::vector<std::wstring> located;
    call.action = [&] {
        for (const wchar_t* name : {L"here.step", L"new/x.png", L"/tmp/x", L""})
            located.push_back(transcripts->locate(name));
        located.push_back(transcripts->replayingScriptFile());
    };
    EXPECT_TRUE(replay(path.wstring()).ok());
    const std::wstring beside = fs::canonical(folder.path()).wstring();
    EXPECT_EQ(located, (std::vector<std::wstring>{beside + L"/here.step", beside + L"/new/x.png", L"/tmp/x",
                                                  L"", path.wstring()}));
    EXPECT_EQ(transcripts->locate(L"here.step"), L"here.step");
}

TEST_F(RecordingTest, APathIsWrittenSoThatItLeadsThereFromAnywhere)
{
    const TranscriptMgr* transcripts = TranscriptMgr::get();
    const fs::path before = fs::current_path();
    const fs::path other = folder.path() / "other", recordings = folder.path() / "recordings";
    for (const fs::path& each : {other, recordings / "parts"})
        fs::create_directories(each);
    folder.write("other/here.step", "");
    folder.write("recordings/parts/near.step", "");
    EXPECT_EQ(transcripts->portable(L"here.step"), L"here.step") << "nothing is recorded";
    const std::wstring path = (recordings / "a.txt").wstring();
    ASSERT_TRUE(TranscriptMgr::get()->startRecording(path, Vs::kTextTranscript));
    fs::current_path(other);
    const std::wstring here = fs::current_path().wstring();
    EXPECT_EQ(transcripts->portable(L"here.step"), here + L"/here.step");
    EXPECT_EQ(transcripts->portable(L"../other/new.step"), here + L"/new.step");
    EXPECT_EQ(transcripts->portable(L"Untitled"), L"Untitled") << "that is no file";
    EXPECT_EQ(transcripts->portable((recordings / "parts/near.step").wstring()), L"parts/near.step");
    fs::current_path(recordings);
    EXPECT_EQ(transcripts->portable(L"parts/near.step"), L"parts/near.step");
    fs::current_path(before);
}

TEST_F(RecordingTest, OneOfALaterVersionIsNotPlayed)
{
    const std::wstring path = folder.write("later.txt", "# quillet-transcript 2\nProbe.Call 1\n").wstring();
    EXPECT_EQ(replay(path).failures, 1u);
    EXPECT_EQ(call.calls, 0);
    EXPECT_NE(output.text.find(L"later.txt:1: The transcript was recorded by a later version"),
              std::wstring::npos);
    for (const auto& [content, is] : {std::pair{"# quillet-transcript 1\n", true},
                                      {"# by hand\n\n  Probe.Nothing 1\n", true},
                                      {"cmake_minimum_required(VERSION 3.25)\n", false},
                                      {"# Title\nSee Part.txt, please.\n", false},
                                      {"See e.g. this\n", false},
                                      {"Bracket.STEP.old\n", false},
                                      {"# only a comment\n", false},
                                      {"", false}})
        EXPECT_EQ(Vs::looksLikeTextTranscript(folder.write("any.txt", content).wstring()), is) << content;
}

TEST_F(RecordingTest, TheDebuggerStepsAndStopsAtBreakPoints)
{
    debug().scriptPath(
        folder.write("d.txt", "Probe.Call 1\n# two\nProbe.Call 3\nProbe.Call 4\nProbe.Call 5\n").wstring());
    debug().stepLine(0);
    EXPECT_TRUE(debug().isStepLine(1));
    EXPECT_EQ(steps(), 1);
    EXPECT_EQ(steps(), 2);
    debug().addBreakPoint(3); // Where it is: it continues from there.
    debug().addBreakPoint(5);
    EXPECT_EQ(goesOn(), 4);
    EXPECT_TRUE(debug().isStepLine(5));
    EXPECT_EQ(output.text, L"[1]\n[3]\n[4]\n");
    EXPECT_EQ(goesOn(), 5);
    // From its end it starts again, and stops at its breakpoints again.
    EXPECT_EQ(goesOn(), 2);
    EXPECT_EQ(output.text, L"[1]\n[3]\n[4]\n[5]\n[1]\n");

    debug().stepLine(0);
    debug().removeAllBreakPoints();
    debug().addBreakPoint(1);
    EXPECT_EQ(goesOn(), 0);
    EXPECT_EQ(goesOn(), 5);
}

TEST_F(RecordingTest, TheDebuggerStaysAtTheLineThatFailed)
{
    debug().scriptPath(folder.write("f.txt", "Probe.Call 1\nProbe.None\nProbe.Call 3\n").wstring());
    debug().stepLine(0);
    EXPECT_EQ(goesOn(), 1);
    EXPECT_NE(output.text.find(L"f.txt:2: There is no text command"), std::wstring::npos);
    folder.write("f.txt", "Probe.Call 1\nProbe.Call mended\nProbe.Call 3\n");
    EXPECT_EQ(goesOn(), 3);
    EXPECT_NE(output.text.find(L"[mended]\n[3]\n"), std::wstring::npos);
    // Another transcript that replays this one doesn't move the debugger.
    folder.write("outer.txt", "Probe.Call outer\n");
    call.action = [&] {
        call.action = nullptr;
        EXPECT_TRUE(replay(file("f.txt")).ok());
    };
    debug().stepLine(1);
    EXPECT_TRUE(replay(file("outer.txt")).ok());
    EXPECT_EQ(debug().stepLine(), 1);
}

} // namespace
