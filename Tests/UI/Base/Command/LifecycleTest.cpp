#include "Tests/UI/Base/Command/Recorder.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandGroup.h"

#include <stdexcept>

using namespace Vu;
using CommandTest::Definition;

namespace {

class Lifecycle : public CommandTest::WithManager
{
};

const char* const kEndOf =
    "%.onPreCommandEnd %.onDeactivate %.onEnd(#) %.onTerminate(#) %.onDestroy(#) %.onPreDelete";

/// The end of an active command, with its name and the reason filled in.
std::string endOf(const std::string& name, int reason)
{
    std::string text;
    for (const char* c = kEndOf; *c; ++c)
        text += *c == '%' ? name : *c == '#' ? std::to_string(reason) : std::string(1, *c);
    return text;
}

std::string beginOf(const std::string& name)
{
    return name + ".onBegin " + name + ".onActivate " + name + ".onPostActivate";
}

} // namespace

TEST_F(Lifecycle, ASimpleCommandBeginsExecutesEndsAndIsDeleted)
{
    Definition save(log, "Save", false);
    EXPECT_TRUE(run(save).isOk());
    EXPECT_EQ(log.take(),
              "Save.onBegin Save.onExecute Save.onPreCommandEnd Save.onEnd(0) Save.onTerminate(0) "
              "Save.onDestroy(0) Save.onPreDelete");
    EXPECT_EQ(save.alive, 0);
    EXPECT_EQ(manager.activeCommand(), nullptr);
}

TEST_F(Lifecycle, ASimpleCommandEndsWithReasonOneWhenItLeavesAnErrorOrThrows)
{
    Definition save(log, "Save", false);
    save.during["onExecute"] = [](CommandBase&, Vs::Status& status) {
        status.addError(L"The disk is full.");
    };
    EXPECT_EQ(run(save).toString(), L"The disk is full.");
    EXPECT_NE(log.take().find("Save.onEnd(1)"), std::string::npos);

    save.during["onExecute"] = [](CommandBase& command, Vs::Status&) {
        command.destroy(0);
        throw std::runtime_error("no such file: a.step");
    };
    EXPECT_EQ(run(save).toString(), L"no such file: a.step");
    EXPECT_NE(log.take().find("Save.onEnd(1)"), std::string::npos);

    save.during["onExecute"] = [](CommandBase&, Vs::Status&) { throw 17; };
    EXPECT_TRUE(run(save).isError());

    save.during.clear();
    save.during["onBegin"] = [](CommandBase&, Vs::Status&) { throw std::runtime_error("not now"); };
    EXPECT_EQ(run(save).toString(), L"not now");
    EXPECT_EQ(log.take().find("Save.onExecute Save.onBegin"), std::string::npos)
        << "executed without having begun";
    EXPECT_EQ(save.alive, 0);
}

TEST_F(Lifecycle, ASimpleCommandThatEndsItselfFinishesItsExecutionFirst)
{
    Definition save(log, "Save", false);
    save.during["onExecute"] = [&](CommandBase& command, Vs::Status&) {
        command.destroy(ETerminationReason::Cancel);
        log.add("still-there:" + std::to_string(command.isRunning()));
    };
    EXPECT_TRUE(run(save).isOk());
    EXPECT_EQ(log.take(), "Save.onBegin Save.onExecute still-there:1 Save.onPreCommandEnd Save.onEnd(1) "
                          "Save.onTerminate(1) Save.onDestroy(1) Save.onPreDelete");
    EXPECT_EQ(save.alive, 0);
}

TEST_F(Lifecycle, AnInteractiveCommandStaysUntilItIsDestroyed)
{
    Definition measure(log, "Measure", true);
    run(measure);
    EXPECT_EQ(log.take(), beginOf("Measure"));
    ASSERT_EQ(manager.activeCommand(), measure.latest);
    EXPECT_TRUE(measure.latest->isActive());

    manager.activeCommand()->destroy(0);
    EXPECT_EQ(log.take(), endOf("Measure", 0));
    EXPECT_EQ(measure.alive, 0);
    EXPECT_EQ(manager.activeCommand(), nullptr);
}

TEST_F(Lifecycle, ACommandIsOnTheStackInOnEndAndOffItInOnTerminate)
{
    Definition measure(log, "Measure", true);
    size_t inOnEnd = 9, inOnTerminate = 9;
    measure.during["onEnd"] = [&](CommandBase&, Vs::Status&) { inOnEnd = manager.commandStack().size(); };
    measure.during["onTerminate"] = [&](CommandBase& command, Vs::Status&) {
        inOnTerminate = manager.commandStack().size();
        EXPECT_EQ(command.commandManager(), &manager);
        command.destroy(0); // Already ended: does nothing.
    };
    run(measure);
    manager.activeCommand()->destroy(1);
    EXPECT_EQ(inOnEnd, 1u);
    EXPECT_EQ(inOnTerminate, 0u);
    EXPECT_EQ(measure.alive, 0);
}

TEST_F(Lifecycle, ACommandMayEndItselfFromAnyOfItsFunctions)
{
    Definition measure(log, "Measure", true);
    const auto endItself = [](CommandBase& command, Vs::Status&) { command.destroy(1); };

    measure.during["onBegin"] = endItself;
    run(measure);
    EXPECT_EQ(log.take(), "Measure.onBegin Measure.onPreCommandEnd Measure.onEnd(1) Measure.onTerminate(1) "
                          "Measure.onDestroy(1) Measure.onPreDelete")
        << "what was never activated isn't deactivated";

    measure.during = {{"onActivate", endItself}};
    run(measure);
    EXPECT_EQ(log.take(), "Measure.onBegin Measure.onActivate " + endOf("Measure", 1));

    measure.during = {{"onDeactivate", endItself}, {"onEnd", endItself}};
    run(measure);
    manager.activeCommand()->destroy(0);
    EXPECT_EQ(log.take(), beginOf("Measure") + " " + endOf("Measure", 0));
    EXPECT_EQ(measure.alive, 0);
}

TEST_F(Lifecycle, AnInteractiveCommandThatThrowsAtItsStartIsEndedAndReported)
{
    Definition measure(log, "Measure", true);
    for (const char* place : {"onBegin", "onActivate", "onPostActivate"}) {
        measure.during = {{place, [](CommandBase&, Vs::Status&) { throw std::runtime_error("no view"); }}};
        EXPECT_EQ(run(measure).toString(), L"no view") << place;
        EXPECT_NE(log.take().find("Measure.onEnd(1)"), std::string::npos) << place;
        EXPECT_TRUE(manager.commandStack().empty()) << place;
        EXPECT_EQ(measure.alive, 0) << place;
    }
}

TEST_F(Lifecycle, AnExceptionOnTheWayOutStopsNothingAndBecomesAnAlert)
{
    Definition measure(log, "Measure", true);
    for (const char* place :
         {"onPreCommandEnd", "onDeactivate", "onEnd", "onTerminate", "onDestroy", "onPreDelete"})
        measure.during[place] = [](CommandBase&, Vs::Status&) { throw std::runtime_error("broken"); };
    run(measure);
    log.take();
    manager.activeCommand()->destroy(0);
    EXPECT_EQ(log.take(), endOf("Measure", 0));
    EXPECT_EQ(measure.alive, 0);
    EXPECT_TRUE(manager.commandStack().empty());
    EXPECT_FALSE(manager.GetAlertController()->alerts().empty());
}

TEST_F(Lifecycle, ACommandIsNotDeletedWhileOneOfItsFunctionsRuns)
{
    Definition measure(log, "Measure", true);
    measure.during["onKeyPress"] = [&](CommandBase& command, Vs::Status&) {
        command.destroy(0);
        EXPECT_FALSE(command.isRunning());
        EXPECT_EQ(measure.alive, 1) << "deleted under its own feet";
    };
    run(measure);
    Vs::cast<InteractiveCommandBase>(manager.activeCommand())->keyPress(nullptr);
    EXPECT_EQ(measure.alive, 0);

    run(measure);
    {
        CommandInUse outer(measure.latest);
        CommandInUse inner(measure.latest);
        measure.latest->destroy(0);
        EXPECT_EQ(measure.alive, 1);
    }
    EXPECT_EQ(measure.alive, 0);
}

TEST_F(Lifecycle, ADefinitionThatRefusesEndsTheRunQuietlyAndLeavesTheActiveCommand)
{
    Definition measure(log, "Measure", true), exit(log, "Exit", false);
    exit.stacking(EStackingBehavior::OverNothing);
    exit.refuses = true;
    run(measure);
    log.take();
    EXPECT_TRUE(run(exit).isOk());
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(manager.activeCommand(), measure.latest);
}

TEST_F(Lifecycle, StepsAreTakenBackAndDoneAgainUntilANewOneBegins)
{
    Definition sketch(log, "Sketch", true);
    run(sketch);
    CommandBase& command = *sketch.latest;
    log.take();
    EXPECT_FALSE(command.canUndoStep());
    EXPECT_EQ(command.getPossibleMidCommandUndoContext(), EMidCommandUndoRedoContext::None);

    command.beginStep(true, true);
    command.beginStep(true, true);
    EXPECT_EQ(log.take(), "Sketch.onStepBegin Sketch.onPreStepEnd Sketch.onStepEnd(0) Sketch.onStepBegin");
    command.applyStep();
    command.undoStep();
    command.undoStep();
    command.undoStep(); // There are two.
    EXPECT_FALSE(command.canUndoStep());
    EXPECT_EQ(command.getPossibleMidCommandRedoContext(), EMidCommandUndoRedoContext::Step);
    command.redoStep();
    EXPECT_EQ(log.take(), "Sketch.onPreStepEnd Sketch.onStepEnd(0) Sketch.onStepUndo Sketch.onStepUndo "
                          "Sketch.onStepRedo");

    command.beginStep(true, false);
    command.endStep(ETerminationReason::Cancel);
    EXPECT_EQ(log.take(), "Sketch.onStepBegin Sketch.onPreStepAbort Sketch.onStepEnd(1)");
    EXPECT_TRUE(command.canRedoStep()) << "an aborted step changes nothing";
    command.beginStep(false, true);
    command.endStep(ETerminationReason::Commit);
    EXPECT_FALSE(command.canRedoStep());
    EXPECT_FALSE(command.canUndoStep()) << "a step that can't be taken back bars the way";

    command.beginStep(true, true);
    log.take();
    command.destroy(1);
    EXPECT_EQ(log.take().find("Sketch.onPreCommandEnd Sketch.onPreStepAbort Sketch.onStepEnd(1)"), 0u);
}

TEST_F(Lifecycle, AManagerThatGoesCancelsItsCommandsTheTopmostFirst)
{
    Definition measure(log, "Measure", true), orbit(log, "Orbit", true);
    orbit.stacking(EStackingBehavior::OverCategory, StackingCategory::cameraStackingCategory());
    {
        CommandMgr session(CommandTest::Host::session(1));
        std::ignore = session.executeCommand(&measure, CommandContext());
        std::ignore = session.executeCommand(&orbit, CommandContext());
        log.take();
    }
    EXPECT_EQ(log.take(), endOf("Orbit", 1) +
                              " Measure.onPreCommandEnd Measure.onEnd(1) Measure.onTerminate(1) "
                              "Measure.onDestroy(1) Measure.onPreDelete");
    EXPECT_EQ(measure.alive + orbit.alive, 0);
}

TEST_F(Lifecycle, ACommandMayCloseTheSessionOfTheManagerThatRunsIt)
{
    Definition close(log, "Close", false), measure(log, "Measure", true);
    close.stacking(EStackingBehavior::ByType).type(ECommandType::Nested);
    auto session = std::make_unique<CommandMgr>(CommandTest::Host::session(1));
    std::ignore = session->executeCommand(&measure, CommandContext());
    close.during["onExecute"] = [&](CommandBase& command, Vs::Status& status) {
        session.reset();
        EXPECT_EQ(measure.alive, 0);
        EXPECT_EQ(command.commandManager(), nullptr);
        command.destroy(1); // Without a manager: does nothing.
        status.addWarning(L"closed");
    };
    const Vs::Status status = session->executeCommand(&close, CommandContext());
    EXPECT_EQ(status.toString(), L"closed");
    EXPECT_EQ(close.alive, 0);
}

TEST_F(Lifecycle, ADefinitionThatGoesTakesItsRunningCommandsAlong)
{
    static Info leavingInfo(L"LeavingCommand", L"Leaving", nullptr);
    struct Leaving : InteractiveCommandBase
    {
        Leaving(CommandDefinition* definition, CommandContext* context, CommandTest::Log& calls)
            : InteractiveCommandBase(definition, context), log(calls)
        {
        }
        ~Leaving() override { log.add("deleted"); }
        void onEnd(ETerminationReason reason) override
        {
            log.add(commandDefinition() ? "with" : "without");
            log.add(reason == ETerminationReason::Cancel ? "cancelled" : "committed");
            if (atEnd)
                atEnd();
        }
        ECommandType onCommandType() const override { return ECommandType::Nested; }
        CommandTest::Log& log;
        std::function<void()> atEnd;
    };
    struct LeavingDefinition : CommandDefinition
    {
        explicit LeavingDefinition(CommandTest::Log& calls) : CommandDefinition(&leavingInfo), log(calls) {}
        CommandBase* onCreateCommand(CommandContext* context) override
        {
            auto* command = new Leaving(this, context, log);
            command->atEnd = atEnd;
            return command;
        }
        CommandTest::Log& log;
        std::function<void()> atEnd;
    };
    Definition measure(log, "Measure", true);
    measure.type(ECommandType::Nested);
    {
        LeavingDefinition leaving(log);
        std::ignore = manager.executeCommand(&leaving, CommandContext());
        run(measure);
        EXPECT_EQ(manager.commandStack().size(), 2u);
        log.take();
        EXPECT_EQ(manager.lastCommandDef(), &measure);
    }
    EXPECT_EQ(log.take(), "without cancelled deleted");
    EXPECT_EQ(manager.activeCommand(), measure.latest);
    CommandMgr::terminateAllCommands(ETerminationReason::Commit);
    EXPECT_EQ(measure.alive, 0);
    {
        LeavingDefinition leaving(log);
        std::ignore = manager.executeCommand(&leaving, CommandContext());
        EXPECT_EQ(manager.lastCommandDef(), &leaving);
    }
    EXPECT_EQ(manager.lastCommandDef(), nullptr);
    log.take();

    auto session = std::make_unique<CommandMgr>(CommandTest::Host::session(1));
    {
        LeavingDefinition leaving(log);
        leaving.atEnd = [&] { session.reset(); };
        for (int i = 0; i < 2; ++i)
            std::ignore = session->executeCommand(&leaving, CommandContext());
        EXPECT_EQ(session->commandStack().size(), 2u);
    }
    EXPECT_EQ(session, nullptr);
    EXPECT_EQ(log.take(), "without cancelled without cancelled deleted deleted");
}
