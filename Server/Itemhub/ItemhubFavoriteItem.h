#pragma once

#include <cstdint>
#include <string>

namespace Vs {

/// An item that the user has bookmarked: a value.
class ItemhubFavoriteItem
{
public:
    ItemhubFavoriteItem(std::int64_t itemId, std::wstring caption)
        : m_itemId(itemId), m_caption(std::move(caption))
    {
    }

    std::int64_t getItemId() const { return m_itemId; }
    /// As a user typed it: display it as plain text.
    const std::wstring& getCaption() const { return m_caption; }

private:
    std::int64_t m_itemId;
    std::wstring m_caption;
};

} // namespace Vs
