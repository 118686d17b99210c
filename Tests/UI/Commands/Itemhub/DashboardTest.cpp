#include "Server/Base/Strings.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Tests/UI/Commands/Itemhub/WithItems.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Program/LabelDescriptionDialog.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Commands/Itemhub/ItemhubCreateCommentIDCmd.h"
#include "UI/Commands/SamePath.h"

#include <boost/algorithm/string/predicate.hpp>
namespace {

using namespace Vu::Commands;
using Labels = std::vector<std::string>;

class DashboardTest : public CommandsTests::WithItems
{
protected:
    static bool visible(const std::wstring& id)
    {
        Vu::CommandContext context = Vu::CommandContext::activeContext();
        return definition(id)->isVisible(&context);
    }
    static size_t parts() { return activeDocument()->activeAsset()->components()->children.size(); }
};

TEST_F(DashboardTest, ANewItemIsADocumentWithOneVersionThatIsMarked)
{
    answer(L"Dashboard.NewItemCmd 1 Bracket 0 0 VeloraAssetType");
    ASSERT_NE(activeDocument(), nullptr);
    EXPECT_TRUE(hub().isItemhubDocument(activeDocument()));
    EXPECT_EQ(activeDocument()->displayName(), L"Bracket");
    EXPECT_FALSE(activeDocument()->isDirty(false)) << "its first version is saved";
    ASSERT_TRUE(arrives());
    const int item = itemOfShown();
    EXPECT_EQ(labels(item), Labels{"Document created"});

    // A plain save creates a version, too, without a label; one that links to another item knows it.
    answer(L"Design.Box 1 2 3");
    answer(L"Document.Save");
    ASSERT_TRUE(arrives());
    EXPECT_EQ(labels(item), (Labels{"", "Document created"}));
    answer(L"Dashboard.NewItemCmd 1 a.b " + std::to_wstring(item) + L" 1 VeloraAssetType");
    EXPECT_EQ(activeDocument()->displayName(), L"a") << "both endings are gone";
    ASSERT_TRUE(arrives());
    EXPECT_EQ(hub().getItemById(itemOfShown()).caption(), "a.b");

    std::vector<int> numbers;
    for (int i = 0; i < 2; ++i) {
        answer(L"Dashboard.NewItemCmd 1 \"\" 0 0 VeloraAssetType");
        const std::wstring name = activeDocument()->displayName();
        ASSERT_TRUE(name.starts_with(L"Design")) << Vs::Strings::narrow(name);
        numbers.push_back(std::stoi(name.substr(6)));
    }
    EXPECT_EQ(numbers[1], numbers[0] + 1);
    EXPECT_TRUE(arrives());
}

TEST_F(DashboardTest, WhatIsNoItemIsRefusedWithoutADocument)
{
    EXPECT_NE(failure(L"Dashboard.NewItemCmd 1 Bracket none 0 VeloraAssetType").find(L"ItemhubLinkedItemId"),
              std::wstring::npos);
    failure(L"Dashboard.NewItemCmd one Bracket 0 0 VeloraAssetType");
    EXPECT_NE(failure(L"Dashboard.NewItemCmd 1 Bracket 0 0").find(L"ItemhubWorkspaceId"), std::wstring::npos)
        << "with four parameters none is taken";
    answer(L"Dashboard.NewItemCmd 1 Bracket 0 0 NoSuchAssetType");
    failure(L"Dashboard.NewItemCmd 4711 Bracket 0 0 VeloraAssetType");
    EXPECT_EQ(documents(), 0u);
    EXPECT_FALSE(applicable(L"ItemhubNewDocumentationCommand"));
    hub().signOut();
    answer(L"Dashboard.NewItemCmd 1 Bracket 0 0 VeloraAssetType");
    EXPECT_EQ(documents(), 0u);
}

TEST_F(DashboardTest, AVersionIsMarkedWithTheLabelThatAPersonGives)
{
    answer(L"Design.New");
    EXPECT_FALSE(visible(L"ItemhubSaveCommand")) << "the document belongs to no item";
    const int item = newItem(L"Bracket");
    EXPECT_TRUE(visible(L"ItemhubSaveCommand"));
    EXPECT_FALSE(applicable(L"ItemhubSaveCommand")) << "nothing has changed";
    answer(L"Design.Box 1 1 1");
    EXPECT_TRUE(applicable(L"ItemhubSaveCommand"));
    const size_t before = labels(item).size();

    EXPECT_NE(failure(L"Dashboard.SaveCmd \"For nobody\""), L"") << "nobody is there to be asked";
    Vu::LabelDescriptionDialog::responder([](std::wstring&) { return false; });
    answer(L"Dashboard.SaveCmd");
    EXPECT_TRUE(activeDocument()->isDirty(false)) << "cancelled";
    Vu::LabelDescriptionDialog::responder([](std::wstring& label) {
        label = L"For review";
        return true;
    });
    answer(L"Dashboard.SaveCmd");
    EXPECT_FALSE(activeDocument()->isDirty(false));
    ASSERT_TRUE(arrives());
    EXPECT_EQ(labels(item).size(), before + 1);
    EXPECT_EQ(labels(item).front(), "For review");

    // With a label, and its own path spelled differently, nobody is asked and nothing moves.
    Vu::LabelDescriptionDialog::responder([](std::wstring&) -> bool {
        ADD_FAILURE() << "nobody has to be asked";
        return false;
    });
    answer(L"Design.Box 2 2 2");
    const std::wstring path = activeDocument()->path();
    answer(L"Commands.Start ItemhubSaveCommand ItemhubSaveLabel=Released Path=" + Vs::Strings::quote(path));
    EXPECT_EQ(activeDocument()->path(), path);
    ASSERT_TRUE(arrives());
    EXPECT_EQ(labels(item).front(), "Released");

    Vs::ItemhubOptionGroup::get()->itemhubDisabled(true);
    for (const wchar_t* id : {L"ItemhubSaveCommand", L"ItemhubNewItemCommand", L"ItemhubNewDesignCommand",
                              L"ItemhubOpenAttachmentCommand", L"ItemhubAuthenticateWithTokenCommand",
                              L"ItemhubInsertComponentCommand", L"ItemhubCreateCommentID",
                              L"ItemhubNotifyMessageCommand", L"ItemhubMyFavoritesCommand"})
        EXPECT_FALSE(applicable(id)) << Vs::Strings::narrow(id);
    EXPECT_FALSE(visible(L"ItemhubSaveCommand"));
    Vs::ItemhubOptionGroup::get()->itemhubDisabled(false);
}

TEST_F(DashboardTest, ADesignIsInsertedIfOneIsExpected)
{
    const int item = newItem(L"Wheel");
    answer(L"Document.CloseAll");
    answer(L"Design.New");
    answer(L"Design.Box 1 1 1");
    const std::wstring line = L"Commands.Start ItemhubInsertComponentCommand ItemhubWorkspaceId=1 "
                              L"ItemhubItemId=" +
                              std::to_wstring(item);
    answer(line + L" ItemhubDocType=Drawing");
    answer(L"Dashboard.InsertComponentCmd 1 " + std::to_wstring(item));
    EXPECT_EQ(parts(), 1u) << "no design was expected";
    EXPECT_TRUE(told().empty());
    answer(line + L" ItemhubDocType=VeloraDocType");
    EXPECT_TRUE(told().empty()) << Vs::Strings::narrow(told().front());
    EXPECT_EQ(parts(), 2u);
    EXPECT_EQ(documents(), 1u) << "the item's document isn't opened beside it";
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(parts(), 1u) << "one step";

    // An item without attachments, and a nonexistent workspace.
    const std::wstring empty = hub().addNewItem(activeDocument()->documentType(), 1, 0, 0, L"Empty", L"");
    const int none = static_cast<int>(hub().itemOf(empty)->itemId);
    answer(L"Commands.Start ItemhubInsertComponentCommand ItemhubDocType=VeloraDocType ItemhubWorkspaceId=1 "
           L"ItemhubItemId=" +
           std::to_wstring(none));
    EXPECT_TRUE(told().empty());
    answer(L"Commands.Start ItemhubInsertComponentCommand ItemhubDocType=VeloraDocType");
    ASSERT_EQ(told().size(), 1u);
    EXPECT_TRUE(told()[0].starts_with(L"Itemhub operation failed : ")) << Vs::Strings::narrow(told()[0]);
    service().stop();
    answer(line + L" ItemhubDocType=VeloraDocType");
    service().start();
    ASSERT_EQ(told().size(), 2u);
    EXPECT_TRUE(told()[1].starts_with(L"Connection exception : ")) << Vs::Strings::narrow(told()[1]);
    EXPECT_EQ(parts(), 1u);
}

TEST_F(DashboardTest, AnAttachmentIsOpenedByItsAddressAndCalledAsTheItem)
{
    const int item = newItem(L"Wheel");
    const std::wstring address = addressOf(item);
    answer(L"Document.CloseAll");
    const auto open = [](const std::wstring& uri) {
        return L"Commands.Start ItemhubOpenAttachmentCommand fileUri=" + Vs::Strings::quote(uri);
    };
    service().proxy().forgetRequests();
    answer(open(address));
    ASSERT_EQ(documents(), 1u) << (told().empty() ? "" : Vs::Strings::narrow(told()[0]));
    EXPECT_EQ(activeDocument()->displayName(), L"Wheel");
    EXPECT_EQ(Vu::FilePlace::shown(activeDocument()->path()),
              Vs::ItemhubUtilities::getItemhub_TM() + L" \u203a item " + std::to_wstring(item));
    EXPECT_EQ(parts(), 1u);
    bool asked = false;
    for (const auto& request : service().proxy().requests())
        asked = asked || request.target.find(".xml") != std::string::npos;
    EXPECT_TRUE(asked) << "only that form of an address reaches the service";
    answer(open(address + L".xml"));
    EXPECT_EQ(documents(), 1u);
    EXPECT_TRUE(told().empty());

    answer(L"Document.CloseAll");
    answer(open(address + L".XML"));
    EXPECT_EQ(documents(), 0u) << "the ending is told by its letters";
    EXPECT_EQ(told().size(), 1u);
    answer(L"Dashboard.OpenAttachmentCmd " + Vs::Strings::quote(address));
    EXPECT_EQ(documents(), 0u) << "the line's parameter isn't where the command looks";
}

TEST_F(DashboardTest, OnlyATokenOfTheServiceSignsIn)
{
    const std::wstring address = Vs::Strings::widen(service().address());
    answer(L"Dashboard.AuthenticateWithTokenCmd " + address + L" nonsense acme");
    EXPECT_EQ(told().size(), 1u);
    EXPECT_EQ(hub().accountName(), Vs::Strings::widen(account())) << "who was signed in stays";
    answer(L"Dashboard.AuthenticateWithTokenCmd " + address);
    EXPECT_EQ(told().size(), 2u) << "one parameter fills nothing";
    EXPECT_TRUE(told()[1].find(L"nonsense") == std::wstring::npos);

    hub().signOut();
    // Without its slash, and without the tenant of a service that has only one.
    answer(L"Dashboard.AuthenticateWithTokenCmd " + address.substr(0, address.size() - 1) + L' ' +
           Vs::Strings::widen(token()));
    EXPECT_TRUE(hub().isAuthenticated());
    EXPECT_EQ(hub().customer(), L"acme");
    hub().signOut();
    answer(L"Dashboard.AuthenticateWithTokenCmd " + address + L' ' + Vs::Strings::widen(token()) + L" other");
    EXPECT_FALSE(hub().isAuthenticated()) << "the token is another customer's";
}

TEST(SamePathTest, OnlyTheKindOfSlashMayDiffer)
{
    EXPECT_TRUE(isSamePath(L"/items/7/Wheel.vlra", L"\\items\\7/Wheel.vlra"));
    for (const wchar_t* other : {L"/items/7/wheel.vlra", L"/items/7/Wheel.vlr", L"/items//7/Wheel.vlra", L""})
        EXPECT_FALSE(isSamePath(L"/items/7/Wheel.vlra", other)) << Vs::Strings::narrow(other);
}

TEST(ItemhubCommentTest, APostIsNamedByALinkByItsTitleOrByItsNumber)
{
    using Cmd = ItemhubCreateCommentIDCmd;
    EXPECT_EQ(Cmd::bodyFor(L"7", L"Edges", L"https://a.example/7"),
              L"<a href=\"https://a.example/7\">Edges</a>");
    EXPECT_EQ(Cmd::bodyFor(L"7", L"Edges", L""), L"Edges");
    EXPECT_EQ(Cmd::bodyFor(L"7", L"", L"https://a.example/7"), L"Post 7");
}

} // namespace
