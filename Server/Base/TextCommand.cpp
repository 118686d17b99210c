#include "Server/Base/TextCommand.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Private/PythonBackend.h"
#include "Server/Base/TextCommandMgr.h"

#include <algorithm>
#include <utility>

namespace Vs {

bool TextCommandParameters::hasFlag(std::wstring_view name) const
{
    return std::find(m_flags.begin(), m_flags.end(), name) != m_flags.end();
}

TextFormat::Value TextCommandParameters::value(unsigned i, TextFormat::Type type) const
{
    // The values are in the order of the types; vectors and points share one type.
    const size_t alternative =
        std::min(static_cast<size_t>(type), std::variant_size_v<TextFormat::Value> - 1);
    const std::wstring& text = parameter(i);
    if (i < m_values.size() && m_values[i].index() == alternative)
        return m_values[i];
    const std::optional<TextFormat::Value> read = TextFormat::read(type, text);
    if (!read)
        throw Exception(TextFormat::refusal(type, i, text) + L".");
    return *read;
}

long long TextCommandParameters::integer(unsigned i, long long least, unsigned long long most) const
{
    const auto number = std::get<long long>(value(i, TextFormat::Type::Integer));
    if (number < least || std::cmp_greater(number, most))
        throw Exception(L"parameter " + std::to_wstring(i + 1) + L" must be a whole number from " +
                        std::to_wstring(least) + L" to " + std::to_wstring(most) + L", not \"" +
                        parameter(i) + L"\".");
    return number;
}

TextCommandSubjectArea::TextCommandSubjectArea(std::wstring name, std::wstring description,
                                               bool forTranscripts)
    : m_name(std::move(name)), m_description(std::move(description)), m_forTranscripts(forTranscripts)
{
    TextCommandMgr::get()->add(this);
}

TextCommandSubjectArea::~TextCommandSubjectArea()
{
    TextCommandMgr::get()->remove(this);
}

void* TextCommandSubjectArea::_pythonModuleInitFunction()
{
    return PythonBackend::get().makeModule(*this);
}

TextCommand::TextCommand(std::wstring area, std::wstring name, std::wstring help, std::string format,
                         bool runsInUI, bool visible)
    : m_area(std::move(area)),
      m_name(std::move(name)),
      m_help(std::move(help)),
      m_format(std::move(format)),
      m_runsInUI(runsInUI),
      m_visible(visible)
{
    TextCommandMgr::get()->add(this);
}

TextCommand::~TextCommand()
{
    TextCommandMgr::get()->remove(this);
}

void* TextCommand::_pythonCallableFunction(void*, void* arguments, void* keywords)
{
    return PythonBackend::get().callCommand(*this, arguments, keywords);
}

} // namespace Vs
