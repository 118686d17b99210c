#include "UI/Base/View/GraphicsCanvas.h"

#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/View/CursorController.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Base/View/MouseOverlay.h"
#include "UI/Base/View/SplitViewMgr.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace Vu {
namespace {

/// What a new window gives its canvas on a usual screen.
constexpr int kNewWidth = 1280;
constexpr int kNewHeight = 800;

std::vector<GraphicsCanvas*>& canvasList()
{
    static auto* const list = new std::vector<GraphicsCanvas*>;
    return *list;
}

int inPixels(int length, const CanvasSurface* surface)
{
    return surface ? static_cast<int>(std::lround(length * surface->pixelRatio())) : length;
}

} // namespace

GraphicsCanvas::GraphicsCanvas()
{
    canvasList().push_back(this);
}

GraphicsCanvas::~GraphicsCanvas()
{
    view(nullptr, false, false);
    std::erase(canvasList(), this);
    SplitViewMgr::get()->forget(this);
    MouseEventSource::get()->forget(this);
}

void GraphicsCanvas::allCanvases(std::vector<GraphicsCanvas*>& canvases)
{
    std::copy_if(canvasList().begin(), canvasList().end(), std::back_inserter(canvases),
                 [](const GraphicsCanvas* canvas) { return canvas->m_inSight; });
}

const std::vector<GraphicsCanvas*>& GraphicsCanvas::existingCanvases()
{
    return canvasList();
}

void GraphicsCanvas::view(GraphicsView* view, bool fit, bool repaint)
{
    const bool isElsewhere = view && view != m_view && view->m_canvas && view->m_canvas->m_inSight;
    if (isElsewhere && SplitViewMgr::get()->activeCanvas() == this)
        if (GraphicsView* other = view->another(m_view))
            view = other;
    if (view != m_view) {
        if (m_view)
            m_view->m_canvas = nullptr;
        if (view && view->m_canvas)
            view->m_canvas->view(nullptr, false, false);
        m_view = view;
        if (view) {
            view->m_canvas = this;
            if (fit && !view->m_shownBefore)
                view->frameFirst();
            view->m_shownBefore = true;
        }
    }
    SplitViewMgr::get()->viewChanged(this);
    if (repaint)
        repaintNow();
    else
        invalidate();
}

int GraphicsCanvas::width() const
{
    return existingWidget() ? m_surface->width() : kNewWidth;
}

int GraphicsCanvas::height() const
{
    return existingWidget() ? m_surface->height() : kNewHeight;
}

int GraphicsCanvas::pixelWidth() const
{
    return inPixels(width(), m_surface.get());
}

int GraphicsCanvas::pixelHeight() const
{
    return inPixels(height(), m_surface.get());
}

void GraphicsCanvas::invalidate()
{
    if (m_surface)
        m_surface->update();
}

void GraphicsCanvas::repaintNow()
{
    if (m_surface)
        m_surface->repaint();
}

void GraphicsCanvas::band(const std::optional<CanvasBand>& band)
{
    m_band = band;
    if (m_surface)
        m_surface->band(band);
}

std::vector<CanvasRect> GraphicsCanvas::covered() const
{
    std::vector<CanvasRect> parts;
    if (m_surface)
        m_surface->covered(parts);
    if (MouseOverlay* overlay = m_view ? m_view->mouseOverlay() : nullptr)
        overlay->covers(width(), height(), parts);
    return parts;
}

bool GraphicsCanvas::underPointer() const
{
    return m_surface && m_surface->underPointer();
}

void GraphicsCanvas::activateWindow()
{
    if (m_surface)
        m_surface->activateWindow();
}

QWidget* GraphicsCanvas::widget(QWidget* parent)
{
    if (!m_surface)
        m_surface = Display::get()->makeSurface(this);
    if (m_surface->put(parent))
        CursorController::updateCanvases();
    return m_surface->widget();
}

QWidget* GraphicsCanvas::existingWidget() const
{
    return m_surface ? m_surface->widget() : nullptr;
}

} // namespace Vu
