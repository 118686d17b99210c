#include "Server/DataModel/Selection/Selection.h"

#include "Server/Body/Body.h"
#include "Server/Body/MeshPoints.h"
#include "Server/Body/PartsMesh.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/Private/ComponentObject.h"
#include "Server/DataModel/Selection/Solids.h"

namespace Vs {
namespace {

BBox faceBox(const BodyMesh& mesh, uint32_t index)
{
    BBox box;
    const BodyMesh::Face& face = mesh.faces[index];
    const size_t first = size_t(face.firstTriangle) * 3, count = size_t(face.triangleCount) * 3;
    for (size_t i = first; i < first + count; ++i)
        box.add(pointAt(mesh.positions, mesh.triangles[i]));
    return box;
}

BBox solidBox(const Component& component, const BodyMesh& mesh, uint32_t index)
{
    BBox box;
    for (const uint32_t face : facesOfSolid(component, index))
        if (face < mesh.faces.size())
            box.add(faceBox(mesh, face));
    return box;
}

BBox edgeBox(const BodyMesh& mesh, uint32_t index)
{
    BBox box;
    for (size_t i = mesh.edgeStarts[index]; i < mesh.edgeStarts[index + 1]; ++i)
        box.add(pointAt(mesh.edgePoints, i));
    return box;
}

/// In the coordinates above the component.
BBox componentBox(const Component& component)
{
    BBox box;
    if (component.body)
        box.add(component.body->mesh()->bounds);
    for (const auto& inner : component.children)
        box.add(componentBox(*inner));
    return box.transformed(component.placement);
}

/// In the component's own coordinates.
BBox partBox(const Component& component, const ObjectPath& path)
{
    const std::shared_ptr<const BodyMesh> mesh = partsMesh(component.body->mesh());
    switch (path.leaf) {
    case ObjectPath::Leaf::Body:
        return mesh->bounds;
    case ObjectPath::Leaf::Solid:
        return solidBox(component, *mesh, path.index);
    case ObjectPath::Leaf::Face:
        return faceBox(*mesh, path.index);
    case ObjectPath::Leaf::Edge:
        return edgeBox(*mesh, path.index);
    default:
        return {};
    }
}

} // namespace

StrongRef<SharedObject> LogicalSelection::leaf(Asset& asset) const
{
    Status ignored;
    if (&asset != m_asset || m_path.leaf != ObjectPath::Leaf::Component ||
        !resolvePath(m_path, asset, ignored))
        return nullptr;
    return StrongRef<SharedObject>(new ComponentObject(&asset));
}

bool LogicalSelection::calculateBounds(const Asset& asset, BBox& box) const
{
    Status ignored;
    const Component* component = &asset == m_asset ? resolvePath(m_path, asset, ignored) : nullptr;
    if (!component)
        return false;
    const GkMatrix3d placement = placementOf(m_path, asset).value_or(GkMatrix3d());
    const BBox found =
        m_path.leaf == ObjectPath::Leaf::Component
            ? componentBox(*component).transformed(placement * component->placement.matrix().inverse())
            : partBox(*component, m_path).transformed(placement);
    if (found.isEmpty())
        return false;
    box = found;
    return true;
}

} // namespace Vs
