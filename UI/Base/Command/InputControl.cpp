#include "UI/Base/Command/InputControl.h"

#include "Server/Base/Require.h"
#include "UI/Base/Command/Info.h"

#include <algorithm>

namespace Vu {

InputControl::InputControl(Info* info, IInputControlHandler* handler) : m_info(info), m_handler(handler)
{
    Vs::require(info != nullptr, "a control has a record");
}

InputControl::~InputControl()
{
    m_source.forEach([this](InputControlSite* site) { site->inputControlDestroyed(this); });
}

void InputControl::info(Info* info)
{
    Vs::require(info != nullptr, "a control has a record");
    m_info = info;
    changed();
}

void InputControl::enabled(bool value)
{
    if (m_enabled == value)
        return;
    m_enabled = value;
    changed();
}

void InputControl::visible(bool value)
{
    if (m_visible == value)
        return;
    m_visible = value;
    changed();
}

void InputControl::active(bool value)
{
    if (m_active == value)
        return;
    m_active = value;
    changed();
}

void InputControl::hoverStart()
{
    if (m_handler)
        m_handler->onHoverStart();
}

void InputControl::hoverEnd()
{
    if (m_handler)
        m_handler->onHoverEnd();
}

ToolTipInfo InputControl::tooltip() const
{
    ToolTipInfo tooltip = m_info->tooltip();
    if (m_handler)
        m_handler->onUpdateTooltip(tooltip);
    return tooltip;
}

void InputControl::changed()
{
    m_source.forEach([this](InputControlSite* site) { site->inputControlChanged(this); });
}

ButtonControl::ButtonControl(Info* info, IButtonControlHandler* handler)
    : Implements(info, handler), m_buttonHandler(handler)
{
}

void ButtonControl::checked(bool value)
{
    if (m_checked == value)
        return;
    m_checked = value;
    changed();
}

void ButtonControl::clicked()
{
    if (enabled() && m_buttonHandler)
        m_buttonHandler->onClicked();
}

ListControl::ListControl(Info* info, IListControlHandler* handler)
    : Implements(info, handler), m_listHandler(handler)
{
}

ListControl* ListControl::make(Info* info, IListControlHandler* handler)
{
    return new ListControl(info, handler);
}

void ListControl::items(std::vector<Info*> items)
{
    m_items = std::move(items);
    if (std::find(m_items.begin(), m_items.end(), m_selected) == m_items.end())
        m_selected = nullptr;
    changed();
}

void ListControl::selectedItem(Info* item, bool notify)
{
    if (item && std::find(m_items.begin(), m_items.end(), item) == m_items.end())
        return;
    if (m_selected != item) {
        m_selected = item;
        changed();
    }
    if (notify && m_listHandler)
        m_listHandler->onListSelectionChanged(item);
}

void ListControl::synchronizedWithCurrentItem(bool value)
{
    if (m_synchronized == value)
        return;
    m_synchronized = value;
    changed();
}

void ListControl::split(bool value)
{
    if (m_split == value)
        return;
    m_split = value;
    changed();
}

void ListControl::clicked()
{
    if (!enabled() || !m_split)
        return;
    if (m_selected)
        selectedItem(m_selected, true);
    else if (m_listHandler)
        m_listHandler->onListSelectionChanged(info());
}

MenuControl::MenuControl(Info* info, IMenuControlHandler* handler)
    : Implements(info, handler), m_menuHandler(handler)
{
}

MenuControl* MenuControl::make(Info* info, IMenuControlHandler* handler)
{
    return new MenuControl(info, handler);
}

void MenuControl::items(std::vector<MenuItem*> items)
{
    m_items = std::move(items);
    changed();
}

bool MenuControl::holds(const MenuItem* item) const
{
    return std::find(m_items.begin(), m_items.end(), item) != m_items.end();
}

void MenuControl::selectItem(MenuItem* item, bool checked, bool notify)
{
    if (!holds(item))
        return;
    if (item->checked() != checked) {
        item->checked(checked);
        changed();
    }
    if (notify && m_menuHandler)
        m_menuHandler->onMenuSelectionChanged(item);
}

void MenuControl::selectItemNotification()
{
    if (m_menuHandler)
        m_menuHandler->onMenuSelectionChanged(nullptr);
}

void MenuControl::enableItem(MenuItem* item, bool enabled)
{
    if (!holds(item) || item->enabled() == enabled)
        return;
    item->enabled(enabled);
    changed();
}

void MenuControl::presentationStyle(EPresentationStyle style)
{
    if (m_style == style)
        return;
    m_style = style;
    changed();
}

} // namespace Vu
