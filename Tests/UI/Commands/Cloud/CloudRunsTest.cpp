// Runs of the program, one after another, with something wrong around it: its clock, the disk of its cache.

#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Seed.h"
#include "Tests/Support/Servers/FaultProxy.h"
#include "Tests/Support/Servers/TestServer.h"
#include "Tests/Support/Users.h"

#include <boost/filesystem/operations.hpp>

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <regex>

namespace {

namespace fs = boost::filesystem;
using TestSupport::contentOf;
using TestSupport::Fault;
using TestSupport::FaultProxy;
using TestSupport::ProcessResult;
using Lines = std::vector<std::string>;

/// One profile, signed in to a server behind a proxy.
class CloudRunsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        REQUIRE_SERVER(m_server);
        m_proxy = std::make_unique<FaultProxy>(m_server.port());
        const fs::path token = m_folder.write(
            "token.json", "{\"address\": \"" + m_proxy->address() + "\", \"user\": \"" + m_server.user() +
                              "\", \"secret\": \"" + m_server.password() + "\"}");
        fs::permissions(token, fs::owner_read | fs::owner_write);
        m_environment.push_back("QUILLET_CLOUD_TOKEN_FILE=" + token.string());
    }

    struct Surroundings
    {
        std::string before; ///< Run by a shell first, in a namespace of its own for its mounts.
        std::vector<std::string> environment;
    };
    ProcessResult run(const Lines& lines, const Surroundings& around = {}) const
    {
        std::vector<std::string> words{(TestSupport::runningTree() / "bin/quillet").string(), "--profile-dir",
                                       (m_folder.path() / "profile").string(), "--headless"};
        for (const std::string& line : lines)
            words.insert(words.end(), {"--command", line});
        if (!around.before.empty()) {
            const std::string script = around.before + " && exec \"$@\"";
            const std::vector<std::string> shell{
                "/usr/bin/unshare", "--mount", "/bin/sh", "-c", script, "sh"};
            words.insert(words.begin(), shell.begin(), shell.end());
        }
        TestSupport::ProcessOptions options;
        options.environment = m_environment;
        options.environment.insert(options.environment.end(), around.environment.begin(),
                                   around.environment.end());
        const std::string program = words.front();
        words.erase(words.begin());
        return TestSupport::runProcess(program, words, options);
    }
    static std::string told(const ProcessResult& result) { return result.output + result.errors; }
    /// Empty if all lines succeeded.
    static std::string trouble(const ProcessResult& result)
    {
        return result.exitCode == 0 ? std::string()
                                    : "exit code " + std::to_string(result.exitCode) + ": " + told(result);
    }

    fs::path cloud() const { return m_folder.path() / "profile/cloud"; }
    /// The location of a drive's file in the cache, after a sign-in.
    fs::path cached(const std::string& name) const
    {
        for (const fs::directory_entry& entry : fs::directory_iterator(cloud()))
            if (entry.path().extension() == ".json")
                return entry.path().parent_path() / entry.path().stem() / name;
        return {};
    }
    std::string onDrive(const std::string& name) const { return m_server.content(name).value_or(""); }
    std::string open(const std::string& name) const
    {
        return "VuCommands.CloudOpenDocumentCmd " + cached(name).string();
    }
    Lines linesToSave(const std::string& name) const
    {
        return {"Design.New", "Design.Box 1 2 3", "VuCommands.CloudSaveCmd " + cached(name).string()};
    }

    TestSupport::ScratchFolder m_folder;
    TestSupport::TestServer m_server{TestSupport::TestServer::Kind::Lighttpd};
    std::unique_ptr<FaultProxy> m_proxy;
    std::vector<std::string> m_environment;
    const Lines m_signIn{"Design.New", "Commands.Start CloudLoginCommand"};
    const std::string m_change = "Design.Box 4 5 6", m_save = "VuCommands.CloudSaveQATCmd";
};

// The sanitizers must be preloaded before any other library.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

/// By the number of seconds that the program's clock is ahead.
class CloudClockTest : public CloudRunsTest, public testing::WithParamInterface<int>
{
};

INSTANTIATE_TEST_SUITE_P(AnHour, CloudClockTest, testing::Values(-3600, 3600),
                         [](const auto& info) { return info.param < 0 ? "Behind" : "Ahead"; });

TEST_P(CloudClockTest, NothingIsLostOrAskedAnewWhenTheProgramsClockIsOffAndSetAgain)
{
    const auto runOff = [this](const Lines& lines) {
        return run(lines, {.environment = {"QUILLET_CLOCK_OFF=" + std::to_string(GetParam()),
                                           "LD_PRELOAD=" QUILLET_CLOCK_OFF_LIBRARY}});
    };
    ASSERT_EQ(trouble(runOff(m_signIn)), "");
    const std::string traits = contentOf(cached("").string() + ".json");
    std::smatch probed;
    ASSERT_TRUE(std::regex_search(traits, probed, std::regex("\"probed\": *([0-9]+)"))) << traits;
    EXPECT_NEAR(double(std::stoll(probed[1])), double(std::time(nullptr) + GetParam()), 600);
    for (const char* name : {"wheel.vlra", "other.vlra"}) {
        ASSERT_EQ(trouble(runOff(linesToSave(name))), "");
        EXPECT_TRUE(onDrive(name) == contentOf(cached(name)) && !onDrive(name).empty()) << name;
    }
    const std::string others = onDrive("other.vlra");

    m_proxy->forgetRequests();
    ASSERT_EQ(m_server.request("PUT", "wheel.vlra", others).status, 204);
    EXPECT_EQ(trouble(run({open("wheel.vlra"), m_change, m_save})), "");
    EXPECT_TRUE(onDrive("wheel.vlra") == contentOf(cached("wheel.vlra")) && onDrive("wheel.vlra") != others);
    for (const auto& request : m_proxy->requests())
        EXPECT_NE(request.method, "MKCOL") << "what the server does is known";

    // Another is quicker.
    m_proxy->onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
        if (request.method == "LOCK")
            m_server.request("PUT", "wheel.vlra", others);
        return std::nullopt;
    });
    EXPECT_NE(told(runOff({open("wheel.vlra"), m_change, m_save})).find("newer version"), std::string::npos);
    m_proxy->onRequest({});
    EXPECT_TRUE(onDrive("wheel.vlra") == others);
    EXPECT_TRUE(contentOf(cached("wheel.vlra")) != others);

    m_server.stop();
    EXPECT_EQ(trouble(runOff({open("other.vlra"), m_change, m_save})), "");
    m_server.start();
    EXPECT_TRUE(onDrive("other.vlra") == others && contentOf(cached("other.vlra")) != others);
    EXPECT_EQ(trouble(run({open("other.vlra"), "Sleeper.Sleep 1000"})), "");
    EXPECT_TRUE(onDrive("other.vlra") == contentOf(cached("other.vlra")));
    EXPECT_EQ(m_server.names(), (std::vector<std::string>{"other.vlra", "wheel.vlra"}));
}

// All of them with QUILLET_KILLS=1; otherwise every few, different ones each time.
TEST_F(CloudRunsTest, KilledAtAnyCallOfASaveNothingIsHalfWrittenAndTheNextSaveArrives)
{
    ASSERT_EQ(trouble(run(m_signIn)), "");
    ASSERT_EQ(trouble(run(linesToSave("wheel.vlra"))), "");
    const int step = std::getenv("QUILLET_KILLS") ? 1 : 8;
    bool isKilled = true;
    int kills = 0;
    for (int call = step == 1 ? 1 : 1 + int(TestSupport::seed() % unsigned(step)); isKilled; call += step) {
        SCOPED_TRACE("killed at call " + std::to_string(call));
        const std::string before = onDrive("wheel.vlra");
        const ProcessResult killed = run({open("wheel.vlra"), m_change, m_save},
                                         {.environment = {"QUILLET_KILL_AT=" + std::to_string(call),
                                                          "QUILLET_KILL_BELOW=" + cloud().string(),
                                                          "LD_PRELOAD=" QUILLET_KILLED_CALLS_LIBRARY}});
        isKilled = killed.signal == SIGKILL;
        kills += isKilled;
        const std::string here = contentOf(cached("wheel.vlra")), there = onDrive("wheel.vlra");
        EXPECT_TRUE(there == before || there == here);
        // The dead run's lock would be in the way until it expires.
        m_server.stop();
        fs::remove(m_server.log().parent_path() / "properties.db");
        m_server.start();
        EXPECT_EQ(trouble(run({open("wheel.vlra"), m_change, m_save})), "");
        const std::string after = contentOf(cached("wheel.vlra"));
        EXPECT_TRUE(onDrive("wheel.vlra") == after && after != before && after != here);
        EXPECT_EQ(m_server.names(), std::vector<std::string>{"wheel.vlra"});
        if (HasFailure())
            return;
    }
    EXPECT_GT(kills * step, 30) << "a save is more than that";
    std::vector<fs::path> kept;
    for (const fs::directory_entry& entry : fs::directory_iterator(cached("")))
        kept.push_back(entry.path().filename());
    EXPECT_EQ(kept, std::vector<fs::path>{"wheel.vlra"}) << "parts of dead runs";
}
#endif

TEST_F(CloudRunsTest, ACacheThatCannotBeWrittenIsToldAndNothingIsLost)
{
    SKIP_UNLESS_ROOT();
    ASSERT_EQ(trouble(run(m_signIn)), "");
    ASSERT_EQ(trouble(run(linesToSave("wheel.vlra"))), "");
    const std::string saved = onDrive("wheel.vlra"), cache = cloud().string();
    const std::string isRead = "mount --bind '" + cache + "' '" + cache + "' && mount -o remount,bind,ro '" +
                               cache + "'",
                      isFull = "mount -t tmpfs -o size=64k none '" + cache + "'";
    for (const std::string& disk : {isRead, isFull}) {
        SCOPED_TRACE(disk);
        const ProcessResult changed = run({open("wheel.vlra"), m_change, m_save}, {.before = disk});
        EXPECT_NE(changed.exitCode, 0);
        EXPECT_NE(told(changed).find(cache), std::string::npos) << told(changed);
        const ProcessResult made = run(linesToSave("new.vlra"), {.before = disk});
        EXPECT_NE(told(made).find(cache), std::string::npos) << told(made);
        EXPECT_TRUE(onDrive("wheel.vlra") == saved);
        EXPECT_EQ(m_server.names(), std::vector<std::string>{"wheel.vlra"});
    }
    EXPECT_EQ(trouble(run({open("wheel.vlra"), "Selection.Select Box1"}, {.before = isRead})), "");
    EXPECT_TRUE(contentOf(cached("wheel.vlra")) == saved);

    const std::string again = open("wheel.vlra");
    fs::remove_all(cloud());
    EXPECT_EQ(trouble(run({again, m_change, m_save})), "");
    EXPECT_TRUE(onDrive("wheel.vlra") == contentOf(cached("wheel.vlra")) && onDrive("wheel.vlra") != saved);
}

} // namespace
