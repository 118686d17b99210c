#include "UI/Base/Window/ViewKeys.h"

#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QKeyEvent>

#include <cmath>
#include <numbers>

namespace Vu {
namespace {

/// For a turn, in radians; for a shift, as a fraction of the visible width.
constexpr double kTurn = std::numbers::pi / 12;
constexpr double kShift = 0.1;
constexpr double kZoom = 1.1;

struct Step
{
    double right = 0, up = 0, zoom = 1;
};

Step stepOf(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Left:
        return {.right = -1};
    case Qt::Key_Right:
        return {.right = 1};
    case Qt::Key_Up:
        return {.up = 1};
    case Qt::Key_Down:
        return {.up = -1};
    case Qt::Key_Plus:
    case Qt::Key_Equal: // The same key without Shift, on many keyboards.
        return {.zoom = kZoom};
    case Qt::Key_Minus:
        return {.zoom = 1 / kZoom};
    default:
        return {};
    }
}

/// The eye moves around the target, so that the model follows the arrow.
void turn(Vs::Scene::Camera& camera, const Step& step)
{
    const double distance = camera.distance();
    const GkVector3d side = step.right != 0 ? camera.right() * step.right : camera.screenUp() * step.up;
    const GkVector3d up = camera.screenUp();
    const GkVector3d direction = camera.direction() * std::cos(kTurn) + side * std::sin(kTurn);
    const GkVector3d newUp =
        step.up != 0 ? up * std::cos(kTurn) - camera.direction() * (step.up * std::sin(kTurn)) : up;
    camera.position(camera.target() + direction * -distance);
    camera.up(newUp);
}

} // namespace

bool moveViewByKey(const QKeyEvent& event)
{
    const Step step = stepOf(event);
    const GraphicsView* view = SplitViewMgr::get()->activeView();
    Vs::Scene::ViewFragment* fragment = view ? view->modelFragment() : nullptr;
    const bool isShift = event.modifiers() & Qt::ShiftModifier;
    if (!fragment || (step.right == 0 && step.up == 0 && step.zoom == 1) ||
        (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)))
        return false;
    Vs::Scene::Camera& camera = *fragment->camera();
    if (step.zoom != 1)
        camera.zoom(step.zoom);
    else if (isShift)
        camera.dolly((camera.right() * -step.right + camera.screenUp() * -step.up) *
                     (kShift * camera.extentsWidth()));
    else
        turn(camera, step);
    const TranscriptCameraTrigger trigger(&camera);
    WorkspaceWindow::invalidate(kInvalidateAll);
    return true;
}

} // namespace Vu
