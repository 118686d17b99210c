#pragma once

#include "Server/Base/TextCommand.h"

#include <memory>

namespace Vs {

/// Where the answers of lines go: the console, the command box.
class TextOutput
{
public:
    virtual ~TextOutput() = default;
    virtual void message(const std::wstring& text) = 0;
    virtual void error(const std::wstring& text) = 0;
};

/// Splits lines of text, checks them and runs them.
///
/// A line is `<area>.<name>`, then parameters and flags separated by blanks. A parameter with blanks stands
/// in double quotes; inside quotes a backslash makes the next `"` or `\` ordinary. A word `/Name` of letters,
/// digits and `_` is a flag, unless it is quoted or holds a second slash or a dot: `/tmp/a.step` is a path.
/// An empty line and one that begins with `#` answer 0 and nothing. `help`, `help <area>` and `help
/// <area>.<name>` tell what there is.
///
/// Main thread only.
class TextCommandMgr
{
public:
    static TextCommandMgr* get();

    /// Runs a line and hands its answer to the output, if one is set.
    TextCommandResult executeCommand(std::wstring_view line, bool viaUI = false);
    /// Runs a line; the answer is returned only.
    TextCommandResult executeCommandWithoutOutput(std::wstring_view line, bool viaUI = false);
    /// Runs one command with parameters that are split already, with the checks and the error handling of a
    /// line.
    TextCommandResult execute(TextCommand& command, const TextCommandParameters& parameters);

    /// Not owned; null for none.
    void output(TextOutput* output);
    TextOutput* output() const;

    /// Throws Vs::Exception that names the first duplicate or nameless area or command, command without a
    /// help text or with an unknown area. Called once all add-ins are loaded.
    void validate() const;

    /// In order of registration.
    std::vector<TextCommandSubjectArea*> areas() const;
    std::vector<TextCommand*> commands() const;
    /// The commands of one area, in order of registration.
    std::vector<TextCommand*> commands(std::wstring_view area) const;
    /// Null if there is none.
    TextCommand* find(std::wstring_view area, std::wstring_view name) const;

    /// What could stand in place of the word that ends at `cursor`, sorted; whole `area.name` texts or flags.
    std::vector<std::wstring> complete(std::wstring_view line, size_t cursor) const;

private:
    friend class TextCommand;
    friend class TextCommandSubjectArea;

    TextCommandMgr();
    ~TextCommandMgr();
    void add(TextCommand* command);
    void add(TextCommandSubjectArea* area);
    void remove(TextCommand* command);
    void remove(TextCommandSubjectArea* area);
    TextCommandResult run(std::wstring_view line, bool viaUI);

    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Vs
