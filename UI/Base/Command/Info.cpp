#include "UI/Base/Command/Info.h"

#include <utility>

namespace Vu {

ToolTipInfo::ToolTipInfo(std::wstring description, std::wstring extended, Vs::Resource* image)
    : m_description(std::move(description)), m_extended(std::move(extended)), m_image(image)
{
}

HotKeyBinding::HotKeyBinding(std::string keys, EHotKeyMode mode) : m_keys(std::move(keys)), m_mode(mode) {}

Info::Info(std::wstring key, std::wstring name, Vs::ImageSetResource* icon)
    : m_key(std::move(key)), m_name(std::move(name)), m_icon(icon)
{
}

Info::Info(std::wstring key, std::wstring name, Vs::ImageSetResource* icon, ToolTipInfo tooltip)
    : m_key(std::move(key)), m_name(std::move(name)), m_icon(icon), m_tooltip(std::move(tooltip))
{
}

Info::Info(std::wstring key, std::wstring name, Vs::ImageSetResource* icon, ToolTipInfo tooltip,
           std::string hotkey, HotKeyBinding::EHotKeyMode mode)
    : m_key(std::move(key)),
      m_name(std::move(name)),
      m_icon(icon),
      m_tooltip(std::move(tooltip)),
      m_hotkey(std::move(hotkey), mode)
{
}

Info* Info::emptyInfo()
{
    static Info info(L"", L"", nullptr);
    return &info;
}

void Info::changeAppearance(std::wstring name, Vs::ImageSetResource* icon)
{
    m_name = std::move(name);
    m_icon = icon;
}

} // namespace Vu
