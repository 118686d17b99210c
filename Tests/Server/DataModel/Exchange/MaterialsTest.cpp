// Materials of glTF files: what is read of them, and what keeps them.

#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"
#include "Tests/Server/DataModel/Edit/EditFixture.h"

#include <algorithm>
#include <array>

using namespace Vs;

namespace {

/// A triangle of one material, and what follows the list of materials.
std::string gltf(const std::string& material, const std::string& more = {})
{
    return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0,"name":"Part"}],
"meshes":[{"name":"Part","primitives":[{"attributes":{"POSITION":0},"indices":1,"material":0}]}],
"materials":[{)" +
           material + "}]" + more + R"(,
"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]},
{"bufferView":1,"componentType":5123,"count":3,"type":"SCALAR"}],
"bufferViews":[{"buffer":0,"byteOffset":0,"byteLength":36},{"buffer":0,"byteOffset":36,"byteLength":6}],
"buffers":[{"byteLength":42,"uri":"data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAAAAABAAIA"}]})";
}

std::string withPicture(const std::string& uri)
{
    return R"(,"textures":[{"source":0}],"images":[{"uri":)" + uri + "}]";
}

constexpr const char* kSteel =
    R"("name":"steel","pbrMetallicRoughness":{"baseColorFactor":[0.5,0.25,0.125,1],"metallicFactor":0.75,
"roughnessFactor":0.25},"emissiveFactor":[0,0.5,1],"alphaMode":"MASK","alphaCutoff":0.125)";
const Finish kFinishOfSteel{0.75f, 0.25f, {0, 0.5f, 1}, 0.125f, 1, 0, Finish::Alpha::Mask};

} // namespace

class MaterialsTest : public EditTest
{
protected:
    Asset* read(const std::string& content)
    {
        status.clear();
        Document* document = open(write("material" + std::to_string(++m_files) + ".gltf", content));
        EXPECT_NE(document, nullptr) << content << Strings::narrow(status.toString());
        return document ? document->activeAsset() : nullptr;
    }
    static const Component& part(const Asset& asset)
    {
        const Component* found = partNamed(asset, L"Part");
        EXPECT_TRUE(found);
        return *found;
    }
    static Finish finishOf(const Component& component)
    {
        const auto mesh = component.body->mesh();
        return mesh->finishOf(mesh->faces.at(0));
    }
    static Colour colourOf(const Component& component)
    {
        const auto mesh = component.body->mesh();
        const int32_t own = mesh->faces.at(0).colour;
        return own >= 0 ? mesh->colours[size_t(own)] : component.colour.value_or(component.body->colour());
    }

private:
    int m_files = 0;
};

TEST_F(MaterialsTest, AColourIsThatOfItsPictureAndOpaqueUnlessBlended)
{
    // Half of it is red, and half is green.
    const std::string picture =
        R"("data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAIAAAABCAYAAAD0In+KAAAADklEQVR42mP4)"
        R"(z8DwHwQBEPgD/VP9jxkAAAAASUVORK5CYII=")";
    using Shown = std::array<int, 4>;
    const auto shownAs = [&](const std::string& material, const std::string& uri = {}) {
        const Asset* asset = read(gltf(material, uri.empty() ? "" : withPicture(uri)));
        const Colour own = asset ? colourOf(part(*asset)) : Colour();
        Shown colour{};
        for (const auto& [channel, value] : {std::pair(0, own.r), {1, own.g}, {2, own.b}, {3, own.a}})
            colour[size_t(channel)] = int(value * 255 + 0.5f);
        return colour;
    };
    const std::string half = R"("pbrMetallicRoughness":{"baseColorFactor":[1,0,0,0.5]})";
    EXPECT_EQ(shownAs(half), (Shown{255, 0, 0, 255}));
    EXPECT_EQ(shownAs(half + R"(,"alphaMode":"MASK")"), (Shown{255, 0, 0, 255}));
    EXPECT_EQ(shownAs(half + R"(,"alphaMode":"BLEND")"), (Shown{255, 0, 0, 128}));
    EXPECT_EQ(shownAs(half + R"(,"emissiveFactor":[0.5,0.214,0])"), (Shown{255, 0, 0, 255}));
    const std::string textured = R"("pbrMetallicRoughness":{"baseColorTexture":{"index":0}})";
    EXPECT_EQ(shownAs(textured, picture), (Shown{128, 128, 0, 255}));
    EXPECT_TRUE(status.warnings().empty());
    const auto warns = [&](const std::string& uri, const wchar_t* words) {
        EXPECT_EQ(shownAs(textured, uri), (Shown{255, 255, 255, 255}));
        EXPECT_NE(status.toString().find(words), std::wstring::npos) << Strings::narrow(status.toString());
    };
    warns(R"("data:image/png;base64,aGVsbG8gd29ybGQ=")", L"neither a PNG nor a JPEG");
    warns(picture.substr(0, 60) + "\"", L"picture");
    write("broken.png", "none");
    warns(R"("broken.png")", L"broken.png");

    // Of the other pictures, the means count as well: of green as roughness, of blue as metal, and as light.
    const Asset* mixed = read(gltf(R"("pbrMetallicRoughness":{"metallicFactor":1,"roughnessFactor":0.5,
"metallicRoughnessTexture":{"index":0}},"emissiveFactor":[0.5,1,1],"emissiveTexture":{"index":0})",
                                   withPicture(picture)));
    ASSERT_TRUE(mixed);
    const Finish finish = finishOf(part(*mixed));
    EXPECT_NEAR(finish.roughness, 0.25, 0.01);
    EXPECT_EQ(finish.metallic, 0);
    EXPECT_NEAR(finish.emissive[0], 0.25, 0.01);
    EXPECT_NEAR(finish.emissive[1], 0.5, 0.01);
    EXPECT_EQ(finish.emissive[2], 0);
}

TEST_F(MaterialsTest, AFinishStaysThroughFilesColoursCopiesAndUndo)
{
    Asset* asset = read(gltf(kSteel));
    ASSERT_TRUE(asset);
    EXPECT_EQ(finishOf(part(*asset)), kFinishOfSteel);
    ASSERT_TRUE(save(asset, scratch("steel.glb"))) << Strings::narrow(status.toString());
    Document* written = open(scratch("steel.glb"));
    ASSERT_TRUE(written) << Strings::narrow(status.toString());
    EXPECT_EQ(finishOf(part(*written->activeAsset())), kFinishOfSteel);
    EXPECT_EQ(colourOf(part(*written->activeAsset())), colourOf(part(*asset)));

    // A new base colour, and whatever else there is as it was.
    const std::string id = part(*asset).id;
    const Colour green{0, 1, 0, 0.5f};
    edit(*asset, ColourEdit{{{.component = id}}, green});
    EXPECT_EQ(colourOf(part(*asset)), green);
    edit(*asset, CopyEdit{{id}, {GkMatrix3d::translation({0, 0, 50})}});
    for (const std::string& added : edit(*asset, MirrorEdit{{id}, {-1, 0, 0}, {1, 0, 0}}))
        EXPECT_EQ(finishOf(*asset->findComponent(added)), kFinishOfSteel) << "a mirror image";
    EXPECT_EQ(finishOf(part(*asset)), kFinishOfSteel);

    Document* document = asset->document();
    for (const char* name : {"steel.tdsn", "again.tdsn"}) {
        ASSERT_TRUE(document->saveAs(scratch(name), status)) << Strings::narrow(status.toString());
        DocumentMgr::get()->close(document);
        document = open(scratch(name));
        ASSERT_TRUE(document) << Strings::narrow(status.toString());
        asset = document->activeAsset();
        size_t parts = 0;
        for (const Component* each : componentsOf(*asset))
            if (each->body) {
                EXPECT_EQ(finishOf(*each), kFinishOfSteel);
                ++parts;
            }
        EXPECT_EQ(parts, 3u);
        edit(*asset,
             ColourEdit{{{.component = part(*asset).id}}, Colour{0, 0, name[0] == 's' ? 1.0f : 0.5f}});
        EXPECT_EQ(finishOf(part(*asset)), kFinishOfSteel) << "as the kernel has it";
    }

    // Among other parts.
    Asset* other = boxAndCylinder();
    TranslatorFileRecognizer recognizer("", false);
    recognizer.recognize();
    Translator* translator = recognizer.translator(scratch("steel.glb"));
    ASSERT_TRUE(translator);
    const auto options = translator->createOpenOptions();
    options->fileName(scratch("steel.glb"));
    TranslatorContext context;
    context.open(false);
    context.asset(other);
    ASSERT_TRUE(translator->open(*options, context, status)) << Strings::narrow(status.toString());
    EXPECT_EQ(finishOf(part(*other)), kFinishOfSteel);
    EXPECT_EQ(finishOf(*partNamed(*other, L"Red box")), Finish()) << "it has no material";
}

TEST_F(MaterialsTest, PartsOfTheSameTrianglesHaveEachTheirOwnMaterial)
{
    std::string text =
        gltf(kSteel + std::string(R"(},{"pbrMetallicRoughness":{"metallicFactor":0},"doubleSided":true)"));
    const auto replace = [&](const std::string& from, const std::string& to) {
        ASSERT_NE(text.find(from), std::string::npos) << from;
        text.replace(text.find(from), from.size(), to);
    };
    replace(R"("nodes":[0])", R"("nodes":[0,1,2])");
    replace(R"({"mesh":0,"name":"Part"}])",
            R"({"mesh":0,"name":"Part"},{"mesh":1,"name":"Paint"},{"mesh":0,"name":"Other"}])");
    const std::string mesh =
        R"({"name":"Part","primitives":[{"attributes":{"POSITION":0},"indices":1,"material":0}]})";
    replace(mesh,
            mesh +
                R"(,{"name":"Paint","primitives":[{"attributes":{"POSITION":0},"indices":1,"material":1}]})");
    const Asset* asset = read(text);
    ASSERT_TRUE(asset);
    EXPECT_EQ(finishOf(part(*asset)), kFinishOfSteel);
    EXPECT_EQ(finishOf(*partNamed(*asset, L"Paint")), (Finish{0, 1, {}, 0.5f, 1, 1}));
    EXPECT_EQ(partNamed(*asset, L"Other")->body.get(), part(*asset).body.get()) << "of the same material";
    size_t parts = 0;
    for (const Component* each : componentsOf(*asset))
        parts += each->body.get() != nullptr;
    EXPECT_EQ(parts, 3u);
}

TEST_F(MaterialsTest, WhatAFormatCantSayIsLeftOutAndWhatItCanIsWritten)
{
    Asset* asset = read(gltf(kSteel));
    ASSERT_TRUE(asset);
    ASSERT_TRUE(save(asset, scratch("steel.gltf")) && save(asset, scratch("steel.obj")));
    const std::string gltf = contentOf(scratch("steel.gltf")), mtl = contentOf(scratch("steel.mtl"));
    for (const char* words : {"\"metallicFactor\":0.75", "\"roughnessFactor\":0.25",
                              "\"emissiveFactor\":[0,0.5,1]", "\"alphaMode\":\"MASK\",\"alphaCutoff\":0.125"})
        EXPECT_NE(gltf.find(words), std::string::npos) << gltf;
    EXPECT_EQ(gltf.find("doubleSided"), std::string::npos);
    for (const char* words : {"\nPr 0.25\n", "\nPm 0.75\n", "\nKe 0 0.735", "\nNs 510\n", "\nKs "})
        EXPECT_NE(mtl.find(words), std::string::npos) << mtl;
    ASSERT_TRUE(open(scratch("steel.obj"))) << Strings::narrow(status.toString());
    EXPECT_TRUE(status.toString().empty()) << Strings::narrow(status.toString());
    // What has no material says nothing that it doesn't know.
    ASSERT_TRUE(save(boxAndCylinder(), scratch("plain.gltf")) &&
                save(boxAndCylinder(), scratch("plain.obj")));
    EXPECT_EQ(contentOf(scratch("plain.gltf")).find("roughness"),
              contentOf(scratch("plain.gltf")).find("emissive"));
    EXPECT_EQ(contentOf(scratch("plain.mtl")).find("Pr"), std::string::npos);
}

TEST_F(MaterialsTest, AbsurdFactorsAreBroughtIntoTheirRangeOrRefused)
{
    const auto factors = [](const char* metallic, const char* roughness, const char* light) {
        return gltf(R"("pbrMetallicRoughness":{"metallicFactor":)" + std::string(metallic) +
                    R"(,"roughnessFactor":)" + roughness + R"(},"emissiveFactor":[)" + light +
                    R"(,0,0],"alphaMode":"MASK","alphaCutoff":)" + metallic);
    };
    int shown = 0;
    for (const char* absurd : {"7", "-3", "1e30", "1e400", "-1e400", "\"much\"", "null", "[]", "NaN"}) {
        status.clear();
        Document* document = open(write("absurd.gltf", factors(absurd, absurd, absurd)));
        if (!document) {
            EXPECT_TRUE(status.isError() && !status.toString().empty()) << absurd;
            continue;
        }
        ++shown;
        EXPECT_TRUE(finishOf(part(*document->activeAsset())).isSound()) << absurd;
        ASSERT_TRUE(save(document->activeAsset(), scratch("absurd.glb"))) << absurd;
        EXPECT_TRUE(open(scratch("absurd.glb"))) << absurd;
    }
    EXPECT_GT(shown, 0);
}
