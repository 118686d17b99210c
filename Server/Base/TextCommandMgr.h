#pragma once

#include "Server/Base/TextCommand.h"

#include <memory>

namespace Vs {

/// Where lines' answers go: the console, the command box.
class TextOutput
{
public:
    virtual ~TextOutput() = default;
    virtual void message(const std::wstring& text) = 0;
    virtual void error(const std::wstring& text) = 0;
};

/// Sees each text command that is called directly, not by another one.
class TextCommandObserver
{
public:
    virtual ~TextCommandObserver() = default;
    virtual void before(const TextCommand& command) = 0;
    virtual void after(const TextCommand& command, const TextCommandParameters& parameters,
                       const TextCommandResult& result) = 0;
};

/// Splits lines of text, checks them and runs them.
///
/// A line is `<area>.<name>`, then parameters and flags separated by blanks. Text in double quotes keeps its
/// blanks, and inside quotes a backslash makes the next `"` or `\` ordinary; quotes may begin inside a word
/// (`Path="a b"` is the one parameter `Path=a b`).
///
/// A word that is `/` and then a name of ASCII letters, digits and `_` is a flag. Anything else that begins
/// with a slash is a parameter, so `/tmp/a.step`, `/a.step` and `/` are paths. The rule considers the word
/// alone and never the disk, so that a line means the same on every machine: quotes make any word a
/// parameter, and a folder directly under the root needs them (`"/models"`).
///
/// An empty line and one that begins with `#` answer 0 and nothing. `help` (or `?`), `help <area>` and `help
/// <area>.<name>` describe what there is. A line has at most kLongestLine characters.
///
/// Main thread only.
class TextCommandMgr
{
public:
    /// In characters.
    static constexpr size_t kLongestLine = 1 << 20;

    static TextCommandMgr* get();

    /// Runs a line and hands its answer to the output, if one is set.
    TextCommandResult executeCommand(std::wstring_view line, bool viaUI = false);
    /// Runs a line; the answer is returned only.
    TextCommandResult executeCommandWithoutOutput(std::wstring_view line, bool viaUI = false);
    /// Runs one command with already split parameters, with the checks and the error handling of a line.
    TextCommandResult execute(TextCommand& command, TextCommandParameters parameters);

    /// Not owned; null for none.
    void output(TextOutput* output);
    TextOutput* output() const;
    /// Not owned; null for none.
    void observer(TextCommandObserver* observer);

    /// Throws Vs::Exception that names the first duplicate or nameless area or command, command without a
    /// help text or with an unknown area. Called once all add-ins are loaded.
    void validate() const;

    /// In order of registration.
    [[nodiscard]] std::vector<TextCommandSubjectArea*> areas() const;
    [[nodiscard]] std::vector<TextCommand*> commands() const;
    /// The commands of one area, in order of registration.
    [[nodiscard]] std::vector<TextCommand*> commands(std::wstring_view area) const;
    /// Null if there is none.
    [[nodiscard]] TextCommand* find(std::wstring_view area, std::wstring_view name) const;

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
