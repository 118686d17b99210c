// Everything that a file can be except what its name says: the program lives, gives one message that names
// the file and the cause, answers with exit code 1 and keeps what was open.

#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/RealData.h"

#include <boost/algorithm/string.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>

using namespace TestSupport;
namespace fs = boost::filesystem;

namespace {

// No damaged file may keep a person waiting longer than this.
constexpr double kAnswerLimit = 20;

// A document is open before the bad file comes, and must be listed after it.
void expectRefusedWithOneMessage(const fs::path& file)
{
    SCOPED_TRACE(file.string());
    const ProcessResult run =
        runQuillet({"--headless", "--keep-going", "--command", "Design.Sample", "--command",
                    "Document.Open " + quoted(file), "--command", "Asset.List"},
                   {.secondsLimit = kAnswerLimit});
    EXPECT_FALSE(run.timedOut);
    EXPECT_EQ(run.signal, 0);
    EXPECT_EQ(run.exitCode, 1) << run.output << run.errors;
    EXPECT_NE(run.errors.find("--command:2: "), std::string::npos) << run.errors;
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << "one message, not:\n"
                                                                         << run.errors;
    EXPECT_NE(run.output.find("Asset name: "), std::string::npos) << "the open document is gone:\n"
                                                                  << run.output;
}

void expectRefusedByName(const fs::path& file)
{
    expectRefusedWithOneMessage(file);
    const ProcessResult run = runQuillet({"--headless", "--command", "Document.Open " + quoted(file)});
    EXPECT_NE(run.errors.find(file.filename().string()), std::string::npos)
        << "no file name in: " << run.errors;
}

std::string garbage(size_t size)
{
    std::mt19937 random(20261);
    std::string bytes(size, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
    return bytes;
}

} // namespace

TEST(BadInput, OneSessionOpensWhatIsSoundOfEveryMalformedFileAndSaysSo)
{
    SKIP_WITHOUT_REAL_DATA();
    std::vector<std::string> arguments{"--headless", "--keep-going", "--command", "Design.Sample"};
    const std::vector<fs::path> files = malformedFiles();
    for (const fs::path& file : files)
        for (const char* flag : {"", " /Strict"})
            arguments.insert(arguments.end(), {"--command", "Document.Open " + quoted(file) + flag});
    arguments.insert(arguments.end(), {"--command", "Asset.List"});
    const ProcessResult run = runQuillet(arguments, {.secondsLimit = kAnswerLimit * 15});
    EXPECT_FALSE(run.timedOut);
    EXPECT_EQ(run.exitCode, 1) << run.output;
    EXPECT_NE(run.output.find("Document name: Sample"), std::string::npos) << run.output;

    std::vector<std::string> refusals;
    boost::split(refusals, run.errors, boost::is_any_of("\n"), boost::token_compress_on);
    std::erase(refusals, "");
    ASSERT_EQ(refusals.size(), files.size()) << run.errors;
    for (size_t i = 0; i < files.size(); ++i) {
        const std::string name = files[i].filename().string();
        EXPECT_NE(refusals[i].find(name), std::string::npos) << refusals[i];
        EXPECT_NE(run.output.find(name + "\" is damaged"), std::string::npos) << run.output;
    }
}

TEST(BadInput, OddFilesOfTheRealDataAreRefusedByName)
{
    SKIP_WITHOUT_REAL_DATA();
    for (const char* name :
         {"dodgy_U008_segv.stp", "dodgy_M018.stp", "stl_empty_bin.stl", "stl_empty_ascii.stl",
          "nist_ftc_08_asme1_ap242-e1-tg.stp", "curve_geom_plate.igs"})
        expectRefusedByName(realDataFolder() / name);
}

TEST(BadInput, EmptyFilesAndGarbageOfEveryFormatAreRefusedByName)
{
    const ScratchFolder scratch;
    for (const char* suffix :
         {".step", ".stp", ".iges", ".igs", ".brep", ".stl", ".obj", ".gltf", ".glb", ".wrl"}) {
        expectRefusedByName(scratch.write(std::string("empty") + suffix, ""));
        expectRefusedByName(scratch.write(std::string("garbage") + suffix, garbage(5000)));
        expectRefusedByName(scratch.write(std::string("text") + suffix, "Dear reader,\nthis is a letter.\n"));
    }
}

TEST(BadInput, TruncatedFilesAreRefusedOrSaySo)
{
    SKIP_WITHOUT_REAL_DATA();
    const ScratchFolder scratch;
    const auto cut = [&](const char* name, double part) {
        const std::string whole = contentOf(realDataFolder() / name);
        return scratch.write(std::to_string(static_cast<int>(part * 100)) + name,
                             whole.substr(0, static_cast<size_t>(part * double(whole.size()))));
    };
    for (const double part : {0.1, 0.5, 0.9})
        expectRefusedByName(cut("Torus_1.brep", part));
    expectRefusedByName(cut("example_45_faces.iges", 0.1)); // Not one of its faces is there.
    // Of these what stands before the cut opens.
    for (const fs::path& file :
         {cut("as1-tu-203.stp", 0.1), cut("as1-tu-203.stp", 0.5), cut("as1-tu-203.stp", 0.9),
          cut("example_45_faces.iges", 0.5), cut("example_45_faces.iges", 0.9)}) {
        const ProcessResult run = runQuillet({"--headless", "--command", "Document.Open " + quoted(file)});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_NE(run.output.find(file.filename().string() + "\" is damaged"), std::string::npos)
            << run.output;
    }
    const std::string mesh = contentOf(realDataFolder() / "head.stl");
    expectRefusedByName(scratch.write("half.stl", mesh.substr(0, mesh.size() / 2)));
}

TEST(BadInput, AWronglyNamedFileIsRefusedWithWhatItReallyHolds)
{
    SKIP_WITHOUT_REAL_DATA();
    const ScratchFolder scratch;
    const fs::path file = scratch.path() / "really_step.stl";
    fs::copy_file(realDataFolder() / "screw.step", file);
    expectRefusedByName(file);
    const ProcessResult run = runQuillet({"--headless", "--command", "Document.Open " + quoted(file)});
    EXPECT_NE(run.errors.find("STEP"), std::string::npos) << run.errors;
}

TEST(BadInput, PathsThatAreNoReadableFileAreRefused)
{
    const ScratchFolder scratch;
    expectRefusedWithOneMessage(scratch.path() / "missing.step");
    fs::create_directory(scratch.path() / "folder.step");
    expectRefusedWithOneMessage(scratch.path() / "folder.step");
    if (geteuid() == 0)
        GTEST_SKIP() << "root may read everything";
    const fs::path locked = scratch.write("locked.step", "ISO-10303-21;");
    fs::permissions(locked, fs::no_perms);
    expectRefusedByName(locked);
}

TEST(BadInput, UnderEveryLimitOfTheSystemTheProgramAnswersAndSaysWhatFailed)
{
    const ScratchFolder scratch;
    std::string triangles = "solid many\n";
    for (int i = 0; i < 5000; ++i)
        triangles += "facet normal 0 0 1 outer loop vertex " + std::to_string(i) + " 0 0 vertex " +
                     std::to_string(i) + ".5 0 0 vertex 0 1 0 endloop endfacet\n";
    const fs::path file = scratch.write("many.stl", triangles + "endsolid many\n");
    const fs::path place = scratch.path() / "place";
    fs::permissions(scratch.path(), fs::all_all);
    // A user who has no other processes.
    const std::vector<std::string> nobody{"/usr/bin/setpriv", "--reuid=64711", "--regid=64711",
                                          "--clear-groups"};
    std::vector<std::vector<std::string>> rows{{"/usr/bin/prlimit", "--nofile=12"},
                                               {"/usr/bin/prlimit", "--as=300000000"},
                                               {"/usr/bin/prlimit", "--stack=256000"},
                                               {"/usr/bin/prlimit", "--fsize=10000"}};
    if (geteuid() == 0) {
        for (const char* processes : {"--nproc=1", "--nproc=2"}) {
            rows.push_back(nobody);
            rows.back().insert(rows.back().end(), {"/usr/bin/prlimit", processes});
        }
        rows.push_back({"/usr/bin/unshare", "--mount", "/bin/sh", "-c",
                        "mount -t tmpfs -o size=100k none \"$0\" && exec \"$@\"", place.string()});
    }
    for (std::vector<std::string> words : rows) {
        SCOPED_TRACE(words.size() > 4 ? words.back() : words[1]);
        // What one user keeps is closed to the next.
        fs::remove_all(place);
        fs::create_directory(place);
        fs::permissions(place, fs::all_all);
        words.insert(words.end(),
                     {(runningTree() / "bin/quillet").string(), "--headless", "--keep-going", "--profile-dir",
                      place.string(), "--command", "Document.Open " + quoted(file), "--command",
                      "Design.Sample", "--command", "Document.SaveAs " + quoted(place / "saved.vlra"),
                      "--command", "Asset.List"});
        const std::string program = words.front();
        words.erase(words.begin());
        const ProcessResult run =
            runProcess(program, words, {.environment = {"DISPLAY=", "WAYLAND_DISPLAY="}});
        EXPECT_FALSE(run.timedOut);
        EXPECT_EQ(run.signal, 0) << run.errors;
        EXPECT_NE(run.output.find("Document name: "), std::string::npos) << run.output << run.errors;
        EXPECT_TRUE(run.exitCode == 0 || run.errors.find("--command:") != std::string::npos) << run.errors;
        EXPECT_EQ(run.errors.find("crashed"), std::string::npos) << run.errors;
    }
    if (geteuid() != 0)
        GTEST_SKIP() << "NOTICE: the limits of processes and of the disk are tried by root alone";
}

TEST(BadInput, AFullDiskIsSaidAndAFullHomeHoldsUpNothingElsewhere)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "NOTICE: a full disk is tried by root alone";
    const ScratchFolder scratch;
    const fs::path file = scratch.write(
        "one.stl", "solid one\nfacet normal 0 0 1 outer loop vertex 0 0 0 vertex 1 0 0 vertex 0 1 0 endloop "
                   "endfacet\nendsolid one\n");
    const fs::path home = scratch.path() / "home";
    fs::create_directory(home);
    std::vector<std::string> words{"--mount",
                                   "/bin/sh",
                                   "-c",
                                   "mount -t tmpfs -o size=64k none \"$0\" && { cat /dev/zero >\"$0/filler\" "
                                   "2>/dev/null; exec \"$@\"; }",
                                   home.string(),
                                   (runningTree() / "bin/quillet").string(),
                                   "--headless",
                                   "--keep-going",
                                   "--profile-dir",
                                   home.string()};
    const auto line = [&](const std::string& text) { words.insert(words.end(), {"--command", text}); };
    line("Document.Open " + quoted(file));
    line("Asset.List");
    line("Design.Sample");
    line("Asset.Export " + quoted(scratch.path() / "out.step"));
    const std::vector<std::string> refused{"full.step", "full.igs", "full.brep", "full.stl", "full.obj"};
    for (const std::string& name : refused)
        line("Design.Export " + quoted(home / name));
    const ProcessResult run =
        runProcess("/usr/bin/unshare", words, {.environment = {"DISPLAY=", "WAYLAND_DISPLAY="}});
    EXPECT_EQ(run.exitCode, 1) << run.output << run.errors;
    EXPECT_NE(run.output.find("Document name: one"), std::string::npos) << run.output << run.errors;
    EXPECT_TRUE(fs::exists(scratch.path() / "out.step")) << run.output << run.errors;
    for (const std::string& name : refused)
        EXPECT_NE(run.errors.find(name + "\" can't be written: No space left on device"), std::string::npos)
            << name << ": " << run.errors;
}

TEST(BadInput, AFileWhoseAnnotationsCannotBeReadOpensWithAWarning)
{
    SKIP_WITHOUT_REAL_DATA();
    const ProcessResult run =
        runQuillet({"--headless", "--command",
                    "Document.Open " + quoted(realDataFolder() / "nist_ctc_02_asme1_ap242-e2.stp")});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
}

TEST(BadInput, OneControlCCancelsALongLoadAndTheSessionGoesOn)
{
    SKIP_WITHOUT_REAL_DATA();
    const ProcessResult run =
        runQuillet({"--headless", "--keep-going", "--command",
                    "Document.Open " + quoted(realDataFolder() / "asm_board_video_ap214.step"), "--command",
                    "Sleeper.Sleep 1"},
                   {.interruptAfterSeconds = 1.5});
    EXPECT_EQ(run.exitCode, 1) << run.output << run.errors;
    EXPECT_NE(run.output.find("Sleep 1 ms."), std::string::npos) << run.output << run.errors;
    EXPECT_EQ(run.signal, 0);
}
