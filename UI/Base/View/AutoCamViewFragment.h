#pragma once

#include "Server/Base/OptionGroup.h"
#include "Server/Base/Point2.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/View/MouseOverlay.h"
#include "UI/Base/View/OrbiconCube.h"
#include "UI/Base/Workspace/Area.h"

#include <functional>
#include <memory>
#include <optional>

namespace Vs {
class Asset;
}

namespace Vs::CommonData {
class CommonDataAssetSettings;
}

namespace Vu {

class GraphicsCanvas;
class GraphicsView;

/// The orbicon: a cube in the upper right corner of a view that turns with the model. A click on one of its
/// faces, edges or corners shows the model from there, a drag turns the model. It is not part of the model:
/// fits, picks and pictures leave it out.
class AutoCamViewFragment : public Vs::Implements<AutoCamViewFragment, Vs::Scene::ViewFragment>,
                            public MouseOverlay,
                            private Vs::OptionEventSite
{
public:
    /// The fragment's name.
    static constexpr const char* kName = "Autocam";

    /// The view owns the fragment, and shows the asset in a fragment of its own. Shown if the user wants it
    /// (UIBaseOptionGroup::wantToShowOrbicon).
    static Vs::StrongRef<AutoCamViewFragment> make(GraphicsView* view, Vs::Asset* asset);
    ~AutoCamViewFragment() override;

    bool enabled() const { return m_area.visible(); }
    void enable(bool enabled);
    /// What a LayoutStrategy shows and hides; it stands in no window's layout.
    Area* area() { return &m_area; }

    /// Where the cube stands in the canvas, in logical pixels from its upper left corner: a square. Empty
    /// before the first `layOut`.
    struct Place
    {
        double left = 0, top = 0, size = 0;
    };
    const Place& place() const { return m_place; }
    /// Null before the first `layOut`: a run that shows nothing has no cube.
    const OrbiconCube* cube() const { return m_cube.get(); }

    /// Installs the function that opens a menu at a right click on the cube of any view; it belongs to
    /// `owner`, and an empty function removes it.
    using RightClick = std::function<void(GraphicsCanvas* canvas, const Vs::Point2& place)>;
    static void onRightClick(const void* owner, RightClick listener);

    /// Does what the asset's settings want of the model's camera: with `perspWithOrthoFaces` it is parallel
    /// while it looks straight at a side of the model, and a perspective otherwise.
    void performCamOperations();
    /// Looks at the whole model from a place of the cube (OrbiconCube::direction).
    void lookFrom(const GkVector3d& direction);

    void layOut(double width, double height) override;
    void covers(double width, double height, std::vector<CanvasRect>& parts) override;
    bool takesMouse(MouseEvent* event) override;
    void hover(MouseEvent* event) override;
    void hoverEnd() override;
    void mousePress(MouseEvent* event) override;
    void mouseDrag(MouseEvent* event) override;
    void mouseRelease(MouseEvent* event) override;

private:
    class OperationsTask;
    class Shown;
    struct Frame
    {
        GkVector3d right, back, up; ///< The cube's X, Y and Z in the world.
    };

    AutoCamViewFragment(GraphicsView* view, Vs::Asset* asset);
    void cameraChanged(const Vs::Scene::CameraEvent& event);
    void optionChanged(Vs::OptionEvent* event) override;

    static Place placeIn(double width, double height);
    Vs::Scene::Camera* modelCamera() const;
    /// Of the asset; null if it has none.
    Vs::CommonData::CommonDataAssetSettings* settings() const;
    Frame frame() const;
    GkVector3d upFor(const GkVector3d& direction, const Frame& frame) const;
    std::optional<size_t> zoneUnder(const MouseEvent* event);
    void highlight(std::optional<size_t> zone);
    void followModel();
    void changed();

    GraphicsView* m_view;
    Vs::Asset* m_asset;
    Area m_area;
    std::unique_ptr<OrbiconCube> m_cube;
    Place m_place;
    OperationsTask* m_waiting = nullptr; ///< In the queue, which owns it.
    std::optional<size_t> m_pressed;
    double m_pressX = 0, m_pressY = 0, m_lastX = 0, m_lastY = 0;
    bool m_dragged = false;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
