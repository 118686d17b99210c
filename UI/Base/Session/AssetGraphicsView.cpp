#include "UI/Base/Session/AssetGraphicsView.h"

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/DataModel/Asset.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/AutoCamViewFragment.h"

namespace Vu {
namespace {

Vs::Scene::SceneAssetAdapter* sceneOf(const AssetSession* session)
{
    return Vs::cast<Vs::Scene::SceneAssetAdapter>(session->asset()->adapter());
}

/// The ground and the first look at a model are those of its own up and front.
void standUpright(Vs::Scene::ViewFragment& model, Vs::Scene::SceneAssetAdapter& adapter)
{
    auto* settings = Vs::cast<Vs::CommonData::CommonDataAssetSettings>(adapter.assetSettings());
    const GkVector3d up = settings->sceneUp(), front = settings->sceneFront();
    model.data()->renderParams(0)->groundPlaneOrientation(up);
    model.camera()->upright(up);
    model.camera()->look(-(up.crossProduct(front) + front + up), up);
}

} // namespace

std::unique_ptr<AssetGraphicsView> AssetGraphicsView::make(AssetSession* session)
{
    if (!sceneOf(session))
        return nullptr;
    return std::unique_ptr<AssetGraphicsView>(new AssetGraphicsView(session));
}

AssetGraphicsView::~AssetGraphicsView()
{
    AssetGraphicsView::releaseScene();
}

Rendra::Graphics::GroupNode* AssetGraphicsView::sceneNode() const
{
    return m_node.get();
}

Rendra::Graphics::GroupNode* AssetGraphicsView::createScene()
{
    if (m_node)
        return m_node.get();
    Vs::Scene::SceneAssetAdapter* adapter = sceneOf(m_session);
    m_node = Vs::Scene::makeViewNode(this);
    auto model = Vs::Scene::ViewFragment::make(adapter->transientSegment());
    model->showAsset(adapter);
    standUpright(*model, *adapter);
    // The projection that the user chose last.
    const int projection = Vs::Scene::GraphicsOptionGroup::get()->cameraProjection();
    if (projection != model->camera()->projection())
        model->camera()->toggleProjection(static_cast<Vs::Scene::EProjection>(projection));
    Vs::Scene::NodeChange(m_node.get()).add(model->viewFragmentNode());
    addFragment(std::move(model));
    auto orbicon = AutoCamViewFragment::make(this, m_session->asset());
    m_overlays.add(orbicon.get());
    mouseOverlay(&m_overlays);
    addFragment(orbicon);
    fit();
    return m_node.get();
}

GraphicsView* AssetGraphicsView::makeAnother()
{
    GraphicsView* made = m_session->createView();
    if (made)
        made->copyCamera(*this);
    return made;
}

void AssetGraphicsView::releaseScene()
{
    if (!m_node)
        return;
    Vs::Scene::NodeChange(m_node.get()).clearSource();
    m_node.reset();
}

} // namespace Vu
