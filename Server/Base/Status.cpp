#include "Server/Base/Status.h"

#include "Server/Base/Strings.h"

namespace Vs {

void Status::addError(std::wstring message, StatusCodeCallback* callback)
{
    m_errors.push_back({std::move(message), callback});
}

void Status::addWarning(std::wstring message)
{
    m_warnings.push_back(std::move(message));
}

std::wstring Status::toString() const
{
    std::wstring text;
    const auto append = [&](const std::wstring& line) {
        if (!text.empty())
            text += L'\n';
        text += line;
    };
    for (const Error& error : m_errors)
        append(error.message);
    if (m_errors.empty())
        for (const std::wstring& warning : m_warnings)
            append(warning);
    return text;
}

bool Status::matchingError(std::string_view text) const
{
    const std::wstring wanted = Strings::widen(text);
    for (const Error& error : m_errors)
        if (error.message.find(wanted) != std::wstring::npos)
            return true;
    return false;
}

void Status::clear()
{
    *this = Status();
}

void Status::merge(const Status& other)
{
    m_errors.insert(m_errors.end(), other.m_errors.begin(), other.m_errors.end());
    m_warnings.insert(m_warnings.end(), other.m_warnings.begin(), other.m_warnings.end());
    m_reported = m_reported || other.m_reported;
}

} // namespace Vs
