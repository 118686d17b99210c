#pragma once

#include "Server/Base/Status.h"
#include "Server/Base/StrongRef.h"
#include "Server/Scene/INodeSource.h"
#include "UI/Base/MouseEvents.h"
#include "UI/Base/View.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Vs {
class ImageResource;
namespace Scene {
class ViewFragment;
}
} // namespace Vs

namespace Vu {

class GraphicsCanvas;

/// What a canvas shows: a scene, seen through one or more view fragments, each with a camera of its own.
///
/// The view handles the mouse events that no site takes: the wheel zooms at the pointer, the middle button
/// pans, the right button, or the middle one with Shift, orbits, a double click of the middle button fits.
class GraphicsView : public Vs::Implements<GraphicsView, View, Vs::Scene::INodeSource>, public MouseEventSite
{
public:
    GraphicsView();
    ~GraphicsView() override;

    /// The node under which this view's fragments stand; null before `createScene`.
    Rendra::Graphics::GroupNode* viewNode() const { return sceneNode(); }

    const std::vector<Vs::Scene::ViewFragment*>& viewFragments() const { return m_fragments; }
    void addFragment(Vs::StrongRef<Vs::Scene::ViewFragment> fragment);
    /// Frames the content of each fragment. With nothing to frame yet, it happens when the first content
    /// comes.
    void fit();
    /// Takes in what arrived since the last call (meshes that were still being made). True if the picture
    /// changed; the canvas calls it before it draws.
    bool update();
    /// Whether content is still on its way.
    bool waitsForContent() const;

    /// The canvas that shows this view; null if none does.
    GraphicsCanvas* canvas() const { return m_canvas; }

    /// Takes over position, target, up and extents of the other view's first camera. Does nothing if either
    /// view has none.
    void copyCamera(const GraphicsView& from);

    /// Draws the view without any window and writes the picture, PNG, JPEG or TIFF by the file's suffix.
    /// Sizes in pixels. False, with the reason, if nothing was written; a picture of that name is then as it
    /// was.
    bool renderImage(Vs::ImageResource* image, uint32_t width, uint32_t height, Vs::Status& status);
    bool renderImage(Vs::ImageResource* image, uint32_t width, uint32_t height);

    void mouseDown(MouseEvent* event) override;
    void mouseUp(MouseEvent* event) override;
    void mouseMove(MouseEvent* event) override;
    void mouseDrag(MouseEvent* event) override;
    void mouseDoubleClick(MouseEvent* event) override;
    void mouseScroll(MouseEvent* event) override;

private:
    friend class GraphicsCanvas;

    enum class Drag { None, Pan, Orbit };

    void dragTo(double x, double y);
    double pixelSize() const;

    std::vector<Vs::StrongRef<Vs::Scene::ViewFragment>> m_owned;
    std::vector<Vs::Scene::ViewFragment*> m_fragments;
    GraphicsCanvas* m_canvas = nullptr;
    Drag m_drag = Drag::None;
    double m_lastX = 0, m_lastY = 0;
    std::vector<uint64_t> m_seen; ///< Of each fragment, what update() saw last.
    bool m_fitPending = false;
    bool m_shownBefore = false;
};

} // namespace Vu
