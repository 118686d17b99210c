#include "UI/Commands/Shells/ArrangementSwap.h"

#include "Server/Base/UniqueString.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/LayoutStrategy.h"

#include <tuple>

namespace Vu::Commands {
namespace {

/// Returns whether the area shows. One that either form lacks counts as hidden.
bool carryVisibility(Area* from, Area* to, const Vs::UniqueString* name)
{
    Area* before = from->childByName(name->wideText(), true);
    Area* after = to->childByName(name->wideText(), true);
    const bool visible = before && before->visible();
    if (before)
        std::ignore = before->parent()->removeChild(before); // The other form's area takes its place.
    if (!before || !after)
        return false;
    if (visible)
        LayoutStrategy::activeStrategy()->show(after);
    else
        LayoutStrategy::activeStrategy()->hide(after);
    return visible;
}

} // namespace

void carryOver(Arrangement& from, Arrangement& to)
{
    static const Vs::UniqueString* const browser = Vs::UniqueString::find("Browser", true);
    static const Vs::UniqueString* const orbicon = Vs::UniqueString::find("Orbicon", true);
    Layout::removeSplitViews(from.layout());
    Layout::carryCanvases(*from.layout(), *to.layout());
    SplitViewMgr::get()->validToShowBrowser(carryVisibility(from.layout(), to.layout(), browser));
    carryVisibility(from.layout(), to.layout(), orbicon);
}

} // namespace Vu::Commands
