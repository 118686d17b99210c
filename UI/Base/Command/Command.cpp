#include "UI/Base/Command/Command.h"

#include "Server/Base/Require.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/CommandSteps.h"

namespace Vu {

Command::~Command()
{
    if (CommandInputSet* inputs = commandInputSet())
        CommandInputSetEventSource::get()->unsubscribe(this, inputs);
}

void Command::createCommandInputs()
{
    Vs::require(!commandInputSet() && !isActive(), "inputs are made once, before the command begins");
    CommandInputSet* inputs = onCreateCommandInputs();
    if (!inputs)
        return;
    if (inputs != commandInputSet())
        commandInputSet(inputs);
    CommandInputSetEventSource::get()->subscribe(this, inputs);
}

bool Command::validateInputs(bool forCommit)
{
    CommandInputStatus status;
    status.valid(!commandInputSet() || commandInputSet()->valid());
    if (status.valid())
        onValidateInputs(status, forCommit);
    if (commandManager()) {
        AlertController* alerts = commandManager()->GetAlertController();
        alerts->clearBlockingAlerts();
        if (!status.valid() && !status.message().empty())
            alerts->addAlert(EAlertSeverity::Error, status.message(), true);
    }
    return status.valid();
}

bool Command::onAreInputsValid()
{
    return validateInputs(false);
}

bool Command::onAreInputsValidForCommit()
{
    return validateInputs(true);
}

void Command::commandInputChanged(CommandInputEvent* event)
{
    if (!isRunning() || CommandSteps::areInputsRestored(this))
        return;
    if (Vs::cast<CommandInputValueChangeEvent>(event) || Vs::cast<CommandInputStateChangeEvent>(event))
        validateInputs(false);
    const int steps = stepsDone();
    onCommandInputEventSink(event);
    const auto* change = Vs::cast<CommandInputValueChangeEvent>(event);
    CommandSteps* own = CommandSteps::find(this);
    if (own && change && change->kind() == CommandInputValueChangeEvent::EKind::Entered &&
        stepsDone() == steps)
        own->inputSettled(change->commandInput());
}

} // namespace Vu
