#pragma once

#include "UI/Base/Workspace/Area.h"

namespace Vu {

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
};

} // namespace Vu
