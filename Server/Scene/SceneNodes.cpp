#include "Server/Scene/SceneNodes.h"

#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneAssetAdapter.h"

#include <memory>

namespace Vs::Scene {

StrongRef<Rendra::Graphics::GroupNode> makeViewNode(INodeSource* source)
{
    auto node = Rendra::Graphics::GroupNode::make("View");
    NodeChange(node.get()).data(std::make_unique<ViewNodeData>(source));
    return node;
}

ViewNodeData* viewNodeData(const Rendra::Graphics::GroupNode* node)
{
    return node ? cast<ViewNodeData>(node->data()) : nullptr;
}

SceneAssetAdapter* ViewFragmentNodeData::sceneAssetAdapter() const
{
    return SceneAssetAdapter::ofRootNode(m_assetNode.get());
}

void ViewFragmentNodeData::sceneAssetAdapter(SceneAssetAdapter* adapter)
{
    m_assetNode = adapter ? adapter->rootNode() : nullptr;
}

ViewFragmentNodeData* viewFragmentNodeData(const Rendra::Graphics::GroupNode* node)
{
    return node ? cast<ViewFragmentNodeData>(node->data()) : nullptr;
}

} // namespace Vs::Scene
