#include "UI/Commands/Camera/CameraPivot.h"

#include "Server/Base/Task.h"
#include "Server/Base/Timer.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/NodeChange.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Resources.h"

#include <memory>
#include <tuple>
#include <utility>

namespace Vu::Commands {

class HideCameraPivotTask;

namespace {

using Rendra::Graphics::GroupNode;
using Vs::Scene::NodeChange;

constexpr double kSecondsShown = 1.0;
/// The picture has twice the pixels that it takes, for screens that have them.
constexpr float kPictureScale = 0.5f;
constexpr const wchar_t* kPicture = L"Pivot";

bool hasPivot(const Vs::Scene::Camera* camera)
{
    return camera && camera->pivotEnabled() && UIBaseOptionGroup::get()->cameraPivotEnabled();
}

/// A picture that keeps its size and shows faintly through what is in front of it.
class CameraPivotMarker
{
public:
    CameraPivotMarker()
        : m_geometry(NodeChange::createLODGeometryNode(nullptr, true)),
          m_instance(NodeChange::createInstanceNode(nullptr, true))
    {
        NodeChange(m_geometry.get())
            .depthPriority(1)
            .billBoard(GkPoint3d::kOrigin, {0, 0, 1}, Rendra::Graphics::EBillboard::FacesViewer);
        // Without its picture the marker shows nothing, and the camera turns all the same.
        std::ignore = SceneUtilities::createTexture2(m_geometry.get(), Resources::CameraPivot(), kPicture,
                                                     GkPoint2d::kOrigin, kPictureScale,
                                                     SceneUtilities::MANIPULATOR_OCCLUDED_OPACITY);
        NodeChange(m_instance.get()).add(m_geometry).occludedEffect({}, {1.0f, 1.0f, 1.0f, 1.0f}, -1.0f);
    }

    /// The user may have gone over to another view meanwhile.
    void putInto(GroupNode* node)
    {
        if (m_home == node)
            return;
        takeOut();
        m_home = node;
        NodeChange(node).add(m_instance);
    }
    void takeOut()
    {
        if (const Vs::StrongRef<GroupNode> home = std::exchange(m_home, nullptr))
            NodeChange(home.get()).remove(m_instance.get());
    }
    void moveTo(const GkPoint3d& place) { NodeChange(m_instance.get()).transform(place); }

private:
    Vs::StrongRef<Rendra::Graphics::GeometryNode> m_geometry;
    Vs::StrongRef<Rendra::Graphics::InstanceNode> m_instance;
    Vs::StrongRef<GroupNode> m_home; ///< Where it is shown.
};

// Made at the first need, never freed: the scene that the marker stands in may go after the add-in's statics.
CameraPivotMarker* theMarker = nullptr;
bool pivotMarkerShown = false;
HideCameraPivotTask* pendingHide = nullptr; ///< Owned by the queue of idle tasks.

void redraw()
{
    WorkspaceWindow::invalidate(kInvalidateOverlay);
}

} // namespace

/// Waits in the idle queue until the marker has been seen for long enough.
class HideCameraPivotTask : public Vs::Implements<HideCameraPivotTask, Vs::Task>
{
public:
    HideCameraPivotTask()
    {
        if (const Vs::Scene::Camera* camera = activeCamera())
            m_lastPivot = camera->pivot();
    }

    bool run() override
    {
        // The time counts from the first round, so that a slow picture doesn't use it up.
        if (!m_timer)
            m_timer = std::make_unique<Vs::Utility::timer>();
        if (m_timer->elapsed() < kSecondsShown || !theMarker || !pivotMarkerShown)
            return false;
        theMarker->takeOut();
        pivotMarkerShown = false;
        pendingHide = nullptr;
        redraw();
        return true;
    }

    void refresh()
    {
        if (m_timer)
            m_timer->restart();
        const Vs::Scene::Camera* camera = activeCamera();
        if (!camera || camera->pivot().isEqualTo(m_lastPivot))
            return;
        m_lastPivot = camera->pivot();
        theMarker->moveTo(m_lastPivot);
        redraw();
    }

private:
    std::unique_ptr<Vs::Utility::timer> m_timer;
    GkPoint3d m_lastPivot; ///< Where the marker was drawn last.
};

bool showCameraPivot(bool cancelPendingHide)
{
    if (cancelPendingHide && pendingHide)
        Application::get()->idleTasks()->remove(std::exchange(pendingHide, nullptr));
    const Vs::Scene::Camera* camera = activeCamera();
    GroupNode* const node = SceneUtilities::getActiveEditNode();
    if (pivotMarkerShown && (!node || !hasPivot(camera)))
        return true;
    if (!node || !hasPivot(camera))
        return false;
    if (!theMarker)
        theMarker = new CameraPivotMarker;
    const bool wasShown = std::exchange(pivotMarkerShown, true);
    theMarker->putInto(node);
    theMarker->moveTo(camera->pivot());
    if (!wasShown)
        redraw();
    return true;
}

void hideCameraPivotDelayed()
{
    if (!pivotMarkerShown)
        return;
    if (pendingHide) {
        pendingHide->refresh();
        return;
    }
    pendingHide = new HideCameraPivotTask;
    Application::get()->idleTasks()->add(pendingHide);
}

} // namespace Vu::Commands
