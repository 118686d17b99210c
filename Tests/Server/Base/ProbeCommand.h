#pragma once

#include "Server/Base/TextCommandMgr.h"
#include "Tests/Support/Process.h"

#include <functional>

/// An area that exists for one test. A class has one object at a time: each further area has another number.
template <int number>
class NumberedArea : public Vs::PythonEntry<NumberedArea<number>, Vs::TextCommandSubjectArea>
{
public:
    using Checks = Vs::TextCommandSubjectArea::Checks;

    NumberedArea(std::wstring name, bool forTranscripts, Checks checks = Checks::Nothing)
        : NumberedArea::PythonEntry(std::move(name), L"Commands of a test", forTranscripts), m_checks(checks)
    {
    }
    Checks checks() const override { return m_checks; }

private:
    Checks m_checks;
};
using ProbeArea = NumberedArea<0>;

/// A command that answers with its arguments as "[first][second]/Flag", after an action if it has one.
class ProbeCommand : public Vs::TextCommand
{
public:
    ProbeCommand(std::wstring area, std::wstring name, std::wstring help, std::string format = "")
        : TextCommand(std::move(area), std::move(name), std::move(help), std::move(format), false, true)
    {
    }

    Vs::TextCommandResult execute(const Vs::TextCommandParameters& parameters) override
    {
        ++calls;
        if (const auto acting = action) // A copy: an action may replace itself.
            acting();
        std::wstring answer;
        for (unsigned i = 0; i < parameters.parameters(); ++i)
            answer += L'[' + parameters[i] + L']';
        for (const std::wstring& flag : parameters.flags())
            answer += L'/' + flag;
        return {status, answer};
    }
    Vs::PythonFunction pythonEntry() override { return nullptr; }

    int calls = 0;
    unsigned status = 0;
    std::function<void()> action;
};

class RecordingOutput : public Vs::TextOutput
{
public:
    void message(const std::wstring& line) override { text += line + L'\n'; }
    void error(const std::wstring& line) override { text += L"error: " + line + L'\n'; }

    std::wstring text;
};
