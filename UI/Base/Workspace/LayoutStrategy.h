#pragma once

#include "UI/Base/Workspace/Area.h"

namespace Vu {

class Arrangement;
class Layout;

/// How areas are shown, hidden and moved. The active strategy is the host's plain one unless somebody sets
/// another.
class LayoutStrategy : public Vs::Implements<LayoutStrategy>
{
public:
    static LayoutStrategy* activeStrategy();
    /// Not owned; null brings back the plain one.
    static void activeStrategy(LayoutStrategy* strategy);

    /// Of a collapsed area, these put it on its collapse bar and take it off that. What the user wants to see
    /// of command line, toolbars and navigation bar is kept with them (UIBaseOptionGroup); for browser and
    /// feed their commands do so.
    virtual void show(Area* area);
    virtual void hide(Area* area);
    /// Moves the area to a side of its window, or lets it float over the others; see Area::point. It opens if
    /// it was collapsed.
    virtual void dock(Area* area, EPlacement placement, const Vs::Point2& point = {});
    /// Puts the area on the collapse bar of a side, from left to bottom.
    virtual void collapse(Area* area, EPlacement side);
    /// Opens a collapsed area where it was.
    virtual void expand(Area* area);
    /// Puts a layout, which the arrangement takes over, in the place of the arrangement's. The canvases stay,
    /// in their order, as far as the new layout has places for them. Returns the old root, which is the
    /// caller's.
    [[nodiscard]] virtual Area* apply(Arrangement* arrangement, Layout* layout);
};

} // namespace Vu
