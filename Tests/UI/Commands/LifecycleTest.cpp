#include "Server/AddInMgr/AddInMgr.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Commands/ActiveCommandCmds.h"
#include "UI/Commands/CommandsAddInIdentifier.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"
#include "UI/Commands/Shells/ManagementShell.h"

extern "C" Vs::IAddIn* GetIAddIn();

using namespace Vu;
using namespace Vu::Commands;

namespace {

class LifecycleTest : public CommandsTests::WithProgram
{
protected:
    static Vs::IAddIn* loaded()
    {
        for (const Vs::AddInMgr::AddIn& addIn : Vs::AddInMgr::get()->addIns())
            if (addIn.manifest.identifier == CommandsAddInIdentifier())
                return addIn.object;
        return nullptr;
    }
};

TEST_F(LifecycleTest, TheManifestLoadsTheOneAddInOfTheLibrary)
{
    ASSERT_NE(loaded(), nullptr);
    const size_t definitions = CommandDefinitionMgr::get()->commandDefinitions().size();
    EXPECT_EQ(GetIAddIn(), loaded());
    EXPECT_EQ(CommandDefinitionMgr::get()->commandDefinitions().size(), definitions);
}

TEST_F(LifecycleTest, UnloadingInTwoStepsAndLoadingAgainLeavesTheCommandsWorking)
{
    auto* const site = dynamic_cast<CommandEventSite*>(loaded());
    ASSERT_NE(site, nullptr);
    EXPECT_TRUE(CommandEventSource::get()->subscribed(site));
    loaded()->unload(false);
    EXPECT_FALSE(CommandEventSource::get()->subscribed(site));
    loaded()->unload(true);
    loaded()->unload(true); // Without a notification site there is nothing left to do.
    loaded()->load();
    EXPECT_TRUE(CommandEventSource::get()->subscribed(site));
    answer(L"Design.New");
    EXPECT_EQ(documents(), 1u);
}

TEST_F(LifecycleTest, EveryWorkspaceComesUpWithTheManagementShellWhateverWasProposed)
{
    Workspace* workspace = WorkspaceMgr::activeWorkspace();
    auto* shell = findShell<ManagementShell>(workspace->shellManager());
    ASSERT_NE(shell, nullptr);
    AssetShell* proposed = findOrMakeShell<AssetShell>(workspace->shellManager());
    WorkspaceShellEvent event(workspace, proposed);
    WorkspaceEventSource::get()->fireWorkspaceDefaultShell(&event);
    EXPECT_EQ(event.shell(), shell);
}

TEST_F(LifecycleTest, OneRecordStandsForADefinition)
{
    EXPECT_EQ(CancelCmdDef::info(), CancelCmdDef::info());
    EXPECT_EQ(CommandDefinitionMgr::get()->findCommandDefinitionById(L"CancelCommand")->info(),
              CancelCmdDef::info());
}

TEST_F(LifecycleTest, DefinitionsAreListedInTheOrderOfTheAddInsMembers)
{
    std::vector<std::wstring> ids;
    for (const CommandDefinition* definition : CommandDefinitionMgr::get()->commandDefinitions())
        ids.push_back(definition->id());
    const auto at = [&](const wchar_t* id) { return std::find(ids.begin(), ids.end(), id) - ids.begin(); };
    EXPECT_LT(at(L"ManagementShellCommand"), at(L"AssetShellCommand"));
    EXPECT_LT(at(L"AssetShellCommand"), at(L"ExitApplicationCommand"));
    EXPECT_LT(at(L"PreviousAssetCommand"), at(L"NextAssetCommand"));
    EXPECT_LT(at(L"SaveAsImageCommand"), at(L"OpenDocumentCommand"));
    EXPECT_LT(at(L"CommitCommand"), at(L"FitCommand"));
    EXPECT_LT(at(L"FitCommand"), at(L"BoxCommand"));
}

} // namespace
