// The queue of uploads: every save arrives, once and in order, whatever fails and whatever is killed when.

#include "Server/Base/Strings.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/Server/Itemhub/Fixture.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/operations.hpp>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using TestSupport::Fault;
using TestSupport::FaultProxy;
namespace Web = Corvane::Itemstore::WebServices;
namespace fs = boost::filesystem;
using State = Vs::UploadQueuedFileInfo::State;

class QueueTest : public ItemhubTest
{
protected:
    void SetUp() override { signIn(); }

    static std::vector<std::string> hashesOf(const Path& file)
    {
        std::vector<std::string> hashes;
        for (const Web::Version& version : versionsOf(file))
            hashes.push_back(version.sha256);
        return hashes;
    }
    static std::vector<std::string> hashed(const std::vector<std::string>& contents)
    {
        std::vector<std::string> hashes;
        for (const std::string& content : contents)
            hashes.push_back(sha256(content));
        return hashes;
    }
    static std::vector<Vs::UploadQueuedFileInfo> failed()
    {
        std::vector<Vs::UploadQueuedFileInfo> files;
        hub().getAllRecoverFiles(files);
        return files;
    }
    static void refuse(const std::string& part, int status, const std::string& code)
    {
        service().proxy().onRequest([=](const FaultProxy::Request& request) -> std::optional<Fault> {
            if (request.method == "GET" || request.target.find(part) == std::string::npos)
                return std::nullopt;
            return Fault::answer(status, R"({"status": )" + std::to_string(status) + R"(, "code": ")" + code +
                                             R"(", "detail": "Not today."})");
        });
    }
};

TEST_F(QueueTest, EverySaveBecomesAVersionInItsOrderAndOnlyMarkedOnesHaveALabel)
{
    const Path file = newItem(L"Wheel"), other = newItem(L"Axle");
    save(file, "1", L"Document created");
    save(file, "2");
    save(other, "x");
    save(file, std::string(3'000'000, '3'), L"Thicker");
    save(file, "");
    ASSERT_TRUE(arrive());
    const std::vector<Web::Version> versions = versionsOf(file);
    EXPECT_EQ(hashesOf(file), hashed({"1", "2", std::string(3'000'000, '3'), ""}));
    ASSERT_EQ(versions.size(), 4u);
    EXPECT_EQ(versions[0].label, "Document created");
    EXPECT_EQ(versions[1].label, "");
    EXPECT_EQ(versions[2].label, "Thicker");
    EXPECT_EQ(versions[2].madeFrom, 2);
    EXPECT_EQ(hub().itemOf(file)->version, 4);
    EXPECT_EQ(hashesOf(other), hashed({"x"}));
    EXPECT_TRUE(hub().pendingUploads().empty());
    EXPECT_TRUE(errors.empty());

    // An event that isn't about a save, and a file that isn't an item's.
    Vs::Document* document = Vs::DocumentMgr::get()->document(file.wstring());
    Vs::DocumentEvent event(document);
    Vs::DocumentEventSource::get()->fireDocumentUpdated(&event);
    EXPECT_TRUE(hub().pendingUploads().empty());
    EXPECT_TRUE(hub().isItemhubDocument(document));
    EXPECT_FALSE(hub().isItemhubDocument(nullptr));
}

TEST_F(QueueTest, WhatIsSavedWithoutTheServiceWaitsAsItWas)
{
    const Path file = newItem(L"Wheel");
    service().stop();
    save(file, "1", L"Label");
    save(file, "2");
    ASSERT_EQ(hub().pendingUploads().size(), 2u);
    EXPECT_EQ(hub().pendingUploads()[0].label(), L"Label");
    EXPECT_EQ(TestSupport::contentOf(hub().pendingUploads()[0].uploadQueuedFile()), "1");
    EXPECT_FALSE(hub().waitForUploads(std::chrono::milliseconds(100)));
    // It waits while signed out, too.
    hub().signOut();
    save(file, "3");
    EXPECT_EQ(hub().pendingUpload(file)->bytes(), 1u);
    service().start();
    EXPECT_EQ(hub().pendingUploads().size(), 3u);
    signIn();
    ASSERT_TRUE(arrive());
    EXPECT_EQ(hashesOf(file), hashed({"1", "2", "3"}));
    // What nobody reported is found at the next sign-in.
    hub().signOut();
    fs::remove(file);
    TestSupport::overwrite(file, "4");
    signIn();
    ASSERT_TRUE(arrive());
    EXPECT_EQ(hashesOf(file), hashed({"1", "2", "3", "4"}));
    fs::remove(file);
    TestSupport::overwrite(file, "4");
    signIn();
    ASSERT_TRUE(arrive());
    EXPECT_EQ(hashesOf(file).size(), 4u) << "it has the content that the service has";
}

TEST_F(QueueTest, AnUploadGoesOnWhereItWasCut)
{
    const Path file = newItem(L"Wheel");
    const std::string content(5'000'000, 'w');
    std::atomic<std::uint64_t> lastOffset = 0;
    service().proxy().onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
        if (request.method != "PATCH")
            return std::nullopt;
        lastOffset = std::stoull(request.headers.at("upload-offset"));
        return request.ofMethod % 4 == 0 ? std::nullopt : std::optional(Fault::cutRequest(1'000'000));
    });
    service().proxy().forgetRequests();
    save(file, content);
    EXPECT_TRUE(until([&] {
        hub().uploadNow();
        return hub().pendingUploads().empty();
    }));
    EXPECT_EQ(hashesOf(file), hashed({content}));
    EXPECT_GE(lastOffset, 1'000'000u) << "what had arrived isn't sent again";

    // Nor is what arrives after the service was asked, by a request that is still pending.
    const std::string other(2'000'000, 'o');
    service().proxy().forgetRequests();
    service().proxy().onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
        if (request.method == "PATCH")
            lastOffset = std::stoull(request.headers.at("upload-offset"));
        if (request.method == "PATCH" && request.ofMethod == 1)
            return Fault::cutRequest(1'000'000);
        return request.method == "HEAD" && request.ofMethod == 1
                   ? std::optional(Fault::answer(200, {}, {"Upload-Offset: 0"}))
                   : std::nullopt;
    });
    save(file, other);
    EXPECT_TRUE(until([&] {
        hub().uploadNow();
        return hub().pendingUploads().empty();
    }));
    EXPECT_EQ(hashesOf(file), hashed({content, other}));
    EXPECT_GE(lastOffset, 1'000'000u);
    const auto requests = service().proxy().requests();
    EXPECT_EQ(std::count_if(requests.begin(), requests.end(),
                            [](const FaultProxy::Request& request) {
                                return request.method == "POST" && request.target.starts_with("/uploads");
                            }),
              1);
}

TEST_F(QueueTest, AVersionMadeFromAnOldOneIsAStateThatTheUserDecidesOn)
{
    const Path file = newItem(L"Wheel"), other = newItem(L"Axle");
    save(file, "1");
    ASSERT_TRUE(arrive());
    ASSERT_TRUE(makeVersionElsewhere(file, "theirs"));
    save(file, "mine", L"Label");
    save(file, "mine too");
    save(other, "x");
    ASSERT_TRUE(until([&] { return recoveries == 1 && hub().pendingUploads().size() == 2; }))
        << "what is another document's doesn't wait for it";
    ASSERT_EQ(failed().size(), 1u);
    EXPECT_EQ(failed()[0].state(), State::Outdated);
    EXPECT_NE(failed()[0].reason().find(L"bob"), std::wstring::npos) << "who";
    EXPECT_EQ(errors, std::vector<std::wstring>{failed()[0].reason()});
    EXPECT_EQ(failed()[0].fileName(), L"Wheel.vlra");
    EXPECT_EQ(hashesOf(file), hashed({"1", "theirs"})) << "nothing is lost there";

    // Like the notification's command.
    const std::wstring queued = failed()[0].uploadQueuedFile();
    const bool recovered = !hub().recoverQueuedBackgroundUpload(queued);
    hub().deleteARecoveryFile(queued, recovered);
    EXPECT_EQ(deleted, 1);
    ASSERT_TRUE(arrive());
    EXPECT_EQ(hashesOf(file), hashed({"1", "theirs", "mine", "mine too"}));
    EXPECT_EQ(versionsOf(file)[2].label, "Label");
    EXPECT_FALSE(hub().recoverQueuedBackgroundUpload(queued)) << "it isn't there any more";
    EXPECT_FALSE(hub().recoverQueuedBackgroundUpload("/etc/passwd"));
    hub().deleteARecoveryFile(L"/etc/passwd", true);
    EXPECT_TRUE(fs::exists("/etc/passwd"));
}

TEST_F(QueueTest, WhatIsRefusedStaysUntilItIsAskedForAgainOrGivenUp)
{
    const Path file = newItem(L"Wheel");
    refuse("/attachments", 403, "role");
    save(file, "1");
    save(file, "2");
    ASSERT_TRUE(until([&] { return failed().size() == 1; }));
    EXPECT_EQ(failed()[0].state(), State::Failed);
    EXPECT_NE(failed()[0].reason().find(L"Not today."), std::wstring::npos);
    EXPECT_TRUE(until([&] { return recoveries == 1 && errors.size() == 1; }));
    // Another run finds it unchanged.
    hub().signOut();
    service().proxy().onRequest({});
    signIn();
    EXPECT_EQ(failed().size(), 1u);
    hub().deleteARecoveryFile(failed()[0].uploadQueuedFile(), true);
    ASSERT_TRUE(arrive());
    EXPECT_EQ(hashesOf(file), hashed({"2"})) << "what came behind it goes on";

    refuse("/uploads", 507, "full");
    save(file, "3");
    ASSERT_TRUE(until([&] { return failed().size() == 1; }));
    service().proxy().onRequest({});
    EXPECT_TRUE(hub().recoverQueuedBackgroundUpload(failed()[0].uploadQueuedFile()));
    ASSERT_TRUE(arrive());
    EXPECT_EQ(hashesOf(file), hashed({"2", "3"}));
}

TEST_F(QueueTest, LostAnswersAndForgottenUploadsMakeNoSecondVersion)
{
    const Path file = newItem(L"Wheel");
    // The service executes every request, and its answer is lost, once.
    std::atomic<int> lost = 0;
    std::set<std::string> seen;
    service().proxy().onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
        if (request.method == "GET" || !seen.insert(request.method + request.target).second)
            return std::nullopt;
        ++lost;
        return Fault::loseAnswer();
    });
    for (const char* content : {"1", "2", "3"}) {
        save(file, content);
        ASSERT_TRUE(until([&] {
            hub().uploadNow();
            return hub().pendingUploads().empty();
        }));
    }
    EXPECT_GE(lost, 6);
    EXPECT_EQ(hashesOf(file), hashed({"1", "2", "3"}));

    // The service forgets the upload, or what it was told about it, between two requests.
    for (const char* code : {"no_upload", "upload_lost"}) {
        bool told = false;
        service().proxy().onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
            if (request.method != "POST" || request.target.find("/versions") == std::string::npos ||
                std::exchange(told, true))
                return std::nullopt;
            return Fault::answer(std::string(code) == "no_upload" ? 404 : 409,
                                 std::string(R"({"status": 404, "code": ")") + code +
                                     R"(", "detail": "Gone."})");
        });
        save(file, code);
        ASSERT_TRUE(arrive());
    }
    EXPECT_EQ(hashesOf(file), hashed({"1", "2", "3", "no_upload", "upload_lost"}));
    EXPECT_TRUE(errors.empty());
}

TEST_F(QueueTest, TwoClientsThatRaceLoseNothing)
{
    const Path file = newItem(L"Wheel");
    save(file, "0");
    ASSERT_TRUE(arrive());
    std::vector<std::string> contents{"0"};
    for (int i = 1; i <= 3; ++i) {
        const std::string mine = "mine " + std::to_string(i), theirs = "theirs " + std::to_string(i);
        bool haveTheirs = false;
        std::thread other([&] { haveTheirs = makeVersionElsewhere(file, theirs); });
        save(file, mine);
        other.join();
        ASSERT_TRUE(until([] { return failed().size() == hub().pendingUploads().size(); }));
        for (const auto& each : failed())
            EXPECT_TRUE(hub().recoverQueuedBackgroundUpload(each.uploadQueuedFile()));
        ASSERT_TRUE(arrive());
        contents.push_back(mine);
        if (haveTheirs)
            contents.push_back(theirs);
    }
    std::vector<std::string> found = hashesOf(file), wanted = hashed(contents);
    std::sort(found.begin(), found.end());
    std::sort(wanted.begin(), wanted.end());
    EXPECT_EQ(found, wanted);
}

/// Runs of another process, with a separate profile, which are killed.
class KilledQueueTest : public ItemhubTest
{
protected:
    void SetUp() override
    {
        const std::string token = service().token(account(), "writer");
        m_token = m_folder.write("token.json", R"({"address": ")" + service().address() +
                                                   R"(", "customer": "acme", "token": ")" + token + "\"}");
        fs::permissions(m_token, fs::owner_read | fs::owner_write);
        ASSERT_TRUE(hub().signIn(access(token), false));
    }

    TestSupport::ProcessResult run(const std::vector<std::string>& words) const
    {
        std::vector<std::string> all{(m_folder.path() / "profile").string()};
        all.insert(all.end(), words.begin(), words.end());
        TestSupport::ProcessOptions options;
        options.environment = {"QUILLET_ITEMHUB_TOKEN_FILE=" + m_token.string()};
        return TestSupport::runProcess(QUILLET_ITEM_CLIENT, all, options);
    }
    /// The same as a child process that the caller waits for.
    pid_t start(const std::vector<std::string>& words, bool isTraced) const
    {
        std::vector<std::string> all{QUILLET_ITEM_CLIENT, (m_folder.path() / "profile").string()};
        all.insert(all.end(), words.begin(), words.end());
        const pid_t child = fork();
        if (child == 0) {
            setenv("QUILLET_ITEMHUB_TOKEN_FILE", m_token.c_str(), 1);
            if (isTraced)
                ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            std::vector<char*> arguments;
            for (std::string& word : all)
                arguments.push_back(word.data());
            arguments.push_back(nullptr);
            execv(arguments[0], arguments.data());
            _exit(127);
        }
        return child;
    }
    /// New items' files, in the profile of those runs.
    std::vector<std::string> newItems(int count) const
    {
        std::istringstream output(run({"new", std::to_string(count)}).output);
        std::vector<std::string> files;
        for (std::string line; std::getline(output, line);)
            files.push_back(line);
        EXPECT_EQ(files.size(), size_t(count));
        return files;
    }
    /// The contents' hashes of the item's one attachment, by its record; two attachments are a failure.
    std::vector<std::string> arrivedOf(const std::string& file) const
    {
        const std::string record = TestSupport::contentOf(Path(file).parent_path() / ".item.json");
        const size_t at = record.find("\"item\":");
        EXPECT_NE(at, std::string::npos) << file;
        const int item = std::atoi(record.c_str() + at + 7);
        std::vector<std::string> hashes;
        const auto attachments = hub().getItemAttachments({}, hub().getItemById(item));
        EXPECT_LE(attachments.size(), 1u);
        for (const auto& attachment : attachments)
            for (const Web::Version& version : hub().getVersions(attachment))
                hashes.push_back(version.sha256);
        return hashes;
    }

    TestSupport::ScratchFolder m_folder;
    Path m_token;
};

TEST_F(KilledQueueTest, AtEachRequestASaveArrivesOnce)
{
    // Each request of two saves, before the service has received it and after it has executed it.
    constexpr int kMostRequests = 40;
    const std::vector<std::string> files = newItems(kMostRequests);
    for (int number = 1; number <= kMostRequests; ++number) {
        const std::string& file = files[size_t(number) - 1];
        service().proxy().forgetRequests();
        std::atomic<pid_t> child = 0;
        std::atomic<int> count = 0;
        service().proxy().onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
            if (request.target.find("/events") != std::string::npos)
                return std::nullopt;
            if (++count != (number + 1) / 2)
                return std::nullopt;
            while (child == 0)
                usleep(1000);
            kill(child, SIGKILL);
            return number % 2 == 0 ? Fault::loseAnswer() : Fault::reset();
        });
        const std::string first = "first " + std::to_string(number), second = std::string(100'000, 's');
        child = start({"save", file, first, second}, false);
        int state = 0;
        waitpid(child, &state, 0);
        service().proxy().onRequest({});
        const bool wasKilled = WIFSIGNALED(state);
        ASSERT_EQ(run({"wait"}).exitCode, 0) << number;
        const auto arrived = arrivedOf(file);
        // Killed while it signs in, it has saved nothing, and on a busy machine perhaps not yet the second.
        std::vector<std::string> saved;
        if (fs::exists(file))
            saved.push_back(sha256(first));
        if (fs::exists(file) && TestSupport::contentOf(file) == second)
            saved.push_back(sha256(second));
        EXPECT_EQ(arrived, saved) << number;
        if (!wasKilled) {
            EXPECT_GT(number, 16) << "there are more requests than that";
            return;
        }
    }
    FAIL() << "the save has no end";
}

/// What happens to one call of a save.
enum class Fate { Kill, Fail };

/// Whether the stopped child is about to make a call that changes a file.
bool isBeforeChange(pid_t child)
{
    constexpr std::uint64_t kCalls[] = {SYS_write,    SYS_link,  SYS_linkat, SYS_rename,
                                        SYS_renameat, SYS_mkdir, SYS_unlink};
    __ptrace_syscall_info info{};
    if (ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info) < 0 ||
        info.op != PTRACE_SYSCALL_INFO_ENTRY)
        return false;
    if (info.entry.nr == SYS_openat)
        return (info.entry.args[2] & O_CREAT) != 0;
    return std::find(std::begin(kCalls), std::end(kCalls), info.entry.nr) != std::end(kCalls);
}

/// At the stop before a call: skips it. At the stop after it: makes it return that the disk is full.
void skipCall(pid_t child, bool isBefore)
{
#ifdef __x86_64__
    user_regs_struct registers{};
    ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    if (isBefore)
        registers.orig_rax = ~0ULL;
    else
        registers.rax = static_cast<unsigned long long>(-ENOSPC);
    ptrace(PTRACE_SETREGS, child, nullptr, &registers);
#endif
}

/// Follows a child from its first SIGSTOP to the call of that number, counted from 1, of those that change
/// files, and applies the fate to it. False if its second SIGSTOP comes first.
bool reach(pid_t child, int number, Fate fate)
{
    int state = 0, stops = 0, calls = 0;
    bool isReached = false, isSkipping = false;
    while (waitpid(child, &state, 0) == child && WIFSTOPPED(state)) {
        if (WSTOPSIG(state) == SIGSTOP && ++stops == 1)
            ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
        if (isSkipping)
            skipCall(child, false);
        isSkipping = false;
        if (stops == 1 && isBeforeChange(child) && ++calls == number) {
            isReached = true;
            if (fate == Fate::Kill)
                kill(child, SIGKILL);
            else
                skipCall(child, isSkipping = true);
        }
        ptrace(stops == 1 ? PTRACE_SYSCALL : PTRACE_CONT, child, nullptr, nullptr);
    }
    return isReached;
}

TEST_F(KilledQueueTest, AtEachCallOfASaveItArrivesOnce)
{
    constexpr int kMostCalls = 40;
    for (const Fate fate : {Fate::Kill, Fate::Fail}) {
        const std::vector<std::string> files = newItems(kMostCalls);
        std::map<std::string, std::string> contents;
        int number = 0;
        bool goesOn = true;
        for (; goesOn && number < kMostCalls; ++number) {
            const std::string& file = files[size_t(number)];
            goesOn =
                reach(start({"queue", file, "content " + std::to_string(number)}, true), number + 1, fate);
            if (fs::exists(file))
                contents[file] = TestSupport::contentOf(file);
        }
        EXPECT_FALSE(goesOn) << "the save has no end";
        EXPECT_GT(number, 5) << "there are more calls than that";
        EXPECT_GT(contents.size(), 3u) << "some of the calls come after the file is there";
        ASSERT_EQ(run({"wait"}).exitCode, 0);
        for (int i = 0; i < number; ++i) {
            const auto found = contents.find(files[size_t(i)]);
            EXPECT_EQ(arrivedOf(files[size_t(i)]), found == contents.end()
                                                       ? std::vector<std::string>()
                                                       : std::vector<std::string>{sha256(found->second)})
                << (fate == Fate::Kill ? "killed at " : "failed at ") << i + 1;
        }
    }
}

} // namespace
