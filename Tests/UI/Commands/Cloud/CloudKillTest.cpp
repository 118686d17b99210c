#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Servers/FaultProxy.h"
#include "Tests/Support/Servers/TestServer.h"

#include <boost/filesystem/operations.hpp>

#include <atomic>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = boost::filesystem;
using TestSupport::Fault;
using TestSupport::FaultProxy;

/// Runs of the program, one after the other, with one profile and a server behind a proxy.
class CloudKillTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        REQUIRE_SERVER(m_server);
        m_proxy = std::make_unique<FaultProxy>(m_server.port());
        m_token = m_folder.write("token.json", "{\"address\": \"" + m_proxy->address() + "\", \"user\": \"" +
                                                   m_server.user() + "\", \"secret\": \"" +
                                                   m_server.password() + "\"}");
        fs::permissions(m_token, fs::owner_read | fs::owner_write);
    }

    /// Starts the program with these lines.
    pid_t start(const std::vector<std::string>& lines) const
    {
        std::vector<std::string> words{(TestSupport::runningTree() / "bin/quillet").string(), "--profile-dir",
                                       (m_folder.path() / "profile").string(), "--headless"};
        for (const std::string& line : lines)
            words.insert(words.end(), {"--command", line});
        const pid_t child = fork();
        if (child == 0) {
            setenv("QUILLET_CLOUD_TOKEN_FILE", m_token.c_str(), 1);
            std::vector<char*> arguments;
            for (std::string& word : words)
                arguments.push_back(word.data());
            arguments.push_back(nullptr);
            execv(arguments[0], arguments.data());
            _exit(127);
        }
        return child;
    }
    int run(const std::vector<std::string>& lines) const
    {
        int state = 0;
        waitpid(start(lines), &state, 0);
        return WIFEXITED(state) ? WEXITSTATUS(state) : -1;
    }
    std::vector<std::string> locks(const std::string& name) const
    {
        const std::string answer = m_server
                                       .request("PROPFIND", name,
                                                "<?xml version=\"1.0\"?><propfind "
                                                "xmlns=\"DAV:\"><prop><lockdiscovery/></prop></propfind>",
                                                {"Depth: 0"})
                                       .body;
        std::vector<std::string> found;
        constexpr const char* kScheme = "opaquelocktoken:";
        for (size_t at = answer.find(kScheme); at != std::string::npos; at = answer.find(kScheme, at + 1))
            found.push_back(answer.substr(at, answer.find('<', at) - at));
        return found;
    }

    TestSupport::ScratchFolder m_folder;
    TestSupport::TestServer m_server{TestSupport::TestServer::Kind::Lighttpd};
    std::unique_ptr<FaultProxy> m_proxy;
    fs::path m_token;
};

// Each step of a save, before the server has heard of it and after it has done it.
TEST_F(CloudKillTest, WhatWasSavedWhenTheProgramWasKilledArrivesAfterItsNextStart)
{
    struct Step
    {
        const char* method;
        bool done;
    };
    ASSERT_EQ(run({"Design.New", "Commands.Start CloudLoginCommand"}), 0);
    const std::string root = (*fs::directory_iterator(m_folder.path() / "profile/cloud")).path().string();
    const std::string folder = root.substr(0, root.rfind('.'));
    for (const Step& step : {Step{"LOCK", false}, Step{"PUT", false}, Step{"PUT", true},
                             Step{"UNLOCK", false}, Step{"UNLOCK", true}}) {
        SCOPED_TRACE(std::string(step.method) + (step.done ? " done" : ""));
        const std::string name = std::string(step.method) + (step.done ? "-done" : "") + ".vlra";
        const std::string path = folder + '/' + name;
        ASSERT_EQ(run({"Design.New", "Design.Box 1 2 3", "VuCommands.CloudSaveCmd " + path}), 0);
        const std::string before = m_server.content(name).value_or("");
        ASSERT_EQ(before, TestSupport::contentOf(path));

        std::atomic<bool> reached{false};
        m_proxy->onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
            if (request.method != step.method || reached.exchange(true))
                return std::nullopt;
            return step.done ? Fault::stallAnswer(0) : Fault::stall();
        });
        const pid_t child = start(
            {"VuCommands.CloudOpenDocumentCmd " + path, "Design.Box 4 5 6", "VuCommands.CloudSaveQATCmd"});
        const auto begun = std::chrono::steady_clock::now();
        while (!reached && std::chrono::steady_clock::now() - begun < std::chrono::seconds(60))
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        ASSERT_TRUE(reached);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        m_proxy->onRequest(nullptr);

        const std::string saved = TestSupport::contentOf(path);
        EXPECT_NE(saved, before);
        const std::string there = m_server.content(name).value_or("");
        EXPECT_TRUE(there == before || there == saved) << "half of it";
        // The dead run's lock is in the way until it has run out.
        if (m_server.isLocked(name))
            for (const std::string& lock : locks(name))
                m_server.request("UNLOCK", name, {}, {"Lock-Token: <" + lock + ">"});
        EXPECT_EQ(run({"VuCommands.CloudOpenDocumentCmd " + path, "Sleeper.Sleep 1000", "Document.Close"}),
                  0);
        EXPECT_EQ(m_server.content(name).value_or(""), saved);
        EXPECT_EQ(TestSupport::contentOf(path), saved);
    }
    // Nothing but these files is on the drive: no half, no copy, no other name.
    EXPECT_EQ(m_server.names(), (std::vector<std::string>{"LOCK.vlra", "PUT-done.vlra", "PUT.vlra",
                                                          "UNLOCK-done.vlra", "UNLOCK.vlra"}));
}

} // namespace
