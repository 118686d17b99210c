// The queue of uploads: every save arrives, once and in order, whatever fails.

#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/Server/Itemhub/Fixture.h"
#include "Tests/Support/Files.h"

#include <boost/filesystem/operations.hpp>

#include <atomic>

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

} // namespace
