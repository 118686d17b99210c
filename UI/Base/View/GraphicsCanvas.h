#pragma once

#include "Server/Base/Object.h"
#include "UI/Base/Program/CanvasBand.h"
#include "UI/Base/Program/CanvasRect.h"

#include <memory>
#include <optional>
#include <vector>

class QWidget;

namespace Vu {

class CanvasSurface;
class GraphicsView;

/// A place where a view is drawn. The canvas exists with its area; its widget is made when the window is
/// shown, so that a run without a window pays for none. Where there is a display the widget draws with
/// OpenGL, on the offscreen platform it paints the pictures of the windowless renderer.
class GraphicsCanvas : public Vs::Implements<GraphicsCanvas>
{
public:
    GraphicsCanvas();
    ~GraphicsCanvas() override;

    /// Adds all canvases but those of arrangements that no window shows now, in the order in which they were
    /// made.
    static void allCanvases(std::vector<GraphicsCanvas*>& canvases);
    /// Those as well.
    static const std::vector<GraphicsCanvas*>& existingCanvases();

    GraphicsView* view() const { return m_view; }
    /// Shows another view, or none. A view that another canvas in sight shows stays there if this is the
    /// active canvas, which gets one more of the same (GraphicsView::another); otherwise it goes over to this
    /// canvas. With `fit`, a view that was never shown is framed; with `repaint`, it is drawn at once rather
    /// than at the end of the event.
    void view(GraphicsView* view, bool fit, bool repaint);

    /// False while the canvas belongs to an arrangement that its window doesn't show.
    bool inSight() const { return m_inSight; }
    /// For the arrangement's window.
    void inSight(bool value) { m_inSight = value; }

    /// In logical pixels. A canvas without a widget has the size that a new window would give it.
    int width() const;
    int height() const;
    /// In pixels of the screen, of which a dense one has several for each logical pixel.
    int pixelWidth() const;
    int pixelHeight() const;

    /// Redraws at the end of the event.
    void invalidate();
    void repaintNow();

    /// A band over the view; nothing for none.
    const std::optional<CanvasBand>& band() const { return m_band; }
    void band(const std::optional<CanvasBand>& band);

    /// The parts of it that are covered by the window's bars and panels, and by overlays of its view.
    [[nodiscard]] std::vector<CanvasRect> covered() const;

    /// Whether the mouse pointer is over the canvas, and no other window's widget covers it there.
    bool underPointer() const;
    /// Raises the canvas's window, if there is one and it isn't in front already.
    void activateWindow();

    /// The widget, made if need be as a child of `parent`; owned by its parent.
    QWidget* widget(QWidget* parent);
    /// Only if it is there.
    QWidget* existingWidget() const;
    /// For CursorController; null before there was a widget.
    CanvasSurface* surface() const { return m_surface.get(); }

private:
    GraphicsView* m_view = nullptr;
    std::optional<CanvasBand> m_band;
    std::unique_ptr<CanvasSurface> m_surface;
    bool m_inSight = true;
};

} // namespace Vu
