#include "Server/Types/LengthUnit.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SnapManager.h"
#include "UI/Base/View/SnapEvents.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QtTest/QTest>

using namespace Vu;
using Inference::SnapManager;

namespace {

class SnapTest : public CommandsTests::WithProgram, private Inference::SnapEventSite
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        answer(L"Design.Sample");
        SnapManager::get()->reset();
        Inference::SnapEventSource::get()->subscribe(this);
    }
    void TearDown() override
    {
        Inference::SnapEventSource::get()->unsubscribe(this);
        SnapManager::get()->reset();
        Vs::LengthUnit::display(*Vs::LengthUnit::find("mm"));
        WithProgram::TearDown();
    }

    static bool offers(const wchar_t* key)
    {
        CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(key);
        CommandContext context = CommandContext::activeContext();
        return definition->isApplicable(&context) && definition->isVisible(&context);
    }
    static CommandBase* panel() { return activeSession()->commandManager()->activeCommand(); }

    int changes = 0;

private:
    void snapSettingsChanged(Inference::SnapEvent*) override { ++changes; }
};

} // namespace

TEST_F(SnapTest, TheTwoSwitchesAlternate)
{
    EXPECT_TRUE(SnapManager::get()->enableDistanceSnapping());
    EXPECT_FALSE(offers(L"EnableAdaptiveSnapCmd"));
    EXPECT_TRUE(offers(L"DisableAdaptiveSnapCmd"));
    answer(L"VuCommands.DisableAdaptiveSnapCmd");
    EXPECT_FALSE(SnapManager::get()->enableDistanceSnapping());
    EXPECT_TRUE(offers(L"EnableAdaptiveSnapCmd"));
    EXPECT_FALSE(offers(L"DisableAdaptiveSnapCmd"));
    answer(L"VuCommands.EnableAdaptiveSnapCmd");
    EXPECT_TRUE(SnapManager::get()->enableDistanceSnapping());
    EXPECT_EQ(changes, 2);

    answer(L"VuCommands.CloseAllDocumentsCmd");
    for (const wchar_t* key : {L"EnableAdaptiveSnapCmd", L"DisableAdaptiveSnapCmd", L"SetSnapValueCmd"})
        EXPECT_FALSE(offers(key));
}

TEST_F(SnapTest, ExactlyOneOfTheTwoModesIsOnAndTheValueGoesWithTheFixedOne)
{
    answer(L"VuCommands.SetSnapValueCmd");
    EXPECT_EQ(answer(L"Commands.Inputs"),
              L"SnapAdaptiveInput 1\nSnapValueInput \"1 mm\"  (disabled)\nSnapFixedInput 0");
    failure(L"Commands.SetInput SnapValueInput 5");
    answer(L"Commands.SetInput SnapFixedInput 1");
    EXPECT_EQ(answer(L"Commands.Inputs"), L"SnapAdaptiveInput 0\nSnapValueInput \"1 mm\"\nSnapFixedInput 1");
    answer(L"Commands.SetInput SnapFixedInput 0");
    answer(L"Commands.SetInput SnapAdaptiveInput 0");
    answer(L"Commands.SetInput SnapValueInput \"2 cm\"");
    EXPECT_EQ(changes, 0) << "nothing changes before the commit";
    answer(L"VuCommands.CommitCmd");
    EXPECT_FALSE(SnapManager::get()->adaptiveSnap());
    EXPECT_EQ(SnapManager::get()->snapIncrement(), 20);

    // The value of an adaptive step isn't changed.
    answer(L"VuCommands.SetSnapValueCmd");
    answer(L"Commands.SetInput SnapValueInput 7");
    answer(L"Commands.SetInput SnapAdaptiveInput 1");
    answer(L"Commands.Commit");
    EXPECT_TRUE(SnapManager::get()->adaptiveSnap());
    EXPECT_EQ(SnapManager::get()->snapIncrement(), 20);
}

TEST_F(SnapTest, ACancelledPanelLeavesTheSettings)
{
    answer(L"VuCommands.SetSnapValueCmd");
    answer(L"Commands.SetInput SnapFixedInput 1");
    answer(L"Commands.SetInput SnapValueInput 50");
    answer(L"VuCommands.CancelCmd");
    EXPECT_TRUE(SnapManager::get()->adaptiveSnap());
    EXPECT_EQ(SnapManager::get()->snapIncrement(), 1);
    EXPECT_EQ(changes, 0);
}

TEST_F(SnapTest, AStepOfNothingCannotBeCommitted)
{
    answer(L"VuCommands.SetSnapValueCmd");
    answer(L"Commands.SetInput SnapFixedInput 1");
    for (const wchar_t* value : {L"0", L"-1", L"\"0 in\""}) {
        answer(L"Commands.SetInput SnapValueInput " + std::wstring(value));
        EXPECT_FALSE(offers(L"CommitCommand"));
        EXPECT_NE(failure(L"Commands.Commit").find(L"The value must be more than 0 mm."), std::wstring::npos);
        EXPECT_EQ(failure(L"VuCommands.CommitCmd"), failure(L"Commands.Commit"));
    }
    EXPECT_NE(failure(L"Commands.SetInput SnapValueInput \"30 deg\"").find(L"This is an angle"),
              std::wstring::npos);
    answer(L"Commands.SetInput SnapValueInput 3");
    EXPECT_TRUE(offers(L"CommitCommand"));
    answer(L"Commands.Commit");
    EXPECT_EQ(SnapManager::get()->snapIncrement(), 3);
    for (const double nonsense : {0.0, -1.0, 1.0 / 0.0})
        SnapManager::get()->snapIncrement(nonsense);
    EXPECT_EQ(SnapManager::get()->snapIncrement(), 3);
}

TEST_F(SnapTest, ThePanelIsFilledInByKeysAndTheMouse)
{
    Workspace* const before = WorkspaceMgr::activeWorkspace();
    Workspace* const workspace = WorkspaceMgr::get()->create();
    workspace->window()->show();
    WorkspaceMgr::activeWorkspace(workspace);
    CommandDefinitionMgr::get()->findCommandDefinitionById(L"SetSnapValueCmd")->onClicked();
    const auto settle = [] {
        Application::get()->processEvents();
        QApplication::processEvents();
    };
    settle();
    const auto* frame = workspace->window()->widget()->findChild<QWidget*>(QStringLiteral("commandPanel"));
    ASSERT_TRUE(frame && frame->isVisible());
    auto* fixed = frame->findChild<QWidget*>(QStringLiteral("SnapFixedInput"))->findChild<QCheckBox*>();
    auto* value = frame->findChild<QWidget*>(QStringLiteral("SnapValueInput"))->findChild<QLineEdit*>();
    EXPECT_FALSE(value->isEnabled());
    QTest::mouseClick(fixed, Qt::LeftButton, {}, QPoint(8, fixed->height() / 2));
    settle();
    EXPECT_TRUE(value->isEnabled());
    value->setFocus();
    value->selectAll();
    QTest::keyClicks(value, QStringLiteral("0"));
    QTest::keyClick(value, Qt::Key_Return);
    settle();
    EXPECT_TRUE(frame->isVisible()) << "nothing is no step";
    value->selectAll();
    QTest::keyClicks(value, QStringLiteral("2.5"));
    QTest::keyClick(value, Qt::Key_Return);
    settle();
    EXPECT_FALSE(frame->isVisible());
    EXPECT_EQ(SnapManager::get()->snapIncrement(), 2.5);
    EXPECT_FALSE(SnapManager::get()->adaptiveSnap());
    WorkspaceMgr::get()->close(workspace);
    WorkspaceMgr::activeWorkspace(before);
}

TEST_F(SnapTest, TheStepIsKeptInTheUnitOfTheDocumentWhateverTheUserSees)
{
    Vs::LengthUnit::display(*Vs::LengthUnit::find("in"));
    answer(L"VuCommands.SetSnapValueCmd");
    answer(L"Commands.SetInput SnapFixedInput 1");
    answer(L"Commands.SetInput SnapValueInput 1/2");
    answer(L"Commands.Commit");
    EXPECT_EQ(SnapManager::get()->snapIncrement(), 12.7);
    answer(L"VuCommands.SetSnapValueCmd");
    const auto* value = panel()->commandInputSet()->findInput(L"SnapValueInput");
    ASSERT_TRUE(value);
    EXPECT_EQ(value->displayText(), L"0.5 in");
}
