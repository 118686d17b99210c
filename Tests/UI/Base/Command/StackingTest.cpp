#include "Tests/Support/Seed.h"
#include "Tests/UI/Base/Command/Recorder.h"
#include "UI/Base/Command/CommandGroup.h"

#include <random>
#include <set>

using namespace Vu;
using CommandTest::Definition;

namespace {

class Stacking : public CommandTest::WithManager
{
protected:
    /// The names of the running commands, bottom to top, with suspended ones in brackets.
    std::string stack() const
    {
        std::string text;
        for (CommandBase* command : manager.commandStack()) {
            const std::wstring wide = command->toString();
            const std::string name(wide.begin(), wide.end());
            text += (text.empty() ? "" : " ") + (command->isActive() ? name : "[" + name + "]");
        }
        return text;
    }
};

} // namespace

TEST_F(Stacking, AnExclusiveCommandEndsEverythingThatRuns)
{
    Definition sketch(log, "Sketch", true), orbit(log, "Orbit", true), save(log, "Save", false);
    orbit.stacking(EStackingBehavior::OverCategory, StackingCategory::cameraStackingCategory());
    run(sketch);
    run(orbit);
    EXPECT_EQ(stack(), "[Sketch] Orbit");
    run(save);
    EXPECT_EQ(stack(), "");
    run(sketch);
    Definition extrude(log, "Extrude", true);
    run(extrude);
    EXPECT_EQ(stack(), "Extrude");
}

TEST_F(Stacking, ANestedSimpleCommandLeavesTheActiveOneUntouched)
{
    Definition sketch(log, "Sketch", true), fit(log, "Fit", false);
    fit.type(ECommandType::Nested);
    CommandBase* activeMeanwhile = nullptr;
    CommandBase* executing = nullptr;
    fit.during["onExecute"] = [&](CommandBase&, Vs::Status&) {
        activeMeanwhile = manager.activeCommand();
        executing = manager.executingCommand();
    };
    run(sketch);
    log.take();
    run(fit);
    EXPECT_EQ(log.take(), "Fit.onBegin Fit.onExecute Fit.onPreCommandEnd Fit.onEnd(0) Fit.onTerminate(0) "
                          "Fit.onDestroy(0) Fit.onPreDelete");
    EXPECT_EQ(activeMeanwhile, sketch.latest);
    EXPECT_NE(executing, nullptr);
    EXPECT_EQ(manager.executingCommand(), nullptr);
    EXPECT_EQ(stack(), "Sketch");
}

TEST_F(Stacking, ANestedInteractiveCommandSuspendsTheActiveOneAndGivesItBack)
{
    Definition sketch(log, "Sketch", true), pick(log, "Pick", true);
    pick.type(ECommandType::Nested);
    run(sketch);
    log.take();
    run(pick);
    EXPECT_EQ(log.take(),
              "Sketch.onDeactivate Sketch.onSuspend Pick.onBegin Pick.onActivate Pick.onPostActivate");
    EXPECT_EQ(stack(), "[Sketch] Pick");
    manager.activeCommand()->destroy(0);
    EXPECT_EQ(log.take(), "Pick.onPreCommandEnd Pick.onDeactivate Pick.onEnd(0) Pick.onTerminate(0) "
                          "Pick.onDestroy(0) Pick.onPreDelete Sketch.onResume Sketch.onActivate "
                          "Sketch.onPostActivate");
    EXPECT_EQ(stack(), "Sketch");
}

TEST_F(Stacking, ACommandOfACategoryTakesThePlaceOfTheOneBeforeIt)
{
    const auto* camera = StackingCategory::cameraStackingCategory();
    Definition sketch(log, "Sketch", true), orbit(log, "Orbit", true), pan(log, "Pan", true);
    orbit.stacking(EStackingBehavior::OverCategory, camera);
    pan.stacking(EStackingBehavior::OverCategory, camera);
    run(sketch);
    run(orbit);
    log.take();
    run(pan);
    EXPECT_EQ(stack(), "[Sketch] Pan");
    EXPECT_EQ(log.take(),
              "Orbit.onPreCommandEnd Orbit.onDeactivate Orbit.onEnd(1) Orbit.onTerminate(1) "
              "Orbit.onDestroy(1) Orbit.onPreDelete Pan.onBegin Pan.onActivate Pan.onPostActivate")
        << "the command beneath isn't woken in between";

    Definition view(log, "View", true);
    view.stacking(EStackingBehavior::OverCategory, StackingCategory::viewStackingCategory());
    run(view);
    EXPECT_EQ(stack(), "[Sketch] [Pan] View");
    run(orbit);
    EXPECT_EQ(stack(), "[Sketch] Orbit") << "there is one command of a category at most";
}

TEST_F(Stacking, AToolComesBackWhenTheOneThatAMouseButtonHeldGoes)
{
    const auto* camera = StackingCategory::cameraStackingCategory();
    Definition orbit(log, "Orbit", true), pan(log, "Pan", true), turn(log, "Turn", true);
    for (Definition* each : {&orbit, &pan, &turn})
        each->stacking(EStackingBehavior::OverCategory, camera);
    CommandContext inCanvas;
    inCanvas.accessPoint(ECommandAccessPoint::Canvas);
    run(orbit);
    std::ignore = manager.executeCommand(&pan, inCanvas);
    EXPECT_EQ(stack(), "[Orbit] Pan");
    std::ignore = manager.executeCommand(&turn, inCanvas);
    EXPECT_EQ(stack(), "[Orbit] Turn") << "a second button takes the place of the first";
    manager.activeCommand()->destroy(0);
    EXPECT_EQ(stack(), "Orbit");
    std::ignore = manager.executeCommand(&pan, inCanvas);
    run(turn);
    EXPECT_EQ(stack(), "Turn") << "a tool that is chosen takes the place of both";
}

TEST_F(Stacking, ASimpleCommandOfACategoryWakesTheCommandBeneathTheOneItEnds)
{
    const auto* view = StackingCategory::viewStackingCategory();
    Definition sketch(log, "Sketch", true), grid(log, "Grid", true), dome(log, "Dome", false);
    grid.stacking(EStackingBehavior::OverCategory, view);
    dome.stacking(EStackingBehavior::OverCategory, view);
    run(sketch);
    run(dome);
    EXPECT_EQ(stack(), "Sketch") << "nothing of its category runs: nothing ends";
    run(grid);
    run(dome);
    EXPECT_EQ(stack(), "Sketch");
}

TEST_F(Stacking, ACommandThatStacksOverNothingEndsAllEvenIfItIsNested)
{
    Definition sketch(log, "Sketch", true), pick(log, "Pick", true), close(log, "Close", false);
    pick.type(ECommandType::Nested);
    close.type(ECommandType::Nested).stacking(EStackingBehavior::OverNothing);
    run(sketch);
    run(pick);
    run(close);
    EXPECT_EQ(stack(), "");
}

TEST_F(Stacking, ACommandMayRefuseToHaveOthersRunInsideIt)
{
    Definition sketch(log, "Sketch", true), pick(log, "Pick", true), fit(log, "Fit", false);
    pick.type(ECommandType::Nested);
    fit.type(ECommandType::Nested);
    pick.letsNestedRun = false;
    run(sketch);
    run(pick);
    run(fit);
    EXPECT_EQ(stack(), "Sketch") << "the one that refuses ends, the one beneath is asked in turn";
}

TEST_F(Stacking, EndingACommandBeneathLeavesTheOneAboveIt)
{
    Definition sketch(log, "Sketch", true), orbit(log, "Orbit", true);
    orbit.stacking(EStackingBehavior::OverCategory, StackingCategory::cameraStackingCategory());
    run(sketch);
    run(orbit);
    log.take();
    sketch.latest->destroy(0);
    EXPECT_EQ(log.take(), "Sketch.onPreCommandEnd Sketch.onEnd(0) Sketch.onTerminate(0) Sketch.onDestroy(0) "
                          "Sketch.onPreDelete");
    EXPECT_EQ(stack(), "Orbit");
}

TEST_F(Stacking, ACommandMayStartAnotherOneFromAnyOfItsFunctions)
{
    Definition sketch(log, "Sketch", true), open(log, "Open", false), show(log, "Show", true);
    open.during["onExecute"] = [&](CommandBase&, Vs::Status& status) { status.merge(run(show)); };
    run(open);
    EXPECT_EQ(stack(), "Show");

    sketch.during["onBegin"] = [&](CommandBase&, Vs::Status&) { run(show); };
    run(sketch);
    EXPECT_EQ(stack(), "Show") << "what was started last took the place of the one that started it";
    EXPECT_EQ(sketch.alive, 0);

    sketch.during = {{"onEnd", [&](CommandBase&, Vs::Status&) { run(show); }}};
    run(sketch);
    manager.activeCommand()->destroy(0);
    EXPECT_EQ(stack(), "Show");
    EXPECT_EQ(sketch.alive, 0);
    EXPECT_EQ(show.alive, 1);
}

TEST_F(Stacking, TwoManagersKnowNothingOfEachOther)
{
    CommandMgr other(CommandTest::Host::session(1));
    Definition sketch(log, "Sketch", true), save(log, "Save", false);
    run(sketch);
    std::ignore = other.executeCommand(&save, CommandContext());
    EXPECT_EQ(stack(), "Sketch");
    EXPECT_EQ(other.activeCommand(), nullptr);
}

// Whatever is started and ended in whatever order, even from inside other commands: at most one command is
// active, it is the topmost, no category occurs twice, and no command is left over or lost.
TEST_F(Stacking, HoldsItsRulesUnderARandomSequence)
{
    std::mt19937 random(TestSupport::seed());
    const auto upTo = [&](size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(random); };

    const Vs::UniqueString* categories[] = {StackingCategory::cameraStackingCategory(),
                                            StackingCategory::viewStackingCategory()};
    std::vector<std::unique_ptr<Definition>> definitions;
    for (int i = 0; i < 12; ++i) {
        auto definition = std::make_unique<Definition>(log, "C" + std::to_string(i), i % 3 != 0);
        definition->type(static_cast<ECommandType>(upTo(2)));
        definition->stacking(static_cast<EStackingBehavior>(upTo(3)), categories[upTo(2)]);
        definition->letsNestedRun = upTo(4) != 0;
        definitions.push_back(std::move(definition));
    }
    // The commands refer to their definitions: they are destroyed first, even if an assertion leaves the
    // test.
    const std::shared_ptr<void> atTheEnd(nullptr, [&](void*) {
        for (auto& definition : definitions)
            definition->during.clear();
        manager.terminateAll(ETerminationReason::Cancel);
        EXPECT_EQ(stack(), "");
    });
    int depth = 0;
    const auto something = [&](CommandBase& command, Vs::Status&) {
        if (depth >= 3 || upTo(6) != 0)
            return;
        ++depth;
        switch (upTo(4)) {
        case 0:
            command.destroy(static_cast<int>(upTo(2)));
            break;
        case 1:
            if (manager.activeCommand())
                manager.activeCommand()->destroy(1);
            break;
        case 2:
            run(*definitions[upTo(definitions.size())]);
            break;
        default:
            --depth;
            throw std::runtime_error("now and then");
        }
        --depth;
    };
    for (auto& definition : definitions)
        for (const char* place : {"onBegin", "onExecute", "onActivate", "onPostActivate", "onDeactivate",
                                  "onSuspend", "onResume", "onEnd", "onTerminate", "onDestroy"})
            definition->during[place] = something;

    for (int round = 0; round < 3000; ++round) {
        if (upTo(3) == 0 && !manager.commandStack().empty())
            manager.commandStack()[upTo(manager.commandStack().size())]->destroy(static_cast<int>(upTo(2)));
        else
            run(*definitions[upTo(definitions.size())]);

        std::set<const Vs::UniqueString*> seen;
        const auto& running = manager.commandStack();
        for (size_t i = 0; i < running.size(); ++i) {
            ASSERT_TRUE(running[i]->isRunning());
            ASSERT_EQ(running[i]->isActive(), i + 1 == running.size()) << stack() << " round " << round;
            if (running[i]->onStackingBehavior() == EStackingBehavior::OverCategory) {
                ASSERT_TRUE(seen.insert(running[i]->onStackingCategory()).second)
                    << stack() << " round " << round;
            }
        }
        int alive = 0;
        for (auto& definition : definitions)
            alive += definition->alive;
        ASSERT_EQ(static_cast<size_t>(alive), running.size()) << stack() << " round " << round;
        log.take();
    }
}
