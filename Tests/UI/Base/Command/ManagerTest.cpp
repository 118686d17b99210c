#include "Tests/UI/Base/Command/Recorder.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/CommandObserver.h"
#include "UI/Base/Command/UsageEvents.h"

#include <stdexcept>

using namespace Vu;
using CommandTest::Definition;

namespace {

/// Logs every run it sees.
class Watcher : public ICommandObserver
{
public:
    explicit Watcher(CommandTest::Log& log) : m_log(log) { CommandMgr::addObserver(this); }
    ~Watcher() override { CommandMgr::removeObserver(this); }

    void before(const CommandRun& run) override { m_log.add("before:" + name(run)); }
    void after(const CommandRun& run) override
    {
        m_log.add("after:" + name(run) + (run.refused ? ":refused" : "") + ":" +
                  std::to_string(static_cast<int>(run.reason)) + (run.status->isError() ? ":error" : ""));
    }

private:
    static std::string name(const CommandRun& run)
    {
        const std::wstring& id = run.definition->id();
        return std::string(static_cast<size_t>(run.depth), '>') + std::string(id.begin(), id.end());
    }
    CommandTest::Log& m_log;
};

/// Names the resting command, and reports newly created managers.
class RestingCommand : public CommandEventSite
{
public:
    explicit RestingCommand(CommandDefinition* definition) : m_definition(definition)
    {
        CommandEventSource::get()->subscribe(this);
    }
    ~RestingCommand() override { CommandEventSource::get()->unsubscribe(this); }
    void commandManagerCreated(CommandManagerEvent* event) override { created = event->commandManager(); }
    void commandManagerDefaultCommand(CommandManagerDefaultCommandEvent* event) override
    {
        event->commandDefinition(m_definition);
    }
    CommandMgr* created = nullptr;

private:
    CommandDefinition* m_definition;
};

class Manager : public CommandTest::WithManager
{
};

} // namespace

TEST_F(Manager, RemembersTheLastCommandThatMayBeRepeated)
{
    Definition fit(log, "Fit", false), save(log, "Save", false), repeat(log, "Repeat", false);
    save.repeatable(false);
    repeat.repeatable(false);
    EXPECT_EQ(manager.lastCommandDef(), nullptr);
    run(fit);
    run(save);
    EXPECT_EQ(manager.lastCommandDef(), &fit);

    // What a command runs itself isn't the user's action.
    Definition helper(log, "Helper", false);
    save.during["onExecute"] = [&](CommandBase&, Vs::Status&) { run(helper); };
    run(save);
    EXPECT_EQ(manager.lastCommandDef(), &fit);

    repeat.during["onExecute"] = [&](CommandBase& command, Vs::Status&) {
        CommandContext context = *command.commandContext();
        context.executeImmediately(false);
        context.accessPoint(12);
        std::ignore = manager.executeCommand(manager.lastCommandDef(), context);
    };
    log.take();
    run(repeat);
    EXPECT_EQ(log.take().find("Fit"), std::string::npos);
    host.tasks.flush();
    EXPECT_EQ(log.take().find("Fit.onBegin Fit.onExecute"), 0u);
}

TEST_F(Manager, AnswersAnUnknownIdWithTheNearestOnes)
{
    Definition fit(log, "FitCommand", false);
    const Vs::Status status = manager.executeCommand(L"FitComand", CommandContext());
    EXPECT_EQ(status.toString(), L"There is no command \"FitComand\". Did you mean \"FitCommand\"?");
    EXPECT_TRUE(manager.executeCommand(L"FitCommand", CommandContext()).isOk());
    EXPECT_TRUE(manager.executeCommand(static_cast<CommandDefinition*>(nullptr), CommandContext()).isError());
    EXPECT_LT(manager.executeCommand(std::wstring(1 << 20, L'x'), CommandContext()).toString().size(), 200u);
}

TEST_F(Manager, LetsObserversSeeEachRunFromItsBeginningToItsEnd)
{
    Definition sketch(log, "Sketch", true), open(log, "Open", false), refused(log, "Refused", false);
    open.type(ECommandType::Nested);
    refused.type(ECommandType::Nested);
    refused.refuses = true;
    Watcher watcher(log);
    run(sketch);
    EXPECT_EQ(log.take(), "before:Sketch Sketch.onBegin Sketch.onActivate Sketch.onPostActivate");
    open.during["onExecute"] = [&](CommandBase&, Vs::Status& status) {
        run(refused);
        status.addError(L"no file");
    };
    run(open);
    EXPECT_EQ(log.take(), "before:Open Open.onBegin Open.onExecute before:>Refused after:>Refused:refused:1 "
                          "Open.onPreCommandEnd Open.onEnd(1) Open.onTerminate(1) Open.onDestroy(1) "
                          "after:Open:1:error Open.onPreDelete");
    sketch.latest->destroy(0);
    EXPECT_NE(log.take().find("Sketch.onDestroy(0) after:Sketch:0 Sketch.onPreDelete"), std::string::npos);
}

TEST_F(Manager, ShowsObserversWhatACommandAddedToItsContext)
{
    class PathReader : public ICommandObserver
    {
    public:
        void after(const CommandRun& run) override
        {
            path = run.context->argumentAsString(CommandContext::pathArgumentName());
            CommandMgr::removeObserver(this); // From inside a call.
        }
        std::wstring path;
    } reader, unused;
    CommandMgr::addObserver(&reader);
    CommandMgr::addObserver(&unused);
    CommandMgr::removeObserver(&unused);
    Definition save(log, "Save", false);
    save.during["onExecute"] = [](CommandBase& command, Vs::Status&) {
        command.commandContext()->addArgument(CommandContext::pathArgumentName(), L"/tmp/a.quillet");
    };
    run(save);
    EXPECT_EQ(reader.path, L"/tmp/a.quillet");
    reader.path.clear();
    run(save);
    EXPECT_EQ(reader.path, L"");
}

TEST_F(Manager, TurnsErrorsIntoAlertsWhereNobodyWaitsForTheStatus)
{
    Definition save(log, "Save", false);
    save.during["onExecute"] = [](CommandBase&, Vs::Status& status) {
        status.addError(L"The disk is full.");
    };
    AlertController* alerts = manager.GetAlertController();
    run(save);
    EXPECT_TRUE(alerts->alerts().empty()) << "the caller has the status";

    CommandContext context;
    context.executeImmediately(false);
    EXPECT_TRUE(manager.executeCommand(&save, context).isOk());
    host.tasks.flush();
    ASSERT_EQ(alerts->alerts().size(), 1u);
    EXPECT_EQ(alerts->alerts()[0].text, L"The disk is full.");
    EXPECT_FALSE(alerts->isInErrorState()) << "what is over bars nothing";

    CommandContext byKey;
    byKey.accessPoint(ECommandAccessPoint::HotKey);
    std::ignore = manager.executeCommand(&save, byKey);
    EXPECT_EQ(alerts->alerts().size(), 2u);

    save.during["onExecute"] = [](CommandBase&, Vs::Status& status) {
        status.addError(L"Shown in a box already.");
        status.reported(true);
    };
    std::ignore = manager.executeCommand(&save, byKey);
    EXPECT_EQ(alerts->alerts().size(), 2u);
    alerts->clearAllAlerts();
    alerts->enabled(false);
    for (int i = 0; i < 500; ++i)
        alerts->addAlert(EAlertSeverity::Warning, std::to_wstring(i));
    EXPECT_EQ(alerts->alerts().size(), 100u);
    EXPECT_EQ(alerts->alerts().back().text, L"499");
    EXPECT_TRUE(alerts->enabled());
}

TEST_F(Manager, DropsADeferredRunWhenWhatItNeedsHasGone)
{
    CommandContext context;
    context.executeImmediately(false);
    {
        Definition shortLived(log, "ShortLived", false);
        std::ignore = manager.executeCommand(&shortLived, context);
    }
    Definition save(log, "Save", false);
    {
        CommandMgr session(CommandTest::Host::session(1));
        std::ignore = session.executeCommand(&save, context);
        // From the surviving manager, but about the session being closed.
        CommandContext aboutSession = context;
        aboutSession.assetSession(session.assetSession());
        std::ignore = manager.executeCommand(&save, aboutSession);
    }
    host.tasks.flush();
    EXPECT_EQ(log.take(), "");
    EXPECT_TRUE(host.tasks.empty());
}

TEST_F(Manager, OfASessionRestsInTheDefaultCommand)
{
    Definition select(log, "Select", true), sketch(log, "Sketch", true), save(log, "Save", false);
    RestingCommand resting(&select);
    Watcher watcher(log);
    CommandMgr session(CommandTest::Host::session(1));
    EXPECT_EQ(resting.created, &session);
    EXPECT_EQ(session.activeCommand(), nullptr);
    session.startDefaultCommand();
    EXPECT_EQ(session.activeCommand(), select.latest);
    EXPECT_EQ(session.lastCommandDef(), nullptr);
    EXPECT_EQ(log.take(), "Select.onBegin Select.onActivate Select.onPostActivate") << "nobody observes it";
    session.startDefaultCommand();
    EXPECT_EQ(log.take(), "");

    std::ignore = session.executeCommand(&sketch, CommandContext());
    EXPECT_EQ(select.alive, 0);
    session.activeCommand()->destroy(0);
    EXPECT_EQ(session.activeCommand(), select.latest);
    std::ignore = session.executeCommand(&save, CommandContext());
    EXPECT_EQ(session.activeCommand(), select.latest);

    // A command that doesn't stay active isn't retried forever.
    session.activeCommand()->destroy(1);
    select.during["onActivate"] = [](CommandBase& command, Vs::Status&) { command.destroy(1); };
    session.activeCommand()->destroy(1);
    EXPECT_EQ(session.activeCommand(), nullptr);

    run(save);
    EXPECT_EQ(manager.activeCommand(), nullptr) << "a manager without a session rests in nothing";
}

TEST_F(Manager, HasTheEnvironmentActivatedThatADefinitionPrefers)
{
    Definition sketch(log, "Sketch", true);
    run(sketch);
    EXPECT_EQ(host.environment, L"");
    sketch.environment = L"SketchEnvironment";
    sketch.during["onBegin"] = [&](CommandBase&, Vs::Status&) {
        EXPECT_EQ(host.environment, L"SketchEnvironment");
    };
    run(sketch);
    EXPECT_EQ(host.environment, L"SketchEnvironment");
}

TEST_F(Manager, CarriesUsageKeysToWhoeverListens)
{
    std::string heard;
    const boost::signals2::scoped_connection listening =
        vuGA::gaCommandEvent.connect([&](const std::string& key) { heard = key; });
    vuGA::gaCommandEvent("Quillet.SaveDocumentCmd");
    EXPECT_EQ(heard, "Quillet.SaveDocumentCmd");
}
