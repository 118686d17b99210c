// OBJ, glTF and VRML: import, export, and what is refused.

#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Tests/Server/DataModel/Fixture.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cstring>
#include <numbers>
#include <set>
#include <sys/stat.h>

using namespace Vs;

namespace {

BBox boundsOf(const Asset& asset)
{
    BBox bounds;
    const auto add = [&](const auto& self, const Component& component, const GkMatrix3d& parent) -> void {
        const GkMatrix3d placement = parent * component.placement;
        if (component.body) {
            const auto mesh = component.body->mesh();
            for (size_t i = 0; i + 3 <= mesh->positions.size(); i += 3)
                bounds.add(placement *
                           GkPoint3d(mesh->positions[i], mesh->positions[i + 1], mesh->positions[i + 2]));
        }
        for (const auto& child : component.children)
            self(self, *child, placement);
    };
    add(add, *asset.components(), {});
    return bounds;
}

/// The colours of everything shown of the asset, as 0 to 255.
std::set<std::array<int, 3>> coloursOf(const Asset& asset)
{
    std::set<std::array<int, 3>> colours;
    const auto add = [&](const Colour& c) {
        colours.insert({int(c.r * 255 + 0.5f), int(c.g * 255 + 0.5f), int(c.b * 255 + 0.5f)});
    };
    for (const Component* component : componentsOf(asset)) {
        if (!component->body)
            continue;
        const auto mesh = component->body->mesh();
        for (const BodyMesh::Face& face : mesh->faces)
            add(face.colour >= 0    ? mesh->colours[size_t(face.colour)]
                : component->colour ? *component->colour
                                    : component->body->colour());
    }
    return colours;
}

// A quarter of a cube as a glTF file with embedded numbers; `edit` replaces one text by another.
std::string gltf(const std::string& from = {}, const std::string& to = {})
{
    std::string text = R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0,1]}],
"nodes":[{"mesh":0,"name":"Left"},{"mesh":0,"name":"Right","translation":[2,0,0]}],
"meshes":[{"name":"Corner","primitives":[{"attributes":{"POSITION":0},"indices":1,"material":0}]}],
"materials":[{"name":"paint","pbrMetallicRoughness":{"baseColorFactor":[1,0,0,1]}}],
"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]},
{"bufferView":1,"componentType":5123,"count":3,"type":"SCALAR"}],
"bufferViews":[{"buffer":0,"byteOffset":0,"byteLength":36},{"buffer":0,"byteOffset":36,"byteLength":6}],
"buffers":[{"byteLength":42,"uri":"data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAAAAABAAIA"}]})";
    const size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return from.empty() ? text : text.replace(at, from.size(), to);
}

constexpr const char* kVrml = R"(#VRML V2.0 utf8
DEF Stand Transform { translation 0 1 0 children [
  DEF Cube Shape { appearance Appearance { material Material { diffuseColor 0 0 1 } }
    geometry Box { size 2 4 6 } } ] }
DEF Tent Transform { children [
  DEF Wall Shape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0, 1 0 0, 0 1 0, 0 0 1 ] }
    coordIndex [ 0 1 2 -1 0 2 3 -1 ] } }
  Transform { translation 5 0 0 children [ USE Wall ] } ] }
)";

constexpr const char* kObj = R"(# two parts
mtllib two.mtl
o First
v 0 0 0
v 10 0 0
v 10 10 0
v 0 10 0
usemtl red
f 1 2 3
usemtl green
f 1 3 4
o Second
v 0 0 5
usemtl green
f 1 2 5
)";

constexpr const wchar_t* kHardName = L"5\" \\ Größe {1}";

constexpr const char* kMtl = "newmtl red\nKd 1 0 0\nnewmtl green\nKd 0 1 0\n";

} // namespace

class MeshFormatsTest : public DataModelTest
{
protected:
    /// A box, a cylinder, and a thing of glass whose name is hard to write.
    Asset* sample()
    {
        Asset* asset = boxAndCylinder();
        ModelBuilder builder(asset);
        builder.box(1, 2, 3, {GkMatrix3d::translation({0, 0, 50}), kHardName, Colour{0, 0, 1, 0.5f}}, status);
        return asset;
    }
    Asset* assetOf(const std::wstring& path)
    {
        Document* document = open(path);
        EXPECT_NE(document, nullptr) << Strings::narrow(status.toString());
        return document ? document->activeAsset() : nullptr;
    }
};

TEST_F(MeshFormatsTest, WhatIsWrittenComesBackWithItsPlacesNamesAndColours)
{
    Asset* original = sample();
    const BBox bounds = boundsOf(*original);
    for (const char* name : {"out.obj", "out.gltf", "out.glb"}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(save(original, scratch(name))) << Strings::narrow(status.toString());
        Document* document = open(scratch(name));
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        EXPECT_TRUE(status.toString().empty()) << Strings::narrow(status.toString());
        const Asset& read = *document->activeAsset();
        EXPECT_TRUE(partNamed(read, L"Red box") && partNamed(read, L"Turned cylinder"));
        const Component* glass = partNamed(read, kHardName);
        ASSERT_TRUE(glass);
        const auto mesh = glass->body->mesh();
        EXPECT_NEAR(mesh->faces.front().colour >= 0 ? mesh->colours[size_t(mesh->faces.front().colour)].a
                                                    : glass->body->colour().a,
                    0.5, 1e-6);
        EXPECT_EQ(trianglesOf(read), trianglesOf(*original));
        const BBox again = boundsOf(read);
        EXPECT_LT(again.low().distanceTo(bounds.low()) + again.high().distanceTo(bounds.high()), 1e-3);
        EXPECT_EQ(coloursOf(read), (std::set<std::array<int, 3>>{{255, 0, 0}, {0, 153, 0}, {0, 0, 255}}));
        // A model of triangles can be exported again, but not to an exact format.
        EXPECT_TRUE(save(document->activeAsset(), scratch("again.stl")));
        EXPECT_FALSE(save(document->activeAsset(), scratch("again.stp")));
        ASSERT_TRUE(save(document->activeAsset(), scratch("again.glb")));
        EXPECT_NE(contentOf(scratch("again.glb")).find("\"NORMAL\""), std::string::npos);
        DocumentMgr::get()->close(document);
    }
    // Each is complete by itself; only OBJ stores its colours in a second file.
    std::set<std::string> files;
    for (const auto& entry : boost::filesystem::directory_iterator(folder.path()))
        files.insert(entry.path().filename().string());
    EXPECT_EQ(files,
              (std::set<std::string>{"again.glb", "again.stl", "out.glb", "out.gltf", "out.mtl", "out.obj"}));
}

TEST_F(MeshFormatsTest, TheColoursThatAnotherFileHasStayWhenAnObjOfThatNameIsWritten)
{
    const std::wstring theirs = write("part.mtl", "newmtl somebody's\nKd 1 1 1\n");
    mkfifo(Strings::narrow(scratch("part-2.mtl")).c_str(), 0600);
    const std::string before = contentOf(theirs);
    Asset* original = sample();
    for (int time = 0; time < 2; ++time) {
        ASSERT_TRUE(save(original, scratch("part.obj"))) << Strings::narrow(status.toString());
        EXPECT_EQ(contentOf(theirs), before);
        Document* document = open(scratch("part.obj"));
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        EXPECT_EQ(coloursOf(*document->activeAsset()).size(), 3u);
        DocumentMgr::get()->close(document);
    }
    EXPECT_TRUE(boost::filesystem::exists(scratch("part-3.mtl")));
    EXPECT_FALSE(boost::filesystem::exists(scratch("part-4.mtl"))) << "its own is replaced";
}

TEST_F(MeshFormatsTest, AnExportThatFailsKeepsWhatWasThere)
{
    for (const char* name : {"old.obj", "old.gltf", "old.glb"}) {
        const std::wstring old = write(name, "precious");
        EXPECT_FALSE(save(newAsset(), old));
        EXPECT_TRUE(status.isError());
        EXPECT_EQ(contentOf(old), "precious");
        EXPECT_FALSE(save(sample(), scratch(std::string("no/such/folder/") + name)));
    }
}

TEST_F(MeshFormatsTest, ObjPartsHaveTheirNamesAndTheColoursOfTheirMaterials)
{
    write("two.mtl", kMtl);
    Document* document = open(write("two.obj", kObj));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    const Asset& asset = *document->activeAsset();
    ASSERT_TRUE(partNamed(asset, L"First") && partNamed(asset, L"Second"));
    EXPECT_EQ(partNamed(asset, L"First")->body->name(), L"First");
    EXPECT_NEAR(areaOf(asset), 100 + 25, 1e-4);
    // Its y points up, like our z.
    EXPECT_NEAR(boundsOf(asset).high().z, 10, 1e-5);
    EXPECT_EQ(coloursOf(asset), (std::set<std::array<int, 3>>{{255, 0, 0}, {0, 255, 0}}));
    // Another colour in the second file is noticed, though the first is the same as before.
    write("two.mtl", "newmtl red\nKd 0 0 1\nnewmtl green\nKd 0 1 0\n");
    Document* again = open(scratch("two.obj"));
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(coloursOf(*again->activeAsset()), (std::set<std::array<int, 3>>{{0, 0, 255}, {0, 255, 0}}));
}

TEST_F(MeshFormatsTest, WhatIsReadWithOtherFilesIsKeptUntilOneOfThemChanges)
{
    const auto kept = [] {
        size_t count = 0;
        for (const auto& entry : boost::filesystem::directory_iterator(PathInfo::cacheDirectory() / "import"))
            count += entry.path().extension() == ".model";
        return count;
    };
    write("kept.mtl", kMtl);
    std::string obj = kObj;
    obj.replace(obj.find("two.mtl"), 7, "kept.mtl");
    const std::wstring path = write("kept.obj", obj);
    ASSERT_NE(open(path), nullptr) << Strings::narrow(status.toString());
    const size_t once = kept();
    ASSERT_NE(open(path), nullptr);
    EXPECT_EQ(kept(), once);
    write("kept.mtl", "newmtl red\nKd 1 1 0\n");
    ASSERT_NE(open(path), nullptr);
    EXPECT_EQ(kept(), once + 1);
    write("kept.mtl", kMtl);
    Document* again = open(path);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(kept(), once + 1);
    EXPECT_EQ(coloursOf(*again->activeAsset()), (std::set<std::array<int, 3>>{{255, 0, 0}, {0, 255, 0}}));
}

TEST_F(MeshFormatsTest, AMeshOfGltfIsInMetresAndSharedByItsNodes)
{
    Document* document = open(write("two.gltf", gltf()));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    const Asset& asset = *document->activeAsset();
    const Component *left = partNamed(asset, L"Left"), *right = partNamed(asset, L"Right");
    ASSERT_TRUE(left && right);
    EXPECT_EQ(left->body.get(), right->body.get());
    EXPECT_LT(boundsOf(asset).high().distanceTo({3000, 0, 1000}), 1e-2);
    EXPECT_EQ(coloursOf(asset), (std::set<std::array<int, 3>>{{255, 0, 0}}));
    // A lone triangle has three sides without a neighbour.
    EXPECT_EQ(left->body->mesh()->edgeStarts.size(), 4u);
}

TEST_F(MeshFormatsTest, APartOfSeveralColoursStaysOneThatItsOccurrencesShare)
{
    const std::string primitive = R"({"attributes":{"POSITION":0},"indices":1,"material":0})";
    // The second one has a separate triangle, with the same corners.
    std::string text =
        gltf(primitive, primitive + "," + R"({"attributes":{"POSITION":2},"indices":1,"material":1})");
    const std::string list = R"("accessors":[)";
    const size_t begin = text.find(list) + list.size();
    const std::string corners = text.substr(begin, text.find(",\n", begin) - begin);
    text.insert(text.find("],\n\"bufferViews", begin), ",\n" + corners);
    const std::string paint = R"({"name":"paint")";
    text.replace(text.find(paint), paint.size(),
                 R"({"name":"sky","pbrMetallicRoughness":{"baseColorFactor":[0,0,1,1]}},)" + paint);
    std::wstring path = write("first.gltf", text);
    for (const char* next : {"second.glb", "third.gltf", "last.obj"}) {
        SCOPED_TRACE(next);
        Document* document = open(path);
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        const Asset& asset = *document->activeAsset();
        const Component *left = partNamed(asset, L"Left"), *right = partNamed(asset, L"Right");
        ASSERT_TRUE(left && right);
        EXPECT_EQ(left->body.get(), right->body.get());
        EXPECT_EQ(left->body->name(), L"Corner");
        EXPECT_EQ(coloursOf(asset), (std::set<std::array<int, 3>>{{255, 0, 0}, {0, 0, 255}}));
        EXPECT_EQ(trianglesOf(asset), 4u);
        ASSERT_TRUE(save(document->activeAsset(), path = scratch(next)));
    }
    // This format has no sharing.
    Document* document = open(path);
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    EXPECT_TRUE(partNamed(*document->activeAsset(), L"Left") &&
                partNamed(*document->activeAsset(), L"Right"));
    EXPECT_EQ(coloursOf(*document->activeAsset()), (std::set<std::array<int, 3>>{{255, 0, 0}, {0, 0, 255}}));
}

TEST_F(MeshFormatsTest, VrmlKeepsNodesNamesAndSharedParts)
{
    Document* document = open(write("scene.wrl", kVrml));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    const Asset& asset = *document->activeAsset();
    ASSERT_EQ(asset.components()->children.size(), 1u);
    EXPECT_EQ(asset.components()->children.front()->name, L"scene");
    const Component* stand = partNamed(asset, L"Stand");
    ASSERT_TRUE(stand);
    // Metres with y up become millimetres with z up.
    EXPECT_NEAR(volumeOf(asset), 48e9, 1e3);
    EXPECT_NEAR(boundsOf(asset).high().z, 3000, 1e-3);
    EXPECT_NEAR(stand->body->colour().b, 1, 1e-3);
    std::set<const Body*> walls;
    size_t occurrences = 0;
    for (const Component* component : componentsOf(asset))
        if (component->body && component != stand) {
            walls.insert(component->body.get());
            ++occurrences;
        }
    EXPECT_EQ(occurrences, 2u);
    EXPECT_EQ(walls.size(), 1u);
}

TEST_F(MeshFormatsTest, VrmlStretchesWhatIsScaledAlongItsAxesDifferently)
{
    const std::string stretched =
        std::string("#VRML V2.0 utf8 # Transform { scale 9 1 1\n") +
        "DEF Box Transform { scale 3 1 2 rotation 0 0 1 1.5707963267948966 center 5 0 0\n"
        "  translation -5 -5 0 children [ Shape { geometry Box { size 2 4 6 } } ] }\n";
    const Asset* box = assetOf(write("box.wrl", stretched));
    ASSERT_TRUE(box);
    EXPECT_NEAR(volumeOf(*box), 6 * 48e9, 1e5);
    // Half sizes of 1, 2 and 3 m become 3, 2 and 6, are rotated about a line 5 m from the middle, whose
    // distance grows to 15 m, and are turned upright.
    BBox bounds = boundsOf(*box);
    EXPECT_LT(bounds.low().distanceTo({-2000, -6000, -23000}), 1) << bounds.low().z;
    EXPECT_LT(bounds.high().distanceTo({2000, 6000, -17000}), 1) << bounds.high().z;

    // Nested, mirrored, of triangles; the plain one beside them keeps its part.
    const std::string tent =
        "geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0, 1 0 0, 0 1 0, 0 0 1 ] }"
        " coordIndex [ 0 2 1 -1 0 1 3 -1 0 3 2 -1 1 2 3 -1 ] } ";
    const Asset* tents = assetOf(write(
        "tents.wrl", "#VRML V2.0 utf8\nDEF Plain Shape { " + tent + "}\n" +
                         "Transform { scale -1 2 3 children [ Transform { translation 1 0 0 scale 2 2 2 "
                         "children [ USE Plain ] } Transform { scale 1 1 4 children [ USE Plain ] } ] }\n"));
    ASSERT_TRUE(tents);
    EXPECT_NEAR(volumeOf(*tents), (1 + 6 * 8 + 6 * 4) / 6.0 * 1e9, 1e5)
        << "turned inside out, they take away";
    bounds = boundsOf(*tents);
    EXPECT_LT(bounds.low().distanceTo({-3000, -12000, 0}), 1);
    EXPECT_LT(bounds.high().distanceTo({1000, 0, 4000}), 1);
}

TEST_F(MeshFormatsTest, VrmlFilesThatAreTakenInHaveTheirOwnNamesAndScales)
{
    const std::string head = "#VRML V2.0 utf8\n";
    const auto box = [](const char* size) {
        return "Shape { geometry Box { size " + std::string(size) + " } }";
    };
    write("plain.wrl", head + "DEF A " + box("1 2 3") + "\n");
    write("stretched.wrl",
          head + "DEF A " + box("1 1 1") +
              " # Inline {\n"
              "Transform { scale 3 1 2 translation 9 0 0 children [ USE A\n Inline { url [ \"gone.wrl\""
              " \"plain.wrl\" ] } ] }\n");
    const Asset* taken = assetOf(
        write("taken.wrl", head + "DEF A " + box("5 5 5") +
                               " DEF Twice Inline {\n url \"stretched.wrl\" bboxCenter 0 0 0 }\n" +
                               "Transform { scale 1 4 1 translation 0 0 99 children [ USE Twice ] }\n" +
                               "Transform { translation 0 99 0 children [ Inline { url \"plain.wrl\" } ] }"
                               " Transform { children [ USE A ] }\n"));
    ASSERT_TRUE(taken);
    const double stretched = 1 + 6 + 6 * 6;
    EXPECT_NEAR(volumeOf(*taken), (2 * 125 + stretched + 4 * stretched + 6) * 1e9, 1e6);
    EXPECT_LT(boundsOf(*taken).high().distanceTo({10500, 3000, 100000}), 1);

    const auto inlined = [&](const std::string& content) {
        write("inner.wrl", content);
        return write("outer.wrl", head + "Inline { url \"inner.wrl\" }\n");
    };
    std::string deep = head;
    for (int level = 0; level < 10000; ++level)
        deep += "Group { children [\n";
    expectFault(inlined(deep), "more than 2000 levels");
    expectFault(inlined(head + "\nShape { geometry Box { size 1 } }\n"),
                "inner.wrl\", which isn't a valid VRML file: line 3");
    expectFault(inlined("#VRML V1.0 ascii\n"), "inner.wrl\", which is a VRML 1.0 file");
    expectFault(write("lost.wrl", head + "Inline { url \"lost/part.wrl\" }\n"), "lost/part.wrl");
    // Nested on many levels, each of them flat.
    for (int level = 0; level <= 210; ++level)
        write(std::to_string(level) + ".wrl",
              head +
                  (level == 0 ? box("1 1 1") : "Inline { url \"" + std::to_string(level - 1) + ".wrl\" }") +
                  "\n");
    expectFault(scratch("210.wrl"), "files within files on more than 200 levels");
    EXPECT_NE(open(scratch("100.wrl")), nullptr) << Strings::narrow(status.toString());
}

TEST_F(MeshFormatsTest, WhatIsPlacedAtAScaleIsWrittenInThatSizeToTheExactFormats)
{
    Asset* scaled = assetOf(write("scaled.wrl", R"(#VRML V2.0 utf8
DEF Plain Shape { appearance Appearance { material Material { diffuseColor 0 0 1 } } geometry Box { size 1 2 3 } }
DEF Pair Transform { scale 2 2 2 translation 10 0 0 children [
  DEF Big Transform { translation 0 4 0 children [ USE Plain ] }
  DEF Bigger Transform { scale 3 3 3 rotation 0 1 0 1.5707963267948966 children [ USE Plain ] } ] }
)"));
    ASSERT_TRUE(scaled);
    const BBox bounds = boundsOf(*scaled);
    for (const char* name : {"scaled.step", "scaled.igs", "scaled.brep"}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(save(scaled, scratch(name))) << Strings::narrow(status.toString());
        const Asset* read = assetOf(scratch(name));
        ASSERT_TRUE(read);
        EXPECT_NEAR(volumeOf(*read), (1 + 8 + 216) * 6e9, 1e6);
        EXPECT_LT(boundsOf(*read).low().distanceTo(bounds.low()), 0.1);
        EXPECT_LT(boundsOf(*read).high().distanceTo(bounds.high()), 0.1);
    }
    const Asset* step = assetOf(scratch("scaled.step"));
    EXPECT_TRUE(partNamed(*step, L"Big") && partNamed(*step, L"Bigger"));
    EXPECT_EQ(coloursOf(*step), (std::set<std::array<int, 3>>{{0, 0, 255}}));
}

TEST_F(MeshFormatsTest, ADamagedFileIsRefusedWithItsCause)
{
    const std::string external =
        R"("uri":"data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAAAAABAAIA")";
    expectFault(write("missing.gltf", gltf(external, R"("uri":"gone.bin")")), "gone.bin");
    expectFault(write("outside.gltf", gltf(external, R"("uri":"../../../../../../etc/passwd")")),
                "outside of its own folder");
    expectFault(write("hidden.gltf", gltf(external, R"("\u0075ri":"../../../../../../etc/passwd")")),
                "outside of its own folder");
    expectFault(write("absolute.gltf", gltf(external, R"("uri":"/etc/passwd")")), "");
    expectFault(
        write("huge.gltf", gltf("\"count\":3,\"type\":\"VEC3\"", "\"count\":2000000000,\"type\":\"VEC3\"")),
        "");
    expectFault(write("endless.gltf", gltf("\"byteOffset\":36", "\"byteOffset\":3600000000")), "glTF");
    expectFault(write("indices.gltf", gltf("AAABAAIA", "AAABAP8A")), "indices");
    expectFault(write("cycle.gltf", gltf("\"name\":\"Left\"", "\"name\":\"Left\",\"children\":[0]")),
                "contains itself");
    expectFault(write("circle.gltf", gltf("{\"mesh\":0,\"name\":\"Left\"},{\"mesh\":0",
                                          "{\"children\":[1]},{\"children\":[ 0 ],\"mesh\":0")),
                "contains itself");
    expectFault(write("nodes.gltf", gltf("[0,1]", "[7,8]")), "no triangles");
    expectFault(write("cut.gltf", gltf().substr(0, 500)), "glTF");
    expectFault(write("deep.gltf", R"({"asset":{"version":"2.0"},"extras":)" + std::string(2'000'000, '[')),
                "");
    expectFault(write("draco.gltf",
                      gltf("\"indices\":1", "\"extensions\":{\"KHR_draco_mesh_compression\":{}},\"mode\":0")),
                "KHR_draco_mesh_compression");
    ASSERT_TRUE(save(sample(), scratch("good.glb")));
    const std::string glb = contentOf(scratch("good.glb"));
    expectFault(write("cut.glb", glb.substr(0, glb.size() / 2)), "is cut off");
    expectFault(write("head.glb", glb.substr(0, 16)), "is cut off");

    expectFault(write("points.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\n"), "no triangles");
    expectFault(write("indices.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 9\n"), "line 4");
    expectFault(write("number.obj", "v nan 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\n"), "aren't numbers");

    expectFault(write("one.wrl", "#VRML V1.0 ascii\nCube {}\n"), "VRML 1.0");
    expectFault(write("empty.wrl", "#VRML V2.0 utf8\n"), "");
    expectFault(write("unknown.wrl", "#VRML V2.0 utf8\nShape { geometry USE Nobody }\n"), "");
    expectFault(write("cut.wrl", std::string(kVrml).substr(0, std::strlen(kVrml) / 2)), "");
    expectFault(write("indices.wrl",
                      "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord Coordinate { point [ 0 "
                      "0 0 ] } coordIndex [ 0 77777777 -5 -1 ] } }\n"),
                "");
}

TEST_F(MeshFormatsTest, LevelsAndOccurrencesBeyondWhatCanBeShownAreRefusedWithTheirNumber)
{
    const auto nested = [&](int levels, int uses) {
        std::string nodes;
        for (int level = 1; level <= levels; ++level) {
            const std::string next = std::to_string(level);
            nodes += "{\"children\":[" + next + (uses > 1 ? "," + next : "") + "]},";
        }
        return write("nested.gltf", gltf("\"nodes\":[{", "\"nodes\":[" + nodes + "{"));
    };
    expectFault(nested(10000, 1), "more than 2000 levels");
    expectFault(nested(31, 2), "more than the 10000000");
    const auto groups = [&](int levels) {
        std::string text = "#VRML V2.0 utf8\n";
        for (int level = 0; level < levels; ++level)
            text += "Group { children [ # {\n";
        text += "Shape { geometry Box {} }\n";
        for (int level = 0; level < levels; ++level)
            text += "] }";
        return write("groups.wrl", text);
    };
    expectFault(groups(10000), "more than 2000 levels");
    std::string doubled = "#VRML V2.0 utf8\nDEF G0 Shape { geometry Box {} }\n";
    for (int level = 1; level <= 31; ++level) {
        const std::string one = " USE G" + std::to_string(level - 1);
        doubled += "DEF G" + std::to_string(level) + " Group { children [" + one + one + " ] }\n";
    }
    expectFault(write("doubled.wrl", doubled), "more than the 10000000");
    // Nor by copies, which are added to each occurrence of the assembly that holds the original.
    const Document* many = open(nested(10, 2));
    ASSERT_NE(many, nullptr) << Strings::narrow(status.toString());
    const Component* component = many->activeAsset()->components();
    const auto refusal = [&](size_t copies) {
        Status own;
        EditRequest* request =
            EditRequest::make(many->activeAsset(), L"Copy",
                              CopyEdit{{component->id}, std::vector<GkMatrix3d>(copies, GkMatrix3d())});
        EXPECT_FALSE(request->execute(many->activeAsset(), own));
        request->destroy();
        return Strings::narrow(own.toString());
    };
    for (const size_t copies : {5000u, 100000u}) {
        component = component->children.front().get();
        EXPECT_NE(refusal(copies).find("more than the 10000000 components"), std::string::npos)
            << refusal(copies);
        while (!component->children.empty() && !component->children.front()->children.empty())
            component = component->children.front().get();
    }
    // As deep as real models are, and deeper.
    for (const std::wstring& path : {nested(1000, 1), groups(1000)})
        EXPECT_NE(open(path), nullptr) << Strings::narrow(status.toString());
}

TEST_F(MeshFormatsTest, AFileOfOneFormatUnderAnothersNameIsRefusedWithWhatItHolds)
{
    const std::pair<const char*, std::string> rows[] = {{"a.obj", gltf()},
                                                        {"a.gltf", kObj},
                                                        {"a.glb", kVrml},
                                                        {"a.wrl", "solid x\nendsolid x\n"},
                                                        {"a.stp", kVrml}};
    for (const auto& [name, content] : rows)
        expectFault(write(name, content), "is named " + std::string(name).substr(1) + " but holds ");
    for (const char* name : {"x.obj", "x.gltf", "x.glb", "x.wrl"}) {
        expectFault(write(name, ""), "empty");
        expectFault(write(name, "Dear reader,\nthis is a letter.\n"), "doesn't hold");
    }
    EXPECT_NE(open(write("no suffix", gltf())), nullptr) << Strings::narrow(status.toString());
}

TEST_F(MeshFormatsTest, WhatCanBeReadOnlyInPartSaysSo)
{
    EXPECT_NE(open(write("part.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\nf 1 2 9\n")), nullptr);
    EXPECT_NE(status.toString().find(L"line 5"), std::wstring::npos) << Strings::narrow(status.toString());
    EXPECT_NE(open(write("grey.obj", "mtllib gone.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\n")), nullptr);
    EXPECT_NE(status.toString().find(L"gone.mtl"), std::wstring::npos) << Strings::narrow(status.toString());
    EXPECT_NE(open(write("cut.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\nf 1 2")), nullptr);
    EXPECT_NE(status.toString().find(L"cut off"), std::wstring::npos) << Strings::narrow(status.toString());
    EXPECT_NE(open(write("uneven.gltf", gltf("\"name\":\"Left\"", "\"name\":\"Left\",\"scale\":[1,2,3]"))),
              nullptr);
    EXPECT_NE(status.toString().find(L"scaling"), std::wstring::npos) << Strings::narrow(status.toString());
}
