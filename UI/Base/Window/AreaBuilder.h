#pragma once

#include <functional>

class QWidget;

namespace Vu {

class Area;

/// Builds the widgets of a layout. What stands in an area is asked of `contents(area, parent)`, which returns
/// null for contents that nothing draws; such areas, hidden and collapsed ones take no room.
///
/// An area with children is handed, as the widget that holds them, to `enclose(area, inner)`, which may put
/// it into another one.
///
/// Children that are placed at the top and bottom take the whole width; those at the left and right stand
/// beside those that fill, with splitters between. A moved splitter is told by `resized(area, extent)`. In an
/// area of the contents "SplitView" those at the top and bottom share the height evenly with the others.
struct AreaBuilder
{
    std::function<QWidget*(Area&, QWidget*)> contents;
    std::function<QWidget*(const Area&, QWidget*)> enclose;
    std::function<void(Area&, int)> resized;

    /// Null if nothing at or below the area is shown.
    QWidget* build(Area& area, QWidget* parent) const;
};

} // namespace Vu
