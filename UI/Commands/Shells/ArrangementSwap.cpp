#include "UI/Commands/Shells/ArrangementSwap.h"

#include "Server/Base/UniqueString.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/LayoutStrategy.h"

#include <tuple>

namespace Vu::Commands {
namespace {

/// Takes the area out of one form and shows or hides that of the other: as the one did or, where it had none,
/// as the user wants it. Returns whether the other form shows it.
bool carryVisibility(Area* from, Area* to, const Vs::UniqueString* name, bool wanted)
{
    Area* before = from->childByName(name->wideText(), true);
    Area* after = to->childByName(name->wideText(), true);
    const bool visible = before ? before->palette()->visible() : wanted;
    if (before)
        std::ignore = before->parent()->removeChild(before); // The other form's area takes its place.
    if (!after)
        return false;
    if (visible)
        LayoutStrategy::activeStrategy()->show(after->palette());
    else
        LayoutStrategy::activeStrategy()->hide(after->palette());
    return visible;
}

} // namespace

void carryOver(Arrangement& from, Arrangement& to)
{
    static const Vs::UniqueString* const browser = Vs::UniqueString::find("Browser", true);
    static const Vs::UniqueString* const orbicon = Vs::UniqueString::find("Orbicon", true);
    Layout::removeSplitViews(from.layout());
    Layout::carryPlaces(*from.layout(), *to.layout());
    Layout::carryCanvases(*from.layout(), *to.layout());
    const UIBaseOptionGroup* wishes = UIBaseOptionGroup::get();
    const bool hasBrowser = to.layout()->childByName(browser->wideText(), true) != nullptr;
    const bool shows = carryVisibility(from.layout(), to.layout(), browser, wishes->wantToShowBrowser());
    // One that is hidden because the user doesn't want it can still be asked for.
    SplitViewMgr::get()->validToShowBrowser(shows || (hasBrowser && !wishes->wantToShowBrowser()));
    carryVisibility(from.layout(), to.layout(), orbicon, wishes->wantToShowOrbicon());
}

} // namespace Vu::Commands
