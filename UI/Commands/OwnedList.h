#pragma once

#include "UI/Base/Command/Info.h"
#include "UI/Base/Command/InputControl.h"

#include <memory>
#include <vector>

namespace Vu::Commands {

/// A definition's list control together with its items, which the control itself doesn't own.
class OwnedList
{
public:
    using Items = std::vector<std::unique_ptr<Info>>;

    /// Null until `make`.
    ListControl* control() const { return m_control.get(); }
    ListControl* make(Info* info, IListControlHandler* handler)
    {
        m_control.reset(ListControl::make(info, handler));
        return m_control.get();
    }

    const Items& items() const { return m_items; }
    /// Shows other items; the old ones go once nothing shows them any more.
    void items(Items items)
    {
        std::vector<Info*> shown;
        for (const auto& item : items)
            shown.push_back(item.get());
        m_control->items(std::move(shown));
        m_items = std::move(items);
    }

    bool has(const std::wstring& key) const
    {
        for (const auto& item : m_items)
            if (item->key() == key)
                return true;
        return false;
    }

private:
    Items m_items;
    std::unique_ptr<ListControl> m_control;
};

} // namespace Vu::Commands
