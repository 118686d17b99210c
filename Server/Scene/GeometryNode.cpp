#include "Server/Scene/GeometryNode.h"

namespace Rendra::Graphics {

Vs::StrongRef<GeometryNode> GeometryNode::make()
{
    return Vs::StrongRef<GeometryNode>(new GeometryNode);
}

BBox GeometryNode::ownBounds() const
{
    BBox box;
    if (!m_countsInBounds)
        return box;
    for (const Polyline& line : m_polylines)
        for (const GkPoint3d& point : line)
            box.add(point);
    return box;
}

Vs::StrongRef<InstanceNode> InstanceNode::make()
{
    return Vs::StrongRef<InstanceNode>(new InstanceNode);
}

} // namespace Rendra::Graphics
