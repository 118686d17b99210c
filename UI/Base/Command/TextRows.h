#pragma once

#include "Server/Base/Status.h"
#include "Server/Base/TextCommand.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/Info.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

// Text lines as rows of tables: the row holds the data, and the objects that register themselves are made
// from the table. All of them are of static storage:
//
//     constexpr WrapperRow kWrappers[] = {
//         {L"Design", L"Hide", L"[<path>]... Hides the components", "", &HideCmdDef::info, paths},
//     };
//     const Wrappers<kWrappers> theWrappers;

namespace Vu {

/// One row of a table of subject areas.
struct AreaRow
{
    using Checks = Vs::TextCommandSubjectArea::Checks;

    const wchar_t* name;
    const wchar_t* description;
    bool forTranscripts = false;
    Checks checks = Checks::Everything;
};

template <const AreaRow& kRow>
class SubjectArea : public Vs::PythonEntry<SubjectArea<kRow>, Vs::TextCommandSubjectArea>
{
public:
    SubjectArea()
        : Vs::PythonEntry<SubjectArea, Vs::TextCommandSubjectArea>(kRow.name, kRow.description,
                                                                   kRow.forTranscripts)
    {
    }
    AreaRow::Checks checks() const override { return kRow.checks; }
};

/// One row of a table of direct text commands.
struct DirectTextRow
{
    const wchar_t* area;
    const wchar_t* name;
    const wchar_t* help;
    const char* format = "";
    bool runsInUI = true;
    bool visible = true;
};

/// A text command with a body of its own, constructed from its row.
template <const DirectTextRow& kRow>
class DirectTextCommand : public Vs::PythonEntry<DirectTextCommand<kRow>, Vs::TextCommand>
{
protected:
    DirectTextCommand()
        : Vs::PythonEntry<DirectTextCommand, Vs::TextCommand>(kRow.area, kRow.name, kRow.help, kRow.format,
                                                              kRow.runsInUI, kRow.visible)
    {
    }
};

/// One row of a table of wrappers: a text command that runs a definition the way a click does.
struct WrapperRow
{
    using FillContext = void (*)(const Vs::TextCommandParameters&, CommandContext&);

    const wchar_t* area;
    const wchar_t* name;
    const wchar_t* help;
    const char* format;
    Info* (*info)(); ///< Of the definition that is run.
    FillContext fillContext = nullptr;
    bool global = false; ///< Runs in the global command manager.
    bool flush = false;  ///< Runs the deferred tasks afterwards.
    /// Why the line does nothing now, which is its error then; empty if the definition is to be run.
    std::wstring (*refusal)(CommandContext&) = nullptr;
};

/// What all wrappers from rows share.
class RowWrapper : public TranscriptedCommandTextCommand
{
public:
    Vs::TextCommandResult execute(const Vs::TextCommandParameters& parameters) override;

protected:
    explicit RowWrapper(const WrapperRow& row);
    void fillContext(const Vs::TextCommandParameters& parameters, CommandContext& context) override;

private:
    const WrapperRow& m_row;
};

/// The wrapper of one row of the table `kRows`.
template <const auto& kRows, size_t kIndex>
class Wrapper : public Vs::PythonEntry<Wrapper<kRows, kIndex>, RowWrapper>
{
public:
    Wrapper() : Vs::PythonEntry<Wrapper, RowWrapper>(kRows[kIndex]) {}
};

/// One wrapper for each row, in their order, in which they are also registered.
template <const auto& kRows, size_t kCount = std::size(kRows)>
class Wrappers : Wrappers<kRows, kCount - 1>
{
    Wrapper<kRows, kCount - 1> m_last;
};

template <const auto& kRows>
class Wrappers<kRows, 0>
{
};

/// Status 0 with the warnings, or status 1 with the errors.
[[nodiscard]] Vs::TextCommandResult answerOf(const Vs::Status& status);

/// Runs a command definition on behalf of a text line, through the active command manager, or the global one
/// if there is none. A line from the command box goes the normal way, a script line runs at once.
[[nodiscard]] Vs::TextCommandResult runDefinition(std::wstring_view id, CommandContext context,
                                                  const Vs::TextCommandParameters& parameters);

} // namespace Vu
