// Files that refer to others: those next to them are read, and those elsewhere never, however they are named.

#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/Server/DataModel/Fixture.h"

#include <BRepPrimAPI_MakeBox.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TDF_Label.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <TopLoc_Location.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>

using namespace Vs;
namespace fs = boost::filesystem;

namespace {

constexpr const char* kRed = "newmtl paint\nKd 1 0 0\n";
constexpr const char* kCube = "#VRML V2.0 utf8\nShape { geometry Box { size 1 1 1 } }\n";

// The line comes after everything by which the format is recognised, so that it can have any form.
std::string obj(const std::string& libraryLine)
{
    return "v 0 0 0\n#" + std::string(5000, '-') + "\n" + libraryLine +
           "\nv 1 0 0\nv 1 1 0\nusemtl paint\nf 1 2 3\n";
}

std::string vrml(const std::string& url)
{
    return "#VRML V2.0 utf8\nInline { url \"" + url + "\" }\nShape { geometry Box { size 2 2 2 } }\n";
}

// A triangle whose numbers are in a file of 42 bytes.
std::string gltf(const std::string& uri)
{
    return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],
"meshes":[{"primitives":[{"attributes":{"POSITION":0},"indices":1}]}],
"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]},
{"bufferView":1,"componentType":5123,"count":3,"type":"SCALAR"}],
"bufferViews":[{"buffer":0,"byteOffset":0,"byteLength":36},{"buffer":0,"byteOffset":36,"byteLength":6}],
"buffers":[{"byteLength":42,"uri":")" +
           uri + "\"}]}";
}

std::string numbers()
{
    const float corners[] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
    const uint16_t order[] = {0, 1, 2};
    return std::string(reinterpret_cast<const char*>(corners), sizeof corners) +
           std::string(reinterpret_cast<const char*>(order), sizeof order);
}

// main.stp, an assembly whose only part, a box of 6 mm³, is in with_box.stp next to it.
void writeAssembly(const fs::path& folder)
{
    Message::DefaultMessenger()->ChangePrinters().Clear();
    Handle(TDocStd_Document) document;
    XCAFApp_Application::GetApplication()->NewDocument("MDTV-XCAF", document);
    const Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    const TDF_Label part = shapes->AddShape(BRepPrimAPI_MakeBox(1, 2, 3).Shape(), false);
    TDataStd_Name::Set(part, "box");
    shapes->AddComponent(shapes->NewShape(), part, TopLoc_Location());
    shapes->UpdateAssemblies();
    const fs::path before = fs::current_path();
    // The files of parts are written to the working directory.
    fs::current_path(folder);
    STEPCAFControl_Writer writer;
    writer.Transfer(document, STEPControl_AsIs, "with_");
    writer.Write("main.stp");
    fs::current_path(before);
}

bool isRed(const Asset& asset)
{
    const auto red = [](const Colour& colour) { return colour.g < 0.5f; };
    return std::ranges::any_of(componentsOf(asset), [&](const Component* component) {
        return component->body &&
               (red(component->body->colour()) || std::ranges::any_of(component->body->mesh()->colours, red));
    });
}

} // namespace

class OutsideTest : public DataModelTest
{
protected:
    OutsideTest()
    {
        fs::create_directories(folder.path() / "inner/deeper");
        write("two.mtl", kRed);
        write("other.wrl", kCube);
        write("other.bin", numbers());
    }
    /// A file in the folder for which the others are outside.
    std::wstring inner(const std::string& name, const std::string& content)
    {
        return write("inner/" + name, content);
    }
    void link(const std::string& name, const std::string& target)
    {
        fs::create_symlink(target, folder.path() / "inner" / name);
    }
    void expectWarning(const std::string& named)
    {
        const std::string text = Strings::narrow(status.toString());
        EXPECT_NE(text.find("outside of its own folder, "), std::string::npos) << text;
        EXPECT_NE(text.find(named), std::string::npos) << text;
    }
    std::string outside(const std::string& name) const { return (folder.path() / name).string(); }
};

TEST_F(OutsideTest, AnObjOpensWithoutTheColoursThatLieElsewhereAndNamesTheirFile)
{
    link("link.mtl", "../two.mtl");
    const std::pair<std::string, const char*> rows[] = {
        {"mtllib ../two.mtl", "../two.mtl"},        {"mtllib " + outside("two.mtl"), "two.mtl"},
        {"mtllib deeper/../../two.mtl", "two.mtl"}, {"mtllib ..\\two.mtl", "two.mtl"},
        {"mtl\\\nlib ../two.mtl", "../two.mtl"},    {"mtllib \\\r\n  ../two.mtl", "../two.mtl"},
        {"  mtllib   ../two.mtl  ", "../two.mtl"},  {"mtllib link.mtl", "link.mtl"},
    };
    int number = 0;
    for (const auto& [line, named] : rows) {
        SCOPED_TRACE(line);
        Document* document = open(inner(std::to_string(++number) + ".obj", obj(line)));
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        EXPECT_FALSE(isRed(*document->activeAsset()));
        EXPECT_EQ(trianglesOf(*document->activeAsset()), 1u);
        expectWarning(named);
    }
    inner("beside.mtl", kRed);
    inner("deeper/below.mtl", kRed);
    for (const char* line : {"mtllib beside.mtl", "mtllib deeper/below.mtl", "mtllib deeper/../beside.mtl"}) {
        SCOPED_TRACE(line);
        Document* document = open(inner("good.obj", obj(line)));
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        EXPECT_TRUE(isRed(*document->activeAsset()));
        EXPECT_TRUE(status.toString().empty()) << Strings::narrow(status.toString());
    }
}

TEST_F(OutsideTest, AVrmlFileOpensWithoutThePartsThatLieElsewhereAndNamesTheirFile)
{
    link("link.wrl", "../other.wrl");
    inner("beside.wrl", kCube);
    inner("deeper/nested.wrl", vrml("../../other.wrl"));
    const double own = 8e9, other = 1e9;
    for (const std::string& url : {std::string("../other.wrl"), outside("other.wrl"),
                                   std::string("deeper/../../other.wrl"), std::string("link.wrl")}) {
        SCOPED_TRACE(url);
        Document* document = open(inner("scene.wrl", vrml(url)));
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        EXPECT_NEAR(volumeOf(*document->activeAsset()), own, 1e3);
        expectWarning(url);
    }
    Document* document = open(inner("scene.wrl", vrml("beside.wrl")));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    EXPECT_NEAR(volumeOf(*document->activeAsset()), own + other, 1e3);
    EXPECT_TRUE(status.toString().empty()) << Strings::narrow(status.toString());
    // Nor through one that is next to it.
    document = open(inner("scene.wrl", vrml("deeper/nested.wrl")));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    EXPECT_NEAR(volumeOf(*document->activeAsset()), own, 1e3);
    expectWarning("other.wrl");
    expectFault(inner("nothing.wrl", "#VRML V2.0 utf8\nInline { url \"../other.wrl\" }\n"), "../other.wrl");
}

TEST_F(OutsideTest, AStepFileWhosePartsLieElsewhereIsRefused)
{
    writeAssembly(folder.path() / "inner");
    const std::string text = contentOf(scratch("inner/main.stp"));
    const auto assembly = [&](const std::string& part) {
        return boost::algorithm::replace_all_copy(text, "with_box.stp", part);
    };
    fs::copy_file(folder.path() / "inner/with_box.stp", folder.path() / "part.stp");
    link("link.stp", "../part.stp");
    for (const std::string& part :
         {std::string("../part.stp"), outside("part.stp"), std::string("..\\part.stp"),
          std::string("deeper/../../part.stp"), std::string("link.stp")})
        expectFault(inner("other.stp", assembly(part)), "outside of its own folder, " + part);
    fs::rename(folder.path() / "inner/with_box.stp", folder.path() / "inner/deeper/part.stp");
    for (int time = 0; time < 2; ++time) {
        Document* document = open(inner("other.stp", assembly("deeper/part.stp")));
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        EXPECT_NEAR(volumeOf(*document->activeAsset()), 6, 1e-6);
        EXPECT_TRUE(status.toString().empty()) << Strings::narrow(status.toString());
    }
    // What was read before is read again when a part of it is gone.
    fs::remove(folder.path() / "inner/deeper/part.stp");
    EXPECT_EQ(open(scratch("inner/other.stp")), nullptr);
}

TEST_F(OutsideTest, AGltfFileWhoseNumbersLieElsewhereIsRefused)
{
    link("link.bin", "../other.bin");
    link("folder", "..");
    for (const std::string& uri :
         {std::string("../other.bin"), outside("other.bin"), "file://" + outside("other.bin"),
          std::string("./../other.bin"), std::string("deeper/../../other.bin"),
          std::string("%2e%2e/other.bin"), std::string("..%2Fother.bin"), std::string("..\\\\other.bin"),
          std::string("link.bin"), std::string("folder/other.bin"), std::string("//") + outside("other.bin")})
        expectFault(inner("part.gltf", gltf(uri)), "");
    inner("deeper/numbers.bin", numbers());
    EXPECT_NE(open(inner("part.gltf", gltf("deeper/numbers.bin"))), nullptr)
        << Strings::narrow(status.toString());
}
