#pragma once

#include "Server/Base/Point2.h"
#include "Server/Base/Status.h"
#include "Server/Base/StrongRef.h"
#include "Server/Geometry/GkPoint3d.h"
#include "Server/Scene/INodeSource.h"
#include "UI/Base/View/View.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace Vs {
class ImageResource;
namespace Scene {
struct Image;
struct ImageOptions;
class ViewFragment;
} // namespace Scene
} // namespace Vs

namespace Vu {

class GraphicsCanvas;
class MouseOverlay;
class ViewMgr;

/// What a canvas shows: a scene, seen through one or more view fragments, each with a camera of its own.
class GraphicsView : public Vs::Implements<GraphicsView, View, Vs::Scene::INodeSource>
{
public:
    GraphicsView();
    ~GraphicsView() override;

    /// The node under which this view's fragments stand; null before `createScene`.
    Rendra::Graphics::GroupNode* viewNode() const { return sceneNode(); }

    const std::vector<Vs::Scene::ViewFragment*>& viewFragments() const { return m_fragments; }
    void addFragment(Vs::StrongRef<Vs::Scene::ViewFragment> fragment);
    /// Does nothing if it isn't here.
    void removeFragment(const Vs::Scene::ViewFragment* fragment);
    /// The first fragment that shows a model; null if there is none.
    Vs::Scene::ViewFragment* modelFragment() const;
    /// Where a place of the canvas, in logical pixels from its upper left corner, lies in the plane of the
    /// camera's target.
    [[nodiscard]] GkPoint3d windowToWorld(const Vs::Point2& place) const;
    /// The place of the canvas at which a point of the model is seen; nothing if it lies behind the viewer.
    [[nodiscard]] std::optional<Vs::Point2> worldToWindow(const GkPoint3d& point) const;
    /// Frames the content of each fragment that shows a model, in the part of the canvas that is free now;
    /// what covers the canvas later moves nothing. With nothing to frame yet, it happens when the first
    /// content comes, unless the camera was moved meanwhile.
    void fit();
    /// Brings the window's layout up to date, for a fit at this moment: bars and panels about to appear
    /// count. Does nothing without a window. Not while a picture is drawn.
    void settleLayout() const;
    /// Takes in what arrived since the last call (meshes that were still being made). True if the picture
    /// changed; the canvas calls it before it draws.
    bool update();
    /// Searches and highlights again what lies under the mouse at the end of the event, without waiting for a
    /// move: the listeners may now want other things.
    void restartHighlighting() const;
    /// Whether content is still on its way.
    [[nodiscard]] bool waitsForContent() const;
    /// Fits the camera now if it waits for the next picture to be fitted, so that it doesn't depend on when
    /// that comes.
    void settleFit();

    /// What lies over the scene and has the mouse first; null for nothing.
    MouseOverlay* mouseOverlay() const { return m_overlay; }

    /// The canvas that shows this view; null if none does.
    GraphicsCanvas* canvas() const { return m_canvas; }

    /// The manager that owns this view; null for one that stands alone.
    ViewMgr* viewManager() const { return m_manager; }
    /// A view on the same thing for a second canvas: `preferred`, which may be null, if it is one, or else
    /// one that no canvas shows, or a new one. Null if there can be no other.
    GraphicsView* another(GraphicsView* preferred);

    /// Of the canvas that shows it, in logical pixels; 1 without one.
    double canvasWidth() const;
    double canvasHeight() const;

    /// Takes over position, target, up and extents of the other view's first camera. Does nothing if either
    /// view has none.
    void copyCamera(const GraphicsView& from);

    /// Draws the view without any window and writes the picture, PNG, JPEG or TIFF by the file's suffix.
    /// Sizes in pixels. False, with the reason, if nothing was written; an existing picture of that name is
    /// then unchanged.
    bool renderImage(Vs::ImageResource* image, uint32_t width, uint32_t height, Vs::Status& status);
    [[nodiscard]] bool renderImage(Vs::ImageResource* image, uint32_t width, uint32_t height);
    bool renderImage(Vs::ImageResource* image, uint32_t width, uint32_t height,
                     const Vs::Scene::ImageOptions& options, Vs::Status& status);
    /// The same into memory.
    bool renderImage(Vs::Scene::Image& image, uint32_t width, uint32_t height,
                     const Vs::Scene::ImageOptions& options, Vs::Status& status) const;

protected:
    /// Not owned; must exist as long as the view, or until null is given.
    void mouseOverlay(MouseOverlay* overlay) { m_overlay = overlay; }
    /// A new view on the same thing, with this one's camera, of the same manager; null if there can be none.
    virtual GraphicsView* makeAnother() { return nullptr; }

private:
    friend class GraphicsCanvas;
    friend class ViewMgr;

    class Subject;

    std::vector<Vs::Scene::ViewFragment*> modelFragments() const;
    void contentChanged();
    void frame();
    /// For a canvas that shows it first.
    void frameFirst();

    std::vector<Vs::StrongRef<Vs::Scene::ViewFragment>> m_owned;
    std::vector<Vs::Scene::ViewFragment*> m_fragments;
    std::vector<std::shared_ptr<const Subject>> m_subjects; ///< Of each fragment, for its camera.
    GraphicsCanvas* m_canvas = nullptr;
    ViewMgr* m_manager = nullptr;
    MouseOverlay* m_overlay = nullptr;
    std::vector<uint64_t> m_seen; ///< Of each fragment, what update() saw last.
    uint64_t m_fitRevision = 0;   ///< Of the camera, after the last fit.
    bool m_fitPending = false;
    bool m_shownBefore = false;
};

} // namespace Vu
