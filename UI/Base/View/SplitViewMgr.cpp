#include "UI/Base/View/SplitViewMgr.h"

#include "Server/Scene/ViewFragment.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SplitViewEvents.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"

#include <algorithm>
#include <vector>

namespace Vu {
namespace {

std::vector<GraphicsCanvas*> shownCanvases()
{
    std::vector<GraphicsCanvas*> canvases;
    GraphicsCanvas::allCanvases(canvases);
    std::erase_if(canvases, [](const GraphicsCanvas* canvas) { return !canvas->view(); });
    return canvases;
}

} // namespace

SplitViewMgr* SplitViewMgr::get()
{
    static auto* const manager = new SplitViewMgr;
    return manager;
}

void SplitViewMgr::activeCanvas(GraphicsCanvas* canvas)
{
    if (canvas == m_canvas)
        return;
    GraphicsView* left = m_canvas ? m_canvas->view() : nullptr;
    m_canvas = canvas;
    m_view = canvas ? canvas->view() : nullptr;
    if (left) {
        SplitViewEvent event(left);
        SplitViewEventSource::get()->fireSplitViewDeactivate(&event);
    }
    if (m_view) {
        SplitViewEvent event(m_view);
        SplitViewEventSource::get()->fireSplitViewActivate(&event);
    }
}

int SplitViewMgr::visibleViews() const
{
    return static_cast<int>(shownCanvases().size());
}

void SplitViewMgr::updateViewsSize()
{
    std::vector<GraphicsCanvas*> canvases;
    GraphicsCanvas::allCanvases(canvases);
    if (std::all_of(canvases.begin(), canvases.end(),
                    [](GraphicsCanvas* canvas) { return canvas->view(); })) {
        for (GraphicsCanvas* canvas : canvases)
            canvas->invalidate();
        return;
    }
    // A new layout brought canvases that nobody has served: the next binding starts with the first of them.
    m_canvas = nullptr;
    for (GraphicsCanvas* canvas : canvases)
        canvas->view(nullptr, false, false);
}

void SplitViewMgr::copyCamera()
{
    if (const GraphicsView* from = m_canvas ? m_canvas->view() : m_view)
        copyFrom(*from);
}

void SplitViewMgr::copyFrom(const GraphicsView& from)
{
    m_copying = true;
    for (GraphicsCanvas* canvas : shownCanvases())
        if (canvas->view() != &from) {
            canvas->view()->copyCamera(from);
            canvas->invalidate();
        }
    m_copying = false;
}

void SplitViewMgr::shareCamera()
{
    m_shares = !m_shares;
    if (m_shares) {
        Vs::Scene::CameraEventSource::get()->subscribe(this);
        copyCamera();
    } else {
        Vs::Scene::CameraEventSource::get()->unsubscribe(this);
    }
}

void SplitViewMgr::cameraChanged(Vs::Scene::CameraEvent* event)
{
    if (m_copying)
        return;
    for (const GraphicsCanvas* canvas : shownCanvases()) {
        const GraphicsView& view = *canvas->view();
        if (!view.viewFragments().empty() && view.viewFragments().front()->camera() == event->camera()) {
            copyFrom(view);
            return;
        }
    }
}

void SplitViewMgr::updateArrangement(const std::wstring& filter)
{
    Workspace* workspace = WorkspaceMgr::activeWorkspace();
    if (auto* shell =
            Vs::cast<ISplitViewArrangement>(workspace ? workspace->shellManager()->activeShell() : nullptr))
        shell->updateArrangement(filter);
}

void SplitViewMgr::forget(const GraphicsCanvas* canvas)
{
    if (canvas == m_canvas)
        m_canvas = nullptr;
}

void SplitViewMgr::forget(const GraphicsView* view)
{
    if (view == m_view)
        m_view = nullptr;
}

} // namespace Vu
