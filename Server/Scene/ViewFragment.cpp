#include "Server/Scene/ViewFragment.h"

#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneAssetAdapter.h"

namespace Vs::Scene {

StrongRef<ViewFragment> ViewFragment::make(Segment* segment, const std::string& name)
{
    return StrongRef<ViewFragment>(new ViewFragment(segment, name));
}

ViewFragment::ViewFragment(Segment* segment, const std::string& name)
    : m_node(Rendra::Graphics::GroupNode::make(name))
{
    auto data = std::make_unique<ViewFragmentNodeData>();
    data->camera(Camera::make());
    data->viewport(Viewport::make(segment));
    NodeChange(m_node.get()).data(std::move(data));
}

void ViewFragment::showAsset(SceneAssetAdapter* adapter)
{
    NodeChange change(m_node.get());
    if (SceneAssetAdapter* before = data()->sceneAssetAdapter())
        change.remove(before->rootNode());
    data()->sceneAssetAdapter(adapter);
    if (adapter)
        change.add(StrongRef<Rendra::Graphics::Node>(adapter->rootNode()));
}

BBox ViewFragment::bounds() const
{
    if (SceneAssetAdapter* adapter = data()->sceneAssetAdapter())
        adapter->update();
    return m_node->boundingBox();
}

bool ViewFragment::update(uint64_t& seen) const
{
    if (SceneAssetAdapter* adapter = data()->sceneAssetAdapter())
        adapter->update();
    // All three only grow, each with its own counter, so a change of one never brings their combination back
    // to an old value.
    uint64_t now = m_node->subtreeRevision();
    now = now * 0x9E3779B97F4A7C15u + camera()->revision();
    now = now * 0x9E3779B97F4A7C15u + renderParams()->revision();
    if (now == seen)
        return false;
    seen = now;
    return true;
}

} // namespace Vs::Scene
