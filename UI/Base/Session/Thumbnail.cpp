#include "UI/Base/Session/Thumbnail.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/Asset.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/PngWriter.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Session/AssetGraphicsView.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/ViewMgr.h"

namespace Vu {

namespace {

/// While this exists, a model shows everything that it contains alike, whatever is edited by itself.
class WithoutGhosts
{
public:
    explicit WithoutGhosts(const Vs::Asset& asset)
    {
        const auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(asset.adapter());
        if (!scene || !scene->rootNode()->ghost())
            return;
        m_root = Vs::StrongRef<Rendra::Graphics::Node>(scene->rootNode());
        m_ghost = m_root->ghost();
        Vs::Scene::NodeChange(m_root.get()).ghost(std::nullopt);
    }
    ~WithoutGhosts()
    {
        if (m_root)
            Vs::Scene::NodeChange(m_root.get()).ghost(m_ghost);
    }
    WithoutGhosts(const WithoutGhosts&) = delete;
    WithoutGhosts& operator=(const WithoutGhosts&) = delete;

private:
    Vs::StrongRef<Rendra::Graphics::Node> m_root;
    std::optional<bool> m_ghost;
};

} // namespace

std::string thumbnailOf(const Vs::Asset* asset, uint32_t side)
{
    Vs::assertMainThread();
    AssetSession* session = SessionMgr::get()->getOpenAssetSession(asset);
    // A view of its own, so that the user's camera stays where it is.
    const std::unique_ptr<AssetGraphicsView> view = session ? AssetGraphicsView::make(session) : nullptr;
    if (!view)
        return {};
    view->createScene();
    if (const GraphicsView* seen = session->viewManager()->graphicsView())
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
    options.finerWait = -1; // A save takes no longer for it.
    const WithoutGhosts all(*asset);
    Vs::Scene::Image image;
    Vs::Status ignored; // A file without a picture is just as good.
    if (!Vs::Scene::OffscreenRenderer::get()->render({model}, side, side, options, image, ignored))
        return {};
    return Vs::Scene::pngOf(image);
}

} // namespace Vu
