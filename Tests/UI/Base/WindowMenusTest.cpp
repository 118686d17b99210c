#include "Tests/UI/Base/Fixture.h"
#include "Tests/UI/Base/ShownWindow.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Window/CommandMenu.h"
#include "UI/Base/Window/MainWindow.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QCursor>
#include <QMenu>
#include <QToolButton>

using namespace Vu;
using UiTests::windowWith;

using WindowMenusTest = UiTest;

TEST_F(WindowMenusTest, AButtonIsNoLongerLitWhenItsMenuClosesAndThePointerIsElsewhere)
{
    ToolbarManager::get()->add(
        {L"MenuTest", L"", "MenuTestBar", {{L"", L"Menu", {{L"", L"Sub", {}}}}}, true});
    MainWindow* window = windowWith({"MenuTestBar"})->mainWindow();
    QToolButton* button = nullptr;
    for (QToolButton* each : window->findChildren<QToolButton*>())
        if (each->text().startsWith(QStringLiteral("Menu")))
            button = each;
    ASSERT_NE(button, nullptr);
    QCursor::setPos(window->mapToGlobal(QPoint(window->width() - 5, window->height() - 5)));
    button->setAttribute(Qt::WA_UnderMouse);
    button->menu()->popup(button->mapToGlobal(QPoint(0, button->height())));
    button->menu()->close();
    EXPECT_FALSE(button->underMouse());
    WorkspaceMgr::get()->closeAll();
}

TEST_F(WindowMenusTest, ListsAndMenusInsideAMenuAreSubmenusThatShowWhatIsCurrent)
{
    class Lists : private InfoHolder, public CommandDefinition, public IListControlHandler
    {
    public:
        Lists() : InfoHolder{Info(L"ListsTest", L"Lists", nullptr)}, CommandDefinition(&record)
        {
            list.items({&one, &two});
        }
        const Vs::UniqueString* getInterfaceId() const override
        {
            return CommandDefinition::getInterfaceId();
        }
        void* queryInterface(const Vs::UniqueString* key) const override
        {
            return CommandDefinition::queryInterface(key);
        }
        void onListSelectionChanged(Info* item) override { chosen.push_back(item); }
        CommandBase* onCreateCommand(CommandContext*) override { return nullptr; }
        InputControl* onInputControl() override { return &list; }
        Info one{L"One", L"One", nullptr}, two{L"Two", L"Two", nullptr};
        ListControl list{&record, this};
        std::vector<Info*> chosen;
    } lists;
    ToolbarManager::get()->add({L"SubMenuTest",
                                L"",
                                "SubMenuTestBar",
                                {{L"", L"Outer", {{L"ListsTest", L"", {}}}}, {L"ListsTest", L"", {}}}});
    MainWindow* window = windowWith({"SubMenuTestBar"})->mainWindow();
    QMenu* outer = nullptr;
    for (QToolButton* each : window->findChildren<QToolButton*>())
        if (each->text().startsWith(QStringLiteral("Outer")))
            outer = each->menu();
    ASSERT_NE(outer, nullptr);
    Q_EMIT outer->aboutToShow();
    ASSERT_EQ(outer->actions().size(), 1);
    QMenu* inner = outer->actions().front()->menu();
    ASSERT_NE(inner, nullptr);
    lists.list.selectedItem(&lists.two, false);
    Q_EMIT inner->aboutToShow();
    ASSERT_EQ(inner->actions().size(), 2);
    EXPECT_TRUE(inner->actions()[1]->isChecked() && !inner->actions()[0]->isChecked());
    inner->actions()[0]->trigger();
    EXPECT_EQ(lists.chosen, std::vector<Info*>{&lists.one});
    Q_EMIT inner->aboutToShow();
    EXPECT_TRUE(inner->actions()[0]->isChecked() && !inner->actions()[1]->isChecked());

    // The whole button opens its list, or only an arrow, and then the button stands for the current choice.
    auto* button = window->findChild<QToolButton*>(QStringLiteral("ListsTest"));
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->popupMode(), QToolButton::InstantPopup);
    lists.list.split(true);
    EXPECT_EQ(button->popupMode(), QToolButton::MenuButtonPopup);
    lists.chosen.clear();
    button->click();
    lists.list.items({&lists.two});
    button->click();
    EXPECT_EQ(lists.chosen, (std::vector<Info*>{&lists.one, lists.info()}));
    WorkspaceMgr::get()->closeAll();
}

TEST_F(WindowMenusTest, AMenuTellsAtEachOpeningWhatCanRunUnderItsOwnTitle)
{
    Application::get()->needGui();
    int runs = 0;
    FunctionCommandDef definition(L"MenuTestCommand", [&](CommandContext&) { ++runs; });
    definition.applicable = false;
    CommandMenu menu({{L"MenuTestCommand", L"&Mine", {}},
                      {L"NoSuchCommand", L"", {}},
                      {L"MenuTestCommand", L"My Own", {}}},
                     nullptr);
    EXPECT_TRUE(menu.actions().isEmpty()); // Before anyone wants to see them.
    Q_EMIT menu.aboutToShow();
    ASSERT_EQ(menu.actions().size(), 2);
    QAction* action = menu.actions().front();
    EXPECT_EQ(action->text(), QStringLiteral("&Mine"));
    EXPECT_EQ(menu.actions()[1]->text(), QStringLiteral("My &Own")) << "a letter that is free";
    EXPECT_FALSE(action->isEnabled());
    definition.applicable = true;
    Q_EMIT menu.aboutToShow();
    ASSERT_TRUE(action->isEnabled());
    action->trigger();
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(runs, 1);
}

TEST_F(WindowMenusTest, AnEntryWithItsOppositeIsSwitchedOnAndOff)
{
    Application::get()->needGui();
    std::string runs;
    FunctionCommandDef on(L"OnTestCommand", [&](CommandContext&) { runs += '1'; });
    FunctionCommandDef off(L"OffTestCommand", [&](CommandContext&) { runs += '0'; });
    CommandMenu menu({{.command = L"OnTestCommand", .title = L"Light", .off = L"OffTestCommand"}}, nullptr);
    for (const bool shines : {false, true, false}) {
        on.applicable = !shines;
        off.applicable = shines;
        Q_EMIT menu.aboutToShow();
        EXPECT_TRUE(menu.actions().front()->isEnabled());
        EXPECT_EQ(menu.actions().front()->isChecked(), shines);
        menu.actions().front()->trigger();
        Application::get()->flushDeferredTasks();
    }
    EXPECT_EQ(runs, "101");
    on.applicable = false;
    Q_EMIT menu.aboutToShow();
    EXPECT_FALSE(menu.actions().front()->isEnabled());
}
