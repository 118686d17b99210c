#include "Tests/UI/Base/Command/Recorder.h"

#include "Server/Base/Strings.h"

#include <utility>

namespace CommandTest {

using namespace Vu;

namespace {

/// A command that logs each call and then does what its definition says.
template <class Base>
class Recording : public Vs::Implements<Recording<Base>, Base>
{
public:
    Recording(Definition* definition, CommandContext* context)
        : Vs::Implements<Recording<Base>, Base>(definition, context), m_definition(definition)
    {
        this->repeatable(definition->isRepeatable);
        ++m_definition->alive;
        m_definition->latest = this;
        m_definition->commands.push_back(this);
    }
    ~Recording() override
    {
        --m_definition->alive;
        std::erase(m_definition->commands, this);
        if (m_definition->latest == this)
            m_definition->latest = nullptr;
    }

    void onBegin() override { call("onBegin"); }
    void onActivate() override { call("onActivate"); }
    void onPostActivate() override { call("onPostActivate"); }
    void onDeactivate() override { call("onDeactivate"); }
    void onSuspend() override { call("onSuspend"); }
    void onResume() override { call("onResume"); }
    void onPreCommandEnd() override { call("onPreCommandEnd"); }
    void onEnd(ETerminationReason reason) override { call("onEnd", reason); }
    void onTerminate(ETerminationReason reason) override { call("onTerminate", reason); }
    void onDestroy(ETerminationReason reason) override { call("onDestroy", reason); }
    void onPreDelete() override { call("onPreDelete"); }
    void onStepBegin() override { call("onStepBegin"); }
    void onPreStepEnd() override { call("onPreStepEnd"); }
    void onPreStepAbort() override { call("onPreStepAbort"); }
    void onStepEnd(ETerminationReason reason) override { call("onStepEnd", reason); }
    void onStepUndo() override { call("onStepUndo"); }
    void onStepRedo() override { call("onStepRedo"); }
    ECommandType onCommandType() const override { return m_definition->commandType; }
    EStackingBehavior onStackingBehavior() const override { return m_definition->behavior; }
    const Vs::UniqueString* onStackingCategory() const override
    {
        return m_definition->category ? m_definition->category : Base::onStackingCategory();
    }
    bool canCommandRunAsNested(const CommandBase*) const override { return m_definition->letsNestedRun; }

protected:
    void call(const std::string& function)
    {
        Vs::Status nobodysStatus;
        m_definition->called(*this, function, nobodysStatus);
    }
    void call(const std::string& function, ETerminationReason reason)
    {
        call(function + "(" + std::to_string(static_cast<int>(reason)) + ")");
    }

    Definition* m_definition;
};

class RecordingSimple : public Recording<SimpleCommand>
{
public:
    using Recording<SimpleCommand>::Recording;
    void onExecute(Vs::Status& status) override { m_definition->called(*this, "onExecute", status); }
};

class RecordingInteractive : public Recording<InteractiveCommandBase>
{
public:
    using Recording<InteractiveCommandBase>::Recording;
    void onKeyPress(KeyEvent*) override { call("onKeyPress"); }
};

} // namespace

void Log::add(const std::string& entry)
{
    m_text += (m_text.empty() ? "" : " ") + entry;
}

std::string Log::take()
{
    return std::exchange(m_text, {});
}

Definition::Definition(Log& log, const std::string& name, bool interactive)
    : Definition(log, name, interactive,
                 std::make_unique<Info>(Vs::Strings::widen(name), Vs::Strings::widen(name), nullptr))
{
}

Definition::Definition(Log& log, const std::string& name, bool interactive, std::unique_ptr<Info> info)
    : Implements(info.get()), m_info(std::move(info)), m_log(log), m_name(name), m_interactive(interactive)
{
}

Definition::~Definition()
{
    during.clear();
    while (!commands.empty()) {
        CommandBase* last = commands.back();
        commands.pop_back();
        last->destroy(ETerminationReason::Cancel);
    }
}

Definition& Definition::type(ECommandType type)
{
    commandType = type;
    return *this;
}

Definition& Definition::stacking(EStackingBehavior stacking, const Vs::UniqueString* stackingCategory)
{
    behavior = stacking;
    category = stackingCategory;
    return *this;
}

Definition& Definition::repeatable(bool value)
{
    isRepeatable = value;
    return *this;
}

void Definition::called(CommandBase& command, const std::string& function, Vs::Status& status)
{
    m_log.add(m_name + "." + function);
    if (const auto action = during.find(function.substr(0, function.find('('))); action != during.end())
        action->second(command, status);
}

bool Definition::onIsApplicable(CommandContext* context) const
{
    return !applicable || applicable(context);
}

CommandBase* Definition::onCreateCommand(CommandContext* context)
{
    if (refuses)
        return nullptr;
    if (m_interactive)
        return new RecordingInteractive(this, context);
    return new RecordingSimple(this, context);
}

AssetSession* Host::session(int number)
{
    static char places[16];
    return reinterpret_cast<AssetSession*>(&places[number]);
}

} // namespace CommandTest
