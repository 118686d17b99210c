#pragma once

#include "Server/Scene/Camera.h"
#include "Server/Scene/INodeSource.h"
#include "Server/Scene/Node.h"
#include "Server/Scene/RenderParams.h"
#include "Server/Scene/Viewport.h"

#include <utility>

namespace Vs::Scene {

class SceneAssetAdapter;

/// The data of a view's node.
class ViewNodeData : public Implements<ViewNodeData, Rendra::Graphics::NodeData>
{
public:
    explicit ViewNodeData(INodeSource* source) : m_source(source) {}
    /// The view; null once it is gone.
    INodeSource* source() const { return m_source; }
    void clearSource() override { m_source = nullptr; }

private:
    INodeSource* m_source;
};

/// The node for a view, which is its source until NodeChange::clearSource.
StrongRef<Rendra::Graphics::GroupNode> makeViewNode(INodeSource* source);
/// Null if the node is null or isn't a view's.
ViewNodeData* viewNodeData(const Rendra::Graphics::GroupNode* node);

/// The data of a view fragment's node.
class ViewFragmentNodeData : public Implements<ViewFragmentNodeData, Rendra::Graphics::NodeData>
{
public:
    /// The parameters of a pass; there is one pass, 0; null for any other number.
    RenderParams* renderParams(int pass) { return pass == 0 ? &m_renderParams : nullptr; }

    Camera* camera() const { return m_camera.get(); }
    void camera(StrongRef<Camera> camera) { m_camera = std::move(camera); }
    Viewport* viewport() const { return m_viewport.get(); }
    void viewport(StrongRef<Viewport> viewport) { m_viewport = std::move(viewport); }
    /// The asset whose model the fragment shows. Not owned; null if there is none or the asset is gone.
    SceneAssetAdapter* sceneAssetAdapter() const;
    void sceneAssetAdapter(SceneAssetAdapter* adapter);
    /// A click off all bodies selects the background, and so has a point in space. Default true; a fragment
    /// that only draws over the model, such as a reticle, turns it off, and is left out of fits, picks and
    /// pictures.
    bool supportSelectBackground() const { return m_selectBackground; }
    void supportSelectBackground(bool supports) { m_selectBackground = supports; }

private:
    RenderParams m_renderParams;
    StrongRef<Camera> m_camera;
    StrongRef<Viewport> m_viewport;
    StrongRef<Rendra::Graphics::GroupNode> m_assetNode;
    bool m_selectBackground = true;
};

/// Null if the node is null or isn't a fragment's.
ViewFragmentNodeData* viewFragmentNodeData(const Rendra::Graphics::GroupNode* node);

} // namespace Vs::Scene
