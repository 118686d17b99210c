#include "Server/Base/Exception.h"

#include "Server/Base/Strings.h"

#include <string_view>

namespace Vs {

Exception::Exception(const std::string& message, std::source_location where)
    : std::runtime_error(message), m_where(where)
{
}

Exception::Exception(const std::wstring& message, std::source_location where)
    : Exception(Strings::narrow(message), where)
{
}

std::wstring Exception::message() const
{
    return Strings::widen(what());
}

std::string Exception::where() const
{
    const std::string_view file = m_where.file_name();
    return std::string(file.substr(file.rfind('/') + 1)) + ':' + std::to_string(m_where.line());
}

} // namespace Vs
