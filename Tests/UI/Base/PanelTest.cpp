#include "Tests/UI/Base/Fixture.h"
#include "Tests/UI/Base/ShownWindow.h"
#include "Tests/UI/Becomes.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/CommandDialog.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/ControlCommandInputs.h"
#include "UI/Base/Command/GroupCommandInput.h"
#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Window/CommandPanel.h"
#include "UI/Base/Window/InputField.h"
#include "UI/Base/Window/MainWindow.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QtTest/QTest>

using namespace Vu;
using Vs::Units::Quantity;
using Vs::Units::Unit;

namespace {

Info* info(const wchar_t* key, const wchar_t* title)
{
    // Kept forever, as records are.
    return new Info(key, title, nullptr);
}

/// Has every kind of input, and logs how it ended.
class BoreCommand : public Vs::Implements<BoreCommand, Command>
{
public:
    BoreCommand(CommandDefinition* definition, CommandContext* context, std::string& log)
        : Implements(definition, context), m_log(log)
    {
    }
    CommandInputSet* onCreateCommandInputs() override
    {
        static Info* const infos[] = {info(L"Place", L"Place"),
                                      info(L"Kind", L"Kind"),
                                      info(L"Radius", L"Radius"),
                                      info(L"Tilt", L"Tilt"),
                                      info(L"Through", L"Through everything"),
                                      info(L"Note", L"Note")};
        static Info* const kinds[] = {info(L"plain", L"Plain"), info(L"threaded", L"Threaded")};
        CommandInputSet* inputs = CommandInputSet::make(this);
        group = GroupCommandInput::make(inputs, 255, infos[0]);
        kind = ListCommandInput::make(inputs, 0, infos[1]);
        kind->control()->items({kinds[0], kinds[1]});
        kind->control()->selectedItem(kinds[0], false);
        radius = RealValueCommandInput::make(inputs, 1, infos[2], Unit::display(Quantity::Length));
        radius->minimumValue(true, 0, false);
        radius->value(5);
        tilt = RealValueCommandInput::make(inputs, 2, infos[3], Unit::display(Quantity::Angle));
        group->end();
        through = BoolValueCommandInput::make(inputs, 3, infos[4]);
        note = StringValueCommandInput::make(inputs, 4, infos[5]);
        return inputs;
    }
    void onCommandInputEventSink(CommandInputEvent* event) override
    {
        if (const auto* hover = Vs::cast<CommandInputHoverEvent>(event))
            m_log += hover->entering() ? "<" : ">";
    }
    void commandInputSetExecute(CommandInputEvent*) override { ++executions; }
    void onValidateInputs(CommandInputStatus&, bool) override {}
    void onClearCommandRequests(bool) override {}
    void onEnd(ETerminationReason reason) override
    {
        m_log += reason == ETerminationReason::Commit ? "commit " : "cancel ";
        m_log += std::to_string(radius->value());
    }

    GroupCommandInput* group = nullptr;
    ListCommandInput* kind = nullptr;
    RealValueCommandInput* radius = nullptr;
    RealValueCommandInput* tilt = nullptr;
    BoolValueCommandInput* through = nullptr;
    StringValueCommandInput* note = nullptr;
    int executions = 0;

private:
    std::string& m_log;
};

/// Comes before the definition among the bases, because that ends its commands while it is destroyed.
struct LogHolder
{
    std::string log;
};

class BoreCommandDef : private InfoHolder, public LogHolder, public CommandDefinition
{
public:
    BoreCommandDef() : InfoHolder{Info(L"BoreTestCommand", L"Bore", nullptr)}, CommandDefinition(&record) {}

private:
    CommandBase* onCreateCommand(CommandContext* context) override
    {
        return new BoreCommand(this, context, log);
    }
};

class PanelTest : public UiTest
{
protected:
    PanelTest()
    {
        Application::get()->needGui();
        WorkspaceWindow* window = UiTests::windowWith({"Browser"});
        workspace = window->workspace();
        main = window->mainWindow();
        WorkspaceMgr::activeWorkspace(workspace);
        SessionMgr::get()->currentAssetSession(SessionMgr::get()->assetSession(newAsset()));
        SessionMgr::get()->activate();
        SessionMgr::get()->postActivate();
        start();
    }
    void start()
    {
        CommandContext context = CommandContext::activeContext();
        context.accessPoint(ECommandAccessPoint::Toolbar);
        std::ignore = manager().executeCommand(&definition, context);
        settle();
    }
    static CommandMgr& manager() { return *SessionMgr::get()->activeAssetSession()->commandManager(); }
    static void settle()
    {
        Application::get()->processEvents();
        QApplication::processEvents();
    }
    CommandPanel& panel() const { return *main->commandPanel(); }
    static BoreCommand& bore() { return *Vs::cast<BoreCommand>(manager().activeCommand()); }

    template <class Widget>
    Widget* in(const char* input) const
    {
        auto* field = panel().findChild<QWidget*>(QString::fromLatin1(input));
        return field ? field->findChild<Widget*>() : nullptr;
    }
    QLineEdit* line(const char* input) const { return in<QLineEdit>(input); }
    std::string message() const
    {
        const auto* label = panel().findChild<QLabel*>(QStringLiteral("inputMessage"));
        return label->isVisible() ? label->text().toStdString() : std::string();
    }
    bool canCommit() const { return panel().findChild<QPushButton*>(QStringLiteral("panelOk"))->isEnabled(); }
    static void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        settle();
    }
    static void write(const char* text)
    {
        QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(text));
        settle();
    }

    BoreCommandDef definition;
    Workspace* workspace;
    MainWindow* main;
};

} // namespace

TEST_F(PanelTest, ACommandIsFilledInAndCommittedByKeysAlone)
{
    ASSERT_TRUE(panel().isVisible());
    EXPECT_EQ(QApplication::focusWidget(), in<QComboBox>("Kind")) << "what is typed goes to the first field";
    key(Qt::Key_Down);
    EXPECT_EQ(bore().kind->valueAsString(), L"threaded");
    key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), line("Radius"));
    write("1/2 in");
    key(Qt::Key_Tab);
    EXPECT_EQ(bore().radius->value(), 12.7);
    EXPECT_EQ(line("Radius")->text(), QStringLiteral("12.7 mm"));
    write("30");
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    EXPECT_TRUE(bore().through->value());
    EXPECT_NEAR(bore().tilt->value(), 0.5235987755982988, 1e-15);
    key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), line("Note"));
    write("M6");
    key(Qt::Key_Return);
    EXPECT_EQ(definition.log, "commit 12.700000");
    EXPECT_FALSE(panel().isVisible());
}

TEST_F(PanelTest, TabGoesRoundInTheOrderOfTheInputs)
{
    std::vector<QWidget*> way;
    do {
        way.push_back(QApplication::focusWidget());
        key(Qt::Key_Tab);
    } while (QApplication::focusWidget() != way.front() && way.size() < 20);
    ASSERT_EQ(way.size(), 8u) << "five fields, two buttons, and the heading";
    EXPECT_EQ(way[3], in<QCheckBox>("Through"));
    EXPECT_EQ(way[5]->objectName(), QStringLiteral("panelOk"));
    EXPECT_EQ(way[7]->objectName(), QStringLiteral("inputGroup"));
    key(Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget(), way[7]);
    key(Qt::Key_Space);
    EXPECT_FALSE(in<QLineEdit>("Radius")->isVisible());
    key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), way[3]) << "what is folded away is left out";
}

TEST_F(PanelTest, EscapeGivesTheCommandUp)
{
    line("Radius")->setFocus();
    line("Radius")->selectAll();
    write("7");
    key(Qt::Key_Escape);
    EXPECT_EQ(definition.log, "cancel 5.000000");
    EXPECT_FALSE(panel().isVisible());
}

TEST_F(PanelTest, WhatIsWrongIsMarkedToldAndKeepsThePanelOpen)
{
    line("Radius")->setFocus();
    line("Radius")->selectAll();
    write("5 parsec");
    key(Qt::Key_Return);
    EXPECT_EQ(definition.log, "");
    EXPECT_EQ(line("Radius")->text(), QStringLiteral("5 parsec")) << "it stays, to be mended";
    EXPECT_EQ(QApplication::focusWidget(), line("Radius"));
    EXPECT_FALSE(canCommit());
    EXPECT_EQ(message(), "Radius: \"parsec\" is not a unit: character 3 of \"5 parsec\".");
    EXPECT_EQ(in<QLabel>("Radius")->toolTip(),
              QStringLiteral("\"parsec\" is not a unit: character 3 of \"5 parsec\"."));
    EXPECT_TRUE(in<QLabel>("Radius")->isVisible());

    line("Radius")->selectAll();
    write("-3");
    key(Qt::Key_Return);
    EXPECT_EQ(message(), "Radius: The value must be more than 0 mm.");
    line("Radius")->selectAll();
    write("3");
    key(Qt::Key_Tab);
    EXPECT_EQ(message(), "");
    EXPECT_FALSE(in<QLabel>("Radius")->isVisible());
    EXPECT_TRUE(canCommit());
    QTest::mouseClick(panel().findChild<QPushButton*>(QStringLiteral("panelOk")), Qt::LeftButton);
    settle();
    EXPECT_EQ(definition.log, "commit 3.000000");
}

TEST_F(PanelTest, WhatIsOnlyMissingYetIsToldWithoutAMark)
{
    bore().tilt->awaitsValue(L"How far?");
    bore().radius->value(6);
    settle();
    EXPECT_EQ(message(), "Tilt: How far?");
    EXPECT_FALSE(in<QLabel>("Tilt")->isVisible());
    EXPECT_FALSE(line("Tilt")->property("failed").toBool());
    EXPECT_FALSE(canCommit());
    line("Tilt")->setFocus();
    line("Tilt")->selectAll();
    write("4 5");
    key(Qt::Key_Tab);
    EXPECT_TRUE(in<QLabel>("Tilt")->isVisible()) << "no longer missing, but wrong";
    line("Tilt")->setFocus();
    line("Tilt")->selectAll();
    write("45");
    key(Qt::Key_Tab);
    EXPECT_EQ(message(), "");
    EXPECT_TRUE(canCommit());
}

TEST_F(PanelTest, NumbersHaveTheDecimalSignOfTheLocaleInTheWindowAlone)
{
    struct German
    {
        German() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
        ~German() { QLocale::setDefault(before); }
        const QLocale before;
    } const german;
    bore().radius->value(2.5);
    bore().note->value(L"Rev 1.5");
    settle();
    EXPECT_EQ(line("Radius")->text(), QStringLiteral("2,5 mm"));
    EXPECT_EQ(line("Note")->text(), QStringLiteral("Rev 1.5"));
    EXPECT_EQ(bore().radius->valueAsString(), L"2.5 mm");
    for (const auto& [typed, value] : {std::pair("1,25", 1.25), {"7.5 mm", 7.5}, {"(1,5 + ,5) * 2", 4.0}}) {
        line("Radius")->setFocus();
        line("Radius")->selectAll();
        write(typed);
        key(Qt::Key_Tab);
        EXPECT_EQ(bore().radius->value(), value) << typed;
    }
    line("Radius")->setFocus();
    line("Radius")->selectAll();
    write("1.000,5");
    key(Qt::Key_Tab);
    EXPECT_FALSE(canCommit()) << "it could be either number";
}

TEST_F(PanelTest, ThePreviewFollowsWhatIsTyped)
{
    line("Radius")->setFocus();
    line("Radius")->selectAll();
    write("8 mm");
    EXPECT_TRUE(UiTests::becomes([] { return bore().radius->value() == 8; }));
    EXPECT_EQ(bore().executions, 1) << "one preview for what is typed in one go";
    EXPECT_EQ(line("Radius")->text(), QStringLiteral("8 mm"));
}

TEST_F(PanelTest, FieldsFollowTheirInputs)
{
    bore().tilt->disable();
    bore().note->visible(false);
    bore().radius->value(20);
    settle();
    EXPECT_FALSE(line("Tilt")->isEnabled());
    EXPECT_FALSE(line("Note")->isVisible());
    EXPECT_EQ(line("Radius")->text(), QStringLiteral("20 mm"));
    Vs::Units::UnitDisplaySettings settings;
    settings.generalPrecision(1);
    bore().radius->value(20.26);
    bore().radius->unitDisplaySettings(settings);
    bore().radius->readOnly(true);
    settle();
    EXPECT_EQ(line("Radius")->text(), QStringLiteral("20.3 mm"));
    EXPECT_TRUE(line("Radius")->isReadOnly());
    bore().group->visible(false);
    settle();
    EXPECT_FALSE(line("Radius")->isVisible());
}

TEST_F(PanelTest, RecentValuesAreOfferedInTheListOfTheField)
{
    for (const char* text : {"3*2 mm", "1 cm", "nonsense"}) {
        line("Radius")->setFocus();
        line("Radius")->selectAll();
        write(text);
        key(Qt::Key_Tab);
    }
    auto* menu = in<QToolButton>("Radius")->menu();
    emit menu->aboutToShow();
    ASSERT_GE(menu->actions().size(), 2);
    EXPECT_EQ(menu->actions()[0]->text(), QStringLiteral("1 cm"));
    menu->actions()[1]->trigger();
    EXPECT_EQ(bore().radius->value(), 6);
    EXPECT_TRUE(bore().radius->valid());
}

TEST_F(PanelTest, ThePanelGoesWithItsCommandHoweverThatEnds)
{
    bore().commandDialog()->show(false);
    settle();
    EXPECT_FALSE(panel().isVisible());
    bore().radius->value(9);
    bore().commandDialog()->show(true);
    settle();
    EXPECT_EQ(line("Radius")->text(), QStringLiteral("9 mm"));

    start(); // Replaces the running one.
    EXPECT_EQ(definition.log, "cancel 9.000000");
    EXPECT_EQ(line("Radius")->text(), QStringLiteral("5 mm"));
    manager().terminateAll(ETerminationReason::Cancel);
    EXPECT_FALSE(panel().isVisible());

    start();
    QTest::mouseMove(line("Radius"));
    QEnterEvent enter({}, {}, {});
    QApplication::sendEvent(line("Radius")->parentWidget(), &enter);
    EXPECT_TRUE(definition.log.ends_with("<"));
    SessionMgr::get()->deactivate();
    settle();
    EXPECT_FALSE(panel().isVisible());
}
