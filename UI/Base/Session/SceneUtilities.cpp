#include "UI/Base/Session/SceneUtilities.h"

#include "Server/Base/ResourceMgr.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/Session/AssetGraphicsView.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/View/ViewMgr.h"

#include <algorithm>

namespace Vu {

GraphicsView* SceneUtilities::getActiveAssetGraphicView()
{
    AssetSession* session = SessionMgr::get()->activeAssetSession();
    if (!session)
        return nullptr;
    auto* attended = Vs::cast<AssetGraphicsView>(SplitViewMgr::get()->activeView());
    if (attended && attended->assetSession() == session)
        return attended;
    return session->viewManager()->graphicsView();
}

GraphicsCanvas* SceneUtilities::getActiveGraphicsCanvas()
{
    if (const GraphicsView* view = getActiveAssetGraphicView())
        if (GraphicsCanvas* canvas = view->canvas())
            return canvas;
    return SplitViewMgr::get()->activeCanvas();
}

Rendra::Graphics::GroupNode* SceneUtilities::getActiveEditNode()
{
    const GraphicsView* view = getActiveAssetGraphicView();
    const Vs::Scene::ViewFragment* fragment = view ? view->modelFragment() : nullptr;
    return fragment ? fragment->viewFragmentNode() : nullptr;
}

bool SceneUtilities::createTexture2(Rendra::Graphics::GeometryNode* node, const Vs::ImageSetResource* images,
                                    const wchar_t* name, const GkPoint2d& anchor, float scale,
                                    float occludedOpacity)
{
    const std::wstring path = images->localPath() + L"/" + name + L".png";
    Vs::Scene::Image image;
    if (!Display::get()->readPicture(path, image))
        return false;
    auto texture = std::make_shared<Rendra::Graphics::Texture>();
    texture->width = static_cast<int>(image.width);
    texture->height = static_cast<int>(image.height);
    texture->pixels = std::move(image.pixels);
    texture->anchor = anchor;
    texture->scale = scale;
    texture->occludedOpacity = std::clamp(occludedOpacity, 0.0f, 1.0f);
    Vs::Scene::NodeChange(node).texture(std::move(texture));
    return true;
}

} // namespace Vu
