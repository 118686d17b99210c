#pragma once

#include "Server/Base/Event.h"

namespace Vu {

class CommandBase;
class CommandContext;
class CommandDefinition;
class CommandMgr;

/// A command manager was created.
class CommandManagerEvent : public Vs::Implements<CommandManagerEvent, Vs::Event>
{
public:
    explicit CommandManagerEvent(CommandMgr* manager) : m_manager(manager) {}
    CommandMgr* commandManager() const { return m_manager; }

private:
    CommandMgr* m_manager;
};

/// A manager without a running command asks which one to run by default. A site may name another, or null for
/// none.
class CommandManagerDefaultCommandEvent : public Vs::Implements<CommandManagerDefaultCommandEvent, Vs::Event>
{
public:
    CommandManagerDefaultCommandEvent(CommandMgr* manager, CommandDefinition* definition)
        : m_manager(manager), m_definition(definition)
    {
    }
    CommandMgr* commandManager() const { return m_manager; }
    CommandDefinition* commandDefinition() const { return m_definition; }
    void commandDefinition(CommandDefinition* definition) { m_definition = definition; }

private:
    CommandMgr* m_manager;
    CommandDefinition* m_definition;
};

/// A definition made a command, which hasn't begun yet.
class CommandCreatedEvent : public Vs::Implements<CommandCreatedEvent, Vs::Event>
{
public:
    explicit CommandCreatedEvent(CommandBase* command) : m_command(command) {}
    CommandBase* command() const { return m_command; }

private:
    CommandBase* m_command;
};

/// A definition considers itself applicable. A site may disagree.
class CommandDefinitionIsApplicableEvent
    : public Vs::Implements<CommandDefinitionIsApplicableEvent, Vs::Event>
{
public:
    CommandDefinitionIsApplicableEvent(const CommandDefinition* definition, CommandContext* context)
        : m_definition(definition), m_context(context)
    {
    }
    const CommandDefinition* commandDefinition() const { return m_definition; }
    CommandContext* commandContext() const { return m_context; }
    bool applicable() const { return m_applicable; }
    void applicable(bool value) { m_applicable = value; }

private:
    const CommandDefinition* m_definition;
    CommandContext* m_context;
    bool m_applicable = true;
};

class CommandEventSite : public Vs::EventSite
{
public:
    /// What can run may have changed; whoever shows buttons asks again. Fired often: coalesce.
    virtual void commandAvailabilitiesChanged(Vs::Event*) {}
    virtual void commandManagerCreated(CommandManagerEvent*) {}
    virtual void commandManagerDefaultCommand(CommandManagerDefaultCommandEvent*) {}
    virtual void commandCreated(CommandCreatedEvent*) {}
    virtual void commandDefinitionIsApplicableNotification(CommandDefinitionIsApplicableEvent*) {}
};

class CommandEventSource : public Vs::EventSource<CommandEventSite>
{
public:
    static CommandEventSource* get();

    void fireCommandAvailabilitiesChanged();
    void fireCommandManagerCreated(CommandManagerEvent* event);
    void fireCommandManagerDefaultCommand(CommandManagerDefaultCommandEvent* event);
    void fireCommandCreated(CommandCreatedEvent* event);
    void fireCommandDefinitionIsApplicable(CommandDefinitionIsApplicableEvent* event);
};

} // namespace Vu
