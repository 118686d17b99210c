#pragma once

#include "Server/Scene/Node.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/OverlayStack.h"

namespace Vu {

class AssetSession;

/// The view on an asset's scene. Made by AssetSession.
class AssetGraphicsView : public Vs::Implements<AssetGraphicsView, GraphicsView>
{
public:
    /// Null if the asset has no scene.
    [[nodiscard]] static std::unique_ptr<AssetGraphicsView> make(AssetSession* session);
    ~AssetGraphicsView() override;

    AssetSession* assetSession() const { return m_session; }
    /// What lies over the scene; the cube is the lowest.
    OverlayStack& overlays() { return m_overlays; }

    Rendra::Graphics::GroupNode* sceneNode() const override;
    Rendra::Graphics::GroupNode* createScene() override;
    void releaseScene() override;

private:
    GraphicsView* makeAnother() override;
    explicit AssetGraphicsView(AssetSession* session) : m_session(session) {}

    AssetSession* m_session;
    OverlayStack m_overlays;
    Vs::StrongRef<Rendra::Graphics::GroupNode> m_node;
};

} // namespace Vu
