#include "UI/Base/View/Private/Aim.h"

#include "Server/Scene/HitInfo.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"

#include <algorithm>
#include <optional>

namespace Vu {
namespace {

using Vs::Scene::Camera;
using Vs::Scene::SceneSelection;

Camera* cameraOf(const GraphicsView& view)
{
    const Vs::Scene::ViewFragment* fragment = view.modelFragment();
    return fragment && view.canvas() ? fragment->camera() : nullptr;
}

/// A surface or, where there is none, a nearby edge: a wire has nothing else.
std::optional<GkPoint3d> modelPointAt(const GraphicsView& view, const Vs::Point2& place)
{
    const auto found = SceneSelection::findAll(view.viewNode(), view.modelFragment()->viewFragmentNode(),
                                               view.canvas()->width(), view.canvas()->height(), place.x,
                                               place.y, {.vertices = true, .edges = true});
    if (found.empty())
        return std::nullopt;
    const auto surface = std::ranges::find_if(found, [](const auto& each) {
        return !each->part() || each->part()->part == Rendra::Graphics::Part::Face;
    });
    const Vs::Scene::RawHitInfo& hit = *(surface == found.end() ? found.front() : *surface)->hitInfo();
    return hit.localToWorldTransform() * hit.localHitPoint();
}

bool isInSight(const GraphicsView& view, const GkPoint3d& point)
{
    const std::optional<Vs::Point2> place = view.worldToWindow(point);
    return place && place->x >= 0 && place->y >= 0 && place->x < view.canvas()->width() &&
           place->y < view.canvas()->height();
}

std::optional<GkPoint3d> aim(GraphicsView& view, const Vs::Point2& place)
{
    Camera* camera = cameraOf(view);
    const std::optional<GkPoint3d> point = camera ? modelPointAt(view, place) : std::nullopt;
    if (point)
        camera->slideTarget((*point - camera->position()).dotProduct(camera->direction()));
    return point;
}

} // namespace

void aimAt(GraphicsView& view, const Vs::Point2& place)
{
    aim(view, place);
}

void aimTurnAt(GraphicsView& view, const Vs::Point2& place)
{
    const std::optional<GkPoint3d> point = aim(view, place);
    const UIBaseOptionGroup* options = UIBaseOptionGroup::get();
    Camera* camera = cameraOf(view);
    if (!camera || !options->cameraPivotEnabled() || !options->pivotUnderPointer())
        return;
    if (point)
        camera->pivot(*point);
    camera->pivotEnabled(point || (camera->pivotEnabled() && isInSight(view, camera->pivot())));
}

} // namespace Vu
