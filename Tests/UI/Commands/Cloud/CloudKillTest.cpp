#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Servers/FaultProxy.h"
#include "Tests/Support/Servers/TestServer.h"

#include <boost/filesystem/operations.hpp>

#include <atomic>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <regex>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = boost::filesystem;
using TestSupport::Fault;
using TestSupport::FaultProxy;

/// Runs of the program, one after another, with one profile and a server behind a proxy.
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
    /// The token of the lock that a request used.
    static std::string lockOf(const FaultProxy::Request& request)
    {
        std::string words;
        for (const char* header : {"if", "lock-token"})
            if (const auto found = request.headers.find(header); found != request.headers.end())
                words += found->second;
        const std::regex token("<((opaquelocktoken|urn:uuid):[^>]*)>");
        std::smatch match;
        return std::regex_search(words, match, token) ? match[1].str() : std::string();
    }

    TestSupport::ScratchFolder m_folder;
    TestSupport::TestServer m_server{TestSupport::TestServer::Kind::Lighttpd};
    std::unique_ptr<FaultProxy> m_proxy;
    fs::path m_token;
};

// Each step of a save, before it reaches the server and after the server has done it.
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
        ASSERT_TRUE(before == TestSupport::contentOf(path));

        std::atomic<bool> reached{false};
        std::string lock; // Of the dead run; the proxy's thread has finished with it once reached.
        m_proxy->onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
            if (request.method != step.method || reached)
                return std::nullopt;
            lock = lockOf(request);
            reached = true;
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
        EXPECT_TRUE(saved != before);
        const std::string there = m_server.content(name).value_or("");
        EXPECT_TRUE(there == before || there == saved) << "half of it";
        // The dead run's lock is in the way until it expires.
        if (!lock.empty() && m_server.isLocked(name))
            m_server.request("UNLOCK", name, {}, {"Lock-Token: <" + lock + ">"});
        ASSERT_FALSE(m_server.isLocked(name));
        EXPECT_EQ(run({"VuCommands.CloudOpenDocumentCmd " + path, "Sleeper.Sleep 1000", "Document.Close"}),
                  0);
        EXPECT_TRUE(m_server.content(name).value_or("") == saved);
        EXPECT_TRUE(TestSupport::contentOf(path) == saved);
    }
    // Only these files are on the drive: no partial file, no copy, no other name.
    EXPECT_EQ(m_server.names(), (std::vector<std::string>{"LOCK.vlra", "PUT-done.vlra", "PUT.vlra",
                                                          "UNLOCK-done.vlra", "UNLOCK.vlra"}));
}

} // namespace
