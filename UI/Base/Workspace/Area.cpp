#include "UI/Base/Workspace/Area.h"

#include "Server/Base/Require.h"
#include "UI/Base/Workspace/Private/CanvasHost.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace Vu {

const Vs::UniqueString* Area::graphicsCanvas()
{
    static const Vs::UniqueString* const key = Vs::UniqueString::find("GraphicsCanvas");
    return key;
}

const Vs::UniqueString* Area::splitView()
{
    static const Vs::UniqueString* const key = Vs::UniqueString::find("SplitView");
    return key;
}

Area::Area(std::wstring name, const Vs::UniqueString* contents)
    : m_name(std::move(name)), m_contents(contents)
{
    static unsigned long last = 0;
    m_number = ++last;
    if (m_contents == graphicsCanvas())
        m_canvas = CanvasHost::get()->make();
}

Area::~Area() = default;

void Area::changed()
{
    Area* root = this;
    while (root->m_parent)
        root = root->m_parent;
    if (root->m_onChange)
        root->m_onChange();
}

Area* Area::addChild(std::unique_ptr<Area> child)
{
    Vs::require(child && !child->m_parent, "an area that is added has no parent yet");
    child->m_parent = this;
    Area* added = m_children.emplace_back(std::move(child)).get();
    changed();
    return added;
}

std::unique_ptr<Area> Area::removeChild(Area* child)
{
    const auto found = std::find_if(m_children.begin(), m_children.end(),
                                    [&](const auto& owned) { return owned.get() == child; });
    if (found == m_children.end())
        return nullptr;
    std::unique_ptr<Area> taken = std::move(*found);
    m_children.erase(found);
    taken->m_parent = nullptr;
    changed();
    return taken;
}

void Area::childrenByContents(const Vs::UniqueString* contents, std::vector<Area*>& found, bool recursive)
{
    for (const auto& child : m_children) {
        if (child->m_contents == contents)
            found.push_back(child.get());
        if (recursive)
            child->childrenByContents(contents, found, true);
    }
}

Area* Area::childByName(const std::wstring& name, bool recursive)
{
    for (const auto& child : m_children) {
        if (child->m_name == name)
            return child.get();
        if (recursive)
            if (Area* below = child->childByName(name, true))
                return below;
    }
    return nullptr;
}

void Area::visible(bool value)
{
    if (std::exchange(m_visible, value) != value)
        changed();
}

void Area::placement(EPlacement value)
{
    if (std::exchange(m_placement, value) != value)
        changed();
}

void Area::point(const Vs::Point2& value)
{
    if (!(std::exchange(m_point, value) == value))
        changed();
}

Area* Area::palette()
{
    static const Vs::UniqueString* const key = Vs::UniqueString::find("Palette");
    return m_parent && m_parent->m_contents == key ? m_parent : this;
}

void Area::collapsed(bool value)
{
    if (std::exchange(m_collapsed, value) != value)
        changed();
}

void Area::extent(int value)
{
    Vs::require(value >= 0, "an area has no negative extent");
    if (std::exchange(m_extent, value) != value)
        changed();
}

void Area::destroy()
{
    if (m_parent)
        std::ignore = m_parent->removeChild(this); // Deletes this with the temporary.
    else
        delete this;
}

} // namespace Vu
