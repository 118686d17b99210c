// Items, attachments, favourites, search, comments and events, as the program requests them.

#include "Server/Base/Strings.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Itemhub/IncrementalSearchThread.h"
#include "Tests/Server/Itemhub/Fixture.h"
#include "Tests/Support/Files.h"

#include <QEventLoop>

#include <boost/filesystem/operations.hpp>

namespace {

using TestSupport::Fault;
using TestSupport::FaultProxy;
namespace Web = Corvane::Itemstore::WebServices;
using Kind = Web::ItemhubException::Kind;
namespace fs = boost::filesystem;

class ItemsTest : public ItemhubTest
{
protected:
    void SetUp() override { signIn(); }

    /// An item whose attachment has that content.
    static Path itemWith(const std::wstring& name, const std::string& content)
    {
        const Path file = newItem(name);
        save(file, content);
        EXPECT_TRUE(arrive());
        return file;
    }
    static std::wstring uriOf(const Path& file) { return Vs::Strings::widen(attachmentOf(file).uri()); }
    /// How often contents were requested from now on.
    int& countContents()
    {
        service().proxy().onRequest([this](const FaultProxy::Request& request) -> std::optional<Fault> {
            m_contents += request.target.find("/content") != std::string::npos;
            return std::nullopt;
        });
        return m_contents;
    }

    /// The last request to the service, for a failure's message.
    static std::string lastRequests()
    {
        constexpr size_t kShown = 8;
        const auto requests = service().proxy().requests();
        std::string text = hub().isOnline() ? "online" : "not online";
        for (size_t i = requests.size() - std::min(requests.size(), kShown); i < requests.size(); ++i)
            text += '\n' + requests[i].method + ' ' + requests[i].target;
        return text;
    }

private:
    int m_contents = 0;
};

TEST_F(ItemsTest, ANewItemIsWhereItWasWantedAndItsFileIsTheItems)
{
    const Path first = newItem(L"a.b");
    EXPECT_EQ(first.filename(), "a.b.vlra");
    EXPECT_FALSE(fs::exists(first));
    const auto item = hub().itemOf(first);
    ASSERT_TRUE(item);
    EXPECT_EQ(item->workspaceId, 1);
    EXPECT_EQ(item->version, 0);
    const Web::Item made = hub().getItemById(hub().getWorkspaceById(1), int(item->itemId));
    EXPECT_EQ(made.caption(), "a.b");
    EXPECT_EQ(made.description(), "Notes");
    EXPECT_TRUE(hub().getItemAttachments(hub().getWorkspaceById(1), made).empty());

    // Linked, in the first writable workspace, with a name that no file could have.
    const Path odd =
        hub().addNewItem(&type(), 0, 1, long(item->itemId), L"../<b>\u202e/" + std::wstring(230, L'x'), L"");
    ASSERT_TRUE(hub().itemOf(odd));
    EXPECT_EQ(odd.parent_path().parent_path(), first.parent_path().parent_path());
    save(odd, "content");
    EXPECT_TRUE(arrive());
    EXPECT_EQ(versionsOf(odd).size(), 1u);

    EXPECT_EQ(kindOf([] { std::ignore = hub().addNewItem(&type(), 77, 0, 0, L"n", L""); }), Kind::NotFound);
    EXPECT_EQ(kindOf([] { std::ignore = hub().getItemById(123456); }), Kind::NotFound);
    EXPECT_EQ(kindOf([] { std::ignore = hub().getWorkspaceById(-1); }), Kind::NotFound);
    EXPECT_EQ(kindOf([&] { std::ignore = hub().getItemById(Web::Workspace(2, "Other"), int(item->itemId)); }),
              Kind::NotFound);
    EXPECT_FALSE(hub().itemOf(first.parent_path() / "other.vlra"));
    EXPECT_FALSE(hub().itemOf("/tmp/a.b.vlra"));
    EXPECT_FALSE(hub().itemOf({}));
}

TEST_F(ItemsTest, AReaderMayLookAndNothingElse)
{
    const Path file = itemWith(L"Wheel", "content");
    const std::wstring uri = uriOf(file);
    std::ignore = service().token("reader" + account(), "reader");
    ASSERT_TRUE(hub().signInWithPassword(service().address(), "acme", "reader" + account(),
                                         TestSupport::ItemService::password(), false));
    EXPECT_EQ(TestSupport::contentOf(hub().downloadAttachment(uri)), "content");
    EXPECT_EQ(kindOf([] { std::ignore = newItem(L"Mine"); }), Kind::Forbidden);
}

TEST_F(ItemsTest, ADownloadIsFetchedOnceAndAChangedFileIsKept)
{
    const Path file = itemWith(L"Wheel", "first");
    const std::wstring uri = uriOf(file);
    const int& contents = countContents();
    EXPECT_EQ(Path(hub().downloadAttachment(uri)), file) << "it is here";
    EXPECT_EQ(Path(hub().downloadAttachment(uri + L".xml")), file);
    EXPECT_EQ(contents, 0);

    // Another user's version replaces a file that nobody has changed and that isn't open.
    Vs::DocumentMgr::get()->close(Vs::DocumentMgr::get()->document(file.wstring()));
    ASSERT_TRUE(makeVersionElsewhere(file, "second"));
    EXPECT_EQ(Path(hub().downloadAttachment(uri)), file);
    EXPECT_EQ(TestSupport::contentOf(file), "second");
    EXPECT_EQ(hub().itemOf(file)->version, 2);
    EXPECT_EQ(contents, 1);

    // A file that is gone comes from the cache; one with another hash there is fetched.
    fs::remove(file);
    EXPECT_EQ(TestSupport::contentOf(hub().downloadAttachment(uri)), "second");
    EXPECT_EQ(contents, 1);
    TestSupport::overwrite(file, "forged");
    fs::remove(file);
    EXPECT_EQ(TestSupport::contentOf(hub().downloadAttachment(uri)), "second");
    EXPECT_EQ(contents, 2);

    // What waits to be uploaded is newer than what the service has.
    service().proxy().onRequest([](const FaultProxy::Request& request) -> std::optional<Fault> {
        return request.target.find("/uploads") != std::string::npos ? std::optional(Fault::reset())
                                                                    : std::nullopt;
    });
    save(file, "third");
    EXPECT_EQ(TestSupport::contentOf(hub().downloadAttachment(uri)), "third");
    service().proxy().onRequest({});
    hub().uploadNow();
    EXPECT_TRUE(arrive());
    EXPECT_EQ(versionsOf(file).size(), 3u);

    // Next to an open document, the newest version gets a separate place.
    ASSERT_TRUE(makeVersionElsewhere(file, "fourth"));
    const Path other = hub().downloadAttachment(uri);
    EXPECT_NE(other, file);
    EXPECT_EQ(other.filename(), file.filename());
    EXPECT_EQ(TestSupport::contentOf(other), "fourth");
    EXPECT_EQ(TestSupport::contentOf(file), "third");
}

TEST_F(ItemsTest, FilesThatNobodyUsedForAMonthGoAtASignInIfTheServiceHasThem)
{
    constexpr long kMonth = 31L * 24 * 3600;
    const Path old = itemWith(L"Old", "old"), young = itemWith(L"Young", "young"),
               changed = itemWith(L"Changed", "c"), held = itemWith(L"Held", "held"),
               shown = itemWith(L"Shown", "shown");
    const std::wstring uri = uriOf(old);
    TestSupport::overwrite(changed, "changed by another program");
    TestSupport::overwrite(held.parent_path() / "note", "another program has it");
    while (Vs::DocumentMgr::get()->documents() > 0)
        Vs::DocumentMgr::get()->close(Vs::DocumentMgr::get()->document(0u));
    for (const Path& file : {old, changed, held, shown})
        fs::last_write_time(file.parent_path() / ".item.json", std::time(nullptr) - kMonth);
    // Opened once more.
    EXPECT_EQ(Path(hub().downloadAttachment(uriOf(shown))), shown);
    service().proxy().onRequest([](const FaultProxy::Request& request) -> std::optional<Fault> {
        return request.target.find("/uploads") != std::string::npos ? std::optional(Fault::reset())
                                                                    : std::nullopt;
    });
    signIn();
    ASSERT_TRUE(until([&] { return !fs::exists(old.parent_path()); }));
    for (const Path& file : {young, changed, held, shown})
        EXPECT_TRUE(fs::exists(file)) << file;
    const Path again = hub().downloadAttachment(uri);
    EXPECT_EQ(again.filename(), old.filename());
    EXPECT_EQ(TestSupport::contentOf(again), "old");
    service().proxy().onRequest({});
    hub().uploadNow();
    EXPECT_TRUE(arrive());
    EXPECT_EQ(versionsOf(changed).size(), 2u);
}

TEST_F(ItemsTest, OldContentsThatNoFileHasGoAtASignIn)
{
    const Path file = itemWith(L"Wheel", "first");
    ASSERT_TRUE(makeVersionElsewhere(file, "second"));
    const Path used = hub().downloadAttachment(uriOf(file));
    ASSERT_EQ(TestSupport::contentOf(used), "second");
    const Path contents = file.parent_path().parent_path().parent_path() / "contents";
    const Path old = contents / sha256("old"), young = contents / sha256("young");
    TestSupport::overwrite(old, "old");
    TestSupport::overwrite(young, "young");
    for (const Path& each : {old, contents / sha256("second")})
        fs::last_write_time(each, std::time(nullptr) - 31L * 24 * 3600);
    signIn();
    ASSERT_TRUE(until([&] { return !fs::exists(old); }));
    EXPECT_TRUE(fs::exists(young));
    EXPECT_TRUE(fs::exists(contents / sha256("second"))) << "a working file has it";
}

TEST_F(ItemsTest, OnlyAddressesOfTheServiceGetTheToken)
{
    const Path file = itemWith(L"Wheel", "content");
    const std::string uri = attachmentOf(file).uri();
    FaultProxy foreign(1);
    for (const std::string& other :
         {foreign.address() + "attachments/1", std::string("https://items.example.org/attachments/1.xml"),
          service().address() + "items/1", service().address() + "attachments/x", service().address(),
          std::string("file:///etc/passwd"), std::string("nonsense"), std::string()})
        EXPECT_EQ(kindOf([&] { std::ignore = hub().downloadAttachment(Vs::Strings::widen(other)); }),
                  Kind::BadRequest)
            << other;
    EXPECT_TRUE(foreign.requests().empty());
    EXPECT_EQ(kindOf([&] {
                  std::ignore = hub().downloadAttachment(
                      Vs::Strings::widen(service().address() + "attachments/987654"));
              }),
              Kind::NotFound);
    // Capitals don't make a suffix one of ours; they are left to the service.
    EXPECT_EQ(kindOf([&] { std::ignore = hub().downloadAttachment(Vs::Strings::widen(uri) + L".XML"); }),
              Kind::BadRequest);
}

TEST_F(ItemsTest, FavouritesSearchAndCommentsComeAsTheyWereGiven)
{
    std::vector<int> ids;
    for (const wchar_t* name : {L"Flange <b>one</b>", L"Flange two", L"Gasket"})
        ids.push_back(int(hub().itemOf(newItem(name + Vs::Strings::widen(" " + account())))->itemId));
    for (const int id : ids)
        hub().setFavorite(id, true);
    hub().setFavorite(ids[1], false);
    EXPECT_EQ(favorites, 4);
    const auto list = hub().getFavorites();
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0]->getItemId(), ids[2]);
    EXPECT_EQ(list[1]->getCaption(), L"Flange <b>one</b> " + Vs::Strings::widen(account()));

    EXPECT_EQ(hub().search(L"flan " + Vs::Strings::widen(account())).size(), 2u);
    EXPECT_TRUE(hub().search(L"\"; DROP TABLE item; --").empty());
    const Web::Item item = hub().getItemById(ids[0]);
    const std::wstring text = L"Sharper <i>edges</i>, \u00fc\U0001F600";
    EXPECT_EQ(hub().addComment(item, text).author, account());
    ASSERT_EQ(hub().getComments(item).size(), 1u);
    EXPECT_EQ(Vs::Strings::widen(hub().getComments(item)[0].body), text);
}

TEST_F(ItemsTest, ASearchOnAThreadTellsItsResultsBeforeItEnds)
{
    std::ignore = newItem(L"Sprocket" + Vs::Strings::widen(account()));
    const auto run = [this](const std::wstring& query) {
        Vs::IncrementalSearchThread thread(query, true);
        QEventLoop loop;
        size_t before = 0;
        QObject::connect(&thread, &QThread::finished, &loop, [&] {
            before = results.size();
            loop.quit();
        });
        thread.start();
        loop.exec();
        return before;
    };
    EXPECT_EQ(run(L"sprocket" + Vs::Strings::widen(account())), 1u);
    EXPECT_EQ(results.back().second, 1u);
    service().proxy().onRequest([](const FaultProxy::Request& request) -> std::optional<Fault> {
        return request.target.find("/search") != std::string::npos ? std::optional(Fault::reset())
                                                                   : std::nullopt;
    });
    EXPECT_EQ(run(L"sprocket"), 2u) << "a failure is an answer, too";
    EXPECT_EQ(results.back().second, 0u);
    {
        service().proxy().onRequest([](const FaultProxy::Request&) { return Fault::stall(); });
        Vs::IncrementalSearchThread given(L"sprocket", false);
        given.start();
    }
    EXPECT_EQ(results.size(), 2u) << "what is given up tells nothing";
}

TEST_F(ItemsTest, WhatOthersDoIsHeard)
{
    const Path file = itemWith(L"Wheel", "first");
    ASSERT_TRUE(until([this] { return !kinds.empty(); }));
    kinds.clear();
    ASSERT_TRUE(makeVersionElsewhere(file, "second"));
    EXPECT_TRUE(
        until([this] { return std::find(kinds.begin(), kinds.end(), "version.added") != kinds.end(); }));
    // After a restart, the service's events are received again.
    service().stop();
    ASSERT_TRUE(until([] { return !hub().isOnline(); }));
    service().start();
    ASSERT_TRUE(until([] { return hub().isOnline(); }));
    kinds.clear();
    ASSERT_TRUE(makeVersionElsewhere(file, "third"));
    EXPECT_TRUE(until([this] { return !kinds.empty(); })) << lastRequests();
}

} // namespace
