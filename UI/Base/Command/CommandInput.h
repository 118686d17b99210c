#pragma once

#include "Server/Base/Object.h"
#include "UI/Base/Command/Info.h"

#include <functional>
#include <string>

namespace Vu {

class CommandInputSet;

/// One input of a command: a number, a record, a state. Made into a set, which owns it. Main thread only.
class CommandInputBase : public Vs::Implements<CommandInputBase>
{
public:
    /// The number given at making. It need not be unique; inputs are told apart as objects.
    int number() const { return m_number; }
    Info* info() const { return m_info; }
    CommandInputSet* commandInputSet() const { return m_set; }

    bool enabled() const { return m_enabled; }
    void enabled(bool value);
    bool visible() const { return m_visible; }
    void visible(bool value);
    /// Whether a change of the input is recorded in a transcript. Default true.
    bool enableTranscript() const { return m_transcript; }
    void enableTranscript(bool value) { m_transcript = value; }
    /// Whether a change of the input makes the command run its requests anew. Default true.
    bool requiresExecution() const { return m_requiresExecution; }
    void requiresExecution(bool value) { m_requiresExecution = value; }

    /// An input that is hidden or disabled is always valid.
    bool valid() const { return !m_enabled || !m_visible || onIsValid(); }

    /// The value as text, and from it: how panels show it and transcripts keep it. False if the text is no
    /// value.
    virtual std::wstring valueAsString() const = 0;
    virtual bool valueFromString(const std::wstring& text) = 0;

protected:
    /// Enters the input with the set.
    CommandInputBase(CommandInputSet* set, int number, Info* info);
    virtual bool onIsValid() const { return true; }
    void valueChanged();
    /// Asks for the command to be executed, if this input requires that and every input of the set is valid.
    void executeIfValid();
    void stateChanged();

private:
    CommandInputSet* m_set;
    int m_number;
    Info* m_info;
    bool m_enabled = true;
    bool m_visible = true;
    bool m_transcript = true;
    bool m_requiresExecution = true;
};

/// An input with a value.
template <class T>
class CommandInput : public Vs::Implements<CommandInput<T>, CommandInputBase>
{
public:
    const T& value() const { return m_value; }
    /// Sets the value; a value that is new is told to the set's sites.
    void value(const T& value)
    {
        if (m_value == value)
            return;
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
    std::wstring valueAsString() const override;
    bool valueFromString(const std::wstring& text) override;

private:
    using Implements::Implements;
};

class IntegerValueCommandInput : public Vs::Implements<IntegerValueCommandInput, CommandInput<int>>
{
public:
    static IntegerValueCommandInput* make(CommandInputSet* set, int number, Info* info);
    std::wstring valueAsString() const override;
    bool valueFromString(const std::wstring& text) override;

private:
    using Implements::Implements;
};

class RealValueCommandInput : public Vs::Implements<RealValueCommandInput, CommandInput<double>>
{
public:
    /// `unit` is the unit in which the value is held and written, such as "cm"; empty for a plain number.
    static RealValueCommandInput* make(CommandInputSet* set, int number, Info* info, std::wstring unit = {});
    const std::wstring& unit() const { return m_unit; }
    /// The least and greatest value that is valid; without it every finite value is.
    void range(double minimum, double maximum);
    std::wstring valueAsString() const override;
    bool valueFromString(const std::wstring& text) override;

private:
    using Implements::Implements;
    bool onIsValid() const override;

    std::wstring m_unit;
    double m_minimum = 0.0;
    double m_maximum = 0.0;
    bool m_ranged = false;
};

class StringValueCommandInput : public Vs::Implements<StringValueCommandInput, CommandInput<std::wstring>>
{
public:
    static StringValueCommandInput* make(CommandInputSet* set, int number, Info* info);
    /// Whether the empty text is a valid value. Default true.
    void required(bool value) { m_required = value; }
    std::wstring valueAsString() const override { return value(); }
    bool valueFromString(const std::wstring& text) override;

private:
    using Implements::Implements;
    bool onIsValid() const override { return !m_required || !value().empty(); }

    bool m_required = false;
};

} // namespace Vu
