#include "UI/Commands/Shells/ArrangementSwap.h"

#include "Server/Base/UniqueString.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/LayoutStrategy.h"

#include <algorithm>
#include <tuple>

namespace Vu::Commands {
namespace {

/// Puts `replacement` where `child` stands among its siblings, and deletes `child`.
void replaceChild(Area* child, std::unique_ptr<Area> replacement)
{
    Area* parent = child->parent();
    std::vector<std::unique_ptr<Area>> siblings;
    while (!parent->children().empty())
        siblings.push_back(parent->removeChild(parent->children().front().get()));
    for (std::unique_ptr<Area>& sibling : siblings)
        parent->addChild(sibling.get() == child ? std::move(replacement) : std::move(sibling));
}

void carryCanvases(Area* from, Area* to, const Vs::UniqueString* contents)
{
    std::vector<Area*> before, after;
    from->childrenByContents(contents, before);
    to->childrenByContents(contents, after);
    for (size_t i = 0; i < std::min(before.size(), after.size()); ++i) {
        before[i]->ignoreOverlayable(after[i]->ignoreOverlayable());
        before[i]->placement(after[i]->placement());
        replaceChild(after[i], before[i]->parent()->removeChild(before[i]));
    }
}

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
    static const Vs::UniqueString* const canvas = Vs::UniqueString::find("GraphicsCanvas", true);
    static const Vs::UniqueString* const browser = Vs::UniqueString::find("Browser", true);
    static const Vs::UniqueString* const orbicon = Vs::UniqueString::find("Orbicon", true);
    Layout::removeSplitViews(from.layout());
    carryCanvases(from.layout(), to.layout(), canvas);
    SplitViewMgr::get()->validToShowBrowser(carryVisibility(from.layout(), to.layout(), browser));
    carryVisibility(from.layout(), to.layout(), orbicon);
}

} // namespace Vu::Commands
