#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Require.h"
#include "Server/Base/TextFormat.h"

#include <array>
#include <concepts>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Vs {

/// A text command's answer: 0 and its output, or 1 and the reason of the failure.
using TextCommandResult = std::pair<unsigned int, std::wstring>;

/// The parameters and flags of one line, as the command sees them.
class TextCommandParameters
{
public:
    TextCommandParameters() = default;
    TextCommandParameters(std::vector<std::wstring> parameters, std::vector<std::wstring> flags,
                          bool viaUI = false)
        : m_parameters(std::move(parameters)), m_flags(std::move(flags)), m_viaUI(viaUI)
    {
    }

    /// How many positional parameters there are.
    unsigned parameters() const { return static_cast<unsigned>(m_parameters.size()); }
    /// The i-th positional parameter, without its quotes. Throws std::out_of_range.
    const std::wstring& parameter(unsigned i) const { return m_parameters.at(i); }
    const std::wstring& operator[](unsigned i) const { return parameter(i); }

    /// The value of the i-th positional parameter, as one number or three. If the command's format declares
    /// it, it was read when the line was checked; else it is read now. Throws Vs::Exception, "parameter 2
    /// must be a number, not "x".", where the text is something else, and std::out_of_range where there is
    /// none.
    double real(unsigned i) const { return std::get<double>(value(i, TextFormat::Type::Real)); }
    std::array<double, 3> point(unsigned i) const
    {
        return std::get<std::array<double, 3>>(value(i, TextFormat::Type::Point));
    }
    /// The same for a whole number, which must fit the type as well.
    template <std::integral Number = int>
    Number integer(unsigned i) const
    {
        return static_cast<Number>(
            integer(i, std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max()));
    }

    /// Whether the line had `/Name`; `name` is without the slash, in the same case. In a checked line, a flag
    /// has the case of the help text, however it was written.
    [[nodiscard]] bool hasFlag(std::wstring_view name) const;
    const std::vector<std::wstring>& flags() const { return m_flags; }
    /// Whether the line was typed by a person into the command box, and not run by a script.
    bool viaUI() const { return m_viaUI; }

private:
    friend class TextCommandMgr;

    TextFormat::Value value(unsigned i, TextFormat::Type type) const;
    long long integer(unsigned i, long long least, unsigned long long most) const;

    std::vector<std::wstring> m_parameters;
    /// Of the first parameters, as the command's format has it.
    std::vector<TextFormat::Value> m_values;
    std::vector<std::wstring> m_flags;
    bool m_viaUI = false;
};

/// A Python function in C's terms, `PyObject* (*)(PyObject* self, PyObject* arguments, PyObject* keywords)`,
/// without Python's headers.
using PythonFunction = void* (*)(void* self, void* arguments, void* keywords);
/// A Python module's initialisation function, `PyObject* (*)()`.
using PythonModuleInit = void* (*)();

/// A group of text commands, and a Python module of the same name. Objects of static storage, which register
/// themselves with TextCommandMgr when their library is loaded.
class TextCommandSubjectArea
{
public:
    /// `forTranscripts` tells that the area's lines serve transcripts and scripts more than people;
    /// completion offers such areas last.
    TextCommandSubjectArea(std::wstring name, std::wstring description, bool forTranscripts);
    virtual ~TextCommandSubjectArea();
    TextCommandSubjectArea(const TextCommandSubjectArea&) = delete;
    TextCommandSubjectArea& operator=(const TextCommandSubjectArea&) = delete;

    const std::wstring& name() const { return m_name; }
    const std::wstring& description() const { return m_description; }
    bool forTranscripts() const { return m_forTranscripts; }

    /// What a line may not have unless its command's help text names it: flags, or flags and surplus
    /// parameters. The help texts of such an area begin with their usage: `<text>` for a parameter, `[...]`
    /// around what may be left out, `A|B` for a choice, `...` for any number of further ones, `/Name` for a
    /// flag.
    enum class Checks { Nothing, Flags, Everything };
    virtual Checks checks() const { return Checks::Nothing; }

    /// A plain function that makes the Python module of this area.
    virtual PythonModuleInit pythonEntry() = 0;

    /// What pythonEntry's function forwards to: a new Python module object with a function for each command.
    void* _pythonModuleInitFunction();

private:
    std::wstring m_name;
    std::wstring m_description;
    bool m_forTranscripts;
};

/// One command of an area, and a Python function of it. Registers itself like the area.
class TextCommand
{
public:
    /// `format` has one `%` item for each positional parameter that is checked before the command runs: `%s`
    /// text, `%f` a real, `%d` an integer, `%v` a vector, `%p3` a point. Missing trailing parameters pass the
    /// check; the command itself knows which ones are optional. `runsInUI` says that the command works on
    /// what the person sees (and is refused nowhere); `visible` whether help and completion list it.
    TextCommand(std::wstring area, std::wstring name, std::wstring help, std::string format, bool runsInUI,
                bool visible);
    virtual ~TextCommand();
    TextCommand(const TextCommand&) = delete;
    TextCommand& operator=(const TextCommand&) = delete;

    virtual TextCommandResult execute(const TextCommandParameters& parameters) = 0;
    /// A plain function that runs this command from Python.
    virtual PythonFunction pythonEntry() = 0;

    const std::wstring& area() const { return m_area; }
    const std::wstring& name() const { return m_name; }
    const std::wstring& help() const { return m_help; }
    /// The part of the help text that says what a line accepts, with what a command accepts besides.
    virtual std::wstring usage() const { return m_help; }
    const std::string& format() const { return m_format; }
    bool runsInUI() const { return m_runsInUI; }
    bool visible() const { return m_visible; }
    /// The key of the command definition that a wrapper runs; empty for a direct command.
    virtual std::wstring definitionKey() const { return {}; }

    /// What pythonEntry's function forwards to: the arguments as `PyObject*`. Returns a new reference to the
    /// message, or null with a Python exception set when the status is 1.
    void* _pythonCallableFunction(void* self, void* arguments, void* keywords);

private:
    std::wstring m_area;
    std::wstring m_name;
    std::wstring m_help;
    std::string m_format;
    bool m_runsInUI;
    bool m_visible;
};

/// Gives a class of text commands with one static instance its Python entry:
/// `class TextCmdSleeperSleep : public Vs::PythonEntry<TextCmdSleeperSleep, Vs::TextCommand>`.
template <class Self, class Base>
class PythonEntry : public Base
{
public:
    template <class... Arguments>
    explicit PythonEntry(Arguments&&... arguments) : Base(std::forward<Arguments>(arguments)...)
    {
        require(!s_instance, "a class of text commands has one object, which Python calls");
        s_instance = this;
    }
    ~PythonEntry() override { s_instance = nullptr; }

    decltype(std::declval<Base&>().pythonEntry()) pythonEntry() override
    {
        if constexpr (std::is_base_of_v<TextCommand, Base>)
            return [](void* self, void* arguments, void* keywords) {
                return s_instance->_pythonCallableFunction(self, arguments, keywords);
            };
        else
            return [] { return s_instance->_pythonModuleInitFunction(); };
    }

private:
    static inline PythonEntry* s_instance = nullptr;
};

} // namespace Vs
