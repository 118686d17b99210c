#include "UI/Base/Command/ControlCommandInputs.h"

#include "UI/Base/Command/CommandInputSet.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <algorithm>

namespace Vu {

ListCommandInput* ListCommandInput::make(CommandInputSet* set, int number, Info* info)
{
    return new ListCommandInput(set, number, info);
}

ListCommandInput::ListCommandInput(CommandInputSet* set, int number, Info* info)
    : Implements(set, number, info), m_control(info, this)
{
}

std::wstring ListCommandInput::valueAsString() const
{
    return value() ? value()->key() : std::wstring();
}

bool ListCommandInput::valueFromString(const std::wstring& text)
{
    const std::vector<Info*>& items = m_control.items();
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const Info* item) { return item->key() == text; });
    if (found == items.end() && !text.empty())
        return false;
    Info* item = text.empty() ? nullptr : *found;
    if (item != value())
        m_control.selectedItem(item, true);
    return true;
}

void ListCommandInput::onListSelectionChanged(Info*)
{
    valueChanged();
}

MenuCommandInput* MenuCommandInput::make(CommandInputSet* set, int number, Info* info)
{
    return new MenuCommandInput(set, number, info);
}

MenuCommandInput::MenuCommandInput(CommandInputSet* set, int number, Info* info)
    : Implements(set, number, info), m_control(info, this)
{
}

std::wstring MenuCommandInput::valueAsString() const
{
    std::wstring text;
    for (const MenuItem* item : m_control.items())
        if (item->checked() && !item->separator())
            text += (text.empty() ? L"" : L"|") + item->info()->key();
    return text;
}

bool MenuCommandInput::valueFromString(const std::wstring& text)
{
    std::vector<std::wstring> keys;
    if (!text.empty())
        boost::algorithm::split(keys, text, boost::algorithm::is_any_of(L"|"));
    const auto named = [&](const MenuItem* item) {
        return !item->separator() && std::erase(keys, item->info()->key()) > 0;
    };
    std::vector<bool> marks;
    for (const MenuItem* item : m_control.items())
        marks.push_back(named(item));
    // What remains names no item.
    if (!keys.empty())
        return false;
    if (text == valueAsString())
        return true;
    for (size_t i = 0; i < marks.size(); ++i)
        m_control.selectItem(m_control.items()[i], marks[i], false);
    m_control.selectItemNotification();
    return true;
}

void MenuCommandInput::onMenuSelectionChanged(MenuItem*)
{
    valueChanged();
}

ButtonCommandInput* ButtonCommandInput::make(CommandInputSet* set, int number, Info* info)
{
    return new ButtonCommandInput(set, number, info);
}

ButtonCommandInput::ButtonCommandInput(CommandInputSet* set, int number, Info* info)
    : Implements(set, number, info), m_control(info, this)
{
    // A recording keeps values; what the button did to other inputs is among them.
    enableTranscript(false);
}

bool ButtonCommandInput::valueFromString(const std::wstring& text)
{
    if (!text.empty())
        return false;
    onClicked();
    return true;
}

void ButtonCommandInput::onClicked()
{
    valueChanged();
}

} // namespace Vu
