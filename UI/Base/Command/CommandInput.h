#pragma once

#include "Server/Base/Object.h"
#include "UI/Base/Command/CommandInputEvents.h"
#include "UI/Base/Command/Info.h"

#include <string>

namespace Vu {

class CommandInputSet;
class GroupCommandInput;

/// One input of a command: a number, a record, a state. Made into a set, which owns it. Main thread only.
class CommandInputBase : public Vs::Implements<CommandInputBase>
{
public:
    /// The number given at making. It need not be unique; inputs are told apart as objects.
    int number() const { return m_number; }
    Info* info() const { return m_info; }
    CommandInputSet* commandInputSet() const { return m_set; }
    /// The innermost group that contains the input; null outside of any.
    GroupCommandInput* group() const { return m_group; }

    bool enabled() const { return m_enabled; }
    void enabled(bool value);
    void enable() { enabled(true); }
    void disable() { enabled(false); }
    bool visible() const { return m_visible; }
    void visible(bool value);
    /// Whether it is hidden as long as it is disabled. Default false.
    bool hiddenWhileDisabled() const { return m_hiddenWhileDisabled; }
    void hiddenWhileDisabled(bool value);
    /// Whether a person can only look at the value. Default false.
    bool readOnly() const { return m_readOnly; }
    void readOnly(bool value);

    /// Whether it and the groups around it are enabled, or visible.
    [[nodiscard]] bool isUsable() const;
    [[nodiscard]] bool isShown() const;

    /// Whether a change of the input is recorded in a transcript. Default true.
    bool enableTranscript() const { return m_transcript; }
    void enableTranscript(bool value) { m_transcript = value; }
    /// Whether a change of the input makes the command run its requests again. Default true.
    bool requiresExecution() const { return m_requiresExecution; }
    void requiresExecution(bool value) { m_requiresExecution = value; }

    /// An input that is hidden or disabled is always valid.
    [[nodiscard]] bool valid() const { return whyInvalid().empty(); }
    /// A sentence for the user; empty if the input is valid.
    [[nodiscard]] std::wstring whyInvalid() const;
    /// Whether an invalid input isn't wrong, but waits for what the user does next.
    virtual bool isAwaiting() const { return false; }

    /// The value as text that reads back exactly: how transcripts keep it.
    [[nodiscard]] virtual std::wstring valueAsString() const = 0;
    /// False if the text is not a value.
    [[nodiscard]] virtual bool valueFromString(const std::wstring& text) = 0;
    /// Sets a value from text; returns why the text is not a value, as a sentence for the user, or an empty
    /// text.
    [[nodiscard]] std::wstring take(const std::wstring& text);
    /// The value as a panel shows it.
    virtual std::wstring displayText() const { return valueAsString(); }

    /// Takes what a person types into the input's field. If it is not a value, the old one stays, but the
    /// input is invalid until it gets a value. `kind` says whether the person is done.
    void typed(const std::wstring& text, CommandInputValueChangeEvent::EKind kind);

    /// Whether the field contains a text that is not a value.
    bool refused() const { return !m_refusal.empty(); }

    /// Set by whoever draws the input.
    void hover(bool entering);

    /// Cancels what the user is doing in the canvas for this input, for Escape. False if there is nothing to
    /// cancel.
    virtual bool giveUp() { return false; }

    /// The command has ended; its session is still there. For the input set.
    virtual void commandEnded() {}
    /// The command is about to change the model, in which nothing of its preview is left.
    virtual void modelWillChange() {}

protected:
    using EKind = CommandInputValueChangeEvent::EKind;

    /// Enters the input with the set.
    CommandInputBase(CommandInputSet* set, int number, Info* info);
    /// Why the value isn't valid; empty if it is.
    virtual std::wstring onWhyInvalid() const { return {}; }
    /// Why a text is not a value.
    virtual std::wstring whyRefused(const std::wstring& text) const;
    /// Announces the new value and, if the input requires it and all inputs are valid, has the command
    /// executed.
    void valueChanged();
    void stateChanged();
    /// The value was set to what it is already.
    void valueConfirmed();

private:
    CommandInputSet* m_set;
    GroupCommandInput* m_group;
    int m_number;
    Info* m_info;
    std::wstring m_refusal; ///< Why the text in the field is not a value.
    EKind m_kind = EKind::Entered;
    bool m_typing = false; ///< The last value was of the kind Typing.
    bool m_enabled = true;
    bool m_visible = true;
    bool m_hiddenWhileDisabled = false;
    bool m_readOnly = false;
    bool m_transcript = true;
    bool m_requiresExecution = true;
};

/// An input with a value.
template <class T>
class CommandInput : public Vs::Implements<CommandInput<T>, CommandInputBase>
{
public:
    const T& value() const { return m_value; }
    /// Sets the value; the set's sites are told if it is new.
    void value(const T& value)
    {
        if (m_value == value) {
            this->valueConfirmed();
            return;
        }
        m_value = value;
        this->valueChanged();
    }

protected:
    using Vs::Implements<CommandInput<T>, CommandInputBase>::Implements;

private:
    T m_value{};
};

class BoolValueCommandInput : public Vs::Implements<BoolValueCommandInput, CommandInput<bool>>
{
public:
    static BoolValueCommandInput* make(CommandInputSet* set, int number, Info* info);
    /// "1" or "0"; "true" and "false" are read as well.
    [[nodiscard]] std::wstring valueAsString() const override;
    [[nodiscard]] bool valueFromString(const std::wstring& text) override;

protected:
    using Implements::Implements;
};

class IntegerValueCommandInput : public Vs::Implements<IntegerValueCommandInput, CommandInput<int>>
{
public:
    static IntegerValueCommandInput* make(CommandInputSet* set, int number, Info* info);
    [[nodiscard]] std::wstring valueAsString() const override;
    [[nodiscard]] bool valueFromString(const std::wstring& text) override;

private:
    using Implements::Implements;
};

class StringValueCommandInput : public Vs::Implements<StringValueCommandInput, CommandInput<std::wstring>>
{
public:
    static StringValueCommandInput* make(CommandInputSet* set, int number, Info* info);
    /// Whether the empty text is not a valid value. Default false.
    void required(bool value) { m_required = value; }
    [[nodiscard]] std::wstring valueAsString() const override { return value(); }
    [[nodiscard]] bool valueFromString(const std::wstring& text) override;

private:
    using Implements::Implements;
    std::wstring onWhyInvalid() const override;

    bool m_required = false;
};

} // namespace Vu
