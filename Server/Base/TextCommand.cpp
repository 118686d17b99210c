#include "Server/Base/TextCommand.h"

#include "Server/Base/Private/PythonBackend.h"
#include "Server/Base/TextCommandMgr.h"

#include <algorithm>

namespace Vs {

bool TextCommandParameters::hasFlag(std::wstring_view name) const
{
    return std::find(m_flags.begin(), m_flags.end(), name) != m_flags.end();
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
