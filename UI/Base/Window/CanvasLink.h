#pragma once

#include "Server/Base/OptionGroup.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/Scene/Camera.h"
#include "UI/Base/View/MouseEvents.h"

#include <QTimer>

#include <cstdint>
#include <vector>

class QNativeGestureEvent;
class QWheelEvent;
class QWidget;

namespace Vs::Scene {
class ViewFragment;
struct FinerWish;
} // namespace Vs::Scene

namespace Vu {

class GraphicsCanvas;
class GraphicsView;

/// What both widgets of a canvas have in common: events in, repaints when a camera, an option or the model
/// changes, and the finer meshes that a picture wishes for.
class CanvasLink : private Vs::Scene::CameraEventSite, private Vs::AssetEventSite, private Vs::OptionEventSite
{
public:
    CanvasLink(GraphicsCanvas* canvas, QWidget* widget);
    ~CanvasLink() override;
    /// Draws the canvases of a window as CanvasWidget.h's settleCanvases says.
    static void settleAll(const QWidget* window);

    const GraphicsCanvas& canvas() const { return *m_canvas; }
    /// What must be drawn now; none without a view.
    std::vector<Vs::Scene::ViewFragment*> fragments();
    /// Whether the camera is moving; a final frame is requested when it stands still.
    bool moving() const { return m_still.isActive(); }

    /// Whether it is time to look if the meshes in the picture just drawn are too coarse. What a replay picks
    /// must not depend on what was made in time.
    bool asksForFiner() const;
    void wish(const std::vector<Vs::Scene::FinerWish>& finer, bool software);
    /// Draws what was made meanwhile, and looks again as long as more is coming.
    void followFiner();

    /// Takes the events of the mouse and of fingers; false for others.
    bool handle(QEvent* event);

private:
    void settle();
    bool fingers(QWheelEvent& wheel);
    bool gesture(QNativeGestureEvent& gesture);
    void contentTick();
    void finerTick();
    void lookAnew();
    void cameraChanged(Vs::Scene::CameraEvent* event) override;
    void assetComponentsChanged(Vs::ComponentsEvent*) override { lookAnew(); }
    void optionChanged(Vs::OptionEvent*) override { lookAnew(); }

    GraphicsCanvas* m_canvas;
    QWidget* m_widget;
    QTimer m_content, m_still, m_finer;
    const GraphicsView* m_judged = nullptr; ///< The view that was looked at for too coarse meshes.
    bool m_settles = false;
    uint64_t m_drawn = 0; ///< FinerMesh::revision of the last picture.
    int m_held = kNoMouseButton;
};

} // namespace Vu
