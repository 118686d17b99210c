#include "Server/DataModel/Model/ModelFile.h"

#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <gtest/gtest.h>

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
    mesh.bounds = BBox({0, 0, 0}, {1, 1, 0});
    return mesh;
}

PartTree smallTree()
{
    PartTree tree;
    tree.bodies = {{"0:1:1:1", L"Größe", {1, 0, 0, 1}, 0}, {"0:1:1:2", L"no mesh", {}, 0}};
    PartTree::Node part{"a/b", L"Part", GkMatrix3d::translation({1, 2, 3}), Colour{0, 1, 0, 0.5f}, 0,
                        false, {}};
    PartTree::Node assembly{"a", L"Assembly", {}, std::nullopt, -1, true, {part, part}};
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

} // namespace

TEST(ModelFile, ReadsBackWhatWasWritten)
{
    const TestSupport::ScratchFolder folder;
    const auto file = ModelFile::open(writeModel(folder, "exact data"));
    EXPECT_EQ(file->warnings(), std::vector<std::wstring>{L"one warning"});
    EXPECT_EQ(file->kernelData(), "exact data");
    ASSERT_EQ(file->tree().bodies.size(), 2u);
    EXPECT_EQ(file->tree().bodies[0].name, L"Größe");
    const PartTree::Node& part = file->tree().roots.at(0).children.at(1);
    EXPECT_EQ(part.id, "a/b");
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
    EXPECT_EQ(mesh->bounds.high().y, 1);
    EXPECT_EQ(file->mesh(1), nullptr);
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
            ModelFile::open(badPath)->kernelData();
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
