#pragma once

#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Session/ManipulatorHandles.h"
#include "UI/Base/View/MouseOverlay.h"

#include <functional>
#include <vector>

namespace Vu {

class AssetGraphicsView;

/// Handles in a view for dragging a command's values: arrows that move along an axis, squares that move in a
/// plane, rings that rotate. They are drawn over the model, keep their size on the screen and receive the
/// mouse first. A drag snaps as the user's settings say (Inference::SnapManager); with Alt it doesn't. The
/// right button cancels the drag, and Escape ends the command as always.
class Manipulator : public MouseOverlay
{
public:
    /// How far a drag has moved since it began.
    struct Drag
    {
        ManipulatorHandle handle;
        GkVector3d shift;  ///< Millimetres along the frame's axes.
        double angle = 0;  ///< Radians about the handle's axis.
        bool done = false; ///< The button is up.
    };
    using Listener = std::function<void(const Drag&)>;

    /// The view must outlive the manipulator, which is shown as long as it exists.
    Manipulator(AssetGraphicsView& view, std::vector<ManipulatorHandle> handles, Listener listener);
    ~Manipulator() override;
    Manipulator(const Manipulator&) = delete;
    Manipulator& operator=(const Manipulator&) = delete;

    /// The arrows, squares and rings of all three axes.
    [[nodiscard]] static std::vector<ManipulatorHandle>
    handlesOf(std::initializer_list<ManipulatorHandle::Kind> kinds);

    /// Where it stands in world coordinates, and how it is turned; a rigid motion. During a drag, from the
    /// place where the drag began.
    void frame(const GkMatrix3d& frame);
    const GkMatrix3d& frame() const { return m_frame; }
    void visible(bool visible);
    bool isDragging() const { return m_dragged >= 0; }

    void layOut(double width, double height) override;
    bool takesMouse(MouseEvent* event) override;
    void hover(MouseEvent* event) override;
    void hoverEnd() override;
    void mousePress(MouseEvent* event) override;
    void mouseDrag(MouseEvent* event) override;
    void mouseRelease(MouseEvent* event) override;

private:
    Vs::Scene::Projection projection() const;
    /// The frame with its size on the screen.
    GkMatrix3d scaledFrame() const;
    int handleAt(MouseEvent* event) const;
    void point(int handle);
    void tell(MouseEvent* event, bool done);
    void redraw() const;

    AssetGraphicsView& m_view;
    std::vector<ManipulatorHandle> m_handles;
    Listener m_listener;
    Vs::StrongRef<Vs::Scene::ViewFragment> m_fragment;
    Vs::StrongRef<Rendra::Graphics::GroupNode> m_root;
    std::vector<Vs::StrongRef<Rendra::Graphics::BodyNode>> m_nodes;
    GkMatrix3d m_frame, m_dragFrame;
    double m_width = 0, m_height = 0;
    GkVector3d m_start;  ///< Where the drag began (placeOn).
    GkVector3d m_shift;  ///< How far it has moved; unchanged while the mouse is out of reach.
    double m_turned = 0; ///< Of a ring: how far it has been turned, over full turns as well.
    double m_lastAngle = 0;
    int m_pointed = -1, m_dragged = -1;
    bool m_visible = true;
};

} // namespace Vu
