#pragma once

#include "Server/Base/Point2.h"
#include "Server/Scene/Node.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Commands/Camera/OrbitCmdDef.h"
#include "UI/Commands/Camera/OrbitMode.h"
#include "UI/Commands/Camera/OrbitReticle.h"

namespace Vs::Scene {
class RawHitInfo;
class SceneSelection;
} // namespace Vs::Scene

namespace Vu::Commands {

/// Turns the camera. As a tool it shows a reticle: the start of a drag decides what it turns about, a click
/// on the model moves the place to the middle, a click outside ends the tool. In passing it shows none and
/// turns freely.
class OrbitCmd : public Vs::Implements<OrbitCmd, CameraCmd>, public MouseEventSite
{
public:
    ~OrbitCmd() override;

    bool isPassiveCmd() const { return m_passive; }
    const OrbitReticle& reticle() const { return m_reticle; }
    /// For its modes: ends the tool at the end of the event.
    void leave() { terminateCommand(); }

    void mouseMove(MouseEvent* event) override;
    void mouseUp(MouseEvent* event) override;
    void mouseDragBegin(MouseEvent* event) override;
    void mouseDrag(MouseEvent* event) override;
    void mouseDragEnd(MouseEvent* event) override;
    void mouseMoveGlobal(MouseEvent* event) override;

    void onActivate() override;
    void onDeactivate() override;
    /// Whether the event's button turns the view.
    virtual bool isValidMouseEvent(MouseEvent* event) const;

protected:
    friend class FreeOrbitCmdDef;
    friend class OrbitCmdDef;
    OrbitCmd(FreeOrbitCmdDef* definition, CommandContext* context, bool constrained);

private:
    bool showReticleForCmd();
    void setCurViewFragmentNode(Rendra::Graphics::GroupNode* node);
    double computeDeltaZ(const Vs::Point2& position) const;
    void bringToMiddle(const Vs::Scene::SceneSelection& selection, const Vs::Scene::RawHitInfo& hit);

    Vs::Point2 m_lastPosition;
    Vs::StrongRef<Rendra::Graphics::GroupNode> m_curViewFragmentNode; ///< What is turned.
    bool m_subscribed = false;
    OrbitReticle m_reticle;
    std::map<int, std::unique_ptr<OrbitMode>> m_modes;
    OrbitMode* m_curMode = nullptr; ///< Of the present zone.
    bool m_dragging = false;        ///< From the start of a drag to the release behind it.
    bool m_interacting = false;     ///< The start of an interaction was told, and its end wasn't.
    GkPoint3d m_centerPoint;        ///< The middle of what is turned, or the last place that was clicked.
    Vs::Size2 m_lastCanvasSize;
    int m_curZone = kInCircle;
    bool m_passive;
};

} // namespace Vu::Commands
