#include "UI/Base/View/Private/TouchNavigation.h"

#include "Server/Base/TranscriptMgr.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/Private/Aim.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

namespace Vu {

using Vs::Scene::Camera;

namespace {

/// A controller at its limit turns and shifts by this much of what a pixel of the mouse does.
constexpr double kPixelsPerUnit = 1.0 / 60.0;
constexpr double kRadiansPerUnit = 1.5e-4;
constexpr double kZoomPerUnit = 1.0 / 20000.0;
/// What a controller's step takes for the width of a view, in pixels.
constexpr double kControllerWidth = 1000.0;

Camera* cameraOf(const GraphicsView* view)
{
    const Vs::Scene::ViewFragment* fragment = view ? view->modelFragment() : nullptr;
    return fragment ? fragment->camera() : nullptr;
}

/// The end of every step. A glide still playing is overtaken.
void stepMade(Camera* camera)
{
    if (Vs::TranscriptMgr::get()->recordSmoothCameraChange())
        const TranscriptCameraTrigger trigger(camera);
    WorkspaceWindow::invalidate(kInvalidateAll);
}

} // namespace

void TouchNavigation::pan(double dx, double dy)
{
    Camera* camera = cameraOf(m_view);
    if (!camera)
        return;
    TransitionMgr::get()->finish();
    // The plane of the target moves as a whole, so any of its places tells how large a pixel is.
    constexpr int kPixels = 100;
    const double pixel =
        m_view->windowToWorld({0, 0}).distanceTo(m_view->windowToWorld({0, kPixels})) / kPixels;
    camera->dolly(camera->right() * (-dx * pixel) + camera->screenUp() * (dy * pixel));
    stepMade(camera);
}

void TouchNavigation::zoom(const Vs::Point2& place, double factor)
{
    Camera* camera = cameraOf(m_view);
    if (!camera)
        return;
    TransitionMgr::get()->finish();
    aimAt(*m_view, place);
    const GkPoint3d before = m_view->windowToWorld(place);
    camera->zoom(factor);
    camera->dolly(before - m_view->windowToWorld(place));
    stepMade(camera);
}

void TouchNavigation::roll(double radians)
{
    Camera* camera = cameraOf(m_view);
    if (!camera)
        return;
    TransitionMgr::get()->finish();
    camera->roll(-radians);
    stepMade(camera);
}

void TouchNavigation::move(const Motion& motion)
{
    Camera* camera = cameraOf(m_view);
    if (!camera)
        return;
    TransitionMgr::get()->finish();
    const double pixel = camera->extentsWidth() / kControllerWidth;
    camera->dolly(camera->right() * (-motion.right * kPixelsPerUnit * pixel) +
                  camera->screenUp() * (-motion.up * kPixelsPerUnit * pixel));
    camera->zoom(1.0 + motion.near * kZoomPerUnit);
    camera->orbit(motion.turnUp * kPixelsPerUnit, motion.turnRight * kPixelsPerUnit);
    camera->roll(motion.turnNear * kRadiansPerUnit);
    stepMade(camera);
}

} // namespace Vu
