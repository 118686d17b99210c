#pragma once

#include "Server/Base/Event.h"

#include <string>
#include <vector>

namespace Vu {

class CommandInputBase;
class Info;

/// Something happens to an input, or is asked about it. Each kind is a class of its own.
class CommandInputEvent : public Vs::Implements<CommandInputEvent, Vs::Event>
{
public:
    explicit CommandInputEvent(CommandInputBase* input) : m_input(input) {}
    CommandInputBase* commandInput() const { return m_input; }

private:
    CommandInputBase* m_input;
};

/// The value is new.
class CommandInputValueChangeEvent : public Vs::Implements<CommandInputValueChangeEvent, CommandInputEvent>
{
public:
    enum class EKind {
        Typing = 1,  ///< For the moment: the person is still typing or dragging.
        Entered = 2, ///< Final. Follows Typing with the same value when the person is done.
    };

    CommandInputValueChangeEvent(CommandInputBase* input, EKind kind) : Implements(input), m_kind(kind) {}
    EKind kind() const { return m_kind; }

private:
    EKind m_kind;
};

/// The input was enabled, disabled, shown or hidden, or was given a text that is not a value.
class CommandInputStateChangeEvent : public Vs::Implements<CommandInputStateChangeEvent, CommandInputEvent>
{
public:
    using Implements::Implements;
};

/// The pointer entered the input's field, or left it.
class CommandInputHoverEvent : public Vs::Implements<CommandInputHoverEvent, CommandInputEvent>
{
public:
    CommandInputHoverEvent(CommandInputBase* input, bool entering) : Implements(input), m_entering(entering)
    {
    }
    bool entering() const { return m_entering; }

private:
    bool m_entering;
};

/// The list beside a field is about to open, which offers recent values and, from this event, commands that
/// can fill the field.
class CommandInputQueryMRUCommandEvent
    : public Vs::Implements<CommandInputQueryMRUCommandEvent, CommandInputEvent>
{
public:
    using Implements::Implements;

    /// The record is not owned.
    void addMruCommand(Info* command) { m_commands.push_back(command); }
    const std::vector<Info*>& mruCommands() const { return m_commands; }

private:
    std::vector<Info*> m_commands;
};

/// A command of that list was chosen. Whoever added it runs it.
class CommandInputTriggerMRUCommandEvent
    : public Vs::Implements<CommandInputTriggerMRUCommandEvent, CommandInputEvent>
{
public:
    CommandInputTriggerMRUCommandEvent(CommandInputBase* input, std::wstring key)
        : Implements(input), m_key(std::move(key))
    {
    }
    /// The key of the record that was added.
    const std::wstring& key() const { return m_key; }

private:
    std::wstring m_key;
};

} // namespace Vu
