#include "Tests/UI/Base/Command/Recorder.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/InputControl.h"

#include <gtest/gtest.h>
#include <stdexcept>

using namespace Vu;
using CommandTest::Definition;

namespace {

class Definitions : public testing::Test
{
protected:
    CommandDefinitionMgr* registry = CommandDefinitionMgr::get();
    CommandTest::Log log;
    CommandTest::Host host;
    CommandContext context;
};

std::string faultsOf(const CommandDefinitionMgr& registry)
{
    try {
        registry.validate();
        return {};
    } catch (const std::logic_error& error) {
        return error.what();
    }
}

class Veto : public CommandEventSite
{
public:
    Veto() { CommandEventSource::get()->subscribe(this); }
    ~Veto() override { CommandEventSource::get()->unsubscribe(this); }
    void commandDefinitionIsApplicableNotification(CommandDefinitionIsApplicableEvent* event) override
    {
        ++asked;
        event->applicable(false);
    }
    int asked = 0;
};

} // namespace

TEST_F(Definitions, AreKnownByTheirKeyForAsLongAsTheyLiveInTheOrderOfRegistration)
{
    EXPECT_EQ(registry->findCommandDefinitionById(L"Save"), nullptr);
    const unsigned long before = registry->generation();
    {
        Definition save(log, "Save", false), open(log, "Open", false);
        EXPECT_EQ(registry->findCommandDefinitionById(L"Save"), &save);
        EXPECT_EQ(registry->findCommandDefinitionById(L"save"), nullptr) << "keys keep their case";
        const auto& all = registry->commandDefinitions();
        ASSERT_GE(all.size(), 2u);
        EXPECT_EQ(all[all.size() - 2], &save);
        EXPECT_EQ(all.back(), &open);
    }
    EXPECT_EQ(registry->findCommandDefinitionById(L"Save"), nullptr);
    EXPECT_EQ(registry->generation(), before + 4);
}

TEST_F(Definitions, WithATakenKeyOrNoneStopTheProgramByName)
{
    EXPECT_EQ(faultsOf(*registry), "");
    {
        Definition first(log, "SaveDocumentCommand", false);
        Definition second(log, "SaveDocumentCommand", false);
        Definition nameless(log, "", false);
        const std::string faults = faultsOf(*registry);
        EXPECT_NE(faults.find("\"SaveDocumentCommand\""), std::string::npos) << faults;
        EXPECT_NE(faults.find("has no key (CommandTest::Definition)"), std::string::npos) << faults;
        EXPECT_EQ(registry->findCommandDefinitionById(L"SaveDocumentCommand"), &first);
    }
    EXPECT_EQ(faultsOf(*registry), "") << "an add-in that went took its faults along";
}

TEST_F(Definitions, AreFoundByTheGroupsTheyJoined)
{
    Definition pan(log, "Pan", true), zoom(log, "Zoom", true);
    pan.joinCommandGroup(CommandGroup::CameraGroup());
    pan.joinCommandGroup(CommandGroup::BaseGroup());
    pan.joinCommandGroup(CommandGroup::CameraGroup());
    zoom.joinCommandGroup(CommandGroup::CameraGroup());
    EXPECT_EQ(registry->commandDefinitionsOfGroup(CommandGroup::CameraGroup()),
              (std::vector<CommandDefinition*>{&pan, &zoom}));
    EXPECT_EQ(pan.commandGroups().size(), 2u);
    EXPECT_TRUE(registry->commandDefinitionsOfGroup(CommandGroup::VeloraSolidGroup()).empty());
}

TEST_F(Definitions, SuggestTheKeysNearestToAMistypedOne)
{
    Definition fit(log, "FitCommand", false), save(log, "SaveDocumentCommand", false),
        pan(log, "PanCommand", true);
    EXPECT_EQ(registry->similarIds(L"FitComand", 1), std::vector<std::wstring>{L"FitCommand"});
    EXPECT_EQ(registry->similarIds(L"savedocument", 1), std::vector<std::wstring>{L"SaveDocumentCommand"});
    EXPECT_TRUE(registry->similarIds(L"EntirelyElsewhere").empty());
    EXPECT_TRUE(registry->similarIds(L"").empty());
    EXPECT_TRUE(registry->similarIds(std::wstring(1 << 20, L'x')).empty());
}

TEST_F(Definitions, AreApplicableUnlessTheyOrAnyoneElseDisagrees)
{
    Definition save(log, "Save", false);
    EXPECT_TRUE(save.isApplicable(&context));
    {
        Veto veto;
        EXPECT_FALSE(save.isApplicable(&context));
        save.applicable = [](CommandContext*) { return false; };
        EXPECT_FALSE(save.isApplicable(&context));
        EXPECT_EQ(veto.asked, 1) << "nobody is asked about a command that says no itself";
    }
    save.applicable = [](CommandContext*) -> bool { throw std::runtime_error("no session"); };
    EXPECT_FALSE(save.isApplicable(&context));
    save.applicable = nullptr;
    save.visible = false;
    EXPECT_TRUE(save.isApplicable(&context));
    EXPECT_FALSE(save.isAvailable(&context));
}

TEST_F(Definitions, RunFromAButtonOnlyWhenAvailableAndAfterTheClickIsOver)
{
    Definition save(log, "Save", false);
    CommandMgr session(CommandTest::Host::session(1));
    host.active = session.assetSession();
    host.managers[host.active] = &session;
    AssetSession* ranOn = nullptr;
    save.during["onExecute"] = [&](CommandBase& command, Vs::Status&) { ranOn = command.assetSession(); };

    auto* button = Vs::cast<ButtonControl>(save.inputControl());
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(save.inputControl(), button) << "made once";
    button->clicked();
    EXPECT_EQ(log.take(), "");
    host.tasks.flush();
    EXPECT_EQ(ranOn, host.active);
    log.take();

    save.applicable = [](CommandContext*) { return false; };
    button->clicked();
    host.tasks.flush();
    EXPECT_EQ(log.take(), "");

    save.updateInputControl(&context);
    EXPECT_FALSE(button->enabled());
    EXPECT_TRUE(button->visible());
    // A line of text doesn't ask.
    EXPECT_TRUE(save.executeCommand(context).isOk());
    EXPECT_NE(log.take(), "");
}

TEST_F(Definitions, RunInTheManagerOfTheirContextElseOfTheActiveSessionElseOfTheProgram)
{
    Definition measure(log, "Measure", true);
    CommandMgr one(CommandTest::Host::session(1)), two(CommandTest::Host::session(2));
    host.managers = {{one.assetSession(), &one}, {two.assetSession(), &two}};

    std::ignore = measure.executeCommand(context);
    EXPECT_EQ(CommandMgr::get()->activeCommand(), measure.latest);
    CommandMgr::get()->terminateAll(ETerminationReason::Cancel);

    host.active = two.assetSession();
    std::ignore = measure.executeCommand(context);
    ASSERT_EQ(two.activeCommand(), measure.latest);
    EXPECT_EQ(measure.latest->assetSession(), two.assetSession()) << "the manager's session stands in";
    EXPECT_EQ(CommandBase::getActiveCommand(), measure.latest);

    context.assetSession(one.assetSession());
    std::ignore = measure.executeCommand(context);
    EXPECT_EQ(one.activeCommand(), measure.latest);
    one.terminateAll(ETerminationReason::Cancel);
    two.terminateAll(ETerminationReason::Cancel);
}

TEST_F(Definitions, KeepTheirRecordsAndCastToTheHandlersTheyAre)
{
    Info info(L"Exit", L"Exit Application", nullptr, ToolTipInfo(L"Ends the program"), "ctrl+q",
              HotKeyBinding::EHotKeyMode::Standard);
    EXPECT_EQ(info.hotkey().keys(), "ctrl+q");
    EXPECT_EQ(info.tooltip().description(), L"Ends the program");
    info.changeAppearance(L"Quit", nullptr);
    EXPECT_EQ(info.name(), L"Quit");
    EXPECT_EQ(info.key(), L"Exit");
    EXPECT_TRUE(Info(L"Fit", L"Fit", nullptr).hotkey().empty());
    EXPECT_EQ(Info::emptyInfo()->key(), L"");

    Definition save(log, "Save", false);
    EXPECT_EQ(Vs::cast<IButtonControlHandler>(&save), static_cast<IButtonControlHandler*>(&save));
    EXPECT_EQ(Vs::cast<CommandDefinition>(&save), &save);
    EXPECT_EQ(Vs::cast<IListControlHandler>(&save), nullptr);
    EXPECT_EQ(CommandDefinition::selectCommandId(), L"SelectCommand");
}
