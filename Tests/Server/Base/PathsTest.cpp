#include "Server/Base/OS.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/SoftwareVersion.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <chrono>
#include <gtest/gtest.h>
#include <thread>

namespace {

namespace fs = boost::filesystem;

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
}

TEST_F(PathsTest, AreUtf8WhateverTheLocaleIs)
{
    const fs::path file = folder.path() / L"größe \U0001F600.txt";
    EXPECT_TRUE(file.string().ends_with("gr\xC3\xB6\xC3\x9F"
                                        "e \xF0\x9F\x98\x80.txt"));
    EXPECT_EQ(fs::path(file.string()).wstring(), file.wstring());
    // A name that is no UTF-8 can be shown, if not typed.
    EXPECT_EQ(fs::path("bad\xff").wstring(), L"bad\xFFFD");
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
        folder.write("open", "#!/bin/sh\nprintf '%s' \"$1\" > " + received.string() + ".part && mv " +
                                 received.string() + ".part " + received.string() + "\n");
    fs::permissions(program, fs::owner_all);
    Vs::OS::shellOpenProgram(program.string());
    const std::wstring nasty = L"https://a.example/?q=$(touch x)&b=`id`;'\"";
    ASSERT_TRUE(Vs::OS::platformShellOpen(nasty));
    for (int i = 0; i < 500 && !fs::exists(received); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    fs::ifstream stream(received);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}),
              "https://a.example/?q=$(touch x)&b=`id`;'\"");
    EXPECT_FALSE(Vs::OS::platformShellOpen(L""));
    EXPECT_FALSE(Vs::OS::platformShellOpen(L"--help"));
    Vs::OS::shellOpenProgram("/no/such/program");
    EXPECT_FALSE(Vs::OS::platformShellOpen(L"x"));
    Vs::OS::shellOpenProgram("xdg-open");
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
