#include "Server/Base/Exception.h"
#include "Server/Base/OS.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/SoftwareVersion.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Users.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <chrono>
#include <future>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = boost::filesystem;

unsigned permissions(const fs::path& path)
{
    struct stat state = {};
    return lstat(path.c_str(), &state) == 0 ? state.st_mode & 07777 : 0;
}

class PathsTest : public testing::Test
{
protected:
    ~PathsTest() override { Vs::PathInfo::profileDirectory({}); }
    TestSupport::ScratchFolder folder;
};

TEST_F(PathsTest, LieInTheProfileWhereOneIsGiven)
{
    Vs::PathInfo::profileDirectory(folder.path() / "profile");
    for (const fs::path& path : {Vs::PathInfo::optionsDirectory(), Vs::PathInfo::cacheDirectory(),
                                 Vs::PathInfo::recoveryDirectory(), Vs::PathInfo::scriptsDirectory(true)}) {
        EXPECT_EQ(path.parent_path(), folder.path() / "profile");
        EXPECT_TRUE(fs::is_directory(path));
    }
    // Except for a cache shared by several profiles.
    setenv("QUILLET_CACHE_DIR", (folder.path() / "shared").c_str(), 1);
    EXPECT_EQ(Vs::PathInfo::cacheDirectory(), folder.path() / "shared");
    EXPECT_EQ(Vs::PathInfo::optionsDirectory().parent_path(), folder.path() / "profile");
    unsetenv("QUILLET_CACHE_DIR");
}

TEST_F(PathsTest, FollowTheDesktopsVariablesUnlessTheyAreRelative)
{
    const std::string before = std::getenv("XDG_CONFIG_HOME") ? std::getenv("XDG_CONFIG_HOME") : "";
    setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
    EXPECT_EQ(Vs::PathInfo::optionsDirectory(), folder.path() / "quillet");
    setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_TRUE(Vs::PathInfo::optionsDirectory().is_absolute());
    EXPECT_FALSE(fs::exists("relative"));
    before.empty() ? unsetenv("XDG_CONFIG_HOME") : setenv("XDG_CONFIG_HOME", before.c_str(), 1);
}

/// A temporary folder that everybody may write to, like the system's, and this user's part of it.
class SharedFolderTest : public PathsTest
{
protected:
    SharedFolderTest()
    {
        fs::create_directory(shared);
        chmod(shared.c_str(), 01777);
    }

    /// The result of a function for a user who has none of the desktop's variables but these.
    static bool withoutHome(const char* home, const std::function<bool()>& function)
    {
        return TestSupport::asUser(TestSupport::kSomebody, [&] {
            for (const char* name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
                unsetenv(name);
            home ? setenv("HOME", home, 1) : unsetenv("HOME");
            return function();
        });
    }

    const TestSupport::OpenFolder open;
    const fs::path shared = open.path() / "shared";
    const TestSupport::Variable temporary{"TMPDIR", shared.string()};
    const TestSupport::Variable noRuntime{"XDG_RUNTIME_DIR", std::nullopt};
    const fs::path taken = shared / ("quillet-" + std::to_string(TestSupport::kSomebody));
};

TEST_F(SharedFolderTest, WithoutAHomeNothingIsTakenFromWhereOthersCouldHavePutIt)
{
    SKIP_UNLESS_ROOT();
    ASSERT_TRUE(TestSupport::asUser(TestSupport::kAnother, [&] {
        for (const char* planted :
             {".config/quillet", ".cache/quillet", ".local/share/quillet/scripts/autorun"}) {
            fs::create_directories(shared / planted);
            TestSupport::overwrite(shared / planted / "planted.py", "planted");
        }
        return true;
    }));
    for (const char* home : {static_cast<const char*>(nullptr), "", "relative"})
        EXPECT_TRUE(withoutHome(home, [&] {
            const fs::path options = Vs::PathInfo::optionsDirectory(), cache = Vs::PathInfo::cacheDirectory(),
                           scripts = Vs::PathInfo::scriptsDirectory(true);
            const bool own = Vs::OwnFiles::isOwnFolder(options) && Vs::OwnFiles::isOwnFolder(cache) &&
                             Vs::OwnFiles::isOwnFolder(scripts) && !fs::exists(scripts / "autorun") &&
                             Vs::OwnFiles::othersMayChange(options).empty();
            return own && !Vs::PathInfo::hasHome() && options.parent_path() == cache.parent_path();
        })) << (home ? home : "unset");
    // The system knows root's.
    EXPECT_TRUE(TestSupport::asUser(0, [] {
        unsetenv("HOME");
        unsetenv("XDG_DATA_HOME");
        return Vs::PathInfo::hasHome() &&
               Vs::PathInfo::scriptsDirectory(false).string().starts_with("/root/");
    }));
}

TEST_F(SharedFolderTest, ATemporaryFolderThatSomebodyElseHasTakenIsNotUsed)
{
    SKIP_UNLESS_ROOT();
    fs::create_directory(open.path() / "victims");
    ASSERT_EQ(chown((open.path() / "victims").c_str(), TestSupport::kSomebody, TestSupport::kSomebody), 0);
    const auto take = [&](const std::function<void()>& action) {
        fs::remove_all(taken);
        return TestSupport::asUser(TestSupport::kAnother, [&] {
            action();
            return true;
        });
    };
    const std::vector<std::function<void()>> ways = {
        [&] { mkdir(taken.c_str(), 0777), chmod(taken.c_str(), 0777); },
        // Closed to all, as the user's own would be.
        [&] { mkdir(taken.c_str(), 0700); },
        [&] { fs::create_symlink(open.path() / "victims", taken); },
        [&] { fs::create_symlink(shared / "nowhere", taken); },
        [&] { TestSupport::overwrite(taken, "file"); },
    };
    for (const auto& way : ways) {
        ASSERT_TRUE(take(way));
        EXPECT_TRUE(withoutHome(nullptr, [&] {
            const fs::path used = Vs::PathInfo::temporaryDirectory(true);
            return used != taken && Vs::OwnFiles::isOwnFolder(used);
        }));
    }
    EXPECT_EQ(permissions(open.path() / "victims"), 0755u) << "a link was followed";
    // The user's own is adopted, and its permissions are tightened if need be.
    fs::remove_all(taken);
    for (const unsigned before : {0700u, 0755u})
        EXPECT_TRUE(withoutHome(nullptr, [&] {
            return Vs::PathInfo::temporaryDirectory(true) == taken && Vs::OwnFiles::isOwnFolder(taken) &&
                   chmod(taken.c_str(), before) == 0;
        }));
}

TEST_F(SharedFolderTest, TheRuntimeFolderOfTheSessionComesBeforeIt)
{
    const fs::path runtime = open.path() / "runtime";
    fs::create_directory(runtime);
    const TestSupport::Variable variable("XDG_RUNTIME_DIR", runtime.string());
    chmod(runtime.c_str(), 0755);
    EXPECT_EQ(Vs::PathInfo::temporaryDirectory(false).parent_path(), shared) << "others may look into it";
    chmod(runtime.c_str(), 0700);
    EXPECT_EQ(Vs::PathInfo::temporaryDirectory(true), runtime / "quillet");
    EXPECT_EQ(permissions(runtime / "quillet"), 0700u);
}

TEST_F(PathsTest, AreThisUsersAlone)
{
    const mode_t mask = umask(0);
    Vs::OwnFiles::makeFolder(folder.path() / "a/b/c");
    for (const char* made : {"a", "a/b", "a/b/c"})
        EXPECT_EQ(permissions(folder.path() / made), 0700u) << made;
    fs::create_directory(folder.path() / "open");
    Vs::OwnFiles::makeFolder(folder.path() / "open");
    EXPECT_EQ(permissions(folder.path() / "open"), 0700u);
    const fs::path file = folder.path() / "file";
    Vs::OwnFiles::write(file, "one");
    EXPECT_EQ(permissions(file), 0600u);
    EXPECT_EQ(Vs::OwnFiles::read(file), "one");
    umask(mask);

    // The target of a link is neither read nor written.
    const fs::path victim = folder.write("victim", "kept"), link = folder.path() / "link";
    fs::create_symlink(victim, link);
    EXPECT_FALSE(Vs::OwnFiles::read(link));
    Vs::OwnFiles::write(link, "two");
    EXPECT_EQ(TestSupport::contentOf(victim), "kept");
    EXPECT_EQ(Vs::OwnFiles::read(link), "two");
    ASSERT_EQ(mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(Vs::OwnFiles::read(folder.path() / "pipe")) << "and nobody waits for it";
    EXPECT_FALSE(Vs::OwnFiles::read(folder.path() / "none"));
    EXPECT_THROW(Vs::OwnFiles::write(folder.path() / "none/file", ""), Vs::Exception);
    EXPECT_THROW(Vs::OwnFiles::makeFolder(victim), Vs::Exception);
    size_t left = 0;
    for (fs::directory_iterator entry(folder.path()), end; entry != end; ++entry)
        left += entry->path().filename().string().find("XXXXXX") != std::string::npos ||
                entry->path().filename().string().starts_with("file.");
    EXPECT_EQ(left, 0u);
}

TEST_F(PathsTest, TellWhatOthersCouldPutIntoTheirPlace)
{
    const fs::path script = folder.path() / "scripts/run.py", way = script.parent_path();
    fs::create_directory(way);
    TestSupport::overwrite(script, "");
    const auto state = [&](unsigned ofFolder, unsigned ofScript) {
        chmod(way.c_str(), ofFolder);
        chmod(script.c_str(), ofScript);
        return Vs::OwnFiles::othersMayChange(script);
    };
    EXPECT_EQ(state(0755, 0644), "");
    EXPECT_EQ(state(0755, 0664), script.string() + " can be written by others");
    EXPECT_EQ(state(0755, 0602), script.string() + " can be written by others");
    EXPECT_EQ(state(0775, 0644), way.string() + " can be written by others");
    EXPECT_EQ(state(01777, 0644), "") << "others may not touch what isn't theirs";
    EXPECT_EQ(Vs::OwnFiles::othersMayChange(way), way.string() + " can be written by others")
        << "but add to it";
    EXPECT_NE(Vs::OwnFiles::othersMayChange(way / "none.py"), "");
    // For a link, both its own place and its target count.
    state(0777, 0644);
    fs::create_symlink(script, folder.path() / "link.py");
    EXPECT_EQ(Vs::OwnFiles::othersMayChange(folder.path() / "link.py"),
              way.string() + " can be written by others");
    state(0755, 0644);
    EXPECT_EQ(Vs::OwnFiles::othersMayChange(folder.path() / "link.py"), "");
    SKIP_UNLESS_ROOT();
    ASSERT_EQ(chown(script.c_str(), TestSupport::kAnother, TestSupport::kAnother), 0);
    EXPECT_EQ(Vs::OwnFiles::othersMayChange(script), script.string() + " belongs to another user");
}

TEST_F(PathsTest, InTheCloudCacheAreFoundThroughLinksAndDots)
{
    Vs::PathInfo::profileDirectory(folder.path());
    const fs::path cloud = Vs::PathInfo::cloudCacheDirectory();
    fs::create_directories(cloud / "drive");
    fs::create_symlink(cloud, folder.path() / "link");
    EXPECT_TRUE(Vs::PathInfo::isPathInCloudCache(cloud / "drive/a.qui"));
    EXPECT_TRUE(Vs::PathInfo::isPathInCloudCache(folder.path() / "link/drive/new.qui"));
    EXPECT_TRUE(Vs::PathInfo::isPathInCloudCache(folder.path() / "x/../cloud/a.qui"));
    EXPECT_FALSE(Vs::PathInfo::isPathInCloudCache(cloud / "../a.qui"));
    EXPECT_FALSE(Vs::PathInfo::isPathInCloudCache(cloud.string() + "-not/a.qui"));
    EXPECT_FALSE(Vs::PathInfo::isPathInCloudCache({}));
    // Judged by the path alone, without access to the disk, so links aren't followed.
    EXPECT_TRUE(Vs::PathInfo::isNamedInCloudCache(folder.path() / "x/../cloud/a.qui"));
    EXPECT_FALSE(Vs::PathInfo::isNamedInCloudCache(folder.path() / "link/drive/new.qui"));
    EXPECT_FALSE(Vs::PathInfo::isNamedInCloudCache(cloud / "../a.qui"));
    EXPECT_FALSE(Vs::PathInfo::isNamedInCloudCache({}));
}

TEST_F(PathsTest, AreUtf8WhateverTheLocaleIs)
{
    const fs::path file = folder.path() / L"größe \U0001F600.txt";
    EXPECT_TRUE(file.string().ends_with("gr\xC3\xB6\xC3\x9F"
                                        "e \xF0\x9F\x98\x80.txt"));
    EXPECT_EQ(fs::path(file.string()).wstring(), file.wstring());
    // A name that isn't UTF-8 survives.
    const fs::path odd = folder.path() / "bad\xff";
    EXPECT_EQ(fs::path(odd.wstring()), odd);
    fs::ofstream(odd) << "x";
    EXPECT_TRUE(fs::exists(fs::path(odd.wstring())));
}

TEST_F(PathsTest, AreUtf8WhereTheLocaleOfTheEnvironmentIsNotInstalled)
{
    const std::string self = fs::read_symlink("/proc/self/exe").string();
    for (const char* name : {"LANG=xx_YY.UTF-8", "LC_ALL=xx_YY.UTF-8"}) {
        const auto result =
            TestSupport::runProcess(self, {"--gtest_filter=PathsTest.AreUtf8WhateverTheLocaleIs"},
                                    {.input = {}, .environment = {"LC_ALL=", name}});
        EXPECT_EQ(result.exitCode, 0) << name << '\n' << result.errors;
    }
}

TEST_F(PathsTest, AreHandedToTheDesktopWithoutAShell)
{
    const fs::path received = folder.path() / "received";
    const fs::path program =
        folder.write("open", "#!/bin/sh\nprintf '%s|' \"$@\" > " + received.string() + ".part && mv " +
                                 received.string() + ".part " + received.string() + "\n");
    fs::permissions(program, fs::owner_all);
    Vs::OS::shellOpenProgram(program.string());
    const std::wstring nasty = L"https://a.example/?q=$(touch x)&b=`id`;'\"";
    ASSERT_TRUE(Vs::OS::platformShellOpen(nasty));
    for (int i = 0; i < 500 && !fs::exists(received); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    fs::ifstream stream(received);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}),
              "https://a.example/?q=$(touch x)&b=`id`;'\"|");
    EXPECT_FALSE(Vs::OS::platformShellOpen(L""));
    EXPECT_FALSE(Vs::OS::platformShellOpen(L"--help"));
    Vs::OS::shellOpenProgram("/no/such/program");
    EXPECT_FALSE(Vs::OS::platformShellOpen(L"x"));

    // A program that takes it, and one that finds nothing to open it with.
    for (const bool takes : {true, false}) {
        Vs::OS::shellOpenProgram(takes ? "true" : "false");
        std::promise<void> failed;
        ASSERT_TRUE(Vs::OS::platformShellOpen(L"https://a.example", [&] { failed.set_value(); }));
        const auto wait = takes ? std::chrono::milliseconds(200) : std::chrono::milliseconds(10000);
        EXPECT_EQ(failed.get_future().wait_for(wait) == std::future_status::ready, !takes);
    }
    Vs::OS::shellOpenProgram("xdg-open");

    boost::filesystem::remove(received);
    Vs::OS::emailProgram(program.string());
    EXPECT_FALSE(Vs::OS::platformEmail(L"x", L"--help"));
    ASSERT_TRUE(Vs::OS::platformEmail(L"-- $(touch x)", L"/a b.png"));
    for (int i = 0; i < 500 && !fs::exists(received); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    fs::ifstream mail(received);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(mail), {}),
              "--utf8|--subject|-- $(touch x)|--attach|/a b.png|");
    Vs::OS::emailProgram("/no/such/program");
    EXPECT_FALSE(Vs::OS::platformEmail(L"x", L"/a.png"));
    Vs::OS::emailProgram("xdg-email");
}

TEST_F(PathsTest, GoToAMailProgramThatPassesOverAttachmentsOfAddressesAsArguments)
{
    const fs::path received = folder.path() / "received";
    const auto script = [&](const char* name, const std::string& body) {
        fs::permissions(folder.write(name, "#!/bin/sh\n" + body + '\n'), fs::owner_all);
    };
    const std::string tell = "printf '%s|' ${0##*/} \"$@\" > " + received.string() + ".new && mv " +
                             received.string() + ".new " + received.string();
    script("sylpheed", tell);
    script("xdg-email", tell);
    const std::string path = std::getenv("PATH");
    setenv("PATH", (folder.path().string() + ':' + path).c_str(), 1);
    const std::pair<const char*, const char*> kPrograms[] = {
        {"sylpheed.desktop", "sylpheed|--compose|mailto:?subject=a%26b%C3%A9|--attach|/a b.png|"},
        {"other.desktop", "xdg-email|--utf8|--subject|a&b\u00e9|--attach|/a b.png|"}};
    for (const auto& [handler, arguments] : kPrograms) {
        script("xdg-mime", std::string("echo ") + handler);
        fs::remove(received);
        EXPECT_TRUE(Vs::OS::platformEmail(L"a&b\u00e9", L"/a b.png"));
        for (int i = 0; i < 1000 && !fs::exists(received); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(TestSupport::contentOf(received), arguments) << handler;
    }
    setenv("PATH", path.c_str(), 1);
}

TEST(SoftwareVersionTest, TurnsVersionsIntoNumbersAndBack)
{
    using namespace Vs::SoftwareVersion;
    EXPECT_EQ(versionInfo("1.2.3"), 0x10203u);
    EXPECT_EQ(versionString(0x10203), "1.2.3");
    EXPECT_EQ(versionString(versionInfo(currentSoftwareVersion())), currentSoftwareVersion());
    for (const char* wrong : {"", "1", "1.2", "1.2.3.4", "1.256.0", "a.b.c", "-1.0.0", "1.2.3 "})
        EXPECT_EQ(versionInfo(wrong), 0u) << wrong;
}

} // namespace
