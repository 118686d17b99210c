#include "UI/Base/Workspace/LayoutStrategy.h"

#include "Server/Base/Require.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/Private/AreaWishes.h"

namespace Vu {
namespace {
LayoutStrategy* installed = nullptr;
}

LayoutStrategy* LayoutStrategy::activeStrategy()
{
    static auto* const plain = new LayoutStrategy;
    return installed ? installed : plain;
}

void LayoutStrategy::activeStrategy(LayoutStrategy* strategy)
{
    installed = strategy;
}

void LayoutStrategy::show(Area* area)
{
    area->visible(true);
    AreaWishes::keep(*area);
}

void LayoutStrategy::hide(Area* area)
{
    area->visible(false);
    AreaWishes::keep(*area);
}

void LayoutStrategy::dock(Area* area, EPlacement placement, const Vs::Point2& point)
{
    area->collapsed(false);
    area->point(point);
    area->placement(placement);
}

void LayoutStrategy::collapse(Area* area, EPlacement side)
{
    Vs::require(side != EPlacement::Fill && side != EPlacement::Floating,
                "a collapse bar is at a side of the window");
    area->collapsedPlacement(side);
    area->collapsed(true);
}

void LayoutStrategy::expand(Area* area)
{
    area->collapsed(false);
}

Area* LayoutStrategy::apply(Arrangement* arrangement, Layout* layout)
{
    Layout::carryCanvases(*arrangement->layout(), *layout);
    AreaWishes::keepAll(*layout);
    return arrangement->exchangeLayout(std::unique_ptr<Layout>(layout)).release();
}

} // namespace Vu
