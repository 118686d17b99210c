#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Tests/Support/Process.h"
#include "Tests/UI/Becomes.h"
#include "Tests/UI/Commands/Itemhub/WithItems.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Session/DesignFeed.h"
#include "UI/Base/Session/DocumentFacts.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Cloud/ShareCmd.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Itemhub/ItemhubMyFavoritesCmds.h"
#include "UI/Commands/Itemhub/ItemhubNotifyMessageCmd.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <tuple>

namespace {

using namespace Vu::Commands;
using Labels = std::vector<std::string>;

/// What the program does apart from the commands that the user gives.
class ItemEventsTest : public CommandsTests::WithItems
{
protected:
    static std::vector<Vs::Notification*> sentBy(const std::wstring& client)
    {
        std::vector<Vs::Notification*> found;
        Vs::NotificationCenter::get()->notificationsByClientID(client, found);
        return found;
    }
    static std::vector<std::wstring> favourites()
    {
        std::vector<std::wstring> shown;
        auto* list = Vs::cast<Vu::ListControl>(ItemhubMyFavoritesCmdDef::get()->inputControl());
        for (const Vu::Info* item : list->items())
            shown.push_back(item->name());
        return shown;
    }
};

TEST_F(ItemEventsTest, TheAccountButtonOffersDriveAndService)
{
    EXPECT_EQ(ShareCmdDef::info()->name(), Vs::Strings::widen(account()));
    answerBoxes(2);
    answer(L"VuCommands.ShareCmd");
    EXPECT_TRUE(hub().isAuthenticated()) << "cancelled";
    answerBoxes(1);
    answer(L"VuCommands.ShareCmd");
    EXPECT_EQ(boxes().size(), 2u);
    EXPECT_FALSE(hub().isAuthenticated());
    EXPECT_EQ(ShareCmdDef::info()->name(), L"Sign In");
    EXPECT_TRUE(applicable(L"ItemhubSignInCommand"));
    EXPECT_FALSE(applicable(L"ItemhubSignOutCommand"));
}

TEST_F(ItemEventsTest, TheNewestEightFavouritesAreListed)
{
    EXPECT_TRUE(favourites().empty());
    std::vector<int> items;
    const auto workspace = hub().getWorkspaceById(1);
    answer(L"Design.New");
    for (int i = 1; i <= 9; ++i) {
        const std::wstring file =
            hub().addNewItem(activeDocument()->documentType(), 1, 0, 0, L"Wheel " + std::to_wstring(i), L"");
        items.push_back(static_cast<int>(hub().itemOf(file)->itemId));
        answer(L"Itemhub.Favourite " + std::to_wstring(items.back()));
    }
    EXPECT_TRUE(until([] { return !favourites().empty() && favourites().front() == L"Wheel 9"; }));
    EXPECT_EQ(favourites().size(), 8u);
    EXPECT_EQ(favourites().back(), L"Wheel 2");

    auto* list = Vs::cast<Vu::ListControl>(ItemhubMyFavoritesCmdDef::get()->inputControl());
    EXPECT_EQ(list->items().front()->key(), std::to_wstring(items.back()));
    const std::wstring message = ItemhubMyFavoritesCmdDef::selectionMessage(*list->items().front());
    EXPECT_NE(message.find(L"\"itemID\": \"" + std::to_wstring(items.back()) + L"\""), std::wstring::npos);

    for (const int item : items)
        answer(L"Itemhub.Favourite " + std::to_wstring(item) + L" /Off");
    EXPECT_TRUE(until([] { return favourites().empty(); }));
    // Another program bookmarks one; the command asks again.
    answer(L"Itemhub.Favourite " + std::to_wstring(items.front()));
    answer(L"Commands.Start ItemhubMyFavoritesChangedCommand");
    EXPECT_TRUE(until([] { return favourites().size() == 1; }));
    hub().signOut();
    EXPECT_TRUE(until([] { return favourites().empty(); })) << "they are the account's";

    // A command that asks something is a deferred task, which others wait for; the service's answers don't.
    bool listed = false;
    Vu::Application::get()->deferredTasks()->post([&] {
        std::ignore = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(signInLine());
        listed = UiTests::becomes([] { return favourites().size() == 1; });
    });
    Vu::Application::get()->processEvents();
    EXPECT_TRUE(listed);
}

TEST_F(ItemEventsTest, UploadsThatFailAreToldOnceAndBegunAgainOrGivenUp)
{
    const int item = newItem(L"Wheel");
    const size_t before = labels(item).size();
    const auto fail = [&] {
        service().admin({"member", "set", "acme", account(), "all", "reader"});
        answer(L"Design.Box 1 1 1");
        answer(L"Document.Save");
        std::vector<Vs::UploadQueuedFileInfo> files;
        ASSERT_TRUE(until([&] {
            files.clear();
            hub().getAllRecoverFiles(files);
            return !files.empty();
        }));
    };
    ASSERT_NO_FATAL_FAILURE(fail());
    const std::wstring client = ItemhubNotifyMessageCmdDef::notificationClientID();
    ASSERT_TRUE(until([&] { return sentBy(client).size() == 1; }));
    EXPECT_EQ(sentBy(client)[0]->title(), L"Itemhub Recovery Message");
    EXPECT_NE(sentBy(client)[0]->subTitle().find(L"Wheel"), std::wstring::npos);

    // If nobody can be asked, nothing is cancelled.
    failure(L"Commands.Start ItemhubNotifyMessageCommand");
    EXPECT_EQ(hub().pendingUploads().size(), 1u);
    service().admin({"member", "set", "acme", account(), "all", "writer"});
    answerBoxes(0);
    Vs::NotificationCenter::get()->activate(sentBy(client)[0]);
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_TRUE(
        boxes()[0].starts_with(L"There are following queued files need to be uploaded because of failed "
                               L"uploading before \n("));
    ASSERT_TRUE(arrives());
    EXPECT_EQ(labels(item).size(), before + 1);
    EXPECT_TRUE(until([&] { return sentBy(client).empty(); })) << "it goes with the last of the files";

    ASSERT_NO_FATAL_FAILURE(fail());
    ASSERT_TRUE(until([&] { return sentBy(client).size() == 1; }));
    Vs::Notification* first = sentBy(client)[0];
    Vs::NotificationCenter::get()->sendNotification(L"Another", {}, {}, {}, client,
                                                    Vs::NotificationType::makeByType(3), nullptr);
    answerBoxes(1);
    Vs::NotificationCenter::get()->activate(first);
    EXPECT_TRUE(hub().pendingUploads().empty()) << "given up";
    EXPECT_EQ(sentBy(client).size(), 2u) << "of two, none is known to be of the last file";
    EXPECT_TRUE(boost::filesystem::exists(activeDocument()->path())) << "the file itself stays";
    service().admin({"member", "set", "acme", account(), "all", "writer"});
}

TEST_F(ItemEventsTest, TheFeedOfAnItemsDocumentHasVersionsAndCommentsAndItsPropertiesSayWhichVersionItIs)
{
    const auto facts = [] {
        std::wstring all;
        for (const auto& fact : Vu::DocumentFacts::of(*activeDocument()))
            all += fact.title + L": " + fact.value + L"; ";
        return all;
    };
    const auto has = [](const std::wstring& title) {
        const std::vector<Vu::FeedEntry> entries = Vu::DesignFeed::get()->entries(*activeDocument());
        return std::ranges::any_of(entries, [&](const Vu::FeedEntry& entry) {
            return entry.title == title && entry.kind == Vu::FeedEntry::Kind::Comment;
        });
    };
    const int item = newItem(L"Talked about");
    EXPECT_TRUE(until([&] { return has(L"Version 1: Document created") && has(L"Version 2"); }));
    // Later events arrive by themselves.
    answer(L"Itemhub.Comment " + std::to_wstring(item) + L" \"Sharper <b>edges</b>\"");
    EXPECT_TRUE(until([&] { return has(L"Sharper <b>edges</b>"); }));
    const std::wstring own = L"Item: " + std::to_wstring(item);
    const std::wstring role = L"Your role: Writer; ";
    EXPECT_TRUE(until([&] { return facts() == own + L", Talked about; Version: 2; " + role; }))
        << Vs::Strings::narrow(facts());
    answer(L"Design.Box 1 1 1");
    answer(L"Commands.Start ItemhubSaveCommand \"ItemhubSaveLabel=For <b>review</b>\"");
    EXPECT_TRUE(until([&] {
        return facts() == own + L", Talked about; Version: 3; Label: For <b>review</b>; " + role;
    })) << Vs::Strings::narrow(facts());
    hub().signOut();
    EXPECT_FALSE(has(L"Version 2")) << "it is the account's to see";
    EXPECT_EQ(facts(), own + L"; Version: 3; ") << "the file's own record needs no service";
    answer(L"Design.New");
    EXPECT_FALSE(has(L"Version 2"));
}

TEST_F(ItemEventsTest, WhoMayOnlyReadIsToldBeforeASaveIsRefused)
{
    const auto role = [] {
        for (const auto& fact : Vu::DocumentFacts::of(*activeDocument()))
            if (fact.title == L"Your role")
                return fact.value;
        return std::wstring();
    };
    // As another administrator does on the page, and the program is notified.
    const auto become = [&, boss = service().token("boss", "admin")](const std::string& role) {
        const auto done = TestSupport::runProcess(
            "/usr/bin/curl", {"-sfX", "PUT", "-H", "Authorization: Bearer " + boss, "-H",
                              "Content-Type: application/json", "-d", R"({"role":")" + role + R"("})",
                              service().address() + "workspaces/1/members/" + account()});
        EXPECT_EQ(done.exitCode, 0) << done.errors;
    };
    service().admin({"member", "set", "acme", account(), "all", "none"});
    service().admin({"member", "set", "acme", account(), "1", "writer"});
    newItem(L"Looked at");
    EXPECT_TRUE(until([&] { return role() == L"Writer"; })) << Vs::Strings::narrow(role());
    become("reader");
    EXPECT_TRUE(until([&] { return role() == L"Reader: saving makes no version"; }));
    EXPECT_TRUE(hub().pendingUploads().empty()) << "nothing was refused yet";
    become("admin");
    EXPECT_TRUE(until([&] { return role() == L"Administrator"; }));
    hub().signOut();
    EXPECT_EQ(role(), L"") << "what it says is the account's";
}

TEST_F(ItemEventsTest, WhatWasClosedUnsavedIsAttachedToItsItemIfTheUserWantsIt)
{
    const auto close = [] {
        answer(L"Design.Box 3 3 3");
        closeSilently(Vu::SessionMgr::get()->activeDocumentSession());
        Vu::Application::get()->flushDeferredTasks();
    };
    const auto names = [](int item) {
        std::vector<std::string> names;
        for (const auto& each : hub().getItemAttachments(hub().getWorkspaceById(1), hub().getItemById(item)))
            names.push_back(each.name());
        return names;
    };
    Vs::AutoSaveController* controller = Vs::AutoSaveController::get();
    controller->start();
    const int item = newItem(L"Snapped");
    close();
    EXPECT_EQ(names(item), Labels{"Snapped.vlra"}) << "nobody has asked for it";
    Vs::ItemhubOptionGroup::get()->recoverySnapshots(true);
    answer(L"Itemhub.Open " + std::to_wstring(item));
    close();
    EXPECT_EQ(names(item), (Labels{"Snapped.vlra", "Snapped (recovery).vlra"}));
    answer(L"Itemhub.Open " + std::to_wstring(item));
    EXPECT_EQ(activeDocument()->displayName(), L"Snapped") << "it isn't the item's design";
    Vs::ItemhubOptionGroup::get()->recoverySnapshots(false);
    answer(L"Document.CloseAll");
    std::vector<Vs::AutoSavedFileInfo> files;
    controller->getAllRecoverFiles(files);
    for (const Vs::AutoSavedFileInfo& file : files)
        controller->deleteARecoveryFile(file.autoSavedFile(), Vs::AutoSaveController::Reason::Unwanted);
    controller->end();
}

TEST_F(ItemEventsTest, AFailureStaysInTheNotificationCentreUntilItIsRead)
{
    hub().fireErrorMessage(L"<b>Nothing</b> was sent.");
    ASSERT_EQ(sentBy(Vs::ItemhubUtilities::notificationClientID()).size(), 1u);
    answerBoxes(0);
    Vs::NotificationCenter::get()->activate(sentBy(Vs::ItemhubUtilities::notificationClientID())[0]);
    EXPECT_EQ(boxes(),
              std::vector<std::wstring>{L"Handled Itemhub error message (<b>Nothing</b> was sent.)"});
}

} // namespace
