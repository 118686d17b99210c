#include "Server/Scene/SimpleMesh.h"

#include "Server/Scene/NodeChange.h"

namespace Vs::Scene {

using Rendra::Graphics::GeometryNode;

StrongRef<GeometryNode> BuildSimpleMesh(std::vector<GkPoint3d> line)
{
    StrongRef<GeometryNode> node = GeometryNode::make();
    NodeChange(node.get()).countsInBounds(false).polyline(std::move(line));
    return node;
}

} // namespace Vs::Scene
