#include "UI/Commands/Selection/FindCmds.h"

#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/CameraParameters.h"
#include "Server/Scene/LogicalToSceneSelectionFilter.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/BrowserManager.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/Workspace/MarkingMenuEvents.h"
#include "UI/Commands/Camera/ActiveView.h"

namespace Vu::Commands {

constinit const CommandRow FindInBrowserCmdDef::kRow = {
    .key = L"FindInBrowser", .title = "Find in Browser", .titleKey = "FindInBrowserCmdName"};

constinit const CommandRow FindInCanvasCmdDef::kRow = {
    .key = L"FindInCanvas", .title = "Find in Canvas", .titleKey = "FindInCanvasCmdName"};

namespace {

using Vs::Scene::LogicalToSceneSelectionFilter;

/// Whether the camera shows the whole scene on its way.
constexpr bool kShowsAllFirst = true;
/// Around what is framed.
constexpr double kMargin = 1.1;

/// What is selected in the active session if that is a single thing; else null.
Vs::Selection* onlySelection()
{
    Vs::SelectionMgr* manager = ActiveAssetUtils::selectionManager();
    if (!manager || manager->selectionSet().size() != 1)
        return nullptr;
    return manager->selectionSet().selections().front().get();
}

BBox scaled(const BBox& box)
{
    if (box.isEmpty())
        return box;
    const GkVector3d reach = (box.high() - box.low()) * (0.5 * kMargin);
    return {box.centre() + -reach, box.centre() + reach};
}

/// The object's own box, or that of the nearest node on its path that has a place; empty if there is neither.
BBox boundsOf(const Vs::LogicalSelection& object, const Vs::Scene::SceneSelection& place,
              const Vs::Asset& asset)
{
    BBox box;
    if (object.calculateBounds(asset, box))
        return box;
    Vs::Scene::NodePath path = place.scenePath();
    for (GkMatrix3d matrix; box.isEmpty() && Vs::Scene::NetTransform(path, matrix); path.pop_back())
        box = path.back()->boundingBox().transformed(matrix);
    return box;
}

/// Has the camera glide to where it frames the box.
void glide(const BBox& box, Vs::Scene::Camera& camera, Transition& transition)
{
    const Vs::Scene::CameraParameters before(camera);
    camera.fit(box);
    const Vs::Scene::CameraParameters after(camera);
    transition.add(CameraTransition::make(&transition, before, after, &camera));
}

} // namespace

bool FindInBrowserCmdDef::onIsApplicable(CommandContext*) const
{
    return onlySelection() != nullptr;
}

bool FindInBrowserCmdDef::onAddToContextMenu()
{
    return onlySelection() &&
           MarkingMenuEventSource::get()->currentEventSource() != MarkingMenuEventSource::ESource::Browser;
}

void FindInBrowserCmd::onExecute(Vs::Status&)
{
    const Vs::StrongRef<Vs::LogicalSelection> object(Vs::cast<Vs::LogicalSelection>(onlySelection()));
    Browser* browser = BrowserManager::get()->browserToAssetSession(ActiveAssetUtils::assetSession());
    if (object && browser)
        browser->createAndDisplay(object);
}

bool FindInCanvasCmdDef::onAddToContextMenu()
{
    Vs::Selection* selection = onlySelection();
    return selection &&
           LogicalToSceneSelectionFilter::hasEquivalentResult(selection, *ActiveAssetUtils::asset());
}

void FindInCanvasCmd::onExecute(Vs::Status&)
{
    const Vs::StrongRef<Vs::LogicalSelection> object(Vs::cast<Vs::LogicalSelection>(onlySelection()));
    if (!object)
        return;
    Vs::Asset& asset = *ActiveAssetUtils::asset();
    const auto place = LogicalToSceneSelectionFilter::filter(object.get(), asset);
    const BBox box = place ? scaled(boundsOf(*object, *place, asset)) : BBox();
    GraphicsView* view = ActiveAssetUtils::graphicsView();
    TransitionMgr* transitions = TransitionMgr::get();
    Vs::Scene::ViewFragment* fragment = view && view->viewNode() ? firstFragment(view) : nullptr;
    if (box.isEmpty() || !transitions || !fragment)
        return;
    view->settleLayout();
    Vs::Scene::Camera& camera = *fragment->camera();
    if (Transition* back = kShowsAllFirst ? transitions->beginTransition() : nullptr) {
        glide(scaled(fragment->bounds()), camera, *back);
        transitions->endTransition();
    }
    if (Transition* closer = transitions->beginTransition()) {
        glide(box, camera, *closer);
        const TranscriptCameraTrigger trigger(&camera);
        transitions->endTransition();
    }
}

} // namespace Vu::Commands
