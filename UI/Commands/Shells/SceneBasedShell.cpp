#include "UI/Commands/Shells/SceneBasedShell.h"

#include "UI/Base/Session/AssetGraphicsView.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/SplitViewEvents.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

namespace Vu::Commands {

/// A view that no canvas shows yet; made by the session of the last view seen if all are taken.
GraphicsView* SceneBasedShell::freeView()
{
    GraphicsView* last = nullptr;
    GraphicsView* view = onView();
    while (view && view->canvas() && view != last) {
        last = view;
        view = onNextView(view);
    }
    if (view && !view->canvas())
        return view;
    if (auto* assetView = Vs::cast<AssetGraphicsView>(last))
        if (AssetSession* session = assetView->assetSession())
            return session->createView();
    return nullptr;
}

void SceneBasedShell::bindView(bool flagA, bool flagB)
{
    SplitViewMgr* split = SplitViewMgr::get();
    if (GraphicsCanvas* active = split->activeCanvas()) {
        split->activeView(onView());
        active->view(onView(), flagA, flagB);
        return;
    }
    std::vector<GraphicsCanvas*> canvases;
    GraphicsCanvas::allCanvases(canvases);
    for (GraphicsCanvas* canvas : canvases) {
        GraphicsView* view = freeView();
        if (!view)
            continue;
        canvas->view(view, flagA, flagB);
        WorkspaceWindow::forceImmediateRepaint();
        SplitViewEvent event(view);
        SplitViewEventSource::get()->fireSplitViewDeactivate(&event);
        if (!split->activeCanvas())
            split->activeCanvas(canvas);
    }
}

void SceneBasedShell::unbindView(GraphicsView* view)
{
    std::vector<GraphicsCanvas*> canvases;
    GraphicsCanvas::allCanvases(canvases);
    for (GraphicsCanvas* canvas : canvases)
        if (canvas->view() == view)
            canvas->view(nullptr, false, false);
}

} // namespace Vu::Commands
