#include "Tests/Server/Scene/Meshes.h"

namespace SceneTest {

Vs::BodyMesh box(double x, double y, double z)
{
    const GkVector3d half[] = {{x / 2, 0, 0}, {0, y / 2, 0}, {0, 0, z / 2}};
    Vs::BodyMesh mesh;
    const auto put = [](std::vector<float>& to, const GkVector3d& v) {
        to.insert(to.end(), {float(v.x), float(v.y), float(v.z)});
    };
    for (int axis = 0; axis < 3; ++axis)
        for (const int side : {-1, 1}) {
            const GkVector3d& u = half[(axis + (side > 0 ? 1 : 2)) % 3];
            const GkVector3d& v = half[(axis + (side > 0 ? 2 : 1)) % 3];
            const auto first = static_cast<uint32_t>(mesh.positions.size() / 3);
            const GkVector3d middle = half[axis] * side;
            for (const GkVector3d& corner :
                 {middle - u - v, middle + u - v, middle + u + v, middle - u + v}) {
                put(mesh.positions, corner);
                put(mesh.normals, middle.normal());
            }
            mesh.faces.push_back({static_cast<uint32_t>(mesh.triangles.size() / 3), 2, -1});
            for (const uint32_t index : {0u, 1u, 2u, 0u, 2u, 3u})
                mesh.triangles.push_back(first + index);
        }
    for (int axis = 0; axis < 3; ++axis)
        for (int side = 0; side < 4; ++side) {
            const GkVector3d middle =
                half[(axis + 1) % 3] * (side & 1 ? 1 : -1) + half[(axis + 2) % 3] * (side & 2 ? 1 : -1);
            mesh.edgeStarts.push_back(static_cast<uint32_t>(mesh.edgePoints.size() / 3));
            put(mesh.edgePoints, middle - half[axis]);
            put(mesh.edgePoints, middle + half[axis]);
        }
    mesh.edgeStarts.push_back(static_cast<uint32_t>(mesh.edgePoints.size() / 3));
    mesh.bounds = BBox({-x / 2, -y / 2, -z / 2}, {x / 2, y / 2, z / 2});
    return mesh;
}

std::shared_ptr<const Vs::BodyMesh> boxMesh(double x, double y, double z)
{
    return std::make_shared<const Vs::BodyMesh>(box(x, y, z));
}

} // namespace SceneTest
