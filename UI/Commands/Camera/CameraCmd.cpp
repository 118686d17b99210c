#include "UI/Commands/Camera/CameraCmd.h"

#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Commands/Camera/ActiveView.h"

#include <utility>

/// Ends a camera command. The queue knows it by its bare name.
class TerminateCmdTask : public Vs::Implements<TerminateCmdTask, Vs::Task>
{
public:
    explicit TerminateCmdTask(Vu::Commands::CameraCmd* command) : m_command(command) {}

    bool run() override
    {
        // The command goes now, and has nothing to take back any more.
        m_command->m_terminator = nullptr;
        m_command->destroy(Vu::ETerminationReason::Commit);
        return true;
    }

private:
    Vu::Commands::CameraCmd* m_command;
};

namespace Vu::Commands {

const Vs::UniqueString* CameraCmdDef::passiveArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Passive", true);
    return name;
}

const CommandContext& CameraCmdDef::passiveContext()
{
    static const CommandContext* const context = [] {
        auto* made = new CommandContext(CommandContext::emptyContext());
        made->addArgument(passiveArgumentName(), 1);
        return made;
    }();
    return *context;
}

bool CameraCmdDef::passive(CommandContext* context)
{
    int passive = 0;
    context->argument(passiveArgumentName(), CommandContext::EArgType::Int, &passive);
    return passive == 1;
}

bool CameraCmdDef::onIsApplicable(CommandContext* context) const
{
    return graphicsViewOf(context->assetSession()) != nullptr;
}

CameraCmd::CameraCmd(CameraCmdDef* definition, CommandContext* context) : Implements(definition, context)
{
    repeatable(false);
    usesCommandDialog(false);
}

CameraCmd::~CameraCmd()
{
    if (TerminateCmdTask* waiting = std::exchange(m_terminator, nullptr))
        Application::get()->deferredTasks()->remove(waiting);
}

void CameraCmd::onActivate()
{
    Implements::onActivate();
    if (Vs::SelectionMgr* selection = selectionManager())
        selection->suspendSelection();
}

void CameraCmd::onDeactivate()
{
    if (Vs::SelectionMgr* selection = selectionManager())
        selection->resumeSelection();
    Implements::onDeactivate();
}

ECommandType CameraCmd::onCommandType() const
{
    return ECommandType::Exclusive;
}

EStackingBehavior CameraCmd::onStackingBehavior() const
{
    return EStackingBehavior::OverCategory;
}

const Vs::UniqueString* CameraCmd::onStackingCategory() const
{
    return StackingCategory::cameraStackingCategory();
}

void CameraCmd::terminateCommand()
{
    if (Vs::TranscriptMgr::get()->replaying() || m_terminating)
        return;
    m_terminator = new TerminateCmdTask(this);
    Application::get()->deferredTasks()->add(m_terminator);
    m_terminating = true;
}

} // namespace Vu::Commands
