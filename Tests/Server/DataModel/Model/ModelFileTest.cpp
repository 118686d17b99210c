#include "Server/DataModel/Model/ModelFile.h"

#include "Tests/Server/DataModel/Model/CraftedModel.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <tuple>

using namespace Vs;

namespace {

BodyMesh triangle()
{
    BodyMesh mesh;
    mesh.positions = {0, 0, 0, 1, 0, 0, 0, 1, 0};
    mesh.normals = {0, 0, 1, 0, 0, 1, 0, 0, 1};
    mesh.triangles = {0, 1, 2};
    mesh.faces = {{0, 1, 0}};
    mesh.colours = {{0.25f, 0.5f, 0.75f, 1}};
    mesh.edgePoints = {0, 0, 0, 1, 0, 0};
    mesh.edgeStarts = {0, 2};
    mesh.vertexPoints = {0, 0, 0, 1, 0, 0};
    mesh.finishes = {{}, {0.75f, 0.25f, {0, 0.5f, 1}, 0.4f, 1, 1, Finish::Alpha::Mask}};
    mesh.bounds = BBox({0, 0, 0}, {1, 1, 0});
    return mesh;
}

PartTree smallTree()
{
    PartTree tree;
    tree.bodies = {{"0:1:1:1", L"Größe", {1, 0, 0, 1}, 0}, {"0:1:1:2", L"no mesh", {}, 0}};
    PartTree::Node part{"0:5/0:5:1", L"Part", GkMatrix3d::translation({1, 2, 3}), Colour{0, 1, 0, 0.5f}, 0,
                        false,       {}};
    PartTree::Node second = part;
    second.id = "0:5/0:5:3";
    PartTree::Node assembly{"0:5", L"Assembly", {}, std::nullopt, -1, true, {part, second}};
    tree.roots = {assembly};
    return tree;
}

std::string writeModel(const TestSupport::ScratchFolder& folder, const std::string& exact)
{
    const std::string path = (folder.path() / "m.model").string();
    ModelFileWriter writer(path);
    const BodyMesh mesh = triangle();
    writer.addMesh(&mesh);
    writer.addMesh(nullptr);
    writer.writeIndex(smallTree(), {L"one warning"});
    writer.addKernelData(exact);
    writer.finish();
    return path;
}

/// One part of one body, with this mesh if it is sound.
CraftedModel oneBody(const TestSupport::ScratchFolder& folder, const BodyMesh& mesh)
{
    const std::string path = (folder.path() / "one.model").string();
    PartTree tree;
    tree.bodies = {{"0:1:1:1", L"Body", {}, 0}};
    tree.roots = {{"0:1:1:1", L"Part", {}, std::nullopt, 0, true, {}}};
    ModelFileWriter writer(path);
    writer.addMesh(&mesh);
    writer.writeIndex(tree, {});
    writer.finish();
    return CraftedModel(TestSupport::contentOf(path));
}

std::string faultOf(const TestSupport::ScratchFolder& folder, CraftedModel model)
{
    try {
        ModelFile::open(folder.write("crafted.model", model.sealed()).string())->mesh(0);
        return "none";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

/// A sound model with this tree; the writer leaves validation to the reader.
std::string faultOf(const TestSupport::ScratchFolder& folder, const PartTree& tree)
{
    const std::string path = (folder.path() / "tree.model").string();
    ModelFileWriter writer(path);
    for (size_t i = 0; i < tree.bodies.size(); ++i)
        writer.addMesh(nullptr);
    writer.writeIndex(tree, {});
    writer.finish();
    try {
        ModelFile::open(path);
        return "none";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

} // namespace

TEST(ModelFile, ReadsBackWhatWasWritten)
{
    const TestSupport::ScratchFolder folder;
    const auto file = ModelFile::open(writeModel(folder, "exact data"));
    EXPECT_EQ(file->warnings(), std::vector<std::wstring>{L"one warning"});
    EXPECT_EQ(file->kernelData(), "exact data");
    const PartTree tree = file->tree();
    ASSERT_EQ(tree.bodies.size(), 2u);
    EXPECT_EQ(tree.bodies[0].name, L"Größe");
    // Read again for whoever asks later.
    EXPECT_EQ(file->tree().bodies[0].name, L"Größe");
    const PartTree again = file->tree();
    const PartTree::Node& part = again.roots.at(0).children.at(1);
    EXPECT_EQ(part.id, "0:5/0:5:3");
    EXPECT_EQ(part.placement.entry[1][3], 2);
    EXPECT_EQ(part.colour, (Colour{0, 1, 0, 0.5f}));
    EXPECT_FALSE(part.visible);

    const auto mesh = file->mesh(0);
    EXPECT_EQ(mesh->positions, triangle().positions);
    EXPECT_EQ(mesh->normals, triangle().normals);
    EXPECT_EQ(mesh->triangles, triangle().triangles);
    EXPECT_EQ(mesh->faces.at(0).colour, 0);
    EXPECT_EQ(mesh->colours, triangle().colours);
    EXPECT_EQ(mesh->edgeStarts, triangle().edgeStarts);
    EXPECT_EQ(mesh->vertexPoints, triangle().vertexPoints);
    EXPECT_EQ(mesh->finishes, triangle().finishes);
    EXPECT_EQ(mesh->bounds.high().y, 1);
    EXPECT_EQ(file->mesh(1), nullptr);
}

// Three boxes: one where it was made, one rotated by 90 degrees, and a hidden red one that is only shifted.
TEST(ModelFile, ATreeOfTheSecondLayoutIsReadAndWrittenAnewInLess)
{
    const TestSupport::ScratchFolder folder;
    const auto old = ModelFile::open(QUILLET_TEST_FILES "/second-layout.model");
    const PartTree tree = old->tree();
    const std::string path = (folder.path() / "new.model").string();
    ModelFileWriter writer(path);
    writer.addMesh(old->mesh(0).get());
    PartTree written = tree;
    written.roots[2].placement.entry[3][0] = 0.5; // Unlike any motion.
    writer.writeIndex(written, {});
    writer.addKernelData(old->kernelData());
    writer.finish();
    const PartTree again = ModelFile::open(path)->tree();
    EXPECT_EQ(again.roots.at(2).placement.entry[3][0], 0.5);
    for (const auto& roots : {tree.roots, again.roots}) {
        ASSERT_EQ(roots.size(), 3u);
        for (const PartTree::Node& each : roots) {
            EXPECT_EQ(each.name, L"Box1");
            EXPECT_EQ(each.body, 0);
        }
        EXPECT_TRUE(roots[0].placement.isEqualTo({}, {0, 0}));
        EXPECT_NEAR(roots[1].placement.entry[1][0], 1, 1e-12);
        EXPECT_EQ(roots[2].placement.entry[1][3], 20);
        EXPECT_TRUE(roots[1].visible && !roots[2].visible);
        EXPECT_TRUE(!roots[1].colour && roots[2].colour && roots[2].colour->r > roots[2].colour->g);
    }
    for (size_t i = 0; i < 3; ++i)
        EXPECT_EQ(again.roots[i].id, tree.roots[i].id);
    EXPECT_LT(TestSupport::contentOf(path).size(),
              TestSupport::contentOf(QUILLET_TEST_FILES "/second-layout.model").size() - 200);
}

TEST(ModelFile, AFlippedByteAnywhereIsNoticed)
{
    const TestSupport::ScratchFolder folder;
    const std::string path = writeModel(folder, std::string(100, 'x'));
    const std::string good = TestSupport::contentOf(path);
    // The header byte by byte, the rest in steps.
    for (size_t at = 0; at < good.size(); at += at < 80 ? 1 : 7) {
        std::string bad = good;
        bad[at] = static_cast<char>(bad[at] ^ 0x10);
        const std::string badPath = folder.write("bad.model", bad).string();
        try {
            std::ignore = ModelFile::open(badPath)->kernelData();
            ADD_FAILURE() << "byte " << at << " of " << good.size();
        } catch (const std::runtime_error& error) {
            EXPECT_STRNE(error.what(), "");
        }
    }
}

TEST(ModelFile, ACutOrForeignFileIsNoModel)
{
    const TestSupport::ScratchFolder folder;
    const std::string good = TestSupport::contentOf(writeModel(folder, "exact"));
    for (size_t size = 0; size < good.size(); size += 7)
        EXPECT_THROW(ModelFile::open(folder.write("cut.model", good.substr(0, size)).string()),
                     std::runtime_error)
            << size;
    EXPECT_THROW(ModelFile::open(folder.write("text.model", std::string(5000, 'a')).string()),
                 std::runtime_error);
    EXPECT_THROW(ModelFile::open((folder.path() / "missing").string()), std::runtime_error);
    EXPECT_THROW(ModelFile::open(folder.path().string()), std::runtime_error);
}

// Each of these was displayed, picked or exported by reading or writing beyond the mesh's own memory.
TEST(ModelFile, AMeshWhoseNumbersLeadOutOfItIsDamagedThoughItsHashesAreRight)
{
    const TestSupport::ScratchFolder folder;
    const CraftedModel sound = oneBody(folder, triangle());
    const auto faultWith = [&](const std::function<void(BodyMesh&)>& change) {
        BodyMesh mesh = triangle();
        change(mesh);
        CraftedModel crafted = sound;
        crafted.replaceMesh(mesh);
        return faultOf(folder, crafted);
    };
    ASSERT_EQ(faultWith([](BodyMesh&) {}), "none");
    const std::pair<const char*, std::function<void(BodyMesh&)>> rules[] = {
        {"a triangle of a vertex that isn't there", [](BodyMesh& m) { m.triangles[1] = 3; }},
        {"a vertex of the highest number", [](BodyMesh& m) { m.triangles[2] = UINT32_MAX; }},
        {"a bad triangle behind many good ones",
         [](BodyMesh& m) {
             m.triangles.resize(3000, 0);
             m.triangles[2990] = 0x80000000;
             m.faces = {{0, 1000, 0}};
         }},
        {"triangles without vertices", [](BodyMesh& m) { m.positions = m.normals = {}; }},
        {"a triangle of two corners",
         [](BodyMesh& m) { m.triangles.push_back(0), m.triangles.push_back(1); }},
        {"a vertex without a normal", [](BodyMesh& m) { m.normals.resize(6); }},
        {"a vertex of two coordinates", [](BodyMesh& m) { m.positions.resize(8), m.normals.resize(8); }},
        {"a face beyond the triangles", [](BodyMesh& m) { m.faces[0].triangleCount = 2; }},
        {"a face whose end is beyond all numbers",
         [](BodyMesh& m) {
             m.faces = {{1, UINT32_MAX, 0}};
         }},
        {"faces one over the other",
         [](BodyMesh& m) {
             m.faces.push_back({0, 1, 0});
         }},
        {"triangles of no face", [](BodyMesh& m) { m.faces.clear(); }},
        {"a face of a colour that isn't there", [](BodyMesh& m) { m.faces[0].colour = 1; }},
        {"a face of a colour below none", [](BodyMesh& m) { m.faces[0].colour = -2; }},
        {"a colour without a finish, where others have one", [](BodyMesh& m) { m.finishes.pop_back(); }},
        {"more metal than there is", [](BodyMesh& m) { m.finishes[1].metallic = 1.5f; }},
        {"a roughness that isn't a number", [](BodyMesh& m) { m.finishes[0].roughness = std::nanf(""); }},
        {"an unknown kind of opacity", [](BodyMesh& m) { m.finishes[1].alpha = Finish::Alpha(3); }},
        {"an edge beyond its points", [](BodyMesh& m) { m.edgeStarts[1] = 3; }},
        {"an edge that ends before it begins",
         [](BodyMesh& m) {
             m.edgeStarts = {0, 2, 1, 2};
         }},
        {"an edge that begins somewhere", [](BodyMesh& m) { m.edgeStarts[0] = 1; }},
        {"points of no edge", [](BodyMesh& m) { m.edgeStarts.clear(); }},
        {"an edge's point of two coordinates", [](BodyMesh& m) { m.edgePoints.resize(5); }},
        {"a shape's vertex of two coordinates", [](BodyMesh& m) { m.vertexPoints.resize(5); }},
    };
    for (const auto& [name, change] : rules)
        EXPECT_NE(faultWith(change).find("damaged"), std::string::npos) << name << ": " << faultWith(change);

    // Odd but harmless content stays readable: coordinates may be any numbers.
    EXPECT_EQ(faultWith([](BodyMesh& m) { m.positions[0] = std::numeric_limits<float>::quiet_NaN(); }),
              "none");
    EXPECT_EQ(faultWith([](BodyMesh& m) { m = BodyMesh(); }), "none");
    EXPECT_EQ(faultWith([](BodyMesh& m) { m.faces = {{0, 0, -1}, {0, 1, -1}, {1, 0, -1}}; }), "none");
}

TEST(ModelFile, AnUnsoundMeshIsNotWrittenSoThatTheRestStaysReadable)
{
    const TestSupport::ScratchFolder folder;
    BodyMesh unsound = triangle();
    unsound.triangles[0] = 7;
    const auto file = ModelFile::open(folder.write("m.model", oneBody(folder, unsound).sealed()).string());
    EXPECT_EQ(file->mesh(0), nullptr);
    EXPECT_EQ(file->tree().bodies.size(), 1u);
}

TEST(ModelFile, MeshesLieOneBehindTheOtherWhereTheyMay)
{
    const TestSupport::ScratchFolder folder;
    const CraftedModel sound = oneBody(folder, triangle());
    const size_t index = sound.indexPlace();
    const size_t size = index - CraftedModel::kHeader;
    const size_t place = sound.find(CraftedModel::kHeader, index, sound.kernelPlace());
    const auto faultAt = [&](uint64_t newPlace, uint64_t newSize) {
        CraftedModel crafted = sound;
        crafted.set<uint64_t>(place, newPlace);
        crafted.set<uint64_t>(place + 8, newSize);
        return faultOf(folder, crafted);
    };
    ASSERT_EQ(faultAt(CraftedModel::kHeader, size), "none");
    for (const auto& [newPlace, newSize] : {std::pair<uint64_t, uint64_t>(0, size),
                                            {CraftedModel::kHeader + 1, size - 1},
                                            {CraftedModel::kHeader + 8, size - 8},
                                            {CraftedModel::kHeader, size + 1},
                                            {CraftedModel::kHeader, 47},
                                            {CraftedModel::kHeader, 48},
                                            {UINT64_MAX - 15, 32},
                                            {CraftedModel::kHeader, UINT64_MAX}})
        EXPECT_NE(faultAt(newPlace, newSize), "none") << newPlace << ' ' << newSize;

    // Two bodies of one mesh.
    const std::string path = (folder.path() / "two.model").string();
    const BodyMesh mesh = triangle();
    ModelFileWriter writer(path);
    writer.addMesh(&mesh);
    writer.addMesh(&mesh);
    writer.writeIndex(smallTree(), {});
    writer.finish();
    CraftedModel shared(TestSupport::contentOf(path));
    const size_t second =
        shared.find((CraftedModel::kHeader + size + 15) / 16 * 16, shared.indexPlace(), shared.size());
    ASSERT_EQ(faultOf(folder, shared), "none");
    shared.set<uint64_t>(second, CraftedModel::kHeader);
    EXPECT_NE(faultOf(folder, shared), "none");
}

TEST(ModelFile, ATreeThatDoesNotHangTogetherIsRefused)
{
    const TestSupport::ScratchFolder folder;
    ASSERT_EQ(faultOf(folder, smallTree()), "none");
    const auto faultWith = [&](const std::function<void(PartTree::Node & assembly)>& change) {
        PartTree tree = smallTree();
        change(tree.roots[0]);
        return faultOf(folder, tree);
    };
    using Node = PartTree::Node;
    const std::string kOrder = "out of order";
    for (const char* id : {"", "0:5/0:5:1", "0:5/0:5:0", "0:6/0:5:3", "0:5:3", "0:5/7:1/0:5:3",
                           "0:5/0:5:99999999999", "0:5/0:5:-3"})
        EXPECT_NE(faultWith([&](Node& a) { a.children[1].id = id; }).find(kOrder), std::string::npos) << id;
    EXPECT_NE(faultWith([](Node& a) { a.id = "x/0:5"; }).find(kOrder), std::string::npos);
    for (const int body : {2, -2, INT32_MAX, INT32_MIN})
        EXPECT_NE(faultWith([&](Node& a) { a.children[0].body = body; }).find("body that isn't there"),
                  std::string::npos)
            << body;
    const auto deep = [](Node& top, int levels) {
        Node* at = &top;
        for (int i = 0; i < levels; ++i) {
            at->children = {{at->id + "/0:1", L"Part", {}, std::nullopt, -1, true, {}}};
            at = &at->children[0];
        }
    };
    EXPECT_EQ(faultWith([&](Node& a) { deep(a, 400); }), "none");
    EXPECT_NE(faultWith([&](Node& a) { deep(a, 1500); }).find("too deep"), std::string::npos);
}

// A count that is possible once, but not in each of a thousand nested lists.
TEST(ModelFile, CountsThatClaimMoreThanThereIsTakeNoMemory)
{
    const TestSupport::ScratchFolder folder;
    const CraftedModel sound = oneBody(folder, triangle());
    const size_t runs = CraftedModel::kHeader + 48;
    for (const uint64_t count : {uint64_t(1) << 40, UINT64_MAX, UINT64_MAX / 4 + 1, uint64_t(1) << 62}) {
        CraftedModel crafted = sound;
        crafted.set(runs, count);
        EXPECT_NE(faultOf(folder, crafted), "none");
        for (size_t at = sound.indexPlace(); at + 8 <= sound.kernelPlace(); ++at) {
            crafted = sound;
            crafted.set(at, count);
            faultOf(folder, crafted);
        }
    }
}
