#include "Server/Base/TextCommandMgr.h"
#include "Tests/UI/Base/Command/Recorder.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"

#include <gtest/gtest.h>
#include <stdexcept>

using namespace Vu;
using CommandTest::Definition;

namespace {

using Vs::TextCommandResult;

TextCommandResult line(const std::wstring& text)
{
    return Vs::TextCommandMgr::get()->executeCommandWithoutOutput(text);
}

const TextCommandResult kNothingToSay{0, L""};

class WrapperArea : public Vs::PythonEntry<WrapperArea, Vs::TextCommandSubjectArea>
{
public:
    WrapperArea() : PythonEntry(L"Wrapped", L"Wrappers of the test", true) {}
};

class TextCmdOpen : public Vs::PythonEntry<TextCmdOpen, TranscriptedCommandTextCommand>
{
public:
    TextCmdOpen()
        : PythonEntry(L"Wrapped", L"OpenCmd", L"<filename> [<count>] Opens.", "%s", false, L"OpenCommand")
    {
    }

protected:
    void fillContext(const Vs::TextCommandParameters& parameters, CommandContext& context) override
    {
        useGlobalCmdMgr(!parameters.hasFlag(L"Session"));
        flushDeferredTasks(parameters.hasFlag(L"Flush"));
        context.addArgument(CommandContext::pathArgumentName(), parameters[0]);
        if (parameters.parameters() > 1)
            context.addArgument(Vs::UniqueString::find("Count"), std::stoi(parameters[1]));
    }
};

class TextCmdPlain : public Vs::PythonEntry<TextCmdPlain, TranscriptedCommandTextCommand>
{
public:
    TextCmdPlain() : PythonEntry(L"Wrapped", L"PlainCmd", L"Runs.", "", false, L"PlainCommand") {}
};

WrapperArea area;
TextCmdOpen openCmd;
TextCmdPlain plainCmd;

class TextSurface : public testing::Test
{
protected:
    void TearDown() override { CommandMgr::get()->terminateAll(ETerminationReason::Cancel); }

    CommandTest::Log log;
    CommandTest::Host host;
};

} // namespace

TEST_F(TextSurface, AWrapperFillsTheContextRunsTheDefinitionAndAnswersItsStatus)
{
    Definition open(log, "OpenCommand", false);
    std::wstring path;
    int count = 0;
    open.during["onExecute"] = [&](CommandBase& command, Vs::Status& status) {
        path = command.commandContext()->argumentAsString(CommandContext::pathArgumentName());
        command.commandContext()->argument(Vs::UniqueString::find("Count"), CommandContext::EArgType::Int,
                                           &count);
        if (path == L"missing")
            status.addError(L"There is no file \"missing\".");
        else if (path == L"odd")
            status.addWarning(L"Annotations were left out.");
    };
    EXPECT_EQ(line(L"Wrapped.OpenCmd \"/tmp/a b.step\" 3"), kNothingToSay);
    EXPECT_EQ(path, L"/tmp/a b.step");
    EXPECT_EQ(count, 3);
    EXPECT_EQ(line(L"Wrapped.OpenCmd missing"), (TextCommandResult{1, L"There is no file \"missing\"."}));
    EXPECT_EQ(line(L"Wrapped.OpenCmd odd"), (TextCommandResult{0, L"Annotations were left out."}));
    open.applicable = [](CommandContext*) { return false; };
    EXPECT_EQ(line(L"Wrapped.OpenCmd a"), kNothingToSay) << "a line doesn't ask whether it applies";
}

TEST_F(TextSurface, AFillContextThatThrowsFailsTheLineAndRunsNothing)
{
    Definition open(log, "OpenCommand", false);
    EXPECT_EQ(line(L"Wrapped.OpenCmd a three").first, 1u);
    EXPECT_EQ(line(L"Wrapped.OpenCmd").first, 1u) << "a parameter that it reads without looking at the count";
    EXPECT_EQ(log.take(), "");
}

TEST_F(TextSurface, AWrapperRunsInTheActiveSessionUnlessItAsksForTheGlobalManager)
{
    Definition open(log, "OpenCommand", true), plain(log, "PlainCommand", true);
    CommandMgr session(CommandTest::Host::session(1));
    host.active = session.assetSession();
    host.managers[host.active] = &session;
    line(L"Wrapped.PlainCmd");
    EXPECT_EQ(session.activeCommand(), plain.latest);
    line(L"Wrapped.OpenCmd a");
    EXPECT_EQ(CommandMgr::get()->activeCommand(), open.latest);
    EXPECT_EQ(open.latest->assetSession(), session.assetSession())
        << "the global manager's run knows what is active";
    line(L"Wrapped.OpenCmd a /Session");
    EXPECT_EQ(session.activeCommand(), open.latest) << "what one line asked for doesn't stick to the next";
    host.active = nullptr;
    line(L"Wrapped.PlainCmd");
    EXPECT_EQ(CommandMgr::get()->activeCommand(), plain.latest);
}

TEST_F(TextSurface, AWrapperRunsDeferredWorkBeforeItAnswersIfAskedTo)
{
    Definition open(log, "OpenCommand", false);
    open.during["onExecute"] = [&](CommandBase&, Vs::Status&) {
        host.tasks.post([&] { log.add("released"); });
    };
    line(L"Wrapped.OpenCmd a");
    EXPECT_EQ(log.take().find("released"), std::string::npos);
    line(L"Wrapped.OpenCmd a /Flush");
    EXPECT_NE(log.take().find("Open"), std::string::npos);
    EXPECT_TRUE(host.tasks.empty());
}

TEST_F(TextSurface, AWrapperFollowsItsDefinitionAsAddInsComeAndGo)
{
    EXPECT_EQ(line(L"Wrapped.PlainCmd"),
              (TextCommandResult{1, L"The command \"PlainCommand\" is not available."}));
    {
        Definition plain(log, "PlainCommand", false);
        EXPECT_EQ(line(L"Wrapped.PlainCmd"), kNothingToSay);
        EXPECT_EQ(plainCmd.definition(), &plain);
    }
    EXPECT_EQ(line(L"Wrapped.PlainCmd").first, 1u);
    Definition again(log, "PlainCommand", false);
    EXPECT_EQ(line(L"Wrapped.PlainCmd"), kNothingToSay);
}

TEST_F(TextSurface, ALineMayRunAnotherOneOfTheSameWrapper)
{
    Definition open(log, "OpenCommand", false);
    open.during["onExecute"] = [&](CommandBase& command, Vs::Status&) {
        if (command.commandContext()->argumentAsString(CommandContext::pathArgumentName()) == L"outer") {
            host.tasks.post([&] { log.add("released"); });
            line(L"Wrapped.OpenCmd inner");
        }
    };
    EXPECT_EQ(line(L"Wrapped.OpenCmd outer /Flush"), kNothingToSay);
    EXPECT_TRUE(host.tasks.empty()) << "the inner line changed what the outer one had asked for";
}

TEST_F(TextSurface, StartRunsAnyDefinitionWithArgumentsOfTheTypeTheyReadAs)
{
    Definition image(log, "SaveAsImageCommand", false);
    CommandContext seen;
    image.during["onExecute"] = [&](CommandBase& command, Vs::Status&) { seen = *command.commandContext(); };
    EXPECT_EQ(
        line(L"Commands.Start SaveAsImageCommand \"Path=/tmp/my picture.png\" Width=1920 Scale=0.5 Name=007 "
             L"Formula=a=b Empty="),
        kNothingToSay);
    using EArgType = CommandContext::EArgType;
    ASSERT_EQ(seen.arguments(), 6u);
    EXPECT_EQ(seen.argumentAsString(CommandContext::pathArgumentName()), L"/tmp/my picture.png");
    EXPECT_EQ(seen.argumentType(1), EArgType::Int);
    EXPECT_EQ(seen.argumentType(2), EArgType::Double);
    EXPECT_EQ(seen.argumentAsString(seen.argumentName(3)), L"007") << "digits may be a name";
    EXPECT_EQ(seen.argumentAsString(seen.argumentName(4)), L"a=b");
    EXPECT_EQ(seen.argumentAsString(seen.argumentName(5)), L"");
    EXPECT_EQ(seen.commandAccessPoint(), ECommandAccessPoint::TextLine);
}

TEST_F(TextSurface, StartNamesWhatIsWrongWithALine)
{
    Definition fit(log, "FitCommand", false);
    EXPECT_EQ(line(L"Commands.Start").first, 1u);
    EXPECT_EQ(line(L"Commands.Start FitComand"),
              (TextCommandResult{1, L"There is no command \"FitComand\". Did you mean \"FitCommand\"?"}));
    EXPECT_EQ(line(L"Commands.Start FitCommand fast"),
              (TextCommandResult{1, L"Parameter 2 is not of the form <argument>=<value>: fast"}));
    EXPECT_EQ(line(L"Commands.Start FitCommand =1").first, 1u);
    EXPECT_EQ(log.take(), "");
    fit.during["onExecute"] = [](CommandBase&, Vs::Status&) { throw std::runtime_error("no view to fit"); };
    EXPECT_EQ(line(L"Commands.Start FitCommand"), (TextCommandResult{1, L"no view to fit"}));
}

TEST_F(TextSurface, CommitAndCancelEndTheRunningCommand)
{
    EXPECT_EQ(line(L"Commands.Commit"), (TextCommandResult{1, L"No command is running."}));
    EXPECT_EQ(line(L"Commands.Cancel"), (TextCommandResult{1, L"No command is running."}));
    Definition measure(log, "MeasureCommand", true);
    line(L"Commands.Start MeasureCommand");
    log.take();
    EXPECT_EQ(line(L"Commands.Commit"), kNothingToSay);
    EXPECT_NE(log.take().find("MeasureCommand.onEnd(0)"), std::string::npos);
    line(L"Commands.Start MeasureCommand");
    EXPECT_EQ(line(L"Commands.Cancel"), kNothingToSay);
    EXPECT_NE(log.take().find("MeasureCommand.onEnd(1)"), std::string::npos);
    EXPECT_EQ(measure.alive, 0);
}

TEST_F(TextSurface, ListNamesAllCommandsInTheOrderOfRegistration)
{
    Definition fit(log, "FitCommand", false), pan(log, "PanCommand", true);
    const TextCommandResult result = line(L"Commands.List");
    EXPECT_EQ(result.first, 0u);
    EXPECT_TRUE(result.second.ends_with(L"FitCommand  FitCommand\nPanCommand  PanCommand"))
        << "a key and a title a line";
}

TEST_F(TextSurface, EveryTextCommandOfTheAreaHasItsHelpAndPassesTheStartCheck)
{
    EXPECT_NO_THROW(Vs::TextCommandMgr::get()->validate());
    EXPECT_EQ(openCmd.definitionKey(), L"OpenCommand");
    EXPECT_EQ(Vs::TextCommandMgr::get()->commands(L"Commands").size(), 7u);
}
