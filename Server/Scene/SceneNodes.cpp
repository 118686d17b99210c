#include "Server/Scene/SceneNodes.h"

#include "Server/Scene/NodeChange.h"

#include <map>
#include <memory>

namespace Vs {

Segment* Segment::makeTransientStandalone(const char* name)
{
    // Never freed: views of static storage may still speak of them at the very end.
    static auto* const segments = new std::map<std::string, std::unique_ptr<Segment>>;
    std::unique_ptr<Segment>& segment = (*segments)[name];
    if (!segment)
        segment = std::make_unique<Segment>(name, true);
    return segment.get();
}

} // namespace Vs

namespace Vs::Scene {

const UniqueString* INodeSource::interfaceId()
{
    static const UniqueString* const id = UniqueString::find("Vs::Scene::INodeSource");
    return id;
}

StrongRef<Viewport> Viewport::make(Segment* segment)
{
    return StrongRef<Viewport>(new Viewport(segment));
}

void Viewport::placement(double left, double bottom, double width, double height)
{
    m_left = left;
    m_bottom = bottom;
    m_width = width;
    m_height = height;
}

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

ViewFragmentNodeData* viewFragmentNodeData(const Rendra::Graphics::GroupNode* node)
{
    return node ? cast<ViewFragmentNodeData>(node->data()) : nullptr;
}

} // namespace Vs::Scene
