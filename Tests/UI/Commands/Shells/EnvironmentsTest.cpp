#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

using namespace Vu;
using namespace Vu::Commands;

namespace {

/// Logs what sessions enter, one entry each.
class Entrances : public SessionEventSite
{
public:
    Entrances() { SessionEventSource::get()->subscribe(this); }
    ~Entrances() override { SessionEventSource::get()->unsubscribe(this); }
    void environmentActivated(EnvironmentEvent* event) override
    {
        if (event->timing() == Vs::Timing::Notification)
            ids.push_back(event->environment()->id());
    }
    std::vector<std::wstring> ids;
};

class EnvironmentsTest : public CommandsTests::WithProgram
{
protected:
    static ListControl* list()
    {
        return Vs::cast<ListControl>(definition(L"ActivateEnvironmentCommand")->inputControl());
    }
    static std::wstring environment() { return activeSession()->activeEnvironment()->id(); }
    static EnvironmentDefinition* find(const wchar_t* id)
    {
        return EnvironmentDefinitionMgr::get()->findEnvironmentDefinitionById(id);
    }
};

TEST_F(EnvironmentsTest, ANewSessionModelsAndCyclingWrapsInBothDirections)
{
    answer(L"Design.Sample");
    EXPECT_EQ(environment(), L"ModellingEnvironment");
    answer(L"VuCommands.CycleWorkspacesForwardCmd");
    EXPECT_EQ(environment(), L"ReviewEnvironment");
    answer(L"VuCommands.CycleWorkspacesForwardCmd");
    EXPECT_EQ(environment(), L"ModellingEnvironment");
    answer(L"VuCommands.CycleWorkspacesBackwardCmd");
    EXPECT_EQ(environment(), L"ReviewEnvironment");
    EXPECT_EQ(activeSession()->activeEnvironmentState()->returnState(), nullptr);
}

TEST_F(EnvironmentsTest, WithoutASessionOrOutsideOfTheListedOnesNothingIsEntered)
{
    Entrances entrances;
    answer(L"VuCommands.CycleWorkspacesForwardCmd");
    answer(L"VuCommands.ActivateEnvironmentCmd ReviewEnvironment");
    answer(L"Design.Sample");
    activeSession()->activateEnvironment(find(DebugEnvironmentDef::kId), false);
    entrances.ids.clear();
    answer(L"VuCommands.CycleWorkspacesForwardCmd");
    answer(L"VuCommands.CycleWorkspacesBackwardCmd");
    EXPECT_TRUE(entrances.ids.empty()) << "the debug environment isn't applicable here";
}

TEST_F(EnvironmentsTest, AnEnvironmentIsEnteredByItsNameOnceAndUnknownNamesChangeNothing)
{
    answer(L"Design.Sample");
    Entrances entrances;
    answer(L"VuCommands.ActivateEnvironmentCmd ReviewEnvironment");
    answer(L"VuCommands.ActivateEnvironmentCmd ReviewEnvironment");
    answer(L"VuCommands.ActivateEnvironmentCmd NoSuchEnvironment");
    answer(L"VuCommands.ActivateEnvironmentCmd");
    answer(L"VuCommands.ActivateEnvironmentCmd ModellingEnvironment ReviewEnvironment");
    EXPECT_EQ(entrances.ids, std::vector<std::wstring>{L"ReviewEnvironment"});
}

TEST_F(EnvironmentsTest, TheListFollowsTheSessionWithoutRunningACommandAndAChoiceEnters)
{
    ASSERT_NE(list(), nullptr);
    EXPECT_TRUE(list()->items().empty());
    answer(L"Design.Sample");
    AssetSession* first = activeSession();
    ASSERT_EQ(list()->items().size(), 2u);
    ASSERT_NE(list()->selectedItem(), nullptr);
    EXPECT_EQ(list()->selectedItem()->key(), L"ModellingEnvironment");

    Entrances entrances;
    list()->selectedItem(list()->items()[1], true);
    EXPECT_TRUE(entrances.ids.empty()) << "it runs behind the click";
    answer(L"Sleeper.Sleep 0");
    EXPECT_EQ(environment(), L"ReviewEnvironment");

    answer(L"Design.Sample");
    EXPECT_EQ(list()->selectedItem()->key(), L"ModellingEnvironment");
    first->activateEnvironment(find(L"ReviewEnvironment"), false);
    EXPECT_EQ(list()->selectedItem()->key(), L"ModellingEnvironment") << "that was another session";
    answer(L"VuCommands.PreviousAssetCmd");
    EXPECT_EQ(list()->selectedItem()->key(), L"ReviewEnvironment");
    answer(L"Document.CloseAll");
    EXPECT_TRUE(list()->items().empty());
    EXPECT_EQ(list()->selectedItem(), nullptr);
}

TEST_F(EnvironmentsTest, FromSeveralOnTopOfEachOtherOneReturnsToEachInTurn)
{
    EXPECT_EQ(failure(L"Commands.Environments"), L"There is no active model.");
    EXPECT_FALSE(applicable(L"ReturnToEnvironmentCommand"));
    answer(L"Design.Sample");
    EXPECT_FALSE(applicable(L"ReturnToEnvironmentCommand"));
    EXPECT_EQ(answer(L"Commands.Environments"), L"ModellingEnvironment  Modelling  (active)\n"
                                                L"ReviewEnvironment  Review");
    activeSession()->activateEnvironment(find(L"ReviewEnvironment"), true);
    activeSession()->activateEnvironment(find(DebugEnvironmentDef::kId), true);
    EXPECT_EQ(answer(L"Commands.Environments"), L"DebugEnvironment  Debug  (active)\n"
                                                L"ModellingEnvironment  Modelling  (beneath)\n"
                                                L"ReviewEnvironment  Review  (beneath)");
    answer(L"VuCommands.ReturnToEnvironmentCmd");
    EXPECT_EQ(environment(), L"ReviewEnvironment");
    EXPECT_TRUE(applicable(L"ReturnToEnvironmentCommand"));
    answer(L"VuCommands.ReturnToEnvironmentCmd");
    EXPECT_EQ(environment(), L"ModellingEnvironment");
    EXPECT_FALSE(applicable(L"ReturnToEnvironmentCommand"));

    // Choosing one that lies on the way back leaves those on top of it.
    activeSession()->activateEnvironment(find(L"ReviewEnvironment"), true);
    activeSession()->activateEnvironment(find(DebugEnvironmentDef::kId), true);
    answer(L"VuCommands.ActivateEnvironmentCmd ModellingEnvironment");
    EXPECT_FALSE(applicable(L"ReturnToEnvironmentCommand"));
}

TEST_F(EnvironmentsTest, GoingOverToAnotherSessionsEnvironmentListsTheSessionAndStaysInTheShell)
{
    answer(L"Design.Sample");
    AssetSession* first = activeSession();
    answer(L"Design.Sample");
    AssetSession* second = activeSession();
    AssetShell* shell = SharedWorkflows::activeAssetShell();
    EnvironmentState state(first, find(L"ReviewEnvironment"), nullptr);
    shell->seamlessActivate(nullptr);
    shell->seamlessReturn(&state);
    EXPECT_EQ(activeSession(), second);
    shell->seamlessActivate(&state);
    EXPECT_EQ(activeSession(), first);
    EXPECT_EQ(environment(), L"ReviewEnvironment");
    answer(L"VuCommands.ReturnToEnvironmentCmd");
    EXPECT_EQ(environment(), L"ModellingEnvironment");
    EXPECT_EQ(activeSession(), first) << "the way back is the session's own";
}

TEST_F(EnvironmentsTest, TheToolbarOfSolidsStandsOnlyWhereOneModelsAndAddingASolidGoesThere)
{
    const Toolbar* solids = ToolbarManager::get()->toolbarById(L"Solids");
    ASSERT_NE(solids, nullptr);
    EXPECT_TRUE(solids->standsIn(L"ModellingEnvironment"));
    EXPECT_FALSE(solids->standsIn(L"ReviewEnvironment"));
    EXPECT_FALSE(solids->standsIn(L""));
    EXPECT_TRUE(ToolbarManager::get()->toolbarById(L"QATLeft")->standsIn(L""));
    answer(L"Design.New");
    answer(L"VuCommands.ActivateEnvironmentCmd ReviewEnvironment");
    answer(L"Design.Box 1 2 3");
    EXPECT_EQ(environment(), L"ModellingEnvironment");
}

} // namespace
