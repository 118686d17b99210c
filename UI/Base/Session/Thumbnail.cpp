#include "UI/Base/Session/Thumbnail.h"

#include "Server/Base/Require.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/Session/AssetGraphicsView.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/ViewMgr.h"

namespace Vu {

std::string thumbnailOf(const Vs::Asset* asset, uint32_t side)
{
    Vs::assertMainThread();
    AssetSession* session = SessionMgr::get()->getOpenAssetSession(asset);
    // A view of its own, so that the user's camera stays where it is.
    const std::unique_ptr<AssetGraphicsView> view = session ? AssetGraphicsView::make(session) : nullptr;
    if (!view)
        return {};
    view->createScene();
    if (const auto* seen = Vs::cast<GraphicsView>(session->viewManager()->view(GraphicsView::interfaceId())))
        view->copyCamera(*seen);
    view->update();
    Vs::Scene::ViewFragment* model = view->modelFragment();
    if (!model || model->bounds().isEmpty())
        return {};
    view->fit();

    Vs::Scene::ImageOptions options = Vs::Scene::ImageOptions::current();
    options.antiAliasing = true;
    options.transparentBackground = true;
    options.grid = false;
    options.highlights = false;
    Vs::Scene::Image image;
    Vs::Status ignored; // Without a picture the file is as good.
    if (!Vs::Scene::OffscreenRenderer::get()->render({model}, side, side, options, image, ignored))
        return {};
    return Display::get()->pngOf(image);
}

} // namespace Vu
