#include "Server/Base/TextCommandMgr.h"

#include "Server/Base/Exception.h"
#include "Server/Base/LineCoverage.h"
#include "Server/Base/Private/TextLine.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandHelp.h"
#include "Server/Base/TextCommandRegistry.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <cxxabi.h>
#include <new>
#include <optional>

namespace Vs {

namespace {

// Lines run lines, and a line that leads back to itself must end before the stack does.
constexpr int kDeepestNesting = 100;

TextCommandResult failure(std::wstring message)
{
    return {1u, std::move(message)};
}

} // namespace

struct TextCommandMgr::Data
{
    TextCommandRegistry registry;
    TextOutput* output = nullptr;
    TextCommandObserver* observer = nullptr;
    int depth = 0;

    TextCommandResult execute(const TextCommandRegistry::Entry& entry, TextCommandParameters& parameters)
    {
        TextCommand& command = *entry.command;
        LineCoverage::count(command.area(), command.name());
        TextCommandObserver* const told = depth == 0 ? observer : nullptr;
        if (!told)
            return executeChecked(entry, parameters);
        told->before(command);
        TextCommandResult result = executeChecked(entry, parameters);
        told->after(command, parameters, result);
        return result;
    }

    TextCommandResult executeChecked(const TextCommandRegistry::Entry& entry,
                                     TextCommandParameters& parameters)
    {
        TextCommand& command = *entry.command;
        if (entry.format) {
            auto read = entry.format->read(parameters.m_parameters);
            if (const size_t* wrong = std::get_if<size_t>(&read))
                return failure(command.area() + L'.' + command.name() + L": " +
                               TextFormat::refusal(entry.format->types()[*wrong], *wrong,
                                                   parameters.m_parameters[*wrong]) +
                               L".");
            parameters.m_values = std::get<0>(std::move(read));
        }
        if (std::wstring wrong = notTaken(entry, parameters); !wrong.empty())
            return failure(std::move(wrong));
        if (depth >= kDeepestNesting)
            return failure(command.area() + L'.' + command.name() +
                           L": text lines run each other without end.");
        struct Depth
        {
            int& value;
            ~Depth() { --value; }
        } guard{++depth};

        const auto raised = [&](const std::wstring& what) {
            return failure(command.area() + L'.' + command.name() + L": " + what);
        };
        try {
            return command.execute(parameters);
        } catch (const boost::bad_lexical_cast&) {
            return raised(L"a parameter does not have the form that this command needs.");
        } catch (const Exception& error) {
            return raised(error.message());
        } catch (const std::out_of_range&) {
            return raised(L"a parameter is missing or out of range.");
        } catch (const std::bad_alloc&) {
            return raised(L"there is not enough memory.");
        } catch (const std::exception& error) {
            return raised(Strings::widen(error.what()));
        } catch (const abi::__forced_unwind&) {
            throw; // The thread is being ended, and must not be kept from it.
        } catch (...) {
            return raised(L"an unknown failure.");
        }
    }

    /// What the line has that its command doesn't accept; empty if it accepts everything. Flags get the
    /// spelling that the command knows.
    static std::wstring notTaken(const TextCommandRegistry::Entry& entry, TextCommandParameters& parameters)
    {
        using Checks = TextCommandSubjectArea::Checks;
        const TextCommand& command = *entry.command;
        if (entry.checks == Checks::Nothing ||
            (parameters.m_flags.empty() && parameters.m_parameters.empty()))
            return {};
        if (!entry.usage)
            entry.usage.emplace(command.usage());
        const TextUsage& usage = *entry.usage;
        for (std::wstring& flag : parameters.m_flags) {
            const std::wstring* full = usage.flag(flag);
            if (!full)
                return unknownFlagMessage(command, flag, usage.flags);
            flag = *full;
        }
        const size_t most = usage.mostParameters.value_or(parameters.parameters());
        if (entry.checks == Checks::Everything && parameters.parameters() > most)
            return surplusMessage(command, most, parameters.m_parameters[most]);
        return {};
    }
};

TextCommandMgr::TextCommandMgr() : m_data(std::make_unique<Data>()) {}
TextCommandMgr::~TextCommandMgr() = default;

TextCommandMgr* TextCommandMgr::get()
{
    // Never destroyed: commands are statics of many libraries, and each takes itself out when it goes.
    static auto* const manager = new TextCommandMgr;
    return manager;
}

TextCommandResult TextCommandMgr::executeCommand(std::wstring_view line, bool viaUI)
{
    TextCommandResult result = run(line, viaUI);
    if (m_data->output && !(result.first == 0 && result.second.empty())) {
        if (result.first == 0)
            m_data->output->message(result.second);
        else
            m_data->output->error(result.second);
    }
    return result;
}

TextCommandResult TextCommandMgr::executeCommandWithoutOutput(std::wstring_view line, bool viaUI)
{
    return run(line, viaUI);
}

TextCommandResult TextCommandMgr::execute(TextCommand& command, TextCommandParameters parameters)
{
    assertMainThread();
    const auto* entry = m_data->registry.find(command);
    const bool known = entry && entry->command == &command;
    return known ? m_data->execute(*entry, parameters)
                 : m_data->execute({&command, std::nullopt}, parameters);
}

TextCommandResult TextCommandMgr::run(std::wstring_view line, bool viaUI)
{
    if (line.size() > kLongestLine)
        return failure(L"The line has " + std::to_wstring(line.size()) + L" characters; " +
                       std::to_wstring(kLongestLine) + L" are allowed.");
    TextLine words(line);
    if (!words.skipBlanks() || line[words.position()] == L'#')
        return {0u, {}};
    const std::wstring_view word = words.plainWord();
    if (word == L"help" || word == L"?") {
        words.skipBlanks();
        return helpOn(m_data->registry, words.plainWord());
    }
    const size_t dot = word.find(L'.');
    const auto* entry = dot == std::wstring_view::npos
                            ? nullptr
                            : m_data->registry.find(word.substr(0, dot), word.substr(dot + 1));
    if (!entry)
        return failure(unknownCommandMessage(m_data->registry, word));

    TextCommandParameters parameters;
    parameters.m_viaUI = viaUI;
    try {
        while (words.skipBlanks()) {
            std::wstring text;
            if (words.next(text) == TextLine::Word::Flag)
                parameters.m_flags.push_back(std::move(text));
            else
                parameters.m_parameters.push_back(std::move(text));
        }
    } catch (const Exception& error) {
        return failure(entry->command->area() + L'.' + entry->command->name() + L": " + error.message());
    }
    return m_data->execute(*entry, parameters);
}

void TextCommandMgr::output(TextOutput* output)
{
    m_data->output = output;
}

TextOutput* TextCommandMgr::output() const
{
    return m_data->output;
}

void TextCommandMgr::observer(TextCommandObserver* observer)
{
    m_data->observer = observer;
}

void TextCommandMgr::validate() const
{
    m_data->registry.validate();
}

std::vector<TextCommandSubjectArea*> TextCommandMgr::areas() const
{
    return m_data->registry.areas;
}

std::vector<TextCommand*> TextCommandMgr::commands() const
{
    return m_data->registry.commands;
}

std::vector<TextCommand*> TextCommandMgr::commands(std::wstring_view area) const
{
    std::vector<TextCommand*> found;
    for (TextCommand* command : m_data->registry.commands)
        if (command->area() == area)
            found.push_back(command);
    return found;
}

TextCommand* TextCommandMgr::find(std::wstring_view area, std::wstring_view name) const
{
    const auto* entry = m_data->registry.find(area, name);
    return entry ? entry->command : nullptr;
}

void TextCommandMgr::add(TextCommand* command)
{
    assertMainThread();
    m_data->registry.commands.push_back(command);
    m_data->registry.changed();
}

void TextCommandMgr::add(TextCommandSubjectArea* area)
{
    assertMainThread();
    m_data->registry.areas.push_back(area);
    m_data->registry.changed();
}

void TextCommandMgr::remove(TextCommand* command)
{
    assertMainThread();
    std::erase(m_data->registry.commands, command);
    m_data->registry.changed();
}

void TextCommandMgr::remove(TextCommandSubjectArea* area)
{
    assertMainThread();
    std::erase(m_data->registry.areas, area);
    m_data->registry.changed();
}

} // namespace Vs
