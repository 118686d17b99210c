#include "UI/Design/Primitives/FaceFrame.h"

#include "Server/Body/Body.h"
#include "Server/Body/MeshPoints.h"
#include "Server/Body/PartsMesh.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/Scene/LogicalToSceneSelectionFilter.h"
#include "UI/Design/Primitives/PrimitiveRequest.h"

#include <algorithm>
#include <vector>

namespace Vu::Design {
namespace {

/// How far the normals of a flat face may differ, as the sine of an angle: the accuracy of triangles.
constexpr double kFlat = 1e-4;

struct Triangle
{
    GkPoint3d middle;
    GkVector3d across; ///< Outwards; its length is twice the area.
};

std::vector<Triangle> trianglesOf(const Vs::BodyMesh& mesh, uint32_t index)
{
    std::vector<Triangle> triangles;
    const Vs::BodyMesh::Face& face = mesh.faces[index];
    for (size_t i = face.firstTriangle; i < size_t(face.firstTriangle) + face.triangleCount; ++i) {
        const GkPoint3d a = Vs::pointAt(mesh.positions, mesh.triangles[3 * i]),
                        b = Vs::pointAt(mesh.positions, mesh.triangles[3 * i + 1]),
                        c = Vs::pointAt(mesh.positions, mesh.triangles[3 * i + 2]);
        triangles.push_back({a + ((b - a) + (c - a)) / 3, (b - a).crossProduct(c - a)});
    }
    return triangles;
}

GkPoint3d middleOf(const std::vector<Triangle>& triangles)
{
    GkVector3d sum;
    double area = 0;
    for (const Triangle& triangle : triangles) {
        sum = sum + triangle.middle.asVector() * triangle.across.length();
        area += triangle.across.length();
    }
    return area > 0 ? GkPoint3d() + sum / area : triangles.front().middle;
}

bool isFlat(const std::vector<Triangle>& triangles)
{
    GkVector3d sum;
    for (const Triangle& triangle : triangles)
        sum = sum + triangle.across;
    const GkVector3d normal = sum.normal();
    return std::all_of(triangles.begin(), triangles.end(), [&](const Triangle& triangle) {
        return triangle.across.crossProduct(normal).length() <= kFlat * triangle.across.length() &&
               triangle.across.dotProduct(normal) >= 0;
    });
}

const Triangle& nearest(const std::vector<Triangle>& triangles, const GkPoint3d& place)
{
    return *std::min_element(triangles.begin(), triangles.end(), [&](const Triangle& a, const Triangle& b) {
        return a.middle.distanceTo(place) < b.middle.distanceTo(place);
    });
}

/// Where the face was picked in a view; nothing if it wasn't.
std::optional<GkMatrix3d> frameAtPick(const Vs::LogicalSelection& face)
{
    const Vs::Scene::SceneSelection* picked = Vs::Scene::LogicalToSceneSelectionFilter::filter(&face);
    const Vs::Scene::RawHitInfo* hit = picked ? picked->hitInfo() : nullptr;
    if (!hit || hit->localNormal().isZeroLength())
        return std::nullopt;
    const GkMatrix3d& toWorld = hit->localToWorldTransform();
    return standingAt(toWorld * hit->localHitPoint(), toWorld * hit->localNormal());
}

} // namespace

std::optional<GkMatrix3d> frameOnFace(const Vs::LogicalSelection& face, const Vs::Asset& asset)
{
    const Vs::ObjectPath& path = face.path();
    Vs::Status ignored;
    const Vs::Component* component = Vs::resolvePath(path, asset, ignored);
    const auto place = Vs::placementOf(path, asset);
    if (!component || !component->body || !place || path.leaf != Vs::ObjectPath::Leaf::Face)
        return std::nullopt;
    const auto mesh = Vs::partsMesh(component->body->mesh());
    std::vector<Triangle> triangles;
    if (mesh && path.index < mesh->faces.size())
        triangles = trianglesOf(*mesh, path.index);
    std::erase_if(triangles, [](const Triangle& triangle) { return triangle.across.length() <= 0; });
    if (triangles.empty())
        return std::nullopt;
    const bool flat = isFlat(triangles);
    if (const auto picked = flat ? std::nullopt : frameAtPick(face))
        return picked;
    const GkPoint3d middle = middleOf(triangles);
    const Triangle& there = nearest(triangles, middle);
    return standingAt(*place * (flat ? middle : there.middle), *place * there.across);
}

} // namespace Vu::Design
