#pragma once

#include "Server/Scene/SceneNodes.h"

#include <string>

namespace Vs::Scene {

/// One layer of a view: nodes seen by a camera. A view draws its fragments in order, each over the ones
/// before; the first one, called "Model", shows the model.
class ViewFragment : public Implements<ViewFragment, SharedObject>
{
public:
    /// A fragment without content, with its own camera and viewport.
    static StrongRef<ViewFragment> make(Segment* segment, const std::string& name = "Model");

    const std::string& name() const { return m_node->name(); }
    Camera* camera() const { return data()->camera(); }
    void camera(StrongRef<Camera> camera) { data()->camera(std::move(camera)); }
    ViewFragmentNodeData* data() const { return viewFragmentNodeData(m_node.get()); }
    RenderParams* renderParams() const { return data()->renderParams(0); }

    /// The fragment's own node; what it shows is below (NodeChange::add). Never null.
    Rendra::Graphics::GroupNode* viewFragmentNode() const { return m_node.get(); }
    /// Shows the model of an asset: adds the adapter's node below the fragment's, replacing a previous one.
    /// Null shows none.
    void showAsset(SceneAssetAdapter* adapter);

    /// The box around all visible content in world coordinates, including meshes that arrived meanwhile.
    [[nodiscard]] BBox bounds() const;
    /// Processes meshes that arrived since the last call. Returns true if the next picture would differ from
    /// the one drawn at `seen`; `seen` is updated. An unchanged picture needn't be redrawn.
    bool update(uint64_t& seen) const;

protected:
    ViewFragment(Segment* segment, const std::string& name);

private:
    StrongRef<Rendra::Graphics::GroupNode> m_node;
};

} // namespace Vs::Scene
