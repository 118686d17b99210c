#include "UI/Base/Workspace/LayoutStrategy.h"

#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"

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
}

void LayoutStrategy::hide(Area* area)
{
    area->visible(false);
}

void LayoutStrategy::dock(Area* area, EPlacement placement)
{
    area->collapsed(false);
    area->placement(placement);
}

Area* LayoutStrategy::apply(Arrangement* arrangement, Layout* layout)
{
    Layout::carryCanvases(*arrangement->layout(), *layout);
    return arrangement->exchangeLayout(std::unique_ptr<Layout>(layout)).release();
}

} // namespace Vu
