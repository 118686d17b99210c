#include "UI/Base/Command/CommitRefusal.h"

#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/Localized.h"

namespace Vu {
namespace {

std::wstring whatIsWrong(const CommandBase& command)
{
    for (const Alert& alert : command.commandManager()->GetAlertController()->alerts())
        if (alert.blocking)
            return alert.text;
    for (const auto& input : command.commandInputSet()->inputs())
        if (const std::wstring why = input->whyInvalid(); !why.empty())
            return input->info()->name() + L": " + why;
    return localized("InputsNotValid", "Its inputs are not valid.");
}

} // namespace

std::wstring whyNotCommitted(CommandBase& command)
{
    if (!command.commandInputSet() || command.areInputsValidForCommit() ||
        command.getPossibleMidCommandUndoContext() == EMidCommandUndoRedoContext::Step)
        return {};
    return localizedFormat("NotCommitted", "The running command can't be committed: %1%",
                           whatIsWrong(command));
}

} // namespace Vu
