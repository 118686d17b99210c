#include "Server/Base/ResourceMgr.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Workspace/MenuBar.h"

#include <boost/filesystem/operations.hpp>

#include <map>
#include <set>

using namespace Vu;

namespace {

class WaitingCmdDef : public Vs::Implements<WaitingCmdDef, CommandDefinition>
{
public:
    WaitingCmdDef() : Implements(info()) {}
    static Info* info()
    {
        static Info info(L"WaitingCommand", L"Waiting", nullptr);
        return &info;
    }

protected:
    CommandBase* onCreateCommand(CommandContext* context) override { return new Waiting(this, context); }

private:
    class Waiting : public Vs::Implements<Waiting, InteractiveCommandBase>
    {
    public:
        Waiting(CommandDefinition* definition, CommandContext* context) : Implements(definition, context) {}
    };
};

/// What is open while every definition and every line is tried.
enum class Scene { Nothing, OneDocument, TwoDocuments, RunningCommand };

class SweepTest : public CommandsTests::WithProgram, public ::testing::WithParamInterface<Scene>
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        // The lines that save write to wherever their nonsense arguments lead.
        boost::filesystem::create_directories(scratch(L"sweep"));
        m_before = boost::filesystem::current_path();
        boost::filesystem::current_path(scratch(L"sweep"));
        answerBoxes(1);
        if (GetParam() != Scene::Nothing)
            answer(L"Design.Sample");
        if (GetParam() == Scene::TwoDocuments)
            answer(L"Design.New");
        if (GetParam() == Scene::RunningCommand)
            answer(L"Commands.Start WaitingCommand");
    }

    void TearDown() override
    {
        boost::filesystem::current_path(m_before);
        WithProgram::TearDown();
    }

    WaitingCmdDef m_waiting;
    boost::filesystem::path m_before;
};

TEST_P(SweepTest, EveryDefinitionSaysWhetherItAppliesAndHowItLooks)
{
    for (CommandDefinition* definition : CommandDefinitionMgr::get()->commandDefinitions()) {
        SCOPED_TRACE(std::string(definition->getInterfaceId()->text()));
        for (CommandContext context : {CommandContext::activeContext(), CommandContext::emptyContext()}) {
            EXPECT_NO_THROW(definition->isApplicable(&context));
            EXPECT_NO_THROW(definition->isVisible(&context));
            EXPECT_NO_THROW(definition->updateInputControl(&context));
        }
        // There are no favourites before the first sign-in.
        EXPECT_TRUE(definition->inputControl() || definition->id() == L"ItemhubMyFavoritesCommand");
        EXPECT_FALSE(definition->id().empty());
    }
}

TEST_P(SweepTest, EveryLineAnswersBadParametersWithZeroOrOne)
{
    const std::vector<std::wstring> parameters = {
        L"",
        L" nonsense",
        L" \"\"",
        L" -1",
        L" 1e999 1e999 1e999",
        L" /nowhere/at/all.step",
        L" a b c d e f g h i",
        L" \"" + std::wstring(5000, L'x') + L"\"",
        L" /Flag /CloseLast",
    };
    for (const Vs::TextCommand* command : Vs::TextCommandMgr::get()->commands()) {
        // They end the program, which the other lines still need.
        if (command->name() == L"ExitApplicationCmd" || command->name() == L"CloseWorkspaceCmd")
            continue;
        EXPECT_FALSE(command->help().empty());
        for (const std::wstring& text : parameters) {
            const Vs::TextCommandResult result = run(command->area() + L"." + command->name() + text);
            EXPECT_LE(result.first, 1u);
            EXPECT_FALSE(result.first == 1 && result.second.empty()) << "a failure without a reason";
        }
    }
}

class ArgumentsTest : public CommandsTests::WithProgram
{
};

TEST_F(ArgumentsTest, NoCommandRunsWithAnArgumentThatItDoesNotTake)
{
    answer(L"Design.New");
    for (const CommandDefinition* definition : CommandDefinitionMgr::get()->commandDefinitions()) {
        const std::wstring why = failure(L"Commands.Start " + definition->id() + L" Nonsense=1");
        EXPECT_NE(why.find(L"has no argument \"Nonsense\""), std::wstring::npos)
            << Vs::Strings::narrow(definition->id() + L": " + why);
    }
    EXPECT_EQ(failure(L"Commands.Start FindInCanvas Path=1"),
              L"Find in Canvas has no argument \"Path\": it takes none.");
    EXPECT_EQ(failure(L"Commands.Start BoxCommand dx=100 Dy=1 Dz=1"),
              L"Box has no argument \"dx\". Did you mean \"Dx\"?");
    EXPECT_EQ(documents(), 1u);
}

/// Commands with a title but without a menu entry, each with its reason.
const std::map<std::wstring, const char*> kInNoMenu = {
    {L"SwitchAssetCommand", "needs to be told the model; the list of models does it"},
    {L"RenameCommand", "needs to be told the name, which is typed in the browser"},
    {L"CloseWndCommand", "the cross of a document's tab"},
    {L"CancelCommand", "a button of the command's panel"},
    {L"CommitCommand", "a button of the command's panel"},
    {L"ViewWidgetCommand", "the head of a toolbar's menu"},
    {L"CloudCommand", "the head of a menu of the cloud drive"},
    {L"ShareCommand", "the account button, which signs in like the entry of the drive"},
    {L"CloudListFilesCommand", "for tests alone"},
    {L"CloudUploadCommand", "for tests alone"},
    {L"ItemhubOpenAttachmentCommand", "needs to be told the attachment; the search and the favourites do it"},
    {L"ItemhubCreateCommentID", "needs to be told the post; the service's web pages do it"},
    {L"ItemhubAuthenticateWithTokenCommand", "needs a token; the entry that signs in asks a person"},
    {L"ItemhubNewItemCommand", "needs to be told the workspace; the entry of a new design takes the first"},
    {L"ItemhubInsertComponentCommand", "needs to be told the item"},
    {L"ItemhubNotifyMessageCommand", "a click on the notification of uploads that failed"},
    {L"ItemhubNewDocumentationCommand", "a place for what there is not yet"},
    {L"ItemhubMyFavoritesCommand", "a list on the home screen and below the browser"},
    {L"ItemhubMyFavoritesChangedCommand", "for whoever has changed them elsewhere"},
    {L"ViewDomeCommand", "an entry of the effects"},
    {L"ViewGroundPlaneCommand", "an entry of the effects"},
    {L"ViewGroundShadowCommand", "an entry of the effects"},
    {L"ViewGroundReflectionCommand", "an entry of the effects"},
    {L"ViewAmbientOcclusionCommand", "an entry of the effects"},
    {L"ViewObjectShadowCommand", "an entry of the effects"},
    {L"ViewMSAACommand", "an entry of the effects"},
    {L"ViewLayoutGridOnCommand", "an entry of the grid"},
    {L"ViewGridRefNumeralsCommand", "an entry of the grid"},
    {L"RemoveNamedViewCommand", "about one named view; in the browser's menu"},
    {L"UpdateNamedViewCameraCommand", "about one named view; in the browser's menu"},
    {L"UpdateNamedViewNameCommand", "about one named view; in the browser's menu"},
    {L"RestoreCameraCommand", "about one named view; in the browser's menu"},
};

void collectCommands(const std::vector<ToolbarItem>& items, std::multiset<std::wstring>& commands)
{
    for (const ToolbarItem& item : items) {
        for (const std::wstring& command : {item.command, item.off})
            if (!command.empty())
                commands.insert(command);
        collectCommands(item.menu, commands);
    }
}

TEST(MenusTest, EveryCommandWithATitleStandsInOneMenuOrHasAReasonNotTo)
{
    std::multiset<std::wstring> inMenus;
    collectCommands(MenuBar::get()->menus(), inMenus);
    EXPECT_TRUE(MenuBar::get()->problems().isOk()) << MenuBar::get()->problems().matchingError("");
    EXPECT_EQ(MenuBar::get()->unknownCommands(), std::vector<std::wstring>());
    EXPECT_EQ(MenuBar::get()->menus().size(), 9u);
    for (const CommandDefinition* definition : CommandDefinitionMgr::get()->commandDefinitions()) {
        const std::wstring& id = definition->id();
        const size_t expected = definition->info()->name().empty() ? inMenus.count(id) // As it likes.
                                                                   : 1 - kInNoMenu.count(id);
        EXPECT_EQ(inMenus.count(id), expected) << Vs::Strings::narrow(id);
    }
    for (const auto& [id, reason] : kInNoMenu)
        EXPECT_NE(CommandDefinitionMgr::get()->findCommandDefinitionById(id), nullptr) << reason;
}

void expectPictures(const std::vector<ToolbarItem>& items)
{
    for (const ToolbarItem& item : items) {
        for (const int size : Vs::ImageSetResource::sizes())
            EXPECT_TRUE(item.picture.empty() ||
                        boost::filesystem::exists(Vs::ImageSetResource(item.picture).fileForSize(size)))
                << Vs::Strings::narrow(item.picture) << " in " << size << " pixels";
        expectPictures(item.menu);
    }
}

TEST(MenusTest, ThePicturesThatEntriesNameAreThere)
{
    EXPECT_NE(MenuBar::get()->pictureOf(L"CutCommand"), L"");
    EXPECT_NE(MenuBar::get()->pictureOf(L"HideCommand"), L"");
    EXPECT_EQ(MenuBar::get()->pictureOf(L"OpenDocumentCommand"), L"") << "it has one of its own";
    expectPictures(MenuBar::get()->menus());
    for (const Toolbar& toolbar : ToolbarManager::get()->toolbars())
        expectPictures(toolbar.items);
}

INSTANTIATE_TEST_SUITE_P(InEveryScene, SweepTest,
                         ::testing::Values(Scene::Nothing, Scene::OneDocument, Scene::TwoDocuments,
                                           Scene::RunningCommand));

} // namespace
