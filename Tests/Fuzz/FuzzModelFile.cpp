// Any numbers in a model file whose hashes are right: it is refused, or what it shows can be drawn, picked
// and exported.

#include "Server/DataModel/Exchange/ExportedMeshes.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Server/Scene/Private/MeshTree.h"
#include "Server/Scene/Rendra/CoarseMesh.h"
#include "Server/Scene/Rendra/MeshShape.h"
#include "Tests/Fuzz/Changes.h"
#include "Tests/Fuzz/Fuzz.h"
#include "Tests/Server/DataModel/Model/CraftedModel.h"

#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

namespace {

class StringSink : public Vs::ModelSink
{
public:
    void reserve(size_t size) override { bytes.assign(size, '\0'); }
    void append(const void* data, size_t size) override
    {
        bytes.append(static_cast<const char*>(data), size);
    }
    void finish(const void* front, size_t size) override
    {
        bytes.replace(0, size, static_cast<const char*>(front), size);
    }
    std::string bytes;
};

/// A strip of squares in faces of different colours, with an edge around each.
Vs::BodyMesh strip(uint32_t squares)
{
    Vs::BodyMesh mesh;
    mesh.colours = {{1, 0, 0, 1}, {0, 1, 0, 0.5f}};
    const auto add = [](std::vector<float>& list, uint32_t x, uint32_t y) {
        list.insert(list.end(), {float(x), float(y), 0.0f});
    };
    for (uint32_t i = 0; i < squares; ++i) {
        const uint32_t first = 4 * i;
        mesh.edgeStarts.push_back(uint32_t(mesh.edgePoints.size() / 3));
        for (const auto& [x, y] : {std::pair(i, 0u), {i + 1, 0u}, {i + 1, 1u}, {i, 1u}}) {
            add(mesh.positions, x, y);
            mesh.normals.insert(mesh.normals.end(), {0, 0, 1});
            add(mesh.edgePoints, x, y);
            add(mesh.vertexPoints, x, y);
        }
        mesh.triangles.insert(mesh.triangles.end(),
                              {first, first + 1, first + 2, first, first + 2, first + 3});
        mesh.faces.push_back({2 * i, 2, int32_t(i % 3) - 1});
    }
    mesh.edgeStarts.push_back(uint32_t(mesh.edgePoints.size() / 3));
    mesh.bounds = BBox({0, 0, 0}, {double(squares), 1, 0});
    return mesh;
}

std::string soundModel()
{
    using Node = Vs::PartTree::Node;
    Vs::PartTree tree;
    for (const char* entry : {"0:1:1:1", "0:1:1:2", "0:1:1:3"})
        tree.bodies.push_back({entry, L"Body", {}, 0});
    Node assembly{"0:1:1:4", L"Assembly", {}, std::nullopt, -1, true, {}};
    for (int i = 0; i < 4; ++i)
        assembly.children.push_back(
            {"0:1:1:4/0:1:1:4:" + std::to_string(i + 1), L"Part", {}, Vs::Colour{}, i % 3, true, {}});
    tree.roots = {{"0:1:1:1", L"First", {}, std::nullopt, 0, true, {}}, assembly};
    StringSink sink;
    Vs::ModelFileWriter writer(sink);
    const Vs::BodyMesh large = strip(40), small = strip(1);
    writer.addMesh(&large);
    writer.addMesh(&small);
    writer.addMesh(nullptr);
    writer.writeIndex(tree, {L"a warning"});
    writer.finish();
    return sink.bytes;
}

std::shared_ptr<const Vs::FileMapping> fileOf(const std::string& bytes)
{
    const int descriptor = memfd_create("fuzz", MFD_CLOEXEC);
    require(write(descriptor, bytes.data(), bytes.size()) == ssize_t(bytes.size()), "no memory");
    return Vs::FileMapping::adopt(descriptor);
}

void use(const Vs::BodyMesh& mesh)
{
    const Vs::Scene::MeshTree tree(mesh);
    Vs::Scene::MeshTree::Hit hit;
    tree.meet(mesh, {0.5, 0.5, 10}, {0, 0, -1}, 100, hit);
    for (uint32_t i = 0; i < mesh.triangles.size() / 3; ++i) {
        const uint32_t face = Vs::Scene::faceOfTriangle(mesh, i);
        require(face < mesh.faces.size() &&
                    i - mesh.faces[face].firstTriangle < mesh.faces[face].triangleCount,
                "a triangle of no face");
    }
    for (uint32_t i = 0; i < mesh.edgePoints.size() / 3; ++i) {
        const int64_t edge = Vs::Scene::edgeOfSegment(mesh, i);
        require(edge < int64_t(mesh.edgeStarts.size()), "a point of no edge");
    }
    Rendra::isClosedAndOutward(mesh);
    Rendra::coarseMesh(mesh, 8);
    Vs::Exchange::ColourGroups groups;
    groups.add(mesh, {}, GkMatrix3d::scaling(-1));
}

size_t depthOf(const std::vector<Vs::PartTree::Node>& nodes, size_t bodies)
{
    size_t depth = 0;
    for (const Vs::PartTree::Node& node : nodes) {
        require(node.body < int64_t(bodies), "a body that isn't there");
        depth = std::max(depth, 1 + depthOf(node.children, bodies));
    }
    return depth;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const std::string sound = soundModel();
    std::string bytes = sound;
    applyChanges(bytes, 16, bytes.size(), data, size);
    CraftedModel crafted(std::move(bytes));
    try {
        const auto model = Vs::ModelFile::open(fileOf(crafted.sealed()), 0, crafted.size());
        const Vs::PartTree tree = model->tree();
        depthOf(tree.roots, tree.bodies.size());
        for (size_t i = 0; i < tree.bodies.size(); ++i)
            if (const auto mesh = model->mesh(i))
                use(*mesh);
    } catch (const std::runtime_error&) {
        // Refused, or not even to be sealed.
    } catch (const std::out_of_range&) {
    }
    return 0;
}
