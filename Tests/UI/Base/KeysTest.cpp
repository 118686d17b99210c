#include "Tests/UI/Base/Fixture.h"
#include "Tests/UI/Base/ShownWindow.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/Window/BrowserPanel.h"
#include "UI/Base/Window/CommandBox.h"
#include "UI/Base/Window/HotKeys.h"
#include "UI/Base/Window/KeyTable.h"
#include "UI/Base/Window/KeysPage.h"
#include "UI/Base/Window/MainWindow.h"
#include "UI/Base/Window/RovingFocus.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QtTest/QTest>

#include <cstring>

using namespace Vu;

namespace {

class KeyedCommandDef : private InfoHolder, public CommandDefinition
{
public:
    KeyedCommandDef(const wchar_t* key, const char* hotkey)
        : InfoHolder{Info(key, key, nullptr, {}, hotkey, HotKeyBinding::EHotKeyMode::Standard)},
          CommandDefinition(&record)
    {
    }

private:
    CommandBase* onCreateCommand(CommandContext*) override { return nullptr; }
};

class KeysTest : public UiTest
{
protected:
    KeysTest() { Application::get()->needGui(); }
    ~KeysTest() override { KeyTable::get()->resetAll(); }

    static std::string keysOf(const CommandDefinition& definition)
    {
        return KeyTable::toText(KeyTable::get()->keysOf(definition)).toStdString();
    }
    static std::vector<CommandDefinition*> rivals(const CommandDefinition& definition, const char* keys)
    {
        return KeyTable::get()->rivals(definition, KeyTable::fromText(QLatin1String(keys)));
    }

    KeyedCommandDef one{L"KeysOne", "ctrl+alt+k"};
    KeyedCommandDef other{L"KeysOther", "Ctrl+Alt+K"};
    KeyedCommandDef third{L"KeysThird", "Ctrl+Alt+J"};
};

} // namespace

TEST_F(KeysTest, CommandsThatShareTheirOwnKeysAreNoRivalsButAllOthersAre)
{
    EXPECT_EQ(keysOf(one), "Ctrl+Alt+K");
    EXPECT_TRUE(rivals(one, "Ctrl+Alt+K").empty());
    EXPECT_EQ(rivals(one, "F7; Ctrl+Alt+J"), std::vector<CommandDefinition*>{&third});
    EXPECT_EQ(rivals(third, "Ctrl+Alt+K").size(), 2u);
}

TEST_F(KeysTest, WhatTheUserChangesHoldsForTheNextStartUntilItIsReset)
{
    KeyTable::get()->change(one, KeyTable::fromText("F7; Ctrl+F7"));
    EXPECT_EQ(UIBaseOptionGroup::get()->keys(), std::vector<std::wstring>{L"KeysOne=F7; Ctrl+F7"});
    EXPECT_EQ(keysOf(one), "F7; Ctrl+F7");
    KeyTable::get()->change(third, {});
    EXPECT_EQ(keysOf(third), "");
    KeyTable::get()->change(one, KeyTable::get()->defaultKeysOf(one));
    EXPECT_EQ(UIBaseOptionGroup::get()->keys(), std::vector<std::wstring>{L"KeysThird="});
    KeyTable::get()->resetAll();
    EXPECT_EQ(keysOf(third), "Ctrl+Alt+J");
}

TEST_F(KeysTest, ATableThatMakesNoSenseIsToldAndLeavesTheOtherKeys)
{
    UIBaseOptionGroup::get()->keys(
        {L"NoSuchCommand=F7", L"rubbish", L"KeysOne=Ctrl+Alt+J; F8", L"KeysOther=Blue+7", L""});
    const QStringList problems = KeyTable::get()->problems();
    EXPECT_EQ(problems.size(), 5) << problems.join('\n').toStdString();
    for (const char* named : {"\"NoSuchCommand\"", "\"rubbish\"", "\"KeysThird\"", "\"Blue+7\""})
        EXPECT_TRUE(problems.join('\n').contains(QLatin1String(named))) << named;
    EXPECT_EQ(keysOf(one), "F8");
    EXPECT_EQ(keysOf(other), "Ctrl+Alt+K");
    EXPECT_EQ(keysOf(third), "Ctrl+Alt+J");
}

TEST_F(KeysTest, AWindowRunsWhatHasTheKeysNow)
{
    QLineEdit window; // Which accepts letters, like any field.
    std::vector<const CommandDefinition*> run;
    new HotKeys(&window, [&](const CommandDefinition* definition) { run.push_back(definition); });
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        run.clear();
        QTest::keyClick(&window, key, modifiers);
        return run;
    };
    using Run = std::vector<const CommandDefinition*>;
    EXPECT_EQ(press(Qt::Key_K, Qt::ControlModifier | Qt::AltModifier), (Run{&one, &other}));
    KeyTable::get()->change(third, KeyTable::fromText("F7; V"));
    EXPECT_EQ(press(Qt::Key_F7, Qt::NoModifier), Run{&third});
    EXPECT_EQ(press(Qt::Key_J, Qt::ControlModifier | Qt::AltModifier), Run{});
    window.clear();
    EXPECT_EQ(press(Qt::Key_V, Qt::NoModifier), Run{});
    EXPECT_EQ(window.text().toStdString(), "v");
}

TEST_F(KeysTest, ThePageTellsWhoseKeysTheyAreAndTakesThemOnlyIfAsked)
{
    KeysPage page(nullptr);
    auto* list = page.findChild<QTreeWidget*>("keysList");
    auto* edit = page.findChild<QKeySequenceEdit*>("keysEdit");
    const auto* conflict = page.findChild<QLabel*>("keysConflict");
    auto* take = page.findChild<QAbstractButton*>("keysTake");
    list->setCurrentItem(list->findItems("KeysOne", Qt::MatchExactly).value(0));
    const auto enter = [&](const char* keys) {
        edit->setKeySequence(QKeySequence(QLatin1String(keys)));
        Q_EMIT edit->editingFinished();
    };
    enter("Ctrl+Alt+J");
    EXPECT_TRUE(conflict->text().contains("KeysThird")) << conflict->text().toStdString();
    EXPECT_EQ(keysOf(one), "Ctrl+Alt+K");
    take->click();
    EXPECT_EQ(keysOf(one), "Ctrl+Alt+J");
    EXPECT_EQ(keysOf(third), "");
    EXPECT_TRUE(conflict->text().isEmpty());
    EXPECT_TRUE(page.filter("KeysThird"));
    EXPECT_FALSE(page.filter("no such command"));
}

TEST_F(KeysTest, ABarIsOneStopWithArrowsInside)
{
    QWidget window;
    auto* column = new QVBoxLayout(&window);
    auto* before = new QLineEdit;
    auto* bar = new QWidget;
    auto* after = new QLineEdit;
    for (QWidget* each : {static_cast<QWidget*>(before), bar, static_cast<QWidget*>(after)})
        column->addWidget(each);
    auto* row = new QHBoxLayout(bar);
    QList<QToolButton*> buttons;
    for (int i = 0; i < 4; ++i) {
        buttons << new QToolButton;
        row->addWidget(buttons.last());
    }
    buttons[1]->setEnabled(false);
    new RovingFocus(bar);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    before->setFocus();
    const auto press = [&](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key);
        return QApplication::focusWidget();
    };
    EXPECT_EQ(press(Qt::Key_Tab), buttons[0]);
    EXPECT_EQ(press(Qt::Key_Right), buttons[2]);
    EXPECT_EQ(press(Qt::Key_End), buttons[3]);
    EXPECT_EQ(press(Qt::Key_Right), buttons[0]);
    EXPECT_EQ(press(Qt::Key_Left), buttons[3]);
    EXPECT_EQ(press(Qt::Key_Tab), after);
    EXPECT_EQ(press(Qt::Key_Backtab), buttons[3]) << "where it was left";
    EXPECT_EQ(press(Qt::Key_Backtab), before);
    // A click leaves the focus where it is.
    QTest::mouseClick(buttons[0], Qt::LeftButton);
    EXPECT_EQ(QApplication::focusWidget(), before);
}

TEST_F(KeysTest, AViewShowsThatAKeyBroughtTheKeyboardThereAndNoClick)
{
    QWidget window;
    auto* column = new QVBoxLayout(&window);
    auto* before = new QLineEdit;
    GraphicsCanvas canvas;
    QWidget* view = canvas.widget(&window);
    column->addWidget(before);
    column->addWidget(view);
    window.resize(300, 200);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto isFramed = [&] {
        return window.grab().toImage().pixelColor(view->mapTo(&window, QPoint(1, view->height() / 2))) ==
               window.palette().color(QPalette::Highlight);
    };
    before->setFocus();
    EXPECT_FALSE(isFramed());
    QTest::keyClick(before, Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), view);
    EXPECT_TRUE(isFramed());
    window.resize(400, 260);
    EXPECT_TRUE(isFramed());
    QTest::mouseClick(view, Qt::LeftButton);
    EXPECT_FALSE(isFramed());
    QTest::keyClick(view, Qt::Key_Backtab);
    QTest::keyClick(before, Qt::Key_Tab);
    EXPECT_TRUE(isFramed());
    QTest::keyClick(view, Qt::Key_Tab);
    EXPECT_FALSE(isFramed());
    delete canvas.existingWidget();
}

TEST_F(KeysTest, TabGoesThroughAllPartsOfTheWindowAndEndsWhereItBegan)
{
    FunctionCommandDef first(L"TabTestFirst", [](CommandContext&) {});
    FunctionCommandDef second(L"TabTestSecond", [](CommandContext&) {});
    ToolbarManager::get()->add(
        {L"TabTest", L"", "TabTestBar", {{L"TabTestFirst", L"", {}}, {L"TabTestSecond", L"", {}}}});
    MainWindow* widget = UiTests::windowWith({"TabTestBar", "BrowserWindow", "TextCommands"})->mainWindow();
    widget->rebuild(); // As happens all the time.
    ASSERT_TRUE(QTest::qWaitForWindowActive(widget));
    QLineEdit* line = widget->commandBox()->edit();
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        line->setFocus();
        std::vector<const QWidget*> stops;
        do {
            QTest::keyClick(QApplication::focusWidget(), key);
            stops.push_back(QApplication::focusWidget());
        } while (stops.back() != line && stops.size() < 20);
        EXPECT_EQ(stops.back(), line);
        std::string names;
        for (const QWidget* stop : stops)
            names +=
                std::string(stop->metaObject()->className()) + ' ' + stop->objectName().toStdString() + '\n';
        EXPECT_NE(names.find("TabTestFirst"), std::string::npos) << names;
        EXPECT_EQ(names.find("TabTestSecond"), std::string::npos) << names;
        EXPECT_NE(names.find("QTreeView"), std::string::npos) << names;
        EXPECT_NE(names.find("unit"), std::string::npos) << names;
    }
    widget->browser()->setFocus();
    QTest::keyClick(widget, Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), line);
    // What is typed is completed.
    QTest::keyClicks(line, "sel");
    QTest::keyClick(line, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), line);
    WorkspaceMgr::get()->closeAll();
}
