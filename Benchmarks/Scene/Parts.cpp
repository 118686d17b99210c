#include "Benchmarks/Scene/Parts.h"

#include "Server/DataModel/Model/ModelFile.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace BenchScene {
namespace {

constexpr double kFullTurn = 6.283185307179586;

/// Puts a mesh together, face by face.
class MeshBuilder
{
public:
    uint32_t vertex(const GkPoint3d& p, const GkVector3d& normal)
    {
        m_mesh.positions.insert(m_mesh.positions.end(), {float(p.x), float(p.y), float(p.z)});
        m_mesh.normals.insert(m_mesh.normals.end(), {float(normal.x), float(normal.y), float(normal.z)});
        m_mesh.bounds.add(p);
        return static_cast<uint32_t>(m_mesh.positions.size() / 3 - 1);
    }
    void triangle(uint32_t a, uint32_t b, uint32_t c)
    {
        m_mesh.triangles.insert(m_mesh.triangles.end(), {a, b, c});
    }
    void endFace()
    {
        const auto triangles = static_cast<uint32_t>(m_mesh.triangles.size() / 3);
        m_mesh.faces.push_back({m_firstTriangle, triangles - m_firstTriangle, -1});
        m_firstTriangle = triangles;
    }
    void edge(const std::vector<GkPoint3d>& points)
    {
        m_mesh.edgeStarts.push_back(static_cast<uint32_t>(m_mesh.edgePoints.size() / 3));
        for (const GkPoint3d& p : points)
            m_mesh.edgePoints.insert(m_mesh.edgePoints.end(), {float(p.x), float(p.y), float(p.z)});
    }
    std::shared_ptr<const Vs::BodyMesh> take()
    {
        m_mesh.edgeStarts.push_back(static_cast<uint32_t>(m_mesh.edgePoints.size() / 3));
        return std::make_shared<const Vs::BodyMesh>(std::move(m_mesh));
    }

private:
    Vs::BodyMesh m_mesh;
    uint32_t m_firstTriangle = 0;
};

/// A flat side around `centre`, spanned by two half sides at right angles.
void flatSide(MeshBuilder& builder, const GkPoint3d& centre, const GkVector3d& u, const GkVector3d& v)
{
    const GkVector3d normal = u.crossProduct(v).normal();
    const GkPoint3d corners[] = {centre - u - v, centre + u - v, centre + u + v, centre - u + v};
    uint32_t index[4];
    for (int i = 0; i < 4; ++i)
        index[i] = builder.vertex(corners[i], normal);
    builder.triangle(index[0], index[1], index[2]);
    builder.triangle(index[0], index[2], index[3]);
    builder.endFace();
}

std::shared_ptr<const Vs::BodyMesh> plate(double x, double y, double z)
{
    MeshBuilder builder;
    const GkVector3d half[] = {{x / 2, 0, 0}, {0, y / 2, 0}, {0, 0, z / 2}};
    for (int axis = 0; axis < 3; ++axis)
        for (int side = -1; side <= 1; side += 2) {
            const GkVector3d& u = half[(axis + 1) % 3];
            const GkVector3d& v = half[(axis + 2) % 3];
            flatSide(builder, GkPoint3d() + half[axis] * side, side > 0 ? u : v, side > 0 ? v : u);
        }
    for (int axis = 0; axis < 3; ++axis)
        for (int side = 0; side < 4; ++side) {
            const GkPoint3d middle = GkPoint3d() + half[(axis + 1) % 3] * (side & 1 ? 1 : -1) +
                                     half[(axis + 2) % 3] * (side & 2 ? 1 : -1);
            builder.edge({middle - half[axis], middle + half[axis]});
        }
    return builder.take();
}

std::vector<GkPoint3d> ring(double radius, double z, int segments)
{
    std::vector<GkPoint3d> points;
    for (int i = 0; i <= segments; ++i) {
        const double angle = kFullTurn * (i % segments) / segments;
        points.emplace_back(radius * std::cos(angle), radius * std::sin(angle), z);
    }
    return points;
}

std::shared_ptr<const Vs::BodyMesh> pin(double radius, double height, int segments)
{
    MeshBuilder builder;
    const std::vector<GkPoint3d> low = ring(radius, -height / 2, segments);
    const std::vector<GkPoint3d> high = ring(radius, height / 2, segments);
    for (size_t i = 0; i < low.size(); ++i) {
        const GkVector3d normal = GkVector3d(low[i].x, low[i].y, 0).normal();
        const uint32_t a = builder.vertex(low[i], normal);
        const uint32_t b = builder.vertex(high[i], normal);
        if (i > 0) {
            builder.triangle(a - 2, a, b);
            builder.triangle(a - 2, b, b - 2);
        }
    }
    builder.endFace();
    for (const auto* circle : {&low, &high}) {
        const bool top = circle == &high;
        const GkVector3d normal(0, 0, top ? 1 : -1);
        const uint32_t centre = builder.vertex({0, 0, (*circle)[0].z}, normal);
        for (size_t i = 0; i < circle->size(); ++i) {
            const uint32_t at = builder.vertex((*circle)[i], normal);
            if (i > 0)
                top ? builder.triangle(centre, at - 1, at) : builder.triangle(centre, at, at - 1);
        }
        builder.endFace();
        builder.edge(*circle);
    }
    return builder.take();
}

std::shared_ptr<const Vs::BodyMesh> ball(double radius, int segments, int rings)
{
    MeshBuilder builder;
    uint32_t at = 0;
    for (int j = 0; j <= rings; ++j) {
        const double latitude = kFullTurn / 2 * (double(j) / rings - 0.5);
        for (int i = 0; i <= segments; ++i) {
            // The first and the last meridian are one, and the poles are points, to the last bit.
            const double longitude = kFullTurn * (i % segments) / segments;
            const double width = j == 0 || j == rings ? 0 : std::cos(latitude);
            const GkVector3d normal(width * std::cos(longitude), width * std::sin(longitude),
                                    std::sin(latitude));
            at = builder.vertex(GkPoint3d() + normal * radius, normal);
            if (i == 0 || j == 0)
                continue;
            const uint32_t below = at - static_cast<uint32_t>(segments + 1);
            if (j > 1)
                builder.triangle(below - 1, below, at);
            if (j < rings)
                builder.triangle(below - 1, at, at - 1);
        }
    }
    builder.endFace();
    return builder.take();
}

void addParts(const Vs::PartTree::Node& node, const GkMatrix3d& above, const Vs::PartTree& tree, Scene& scene)
{
    const GkMatrix3d placement = above * node.placement;
    if (node.body >= 0 && scene.meshes[size_t(node.body)])
        scene.parts.push_back({node.body, placement, tree.bodies[size_t(node.body)].colour});
    for (const Vs::PartTree::Node& child : node.children)
        addParts(child, placement, tree, scene);
}

Scene sceneOfModel(const Vs::ModelFile& model)
{
    Scene scene;
    for (size_t body = 0; body < model.tree().bodies.size(); ++body)
        scene.meshes.push_back(model.mesh(body));
    for (const Vs::PartTree::Node& root : model.tree().roots)
        addParts(root, GkMatrix3d(), model.tree(), scene);
    return scene;
}

} // namespace

Scene sceneOf(const std::string& name)
{
    if (std::filesystem::is_regular_file(name))
        return sceneOfModel(*Vs::ModelFile::open(name));
    if (name == "million")
        return {{ball(50, 1000, 501)}, {{0, GkMatrix3d(), {0.10f, 0.30f, 0.62f, 1}}}};
    if (name == "box")
        return {{plate(40, 30, 20)}, {{0, GkMatrix3d(), {0.72f, 0.73f, 0.75f, 1}}}};
    const int count = std::atoi(name.c_str());
    Scene scene;
    if (count <= 0)
        return scene;
    constexpr int kUnique = 100;
    for (int i = 0; i < kUnique; ++i) {
        const double more = 1 + 0.004 * i;
        scene.meshes.push_back(i % 3 == 0   ? plate(8 * more, 8, 2)
                               : i % 3 == 1 ? pin(2 * more, 8, 24 + i % 5)
                                            : ball(3 * more, 24 + i % 5, 21));
    }
    static const Vs::Colour colours[] = {{0.72f, 0.73f, 0.75f, 1},
                                         {0.10f, 0.30f, 0.62f, 1},
                                         {0.75f, 0.28f, 0.05f, 1},
                                         {0.12f, 0.42f, 0.16f, 1},
                                         {0.80f, 0.66f, 0.20f, 1}};
    const int side = std::max(1, static_cast<int>(std::ceil(std::cbrt(count))));
    scene.parts.reserve(size_t(count));
    for (int i = 0; i < count; ++i) {
        const GkVector3d place(i % side * 10.0, i / side % side * 10.0, i / (side * side) * 10.0);
        scene.parts.push_back(
            {i % kUnique, GkMatrix3d::translation(place) * GkMatrix3d::rotation(0.1 * (i % 7), {1, 2, 3}),
             colours[i % kUnique % 5]});
    }
    return scene;
}

std::string modelOf(const std::string& stepFile)
{
    const std::filesystem::path worker =
        std::filesystem::read_symlink("/proc/self/exe").parent_path() / "quillet-translate-step";
    const std::string model =
        (std::filesystem::temp_directory_path() / ("bench_scene." + std::to_string(getpid()))).string();
    // What the worker tells of its progress goes to the third descriptor.
    const std::string command =
        "'" + worker.string() + "' import step '" + stepFile + "' '" + model + "' 3>/dev/null";
    return std::system(command.c_str()) == 0 ? model : std::string();
}

int measureAll(int argc, char** argv, bool (*measure)(const std::string& scene))
{
    std::vector<std::string> scenes(argv + 1, argv + argc);
    if (scenes.empty())
        scenes = {"10000", "million"};
    bool all = true;
    for (const std::string& scene : scenes)
        all = measure(scene) && all;
    return all ? 0 : 1;
}

} // namespace BenchScene
