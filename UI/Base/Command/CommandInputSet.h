#pragma once

#include "Server/Base/Event.h"
#include "UI/Base/Command/CommandInput.h"

#include <memory>
#include <string_view>
#include <vector>

namespace Vu {

class CommandBase;
class GroupCommandInput;

/// Listens to one input.
class CommandInputEventSite : public Vs::EventSite
{
public:
    virtual void onCommandInputEvent(CommandInputEvent*) {}
};

/// Listens to all inputs of one set.
class CommandInputSetEventSite : public Vs::EventSite
{
public:
    virtual void commandInputChanged(CommandInputEvent*) {}
    /// All inputs are valid, and one that requires it asks for the command to be executed.
    virtual void commandInputSetExecute(CommandInputEvent*) {}
};

/// The inputs of one command, in the order in which they were made; owns them.
class CommandInputSet
{
public:
    /// The set belongs to whoever hands it to the command (CommandBase::commandInputSet), which is `command`.
    [[nodiscard]] static CommandInputSet* make(CommandBase* command);
    ~CommandInputSet();
    CommandInputSet(const CommandInputSet&) = delete;
    CommandInputSet& operator=(const CommandInputSet&) = delete;

    CommandBase* command() const { return m_command; }
    /// Whether every input is valid.
    [[nodiscard]] bool valid() const;
    const std::vector<std::unique_ptr<CommandInputBase>>& inputs() const { return m_inputs; }
    /// The input whose record has this key, or null.
    [[nodiscard]] CommandInputBase* findInput(std::wstring_view key) const;

    /// Passes the event to the sites of the set and of the input; for the inputs.
    void fire(CommandInputEvent* event);
    /// Called once by whoever runs the command.
    void commandEnded();

private:
    friend class CommandInputBase;
    friend class GroupCommandInput;
    friend class CommandInputEventSource;
    friend class CommandInputSetEventSource;
    explicit CommandInputSet(CommandBase* command) : m_command(command) {}
    void fireExecute(CommandInputEvent* event);

    class Source : public Vs::EventSource<CommandInputSetEventSite>
    {
    public:
        using Vs::EventSource<CommandInputSetEventSite>::fire;
    };

    CommandBase* m_command;
    std::vector<std::unique_ptr<CommandInputBase>> m_inputs;
    GroupCommandInput* m_openGroup = nullptr; ///< That the next input belongs to.
    Source m_source;
};

/// Reports the changes of single inputs. A subscription to a null input covers every input.
class CommandInputEventSource
{
public:
    static CommandInputEventSource* get();
    void subscribe(CommandInputEventSite* site, CommandInputBase* input);
    void unsubscribe(CommandInputEventSite* site, CommandInputBase* input);

private:
    friend class CommandInputSet;
    struct Subscription
    {
        CommandInputEventSite* site;
        const CommandInputBase* input;
    };
    void fire(CommandInputEvent* event);
    void forget(const CommandInputBase* input);

    std::vector<Subscription> m_subscriptions;
    int m_depth = 0;
};

/// Reports the changes of the inputs of one set.
class CommandInputSetEventSource
{
public:
    static CommandInputSetEventSource* get();
    void subscribe(CommandInputSetEventSite* site, CommandInputSet* set);
    void unsubscribe(CommandInputSetEventSite* site, CommandInputSet* set);
};

} // namespace Vu
