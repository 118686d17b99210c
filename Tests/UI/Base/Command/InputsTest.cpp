#include "Server/Base/TextCommandMgr.h"
#include "Tests/UI/Base/Command/Recorder.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/ControlCommandInputs.h"
#include "UI/Base/Command/GroupCommandInput.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Command/Private/TranscriptRecorder.h"
#include "UI/Base/Command/RealValueCommandInput.h"

#include <gtest/gtest.h>
#include <limits>

using namespace Vu;

namespace {

Info kRadius(L"RadiusInput", L"Radius", nullptr);
Info kName(L"NameInput", L"Name", nullptr);

/// Asks for a positive radius and a name.
class HoleCommand : public Vs::Implements<HoleCommand, Command>
{
public:
    HoleCommand(CommandDefinition* definition, CommandContext* context) : Implements(definition, context) {}

    CommandInputSet* onCreateCommandInputs() override
    {
        CommandInputSet* inputs = CommandInputSet::make(this);
        radius = RealValueCommandInput::make(inputs, 1, &kRadius, {Vs::Units::Quantity::Length, L"cm", 10});
        radius->minimumValue(true, 0.0, true);
        radius->maximumValue(true, 1000.0, true);
        name = StringValueCommandInput::make(inputs, 2, &kName);
        return inputs;
    }
    void onCommandInputEventSink(CommandInputEvent* event) override
    {
        ++events;
        const auto* change = Vs::cast<CommandInputValueChangeEvent>(event);
        kinds += change ? std::to_string(static_cast<int>(change->kind())) : std::string("-");
        if (endOnChange && change)
            destroy(ETerminationReason::Cancel);
    }
    void onValidateInputs(CommandInputStatus& status, bool forCommit) override
    {
        if (radius->value() == 0.0 && forCommit)
            status.invalid(L"The radius must not be 0.");
    }
    void onClearCommandRequests(bool) override {}
    void commandInputSetExecute(CommandInputEvent*) override { ++executions; }

    RealValueCommandInput* radius = nullptr;
    StringValueCommandInput* name = nullptr;
    int events = 0;
    int executions = 0;
    std::string kinds; ///< Of the events: that of a new value, or a dash.
    bool endOnChange = false;
};

Info kHole(L"HoleCommand", L"Hole", nullptr);

class AnyInput : public CommandInputEventSite
{
public:
    void onCommandInputEvent(CommandInputEvent* event) override { last = event->commandInput(); }
    CommandInputBase* last = nullptr;
};

class Inputs : public testing::Test
{
protected:
    void SetUp() override
    {
        std::ignore = manager.executeCommand(&definition, CommandContext());
        ASSERT_EQ(manager.activeCommand(), definition.latest);
    }
    HoleCommand& hole() { return *definition.latest; }

    CommandTest::DefinitionOf<HoleCommand> definition{kHole};
    CommandMgr manager;
};

class Drawn : public InputControlSite
{
public:
    void inputControlChanged(InputControl*) override { ++changes; }
    void inputControlDestroyed(InputControl*) override { destroyed = true; }
    int changes = 0;
    bool destroyed = false;
};

class Handler : public IListControlHandler, public IMenuControlHandler
{
public:
    void onListSelectionChanged(Info* item) override { chosen.push_back(item); }
    void onMenuSelectionChanged(MenuItem* item) override { marked.push_back(item); }
    void onUpdateTooltip(ToolTipInfo& tooltip) override { tooltip.description(L"Undo Box"); }
    const Vs::UniqueString* getInterfaceId() const override { return nullptr; }
    void* queryInterface(const Vs::UniqueString*) const override { return nullptr; }
    std::vector<Info*> chosen;
    std::vector<MenuItem*> marked;
};

} // namespace

TEST_F(Inputs, ACommandCanBeCommittedOnlyWhileItsInputsAreValid)
{
    EXPECT_TRUE(hole().areInputsValid());
    EXPECT_FALSE(hole().areInputsValidForCommit());
    EXPECT_TRUE(manager.GetAlertController()->isInErrorState());
    EXPECT_EQ(manager.GetAlertController()->alerts()[0].text, L"The radius must not be 0.");

    hole().radius->value(2.5);
    EXPECT_FALSE(manager.GetAlertController()->isInErrorState()) << "a new value is judged anew";
    EXPECT_TRUE(hole().areInputsValidForCommit());

    hole().radius->value(-1.0);
    EXPECT_FALSE(hole().commandInputSet()->valid());
    EXPECT_FALSE(hole().areInputsValidForCommit());
    hole().radius->disable();
    EXPECT_TRUE(hole().areInputsValidForCommit()) << "what is disabled doesn't count";
    hole().radius->enabled(true);
    hole().radius->value(std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(hole().commandInputSet()->valid());

    hole().radius->value(1.0);
    hole().name->required(true);
    EXPECT_FALSE(hole().areInputsValid());
    manager.activeCommand()->destroy(1);
    EXPECT_FALSE(manager.GetAlertController()->isInErrorState());
}

TEST_F(Inputs, ChangesAreToldToTheCommandAndToEachSite)
{
    AnyInput ofName, ofAll;
    auto* source = CommandInputEventSource::get();
    source->subscribe(&ofName, hole().name);
    source->subscribe(&ofAll, nullptr);
    hole().radius->value(3.0);
    hole().radius->value(3.0);
    EXPECT_EQ(hole().events, 1) << "the same value is no change";
    EXPECT_EQ(ofName.last, nullptr);
    EXPECT_EQ(ofAll.last, hole().radius);
    EXPECT_TRUE(hole().name->valueFromString(L"M6"));
    EXPECT_EQ(ofName.last, hole().name);
    hole().name->visible(false);
    EXPECT_EQ(hole().events, 3);
    source->unsubscribe(&ofAll, nullptr);

    // The command may end while its inputs are announcing a change.
    hole().endOnChange = true;
    hole().radius->value(4.0);
    EXPECT_EQ(manager.activeCommand(), nullptr);
    source->unsubscribe(&ofName, nullptr);
}

TEST_F(Inputs, ValuesGoToTextAndBack)
{
    EXPECT_EQ(hole().commandInputSet()->findInput(L"RadiusInput"), hole().radius);
    EXPECT_EQ(hole().commandInputSet()->findInput(L"Nothing"), nullptr);
    EXPECT_TRUE(hole().radius->valueFromString(L"0.1"));
    EXPECT_EQ(hole().radius->value(), 1.0) << "in millimetres";
    EXPECT_EQ(hole().radius->valueAsString(), L"0.1 cm");
    EXPECT_TRUE(hole().radius->valueFromString(L"1/8 in"));
    EXPECT_EQ(hole().radius->displayText(), L"0.318 cm");
    const double eighth = hole().radius->value();
    EXPECT_FALSE(hole().radius->valueFromString(L"45 deg"));
    EXPECT_EQ(hole().radius->value(), eighth);
    EXPECT_TRUE(hole().radius->valueFromString(hole().radius->valueAsString()));
    EXPECT_EQ(hole().radius->value(), eighth);

    auto* flag = BoolValueCommandInput::make(hole().commandInputSet(), 255, &kName);
    EXPECT_TRUE(flag->valueFromString(L"true") && flag->value());
    EXPECT_FALSE(flag->valueFromString(L"yes"));
    EXPECT_EQ(flag->valueAsString(), L"1");
    auto* count = IntegerValueCommandInput::make(hole().commandInputSet(), 255, &kName);
    EXPECT_TRUE(count->valueFromString(L"-12") && count->value() == -12);
    EXPECT_FALSE(count->valueFromString(L"1.5"));
}

TEST_F(Inputs, LimitsHoldAndAreTold)
{
    RealValueCommandInput& radius = *hole().radius;
    const auto why = [&](double value) {
        radius.value(value);
        return radius.whyInvalid();
    };
    EXPECT_EQ(why(0), L"");
    EXPECT_EQ(why(-1e-9), L"The value must be 0 cm or more.");
    radius.minimumValue(true, 0, false);
    EXPECT_EQ(why(0), L"The value must be more than 0 cm.");
    EXPECT_EQ(why(1000), L"");
    EXPECT_EQ(why(1001), L"The value must be 100 cm or less.");
    radius.maximumValue(true, 1000, false);
    EXPECT_EQ(why(1000), L"The value must be less than 100 cm.");
    radius.maximumValue(false, 0, false);
    EXPECT_EQ(why(1e9), L"");
    EXPECT_EQ(radius.measureFilter(), 2);
}

TEST_F(Inputs, WhatIsTypedAndMakesNoSenseBarsTheCommitUntilThereIsAValue)
{
    using EKind = CommandInputValueChangeEvent::EKind;
    RealValueCommandInput& radius = *hole().radius;
    radius.typed(L"5", EKind::Typing);
    radius.typed(L"5 m", EKind::Typing);
    radius.typed(L"5 mn", EKind::Typing);
    EXPECT_FALSE(radius.valid());
    EXPECT_EQ(radius.whyInvalid(), L"\"mn\" is not a unit: character 3 of \"5 mn\".");
    EXPECT_EQ(radius.value(), 5000);
    EXPECT_FALSE(hole().areInputsValidForCommit());
    radius.typed(L"5 mm", EKind::Typing);
    EXPECT_TRUE(hole().areInputsValidForCommit());
    radius.typed(L"5 mm", EKind::Entered);
    radius.typed(L"5 mm", EKind::Entered);
    EXPECT_EQ(hole().kinds, "11-12") << "a value that stays is told once more";

    radius.typed(L"", EKind::Entered);
    EXPECT_FALSE(radius.valid());
    radius.value(5);
    EXPECT_TRUE(radius.valid());
}

TEST_F(Inputs, EachNewValueExecutesTheCommandIfAllAreValid)
{
    hole().radius->value(1);
    EXPECT_EQ(hole().executions, 1);
    hole().radius->value(-1);
    hole().name->value(L"M6");
    EXPECT_EQ(hole().executions, 1);
    hole().radius->disable();
    hole().name->value(L"M8");
    EXPECT_EQ(hole().executions, 2);
    hole().name->requiresExecution(false);
    hole().name->value(L"M10");
    EXPECT_EQ(hole().executions, 2);
}

TEST_F(Inputs, WhatHoldsOfAGroupHoldsOfItsMembers)
{
    CommandInputSet* inputs = hole().commandInputSet();
    auto* outer = GroupCommandInput::make(inputs, 255, &kName);
    auto* inner = GroupCommandInput::make(inputs, 255, &kName, false);
    auto* deep = StringValueCommandInput::make(inputs, 3, &kName);
    deep->required(true);
    outer->end();
    EXPECT_EQ(StringValueCommandInput::make(inputs, 4, &kName)->group(), nullptr);
    EXPECT_EQ(deep->group(), inner);
    EXPECT_FALSE(deep->valid()) << "a group that is folded still counts";
    outer->disable();
    EXPECT_FALSE(deep->isUsable());
    EXPECT_TRUE(deep->valid());
    outer->enable();
    inner->visible(false);
    EXPECT_TRUE(deep->valid());
    EXPECT_FALSE(deep->isShown());
    inner->visible(true);
    deep->hiddenWhileDisabled(true);
    EXPECT_TRUE(deep->isShown());
    deep->disable();
    EXPECT_FALSE(deep->isShown());
}

TEST_F(Inputs, ListsMenusAndButtonsAreInputsToo)
{
    CommandInputSet* inputs = hole().commandInputSet();
    Info face(L"face", L"Face", nullptr), edge(L"edge", L"Edge", nullptr);
    auto* list = ListCommandInput::make(inputs, 5, &kName);
    list->control()->items({&face, &edge});
    list->control()->selectedItem(&edge, true);
    EXPECT_EQ(list->valueAsString(), L"edge");
    EXPECT_FALSE(list->valueFromString(L"vertex"));
    EXPECT_TRUE(list->valueFromString(L"face"));
    EXPECT_EQ(list->value(), &face);
    EXPECT_EQ(hole().kinds, "22");
    EXPECT_TRUE(list->valueFromString(L""));
    EXPECT_EQ(list->value(), nullptr);

    MenuItem line(Info::emptyInfo()), faces(&face), edges(&edge);
    line.separator(true);
    auto* menu = MenuCommandInput::make(inputs, 6, &kName);
    menu->control()->items({&faces, &line, &edges});
    menu->control()->selectItem(&faces, true, true);
    EXPECT_TRUE(menu->valueFromString(L"face|edge"));
    EXPECT_EQ(menu->valueAsString(), L"face|edge");
    EXPECT_FALSE(menu->valueFromString(L"edge|vertex"));
    EXPECT_TRUE(faces.checked());
    EXPECT_TRUE(menu->valueFromString(L""));
    EXPECT_FALSE(faces.checked() || edges.checked());

    hole().kinds.clear();
    auto* button = ButtonCommandInput::make(inputs, 7, &kName);
    button->control()->clicked();
    EXPECT_TRUE(button->valueFromString(L""));
    EXPECT_FALSE(button->valueFromString(L"1"));
    EXPECT_EQ(hole().kinds, "22");
}

TEST_F(Inputs, LinesFillTheInputsOfTheRunningCommand)
{
    const auto line = [](const std::wstring& text) {
        return Vs::TextCommandMgr::get()->executeCommandWithoutOutput(text);
    };
    using Answer = Vs::TextCommandResult;
    EXPECT_EQ(line(L"Commands.SetInput RadiusInput 5"),
              (Answer{1, L"No command that has inputs is running."}));
    std::ignore = CommandMgr::get()->executeCommand(&definition, CommandContext());
    EXPECT_EQ(line(L"Commands.SetInput RadiusInput \"1/2 in\"").first, 0u);
    EXPECT_EQ(hole().radius->value(), 12.7);
    EXPECT_EQ(line(L"Commands.SetInput RadiusInput \"1/0 in\""),
              (Answer{1, L"Division by zero: character 3 of \"1/0 in\"."}));
    EXPECT_EQ(line(L"Commands.SetInput Depth 5"),
              (Answer{1, L"There is no input \"Depth\"; there are: RadiusInput, NameInput."}));
    hole().name->disable();
    EXPECT_EQ(line(L"Commands.SetInput NameInput M6"), (Answer{1, L"\"NameInput\" can't be set now."}));
    EXPECT_EQ(line(L"Commands.SetInput RadiusInput -1").first, 0u);
    EXPECT_EQ(line(L"Commands.Inputs"), (Answer{0, L"RadiusInput \"-1 cm\"  The value must be 0 cm or more.\n"
                                                   L"NameInput \"\"  (disabled)"}));
    EXPECT_EQ(line(L"Commands.Commit"),
              (Answer{1, L"The running command can't be committed: Radius: The value "
                         L"must be 0 cm or more."}));
    hole().endOnChange = true;
    EXPECT_EQ(line(L"Commands.SetInput RadiusInput 1").first, 0u);
    EXPECT_EQ(CommandMgr::get()->activeCommand(), nullptr);
}

TEST_F(Inputs, ARecordingKeepsTheValuesWithTheirUnits)
{
    hole().radius->value(25);
    hole().name->value(L"with \"thread\"");
    const std::vector<std::wstring> expected = {L"Commands.SetInput RadiusInput \"2.5 cm\"",
                                                L"Commands.SetInput NameInput \"with \\\"thread\\\"\"",
                                                L"Commands.Commit"};
    EXPECT_EQ(TranscriptRecorder::inputLinesOf(hole()), expected);
    hole().name->enableTranscript(false);
    hole().radius->disable();
    EXPECT_EQ(TranscriptRecorder::inputLinesOf(hole()), std::vector<std::wstring>{L"Commands.Commit"});
}

/// Offers a command of its own in the list beside each field.
class Offering : public CommandInputEventSite
{
public:
    void onCommandInputEvent(CommandInputEvent* event) override
    {
        if (auto* query = Vs::cast<CommandInputQueryMRUCommandEvent>(event))
            query->addMruCommand(&measure);
        else if (const auto* trigger = Vs::cast<CommandInputTriggerMRUCommandEvent>(event))
            triggered = trigger->key();
        else if (const auto* hover = Vs::cast<CommandInputHoverEvent>(event))
            hovered = hover->entering();
    }
    Info measure{L"MeasureIt", L"Measure", nullptr};
    std::wstring triggered;
    bool hovered = false;
};

TEST_F(Inputs, OthersOfferCommandsForAFieldAndAreToldOfItsPointer)
{
    Offering offering;
    CommandInputEventSource::get()->subscribe(&offering, nullptr);
    EXPECT_EQ(hole().radius->mruCommands(), std::vector<Info*>{&offering.measure});
    hole().radius->triggerMruCommand(L"MeasureIt");
    EXPECT_EQ(offering.triggered, L"MeasureIt");
    hole().radius->hover(true);
    EXPECT_TRUE(offering.hovered);
    CommandInputEventSource::get()->unsubscribe(&offering, nullptr);
    EXPECT_TRUE(hole().radius->mruCommands().empty());
}

TEST(Controls, AListTellsItsHandlerOfEachChoiceAndForgetsWhatLeftIt)
{
    Info own(L"Recent", L"Recent", nullptr), a(L"a", L"a", nullptr), b(L"b", L"b", nullptr);
    Handler handler;
    Drawn drawn;
    {
        const std::unique_ptr<ListControl> list(ListControl::make(&own, &handler));
        list->subscribe(&drawn);
        list->items({&a, &b});
        list->selectedItem(&a, false);
        EXPECT_TRUE(handler.chosen.empty());
        list->selectedItem(&a, true);
        EXPECT_EQ(handler.chosen, std::vector<Info*>{&a}) << "to choose an entry again is a choice";
        list->items({&b});
        EXPECT_EQ(list->selectedItem(), nullptr);
        list->selectedItem(&a, true);
        EXPECT_EQ(handler.chosen.size(), 1u);
        EXPECT_EQ(drawn.changes, 3);
        EXPECT_EQ(list->tooltip().description(), L"Undo Box");
    }
    EXPECT_TRUE(drawn.destroyed);
}

TEST(Controls, AMenuKeepsAMarkForEachItem)
{
    Info own(L"Filter", L"Filter", nullptr), face(L"face", L"Face", nullptr), edge(L"edge", L"Edge", nullptr);
    MenuItem faces(&face), edges(&edge), stranger(&edge);
    Handler handler;
    const std::unique_ptr<MenuControl> menu(MenuControl::make(&own, &handler));
    menu->items({&faces, &edges});
    menu->selectItem(&faces, true, false);
    EXPECT_TRUE(faces.checked());
    EXPECT_TRUE(handler.marked.empty());
    menu->selectItem(&edges, true, true);
    menu->selectItemNotification();
    EXPECT_EQ(handler.marked, (std::vector<MenuItem*>{&edges, nullptr}));
    menu->selectItem(&stranger, true, true);
    EXPECT_FALSE(stranger.checked());
    menu->enableItem(&faces, false);
    EXPECT_FALSE(faces.enabled());
}
