#include "Tests/Command/Recorder.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/InputControl.h"

#include <gtest/gtest.h>
#include <limits>

using namespace Vu;

namespace {

Info kRadius(L"RadiusInput", L"Radius", nullptr);
Info kName(L"NameInput", L"Name", nullptr);

/// Asks for a radius above nothing and a name.
class HoleCommand : public Vs::Implements<HoleCommand, Command>
{
public:
    HoleCommand(CommandDefinition* definition, CommandContext* context) : Implements(definition, context) {}

    CommandInputSet* onCreateCommandInputs() override
    {
        CommandInputSet* inputs = CommandInputSet::make(this);
        radius = RealValueCommandInput::make(inputs, 1, &kRadius, L"cm");
        radius->range(0.0, 100.0);
        name = StringValueCommandInput::make(inputs, 2, &kName);
        return inputs;
    }
    void onCommandInputEventSink(CommandInputEvent* event) override
    {
        ++events;
        if (endOnChange && event->kind() == CommandInputEvent::EKind::Value)
            destroy(ETerminationReason::Cancel);
    }
    void onValidateInputs(CommandInputStatus& status, bool forCommit) override
    {
        if (radius->value() == 0.0 && forCommit)
            status.invalid(L"The radius must not be 0.");
    }
    void onClearCommandRequests(bool) override {}

    RealValueCommandInput* radius = nullptr;
    StringValueCommandInput* name = nullptr;
    int events = 0;
    bool endOnChange = false;
};

class HoleCommandDefinition : public Vs::Implements<HoleCommandDefinition, CommandDefinition>
{
public:
    HoleCommandDefinition() : Implements(&s_info) {}
    HoleCommand* latest = nullptr;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override
    {
        return latest = new HoleCommand(this, context);
    }

private:
    static inline Info s_info{L"HoleCommand", L"Hole", nullptr};
};

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
        manager.executeCommand(&definition, CommandContext());
        ASSERT_EQ(manager.activeCommand(), definition.latest);
    }
    HoleCommand& hole() { return *definition.latest; }

    HoleCommandDefinition definition;
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
    hole().radius->enabled(false);
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
    hole().name->valueFromString(L"M6");
    EXPECT_EQ(ofName.last, hole().name);
    hole().name->visible(false);
    EXPECT_EQ(hole().events, 3);
    source->unsubscribe(&ofAll, nullptr);

    // The command may end while its inputs tell of a change.
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
    EXPECT_EQ(hole().radius->valueAsString(), L"0.1");
    EXPECT_FALSE(hole().radius->valueFromString(L"0,1"));
    EXPECT_FALSE(hole().radius->valueFromString(L""));
    EXPECT_EQ(hole().radius->value(), 0.1);

    auto* flag = BoolValueCommandInput::make(hole().commandInputSet(), 255, &kName);
    EXPECT_TRUE(flag->valueFromString(L"true") && flag->value());
    EXPECT_FALSE(flag->valueFromString(L"yes"));
    EXPECT_EQ(flag->valueAsString(), L"1");
    auto* count = IntegerValueCommandInput::make(hole().commandInputSet(), 255, &kName);
    EXPECT_TRUE(count->valueFromString(L"-12") && count->value() == -12);
    EXPECT_FALSE(count->valueFromString(L"1.5"));
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
