// A second system behind the client: a real issue tracker, from the sign-in to the refused version.

#include "Server/Base/Strings.h"
#include "Tests/Server/Itemhub/Fixture.h"
#include "Tests/Server/Skyvault/Client/ScriptedServer.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Servers/TestServer.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <algorithm>
#include <atomic>

namespace {

using TestSupport::Fault;
using TestSupport::FaultProxy;
namespace Web = Corvane::Itemstore::WebServices;
using Kind = Web::ItemhubException::Kind;
using State = Vs::UploadQueuedFileInfo::State;

constexpr const char* kPassword = "correct horse battery";

/// Attaches a file by curl, like a person on the tracker's own page.
constexpr const char* kAttach = R"sh(
set -e
token=$(curl -sf -H "X-Redmine-API-Key: $KEY" -H "Content-Type: application/octet-stream" --data-binary "$CONTENT" \
    "${ADDRESS}uploads.json" | sed 's/.*"token":"\([^"]*\)".*/\1/')
curl -sf -X PUT -H "X-Redmine-API-Key: $KEY" -H "Content-Type: application/json" \
    -d "{\"issue\": {\"uploads\": [{\"token\": \"$token\", \"filename\": \"$NAME\"}]}}" "${ADDRESS}issues/$ISSUE.json"
)sh";

/// All tests share the tracker, which takes a while to start.
class RedmineTest : public ItemhubTest
{
protected:
    void SetUp() override
    {
        if (!server().missing().empty() && TestSupport::serversAreRequired())
            FAIL() << "Not installed: " << server().missing();
        if (!server().missing().empty())
            GTEST_SKIP() << "NOTICE: not installed: " << server().missing();
        ASSERT_TRUE(hub().signIn(trackerAccess("ada"), false));
    }
    void TearDown() override
    {
        if (!server().missing().empty())
            return;
        proxy().onRequest({});
        // All tests share the accounts.
        for (const auto& each : failed())
            hub().deleteARecoveryFile(each.uploadQueuedFile(), true);
        for (size_t i = 0; HasFailure() && i < errors.size(); ++i)
            std::cerr << Vs::Strings::narrow(errors[i]) << std::endl;
    }
    static std::vector<Vs::UploadQueuedFileInfo> failed()
    {
        std::vector<Vs::UploadQueuedFileInfo> files;
        hub().getAllRecoverFiles(files);
        return files;
    }

    static ScriptedServer& server()
    {
        static ScriptedServer server("issue_tracker.py");
        return server;
    }
    static std::string told(const char* what)
    {
        return QJsonDocument::fromJson(QByteArray::fromStdString(server().address()))
            .object()[QLatin1String(what)]
            .toString()
            .toStdString();
    }
    static FaultProxy& proxy()
    {
        static FaultProxy proxy(QUrl(QString::fromStdString(told("address"))).port());
        return proxy;
    }
    static std::string address() { return "redmine+" + proxy().address(); }
    static Vs::Itemhub::Access trackerAccess(const char* person)
    {
        Vs::Itemhub::Access access;
        access.address = address();
        access.token = told(person);
        return access;
    }
    static void attach(std::int64_t issue, const std::string& name, const std::string& content)
    {
        TestSupport::ProcessOptions options;
        options.environment = {"KEY=" + told("bob"), "ADDRESS=" + told("address"),
                               "ISSUE=" + std::to_string(issue), "NAME=" + name, "CONTENT=" + content};
        const auto result = TestSupport::runProcess("/bin/sh", {"-c", kAttach}, options);
        EXPECT_EQ(result.exitCode, 0) << result.errors << result.output;
    }
    static std::int64_t itemIdOf(const Path& file) { return hub().itemOf(file)->itemId; }
    static Web::Item itemOf(const Path& file) { return hub().getItemById(int(itemIdOf(file))); }
    static std::wstring uriOf(const Path& file) { return Vs::Strings::widen(attachmentOf(file).uri()); }
    /// An item with one version.
    static Path itemWith(const std::wstring& name, const std::string& content, const std::wstring& label = {})
    {
        const Path file = newItem(name);
        save(file, content, label);
        EXPECT_TRUE(arrive());
        return file;
    }
    /// The answers to requests of that method whose target contains that part are lost, once for each.
    static void loseAnswers(const std::string& method, const std::string& part)
    {
        proxy().onRequest([=, lost = std::make_shared<std::atomic<bool>>(false)](
                              const FaultProxy::Request& request) -> std::optional<Fault> {
            if (request.method != method || request.target.find(part) == std::string::npos ||
                lost->exchange(true))
                return std::nullopt;
            return Fault::loseAnswer();
        });
    }
};

TEST_F(RedmineTest, AnItemWithItsVersionsIsMadeFoundAndFetchedThere)
{
    ASSERT_TRUE(hub().signInWithPassword(address(), "", "ada", kPassword, false));
    EXPECT_EQ(hub().accountName(), L"ada");
    EXPECT_EQ(hub().serviceAddress(), address());
    const std::vector<Web::Workspace> workspaces = hub().getWorkspaces();
    ASSERT_EQ(workspaces.size(), 1u) << "a project that isn't ada's shows, or a closed one";
    EXPECT_EQ(workspaces[0].name(), "Designs");
    EXPECT_EQ(workspaces[0].role(), "writer");

    const Path file = itemWith(L"Spindle", "first", L"For review");
    save(file, "second");
    EXPECT_TRUE(arrive());
    const auto versions = versionsOf(file);
    ASSERT_EQ(versions.size(), 2u);
    EXPECT_EQ(versions[0].label, "For review");
    EXPECT_EQ(versions[0].author, "ada");
    EXPECT_EQ(versions[0].sha256, sha256("first"));
    EXPECT_EQ(versions[1].label, "");
    EXPECT_EQ(versions[1].madeFrom, 1);
    EXPECT_EQ(hub().itemOf(file)->version, 2);
    EXPECT_EQ(attachmentOf(file).docType(), "VeloraDocType");
    EXPECT_EQ(hub().attachmentName(uriOf(file)), L"Spindle.vlra");

    // The content of the label isn't a comment.
    EXPECT_TRUE(hub().getComments(itemOf(file)).empty());
    EXPECT_EQ(hub().addComment(itemOf(file), L"Größer, <b>bitte</b>\nund runder").author, "ada");
    ASSERT_EQ(hub().getComments(itemOf(file)).size(), 1u);
    EXPECT_EQ(hub().getComments(itemOf(file))[0].body, "Größer, <b>bitte</b>\nund runder");

    hub().setFavorite(int(itemIdOf(file)), false);
    EXPECT_FALSE(itemOf(file).isFavourite());
    hub().setFavorite(int(itemIdOf(file)), true);
    EXPECT_TRUE(itemOf(file).isFavourite());
    EXPECT_EQ(hub().getFavorites().front()->getCaption(), L"Spindle");
    const auto found = hub().search(L"spind");
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].id(), itemIdOf(file));
    EXPECT_TRUE(hub().search(L"nowhere").empty());
    EXPECT_TRUE(std::ranges::any_of(hub().getItems(workspaces[0]), [&](const Web::Item& each) {
        return each.id() == itemIdOf(file) && each.isFavourite();
    }));
    ASSERT_TRUE(hub().itemOf(Path(hub().addNewItem(&type(), 1, 1, long(itemIdOf(file)), L"Linked", L""))));

    // Somebody else gets it from there, and also what was attached on the tracker's page.
    const std::wstring uri = uriOf(file);
    attach(itemIdOf(file), "sheet.txt", "by hand");
    ASSERT_TRUE(hub().signIn(trackerAccess("bob"), false));
    EXPECT_EQ(TestSupport::contentOf(hub().downloadAttachment(uri + L".xml")), "second");
    const auto attachments = hub().getItemAttachments({}, hub().getItemById(int(found[0].id())));
    ASSERT_EQ(attachments.size(), 2u);
    EXPECT_EQ(attachments[1].docType(), "");
    EXPECT_EQ(TestSupport::contentOf(hub().downloadAttachment(Vs::Strings::widen(attachments[1].uri()))),
              "by hand");
}

TEST_F(RedmineTest, AVersionOfAnOlderOneIsRefusedAlsoWhereAnotherCameInBetween)
{
    const Path file = itemWith(L"Wheel", "first");
    attach(itemIdOf(file), "Wheel.vlra", "of another");
    save(file, "stale");
    ASSERT_TRUE(until([&] { return recoveries == 1; }));
    ASSERT_EQ(failed().size(), 1u);
    EXPECT_EQ(failed()[0].state(), State::Outdated);
    EXPECT_EQ(versionsOf(file).size(), 2u);
    const std::wstring queued = failed()[0].uploadQueuedFile();
    ASSERT_TRUE(hub().recoverQueuedBackgroundUpload(queued)) << "it goes on top";
    hub().deleteARecoveryFile(queued, false);
    EXPECT_TRUE(arrive());
    ASSERT_EQ(versionsOf(file).size(), 3u);
    EXPECT_EQ(versionsOf(file)[2].madeFrom, 2);

    // The tracker itself accepts the second one; the client removes its own again.
    proxy().onRequest([&, isFirst = std::make_shared<std::atomic<bool>>(true)](
                          const FaultProxy::Request& request) -> std::optional<Fault> {
        if (request.method == "POST" && request.target.find("/uploads") != std::string::npos)
            return std::nullopt;
        if (request.method == "PUT" && isFirst->exchange(false))
            attach(itemIdOf(file), "Wheel.vlra", "quicker");
        return std::nullopt;
    });
    save(file, "slower");
    EXPECT_TRUE(until([&] { return recoveries == 2; }))
        << hub().pendingUploads().size() << ' ' << versionsOf(file).size() << ' ' << recoveries
        << (errors.empty() ? "" : Vs::Strings::narrow(errors.back()));
    proxy().onRequest({});
    const auto versions = versionsOf(file);
    ASSERT_EQ(versions.size(), 4u);
    EXPECT_EQ(versions[3].author, "Bob Example");
}

TEST_F(RedmineTest, WhatWasDoneAndWhoseAnswerWasLostIsNotDoneAgain)
{
    loseAnswers("POST", "/issues.json");
    const Path file = newItem(L"Once");
    EXPECT_EQ(hub().search(L"Once").size(), 1u);

    loseAnswers("PUT", "/issues/");
    save(file, "content", L"Label");
    EXPECT_TRUE(arrive());
    ASSERT_EQ(versionsOf(file).size(), 1u);
    EXPECT_EQ(versionsOf(file)[0].label, "Label");

    loseAnswers("PUT", "/issues/");
    EXPECT_EQ(hub().addComment(itemOf(file), L"Said once").body, "Said once");
    EXPECT_EQ(hub().getComments(itemOf(file)).size(), 1u);

    // An interrupted download starts again, as the tracker serves no ranges.
    const std::string large(3'000'000, 'x');
    save(file, large);
    EXPECT_TRUE(arrive());
    const std::wstring uri = uriOf(file);
    ASSERT_TRUE(hub().signIn(trackerAccess("bob"), false));
    proxy().onRequest([cuts = std::make_shared<std::atomic<int>>(0)](
                          const FaultProxy::Request& request) -> std::optional<Fault> {
        return request.target.find("/download/") != std::string::npos && ++*cuts < 3
                   ? std::optional(Fault::cutAnswer(1'000'000))
                   : std::nullopt;
    });
    EXPECT_TRUE(TestSupport::contentOf(hub().downloadAttachment(uri)) == large);
}

TEST_F(RedmineTest, AnothersVersionIsTold)
{
    const auto isTold = [this] { return std::ranges::count(kinds, "version.added") > 0; };
    const Path file = itemWith(L"Watched", "first");
    EXPECT_TRUE(until(isTold));
    kinds.clear();
    attach(itemIdOf(file), "Watched.vlra", "second");
    EXPECT_TRUE(until(isTold));
}

TEST_F(RedmineTest, WhoMayNotIsToldSo)
{
    const Path file = itemWith(L"Kept", "first");
    const std::wstring uri = uriOf(file);
    Vs::Itemhub::Access wrong = trackerAccess("ada");
    wrong.token = "0123456789abcdef0123456789abcdef01234567";
    EXPECT_EQ(kindOf([&] { hub().signIn(wrong, false); }), Kind::NotSignedIn);
    EXPECT_EQ(kindOf([&] { hub().signInWithPassword(address(), "", "ada", "wrong", false); }),
              Kind::NotSignedIn);
    EXPECT_EQ(kindOf([&] { hub().signInByBrowser(address(), "", false, [](auto&) { return true; }); }),
              Kind::NotFound);
    EXPECT_EQ(hub().accountName(), L"ada") << "who was signed in stays";
    EXPECT_EQ(kindOf([] { std::ignore = hub().addNewItem(&type(), 77, 0, 0, L"n", L""); }), Kind::NotFound);
    EXPECT_EQ(kindOf([] { std::ignore = hub().getItemById(123456); }), Kind::NotFound);
    EXPECT_EQ(
        kindOf([&] { std::ignore = hub().downloadAttachment(L"http://127.0.0.1:1/attachments/1?issue=1"); }),
        Kind::BadRequest);

    ASSERT_TRUE(hub().signIn(trackerAccess("mia"), false));
    EXPECT_EQ(hub().getWorkspaceById(1).role(), "admin");
    EXPECT_EQ(hub().getWorkspaceById(3).role(), "reader") << "a closed project";
    ASSERT_TRUE(hub().signIn(trackerAccess("eve"), false));
    EXPECT_EQ(hub().getWorkspaceById(1).role(), "reader");
    const Path mine = hub().downloadAttachment(uri);
    EXPECT_EQ(TestSupport::contentOf(mine), "first");
    EXPECT_EQ(kindOf([&] { hub().setFavorite(int(itemIdOf(mine)), true); }), Kind::Forbidden);
    save(mine, "eve's");
    ASSERT_TRUE(until([&] { return recoveries == 1; }));
    EXPECT_EQ(versionsOf(mine).size(), 1u);
}

} // namespace
