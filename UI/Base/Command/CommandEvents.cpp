#include "UI/Base/Command/CommandEvents.h"

namespace Vu {

CommandEventSource* CommandEventSource::get()
{
    // Never destroyed: add-ins unsubscribe while the process is shutting down, in an order nobody controls.
    static CommandEventSource* const source = new CommandEventSource;
    return source;
}

void CommandEventSource::fireCommandAvailabilitiesChanged()
{
    Vs::Event event(Vs::Timing::Notification);
    fire(&CommandEventSite::commandAvailabilitiesChanged, &event);
}

void CommandEventSource::fireCommandManagerCreated(CommandManagerEvent* event)
{
    fire(&CommandEventSite::commandManagerCreated, event);
}

void CommandEventSource::fireCommandManagerDefaultCommand(CommandManagerDefaultCommandEvent* event)
{
    fire(&CommandEventSite::commandManagerDefaultCommand, event);
}

void CommandEventSource::fireCommandCreated(CommandCreatedEvent* event)
{
    fire(&CommandEventSite::commandCreated, event);
}

void CommandEventSource::fireCommandDefinitionIsApplicable(CommandDefinitionIsApplicableEvent* event)
{
    fire(&CommandEventSite::commandDefinitionIsApplicableNotification, event);
}

} // namespace Vu
