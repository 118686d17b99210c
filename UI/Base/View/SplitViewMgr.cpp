#include "UI/Base/View/SplitViewMgr.h"

#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SplitViewEvents.h"
#include "UI/Base/View/ViewMgr.h"
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
    attend(canvas);
    if (left) {
        SplitViewEvent event(left);
        SplitViewEventSource::get()->fireSplitViewDeactivate(&event);
    }
    if (m_view) {
        SplitViewEvent event(m_view);
        SplitViewEventSource::get()->fireSplitViewActivate(&event);
    }
}

void SplitViewMgr::attend(GraphicsCanvas* canvas)
{
    m_canvas = canvas;
    if (canvas) {
        std::erase(m_attended, canvas);
        m_attended.insert(m_attended.begin(), canvas);
    }
    viewChanged(canvas);
}

void SplitViewMgr::viewChanged(const GraphicsCanvas* canvas)
{
    if (canvas != m_canvas)
        return;
    m_view = canvas ? canvas->view() : nullptr;
    if (m_view && m_view->viewManager())
        m_view->viewManager()->attend(m_view);
}

void SplitViewMgr::sightChanged(const std::vector<GraphicsCanvas*>& canvases)
{
    // No event, and no view is looked at for it: nobody has picked anything, and the shell is about to say
    // what is shown.
    if (m_canvas && !m_canvas->inSight())
        attend(nullptr);
    if (m_canvas)
        return;
    const auto last = std::find_if(m_attended.begin(), m_attended.end(), [&](GraphicsCanvas* canvas) {
        return canvas->inSight() && std::find(canvases.begin(), canvases.end(), canvas) != canvases.end();
    });
    if (last != m_attended.end()) {
        m_canvas = *last;
        m_view = m_canvas->view();
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
    attend(nullptr);
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
    std::erase(m_attended, canvas);
    if (canvas == m_canvas)
        m_canvas = nullptr;
}

void SplitViewMgr::forget(const GraphicsView* view)
{
    if (view == m_view)
        m_view = nullptr;
    // Only later: the session that the view belongs to may be about to go as a whole.
    Application::get()->deferredTasks()->post([this] { fillEmpty(); });
}

void SplitViewMgr::fillEmpty() const
{
    for (GraphicsCanvas* canvas : GraphicsCanvas::existingCanvases()) {
        if (canvas->view())
            continue;
        const auto beside = std::find_if(m_attended.begin(), m_attended.end(), [&](GraphicsCanvas* each) {
            return each->view() && each->inSight() == canvas->inSight();
        });
        GraphicsView* other = beside == m_attended.end() ? nullptr : (*beside)->view()->another(nullptr);
        if (other)
            canvas->view(other, false, false);
    }
}

} // namespace Vu
