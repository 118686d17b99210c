#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Resources.h"

#include <boost/filesystem/operations.hpp>

using namespace Vu;
using namespace Vu::Commands;

namespace {

class DocumentListsTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        RecentDocumentMgr::get()->clearRecent();
        boost::filesystem::create_directories(scratch(L"lists"));
    }

    static ListControl* list(const wchar_t* id)
    {
        return Vs::cast<ListControl>(definition(id)->inputControl());
    }
    static std::vector<std::wstring> titles(const wchar_t* id)
    {
        std::vector<std::wstring> names;
        for (const Info* item : list(id)->items())
            names.push_back(item->name());
        return names;
    }
    /// Chooses the entry with that title, as a click in the list does.
    static void choose(const wchar_t* id, const std::wstring& title)
    {
        for (Info* item : list(id)->items())
            if (item->name() == title) {
                list(id)->selectedItem(item, true);
                run(L"");
                return;
            }
        ADD_FAILURE() << "no such entry";
    }
    static std::wstring current()
    {
        const DocumentSession* session = SessionMgr::get()->activeDocumentSession();
        return session ? session->document()->displayName() : std::wstring();
    }
    static bool visible(const wchar_t* id)
    {
        CommandContext context = CommandContext::activeContext();
        return definition(id)->isVisible(&context);
    }
    static void makeNamed(const std::wstring& name)
    {
        answer(L"Design.New");
        answer(L"Document.Rename " + name);
    }
};

constexpr const wchar_t* kRecent = L"RecentDocumentsCommand";
constexpr const wchar_t* kOpen = L"CurrentlyOpenDocumentsCommand";

TEST_F(DocumentListsTest, TheRecentListShowsTheSixNewestTheNewestOnTopAndAWayToClearIt)
{
    EXPECT_EQ(titles(kRecent), std::vector<std::wstring>{L"Empty"});
    choose(kRecent, L"Empty");
    for (int i = 1; i <= 8; ++i)
        RecentDocumentMgr::get()->add(L"/models/" + std::to_wstring(i) + L".vlra", false);
    EXPECT_EQ(titles(kRecent),
              (std::vector<std::wstring>{L"8.vlra", L"7.vlra", L"6.vlra", L"5.vlra", L"4.vlra", L"3.vlra",
                                         L"eSeparator", L"Clear Recent"}));
    EXPECT_EQ(list(kRecent)->items().front()->key(), L"/models/8.vlra");
    choose(kRecent, L"Clear Recent");
    EXPECT_EQ(titles(kRecent), std::vector<std::wstring>{L"Empty"});
    EXPECT_TRUE(RecentDocumentMgr::get()->newestFirst(9).empty());
}

TEST_F(DocumentListsTest, ChoosingARecentDocumentOpensItUnlessLocalFilesAreSwitchedOff)
{
    answer(L"Design.New");
    answer(L"Document.Save " + scratch(L"lists/recent.vlra"));
    answer(L"Document.CloseAll");
    answerBoxes(0);
    UIBaseOptionGroup::get()->offlineWorkflowsDisabled(true);
    choose(kRecent, L"recent.vlra");
    UIBaseOptionGroup::get()->offlineWorkflowsDisabled(false);
    EXPECT_EQ(boxes(), std::vector<std::wstring>{L"Opening of local files not supported!!"});
    EXPECT_EQ(documents(), 0u);
    choose(kRecent, L"recent.vlra");
    EXPECT_EQ(current(), L"recent");
}

TEST_F(DocumentListsTest, TheOpenListMarksTheCurrentDocumentAndChoosingAnotherShowsIt)
{
    EXPECT_EQ(titles(kOpen), std::vector<std::wstring>{L"Empty"});
    choose(kOpen, L"Empty");
    EXPECT_EQ(documents(), 0u);
    makeNamed(L"First");
    makeNamed(L"Second");
    EXPECT_EQ(titles(kOpen), (std::vector<std::wstring>{L"First", L"Second"}));
    choose(kOpen, L"First");
    EXPECT_EQ(current(), L"First");
    EXPECT_EQ(list(kOpen)->items()[0]->icon(), Resources::SelectedListItem());
    EXPECT_EQ(list(kOpen)->items()[1]->icon(), Resources::DeselectedListItem());
    answer(L"Document.Save " + scratch(L"lists/first.vlra"));
    EXPECT_EQ(list(kOpen)->items()[0]->key(), scratch(L"lists/first.vlra"));
    answer(L"VuCommands.CloseDocumentCmd");
    EXPECT_EQ(titles(kOpen), std::vector<std::wstring>{L"Second"});
}

TEST_F(DocumentListsTest, OfUnsavedDocumentsOfOneNameTheFirstIsShown)
{
    makeNamed(L"Twin");
    Vs::Document* first = Vs::DocumentMgr::get()->document(0);
    makeNamed(L"Twin");
    list(kOpen)->selectedItem(list(kOpen)->items()[1], true);
    run(L"");
    EXPECT_EQ(SessionMgr::get()->activeDocumentSession()->document(), first);
}

TEST_F(DocumentListsTest, TheFilteredOnesKnowTheDocumentsOfTheirTypeOnly)
{
    EXPECT_FALSE(applicable(L"CurrentDesignCommand"));
    makeNamed(L"Old");
    makeNamed(L"New");
    EXPECT_FALSE(applicable(L"CurrentSimulationListCommand"));
    // The list command replaces the current document, the design "New".
    answer(L"Document.Create SimulationAssetType");
    answer(L"Document.Rename Load");
    EXPECT_EQ(titles(L"CurrentDesignListCommand"), std::vector<std::wstring>{L"Old"});
    EXPECT_EQ(titles(L"CurrentSimulationListCommand"), std::vector<std::wstring>{L"Load"});
    EXPECT_TRUE(visible(L"CurrentSimulationListCommand"));
    EXPECT_FALSE(visible(L"CurrentDesignListCommand"));
    makeNamed(L"Newest");
    choose(L"CurrentSimulationListCommand", L"Load");
    EXPECT_EQ(current(), L"Load");
    answer(L"Commands.Start CurrentDesignCommand");
    EXPECT_EQ(current(), L"Newest") << "the newest of its type";
    answer(L"Commands.Start CurrentDocumentationCommand");
    EXPECT_EQ(current(), L"Newest") << "there is none to show";
    EXPECT_NE(Vs::cast<ButtonControl>(definition(L"CurrentDesignCommand")->inputControl()), nullptr);
}

TEST_F(DocumentListsTest, CyclingGoesThroughAllDocumentsAndComesBack)
{
    answer(L"VuCommands.CycleOpenDocumentsCmd");
    for (const wchar_t* name : {L"A", L"B", L"C"})
        makeNamed(name);
    std::wstring way;
    for (int i = 0; i < 4; ++i) {
        answer(L"VuCommands.CycleOpenDocumentsCmd");
        way += current();
    }
    EXPECT_EQ(way, L"ABCA");
    answer(L"Document.CloseAll");
    makeNamed(L"Only");
    answer(L"VuCommands.CycleOpenDocumentsCmd");
    EXPECT_EQ(current(), L"Only");
}

} // namespace
