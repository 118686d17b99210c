#include "UI/Base/SceneUtilities.h"

#include "UI/Base/AssetGraphicsView.h"
#include "UI/Base/AssetSession.h"
#include "UI/Base/GraphicsCanvas.h"
#include "UI/Base/SessionMgr.h"
#include "UI/Base/SplitViewMgr.h"
#include "UI/Base/ViewMgr.h"

namespace Vu {

GraphicsView* SceneUtilities::getActiveAssetGraphicView()
{
    AssetSession* session = SessionMgr::get()->activeAssetSession();
    if (!session)
        return nullptr;
    auto* attended = Vs::cast<AssetGraphicsView>(SplitViewMgr::get()->activeView());
    if (attended && attended->assetSession() == session)
        return attended;
    return Vs::cast<GraphicsView>(session->viewManager()->view(GraphicsView::interfaceId()));
}

GraphicsCanvas* SceneUtilities::getActiveGraphicsCanvas()
{
    if (const GraphicsView* view = getActiveAssetGraphicView())
        if (GraphicsCanvas* canvas = view->canvas())
            return canvas;
    return SplitViewMgr::get()->activeCanvas();
}

} // namespace Vu
