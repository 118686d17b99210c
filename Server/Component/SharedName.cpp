#include "Server/Component/SharedName.h"

#include <functional>
#include <utility>

namespace Vs {

SharedName::SharedName(std::wstring text) : m_shared(text.empty() ? nullptr : new Shared(std::move(text))) {}

const std::wstring& SharedName::text() const
{
    static const std::wstring none;
    return m_shared ? m_shared->text : none;
}

SharedName RecentNames::shared(const std::wstring& text)
{
    SharedName& name = m_names[std::hash<std::wstring>()(text) % kRemembered];
    if (name != text)
        name = SharedName(text);
    return name;
}

} // namespace Vs
