#include "UI/Base/Command/CommandDefinition.h"

#include "Server/Base/Require.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Command/Private/CommandHost.h"
#include "UI/Base/Command/Private/CommandStack.h"

#include <algorithm>
#include <exception>
#include <tuple>

namespace Vu {

CommandDefinition::CommandDefinition(Info* info) : m_info(info ? info : Info::emptyInfo())
{
    CommandDefinitionMgr::get()->add(this);
}

CommandDefinition::~CommandDefinition()
{
    CommandDefinitionMgr::get()->remove(this);
    CommandStack::definitionGone(this);
}

bool CommandDefinition::isApplicable(CommandContext* context) const
{
    try {
        if (!onIsApplicable(context))
            return false;
    } catch (const std::exception&) {
        return false;
    }
    CommandDefinitionIsApplicableEvent event(this, context);
    CommandEventSource::get()->fireCommandDefinitionIsApplicable(&event);
    return event.applicable();
}

bool CommandDefinition::isVisible(CommandContext* context) const
{
    return onIsVisible(context);
}

bool CommandDefinition::isAvailable(CommandContext* context) const
{
    return isVisible(context) && isApplicable(context);
}

CommandBase* CommandDefinition::createCommand(CommandContext* context)
{
    CommandBase* command = onCreateCommand(context);
    if (command) {
        CommandCreatedEvent event(command);
        CommandEventSource::get()->fireCommandCreated(&event);
    }
    return command;
}

Vs::Status CommandDefinition::executeCommand(const CommandContext& context)
{
    CommandMgr* manager = context.commandManager();
    if (!manager)
        manager = CommandMgr::getActiveCommandManager();
    if (!manager)
        manager = CommandMgr::get();
    return manager->executeCommand(this, context);
}

void CommandDefinition::executeLater(CommandContext context)
{
    context.executeImmediately(false);
    std::ignore = executeCommand(context);
}

InputControl* CommandDefinition::inputControl()
{
    return onInputControl();
}

void CommandDefinition::updateInputControl(CommandContext* context)
{
    onUpdateInputControl(context);
}

std::wstring CommandDefinition::preferredEnvironment()
{
    return onPreferredEnvironment();
}

const std::wstring& CommandDefinition::selectCommandId()
{
    static const std::wstring id = L"SelectCommand";
    return id;
}

void CommandDefinition::runByHand(ECommandAccessPoint point)
{
    CommandContext context = CommandContext::activeContext();
    context.accessPoint(point);
    if (!isAvailable(&context))
        return;
    // The command may remove the toolbar that is still handling the click.
    if (!CommandHost::get()->takesOver(this, context))
        executeLater(context);
}

void CommandDefinition::joinCommandGroup(const Vs::UniqueString* group)
{
    Vs::require(group != nullptr, "a group has a name");
    if (std::find(m_groups.begin(), m_groups.end(), group) == m_groups.end())
        m_groups.push_back(group);
}

bool CommandDefinition::onIsApplicable(CommandContext*) const
{
    return true;
}

bool CommandDefinition::onIsVisible(CommandContext*) const
{
    return true;
}

void CommandDefinition::onUpdateInputControl(CommandContext* context)
{
    InputControl* control = inputControl();
    if (!control)
        return;
    control->visible(isVisible(context));
    control->enabled(isApplicable(context));
}

InputControl* CommandDefinition::onInputControl()
{
    if (!m_button)
        m_button = std::make_unique<ButtonControl>(m_info, this);
    return m_button.get();
}

std::wstring CommandDefinition::onPreferredEnvironment()
{
    return {};
}

bool CommandDefinition::onAddToContextMenu()
{
    return false;
}

} // namespace Vu
