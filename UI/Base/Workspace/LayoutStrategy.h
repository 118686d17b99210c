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

    virtual void show(Area* area);
    virtual void hide(Area* area);
    /// Moves the area to a side of its window.
    virtual void dock(Area* area, EPlacement placement);
    /// Puts a layout, which the arrangement takes over, in the place of the arrangement's. The canvases stay,
    /// in their order, as far as the new layout has places for them. Returns the old root, which is the
    /// caller's.
    [[nodiscard]] virtual Area* apply(Arrangement* arrangement, Layout* layout);
};

} // namespace Vu
