#include "UI/Design/Primitives/NewPart.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/CameraParameters.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/TransitionMgr.h"

#include <algorithm>

namespace Vu::Design {
namespace {

/// In logical pixels; anything smaller is as good as invisible.
constexpr double kSmallest = 4;
/// How much more than the part is framed.
constexpr double kSurroundings = 2;

bool isInView(const BBox& box, const Vs::Scene::Camera& camera, const GraphicsView& view)
{
    const double width = view.canvasWidth(), height = view.canvasHeight();
    const Vs::Scene::Projection projection(camera, width, height);
    BBox shown;
    for (int corner = 0; corner < 8; ++corner) {
        const GkPoint3d place = projection.worldToScreen({corner & 1 ? box.high().x : box.low().x,
                                                          corner & 2 ? box.high().y : box.low().y,
                                                          corner & 4 ? box.high().z : box.low().z});
        if (projection.perspective() && place.z <= 0)
            return false;
        shown.add({place.x, place.y, 0});
    }
    const GkPoint3d middle = shown.centre();
    return middle.x > 0 && middle.x < width && middle.y > 0 && middle.y < height &&
           shown.diagonal() >= kSmallest;
}

void bringIntoView(const BBox& box, GraphicsView& view)
{
    Vs::Scene::ViewFragment* fragment = view.modelFragment();
    TransitionMgr* transitions = TransitionMgr::get();
    if (!fragment || isInView(box, *fragment->camera(), view))
        return;
    Transition* transition = transitions->beginTransition();
    if (!transition)
        return;
    Vs::Scene::Camera& camera = *fragment->camera();
    const Vs::Scene::CameraParameters before(camera);
    const GkVector3d reach = (box.high() - box.low()) * (0.5 * kSurroundings);
    view.settleLayout();
    camera.fit({box.centre() + -reach, box.centre() + reach});
    transition->add(CameraTransition::make(transition, before, Vs::Scene::CameraParameters(camera), &camera));
    const TranscriptCameraTrigger trigger(&camera);
    transitions->endTransition();
}

} // namespace

void presentLater(Vs::Asset& asset, std::string component)
{
    Application::get()->deferredTasks()->post([wanted = &asset, component = std::move(component)] {
        Vs::Asset* active = ActiveAssetUtils::asset();
        if (active != wanted || !active->findComponent(component))
            return;
        const Vs::StrongRef<Vs::LogicalSelection> made(
            new Vs::LogicalSelection(active, component, Vs::StrongRef<Vs::Selection>()));
        ActiveAssetUtils::selectionManager()->selectionSet().replace({made});
        BBox box;
        GraphicsView* view = ActiveAssetUtils::graphicsView();
        if (view && made->calculateBounds(*active, box))
            bringIntoView(box, *view);
    });
}

} // namespace Vu::Design
