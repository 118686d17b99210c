// A process that is killed in the middle of a save, at each of its requests, and another one after it.

#include "Tests/Server/Skyvault/Servers/DriveOnServer.h"
#include "Tests/Support/Files.h"

#include <boost/filesystem/operations.hpp>

#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace Vs::Cloud;
using TestSupport::Fault;
using TestSupport::FaultProxy;
using TestSupport::TestServer;
using State = Vs::CloudErrorState;

const std::string kOld(200000, 'o'), kNew(300000, 'n');

class KillingTest : public testing::TestWithParam<TestServer::Kind>
{
protected:
    static constexpr int kProbing = -1, kUnguarded = -2; ///< Kinds for upload_once.

    /// Saves in another process, which is killed when that request arrives; 0 for none. Returns how many
    /// requests there were.
    int save(int killedAt, bool isDone, int kind = int(GetParam()))
    {
        std::atomic<pid_t> saver = 0;
        on.proxy->forgetRequests();
        on.proxy->onRequest([&, this](const FaultProxy::Request& request) -> std::optional<Fault> {
            if (request.number != killedAt)
                return std::nullopt;
            while (saver == 0)
                usleep(100);
            kill(saver, SIGKILL);
            return isDone ? std::nullopt : std::optional(Fault::reset());
        });
        const std::string program = QUILLET_UPLOAD_ONCE, as = std::to_string(kind),
                          address = on.proxy->address(), source = m_source, known = on.entry(m_wheel).etag,
                          path = m_wheel, notes = m_notes.string();
        setenv("QUILLET_PASSWORD", on.server.password().c_str(), 1);
        const char* arguments[] = {program.c_str(), as.c_str(),     address.c_str(), notes.c_str(),
                                   path.c_str(),    source.c_str(), known.c_str(),   nullptr};
        pid_t started = 0;
        posix_spawn(&started, program.c_str(), nullptr, nullptr, const_cast<char**>(arguments), environ);
        saver = started;
        int state = 0;
        waitpid(started, &state, 0);
        const int requests = int(on.proxy->requests().size());
        on.proxy->onRequest({});
        EXPECT_TRUE(killedAt > 0 ? WIFSIGNALED(state) : WIFEXITED(state) && WEXITSTATUS(state) == 0);
        return requests;
    }

    DriveOnServer on{GetParam()};
    std::string m_source = on.local.write("source", kNew).string();
    boost::filesystem::path m_notes = on.local.path() / "notes";
    std::string m_wheel = "/run0/wheel"; ///< In another folder for each run: dead locks remain a while.
};

INSTANTIATE_TEST_SUITE_P(Each, KillingTest, testing::ValuesIn(TestServer::kKinds),
                         [](const auto& info) { return TestServer::name(info.param); });

TEST_P(KillingTest, LeavesTheOldOrTheNewFileAndTheNextSaveGetsThroughOrSaysWhoHasTheLock)
{
    REQUIRE_SERVER(on.server);
    int requests = 0;
    for (int run = 0; run <= 2 * requests; ++run) {
        const int killedAt = (run + 1) / 2;
        SCOPED_TRACE("killed at request " + std::to_string(killedAt) + (run % 2 ? ", done" : ", not done"));
        const std::string folder = "run" + std::to_string(run);
        m_wheel = "/" + folder + "/wheel";
        ASSERT_EQ(on.server.request("MKCOL", folder + '/').status, 201);
        on.put(m_wheel, kOld);
        const std::string known = on.entry(m_wheel).etag;
        const int count = save(killedAt, run % 2);
        requests = run == 0 ? count : requests;
        // Some servers are still writing for the dead process, under its lock.
        std::string content = on.content(m_wheel);
        for (int tries = 0; tries < 100 && content != kOld && content != kNew; ++tries) {
            usleep(50000);
            content = on.content(m_wheel);
        }
        EXPECT_TRUE(content == kOld || content == kNew) << content.size() << " bytes";
        EXPECT_EQ(TestSupport::contentOf(m_source), kNew);
        for (const std::string& name : on.server.names(folder))
            EXPECT_TRUE(name == "wheel" || name.starts_with(".quillet-")) << name;

        DriveEntry entry;
        const DriveResult result =
            on.drive->upload({.path = m_wheel, .source = m_source, .known = known}, entry, {});
        EXPECT_TRUE(result.isOk() || result.state == State::Locked ||
                    (result.state == State::Changed && content == kNew))
            << result.detail;
        if (result.isOk()) {
            EXPECT_EQ(on.content(m_wheel), kNew);
        }
    }
}

TEST_P(KillingTest, WhatIsLeftOnTheDriveGoesWithTheNextSignInAlsoWhereItIsNotListed)
{
    REQUIRE_SERVER(on.server);
    ASSERT_EQ(on.server.request("MKCOL", "run0/").status, 201);
    on.put(m_wheel, kOld);
    const auto left = [this] { return on.server.names().size() + on.server.names("run0").size() - 2; };
    const auto signIn = [this](const std::optional<DriveTraits>& known) {
        on.drive = driveOf(on.server, on.proxy->address());
        on.drive->notesIn(m_notes.string());
        EXPECT_EQ(on.drive->connect(known, {}).detail, "");
    };
    save(12, true, kProbing);
    EXPECT_EQ(left(), 1u) << "the probe's folder";
    signIn(knownTraits(GetParam()));
    // A server that is still writing for the dead process refuses; then it is removed at a later sign-in.
    for (int tries = 0; tries < 100 && left() > 0; ++tries) {
        EXPECT_FALSE(boost::filesystem::is_empty(m_notes)) << "what is left is forgotten";
        usleep(50000);
        signIn(knownTraits(GetParam()));
    }
    EXPECT_EQ(left(), 0u);

    // Its notes are lost, too.
    save(12, true, kProbing);
    boost::filesystem::remove_all(m_notes);
    const size_t unlisted = GetParam() == TestServer::Kind::Nginx ? 1 : 0;
    signIn(std::nullopt);
    for (int tries = 0; tries < 20 && left() > unlisted; ++tries) {
        usleep(50000);
        signIn(std::nullopt);
    }
    EXPECT_EQ(left(), unlisted);

    if (knownTraits(GetParam()).movesOntoExisting) {
        const size_t before = left();
        save(0, false, kUnguarded);
        int put = 0;
        for (const auto& request : on.proxy->requests())
            put = request.method == "PUT" ? request.number : put;
        EXPECT_EQ(left(), before);
        save(put + 1, true, kUnguarded);
        EXPECT_EQ(left(), before + 1) << "the new version, not yet in its place";
        signIn(knownTraits(GetParam()));
        EXPECT_EQ(left(), before);
        EXPECT_EQ(on.content(m_wheel), kNew) << "what was saved first";
    }
    EXPECT_TRUE(boost::filesystem::is_empty(m_notes));
}

} // namespace
