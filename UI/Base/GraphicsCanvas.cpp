#include "UI/Base/GraphicsCanvas.h"

#include "UI/Base/CursorController.h"
#include "UI/Base/GraphicsView.h"
#include "UI/Base/MouseEvents.h"
#include "UI/Base/SplitViewMgr.h"
#include "UI/Base/Window/CanvasWidget.h"

#include <QPointer>
#include <QWidget>

#include <algorithm>

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

} // namespace

struct GraphicsCanvas::Data
{
    QPointer<QWidget> widget;
};

GraphicsCanvas::GraphicsCanvas() : m_data(std::make_unique<Data>())
{
    canvasList().push_back(this);
}

GraphicsCanvas::~GraphicsCanvas()
{
    view(nullptr, false, false);
    std::erase(canvasList(), this);
    SplitViewMgr::get()->forget(this);
    MouseEventSource::get()->forget(this);
    delete m_data->widget;
}

void GraphicsCanvas::allCanvases(std::vector<GraphicsCanvas*>& canvases)
{
    canvases.insert(canvases.end(), canvasList().begin(), canvasList().end());
}

void GraphicsCanvas::view(GraphicsView* view, bool fit, bool repaint)
{
    if (view != m_view) {
        if (m_view)
            m_view->m_canvas = nullptr;
        if (view && view->m_canvas)
            view->m_canvas->view(nullptr, false, false);
        m_view = view;
        if (view) {
            view->m_canvas = this;
            if (fit && !view->m_shownBefore)
                view->fit();
            view->m_shownBefore = true;
        }
    }
    if (repaint)
        repaintNow();
    else
        invalidate();
}

int GraphicsCanvas::width() const
{
    return m_data->widget ? m_data->widget->width() : kNewWidth;
}

int GraphicsCanvas::height() const
{
    return m_data->widget ? m_data->widget->height() : kNewHeight;
}

void GraphicsCanvas::invalidate()
{
    if (m_data->widget)
        m_data->widget->update();
}

void GraphicsCanvas::repaintNow()
{
    if (m_data->widget && m_data->widget->isVisible())
        m_data->widget->repaint();
}

QWidget* GraphicsCanvas::widget(QWidget* parent)
{
    if (!m_data->widget) {
        m_data->widget = makeCanvasWidget(this, parent);
        CursorController::updateCanvases();
    } else if (m_data->widget->parentWidget() != parent) {
        m_data->widget->setParent(parent);
    }
    return m_data->widget;
}

QWidget* GraphicsCanvas::existingWidget() const
{
    return m_data->widget;
}

} // namespace Vu
