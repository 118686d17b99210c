// Native files of other versions, damaged ones, and ones that were made to do harm.

#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/NativeFile.h"
#include "Server/Types/Uuid.h"
#include "Tests/Server/DataModel/Native/NativeFixture.h"

using namespace Vs;

class NativeBadInputTest : public NativeTest
{
protected:
    /// Opens a file that can't be: one message, and nothing half open.
    void expectRefused(const std::wstring& path, const std::string& cause)
    {
        EXPECT_EQ(open(path), nullptr) << cause;
        EXPECT_TRUE(oneMessage(path, cause));
        EXPECT_EQ(DocumentMgr::get()->documents(), 0u);
    }
    /// A package of the first layout with one asset.
    void writeFirstLayout(const std::string& name, const std::string& guid, const std::string& model)
    {
        const std::string manifest =
            "{\"format\": 1, \"software\": \"0.0.9\", \"documentType\": \"TestDocType\","
            " \"document\": \"6ba7b810-9dad-11d1-80b4-00c04fd430c8\","
            " \"models\": [{\"guid\": \"" +
            guid + "\", \"name\": \"Old\", \"type\": \"TestAssetType\", \"file\": \"old.model\"}]}";
        writePackage(scratch(name), {{"manifest.json", manifest}, {"old.model", model}});
    }
    /// The package of a sound file, model first and manifest last, with its manifest changed.
    std::vector<Entry> changed(const std::string& from, const std::string& to)
    {
        std::vector<Entry> entries = readPackage(savedFile("sound.tdsn"));
        std::string& manifest = entries.back().content;
        const size_t place = manifest.find(from);
        EXPECT_NE(place, std::string::npos) << from << " in " << manifest;
        manifest.replace(place, from.size(), to);
        return entries;
    }
    void expectRefused(const std::vector<Entry>& entries, const std::string& cause)
    {
        writePackage(scratch("bad.tdsn"), entries);
        expectRefused(scratch("bad.tdsn"), cause);
    }
};

TEST_F(NativeBadInputTest, AFileOfTheFirstLayoutOpensAndIsSavedInTheCurrentOne)
{
    const std::vector<Entry> current = readPackage(savedFile("current.tdsn"));
    const std::string guid = "0f5e2b34-8a6c-4d1e-9b7f-123456789abc";
    writeFirstLayout("old.tdsn", guid, current[0].content);
    const std::string expected = digestOf(*open(scratch("current.tdsn"))->activeAsset());
    DocumentMgr::get()->close(DocumentMgr::get()->document(0u));

    Document* document = open(scratch("old.tdsn"));
    ASSERT_NE(document, nullptr) << message();
    EXPECT_EQ(document->lastSavedSoftwareVersion(), SoftwareVersion::versionInfo("0.0.9"));
    EXPECT_EQ(Strings::narrow(fromUuid(document->activeAsset()->guid())), guid);
    EXPECT_EQ(document->activeAsset()->name(), L"Old");
    EXPECT_EQ(digestOf(*document->activeAsset()), expected);
    Handler handler;
    handler.answers["migrated"] = eDocMgmtStop;
    EXPECT_FALSE(save(document));
    EXPECT_EQ(NativeFile::summary(document->path(), status)->formatVersion, 1);
    handler.answers.clear();
    EXPECT_TRUE(save(document)) << message();
    EXPECT_TRUE(save(document)) << message();
    EXPECT_EQ(handler.asked, (std::vector<std::string>{"migrated", "migrated"}));
    EXPECT_EQ(NativeFile::summary(document->path(), status)->formatVersion, 2);
    EXPECT_EQ(digestOf(*reopen(document)->activeAsset()), expected);
}

// Models of the first layout, such as this cylinder, have meshes without vertices.
TEST_F(NativeBadInputTest, AModelOfTheFirstLayoutGetsItsVerticesFromTheExactShape)
{
    const std::string model = TestSupport::contentOf(QUILLET_TEST_FILES "/first-layout.model");
    ASSERT_FALSE(model.empty());
    writeFirstLayout("old.tdsn", "0f5e2b34-8a6c-4d1e-9b7f-123456789abc", model);
    Document* document = open(scratch("old.tdsn"));
    ASSERT_NE(document, nullptr) << message();
    const auto mesh = document->activeAsset()->components()->children.at(0)->body->mesh();
    EXPECT_EQ(mesh->edgeStarts.size(), 3u);
    const float expected[] = {5, 0, 30, 5, 0, 0};
    ASSERT_EQ(mesh->vertexPoints.size(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i)
        EXPECT_NEAR(mesh->vertexPoints[i], expected[i], 1e-6) << i;
}

TEST_F(NativeBadInputTest, AFileOfALaterProgramIsRefusedByItsVersion)
{
    std::vector<Entry> entries = changed("\"format\": 2", "\"format\": 3");
    std::string& manifest = entries.back().content;
    const std::string ours = "\"" + SoftwareVersion::currentSoftwareVersion() + "\"";
    manifest.replace(manifest.find(ours), ours.size(), "\"7.3.1\"");
    expectRefused(entries, "7.3.1");
    EXPECT_TRUE(status.matchingError("format 3"));
}

TEST_F(NativeBadInputTest, AFileThatIsCutAnywhereIsRefused)
{
    const std::string whole = contentOf(savedFile("whole.tdsn"));
    ASSERT_GT(whole.size(), 10000u);
    for (size_t size = 0; size < whole.size(); size += 1024)
        expectRefused(write("cut.tdsn", whole.substr(0, size)), "");
    expectRefused(write("cut.tdsn", whole.substr(0, whole.size() - 1)), "");
    expectRefused(write("cut.tdsn", whole.substr(1000)), "");
}

TEST_F(NativeBadInputTest, ADamagedByteIsFoundWhereItMatters)
{
    const std::string path = Strings::narrow(savedFile("whole.tdsn"));
    const std::string whole = contentOf(scratch("whole.tdsn"));
    // Anywhere: either it is refused with one message, or what is shown is what was saved.
    Document* sound = open(scratch("whole.tdsn"));
    const size_t triangles = trianglesOf(*sound->activeAsset());
    DocumentMgr::get()->close(sound);
    int refused = 0;
    for (size_t place = 0; place < whole.size(); place += 499) {
        std::string damaged = whole;
        damaged[place] = static_cast<char>(damaged[place] ^ 0x55);
        Document* document = open(write("damaged.tdsn", damaged));
        if (document) {
            EXPECT_EQ(trianglesOf(*document->activeAsset()), triangles) << place;
            DocumentMgr::get()->close(document);
        } else {
            EXPECT_TRUE(oneMessage(L"damaged.tdsn", "")) << place;
            ++refused;
        }
    }
    EXPECT_GT(refused, 3);
}

TEST_F(NativeBadInputTest, DamagedExactDataAreToldOfWhenTheyAreNeeded)
{
    const std::wstring path = savedFile("exact.tdsn");
    std::string content = contentOf(path);
    const size_t exact = content.find("BINFILE");
    ASSERT_NE(exact, std::string::npos) << "the kernel's own data begin with this word";
    content[exact + 2000] = static_cast<char>(content[exact + 2000] ^ 0x55);
    overwrite(path, content);
    Document* document = open(path);
    ASSERT_NE(document, nullptr) << message();
    EXPECT_GT(trianglesOf(*document->activeAsset()), 0u);
    EXPECT_EQ(ModelBuilder(document->activeAsset()).box(1, 1, 1, {}, status), nullptr);
    EXPECT_TRUE(status.matchingError("damaged"));
    EXPECT_FALSE(document->isDirty(false));
}

TEST_F(NativeBadInputTest, AManifestThatDoesNotFitIsRefused)
{
    const std::vector<Entry> sound = changed("TestDocType", "TestDocType");
    const auto with = [&](const std::string& from, const std::string& to) { return changed(from, to); };
    expectRefused(with("TestDocType", "StrangeType"), "StrangeType");
    expectRefused(with("TestAssetType", "StrangeType"), "StrangeType");
    expectRefused(with("\"entry\": \"assets/", "\"entry\": \"nowhere/"), "missing in its package");
    expectRefused(with("\"hash\": \"", "\"hash\": \"1"), "isn't the one that was saved");
    expectRefused(with("\"activeAsset\": \"", "\"activeAsset\": \"no"), "activeAsset");
    expectRefused(with("\"visible\": true", "\"visible\": false"), "belongs to none");
    expectRefused(with("\"references\": [", "\"references\": [\"6ba7b810-9dad-11d1-80b4-00c04fd430c8\""),
                  "refers to an asset");
    expectRefused(with("\"format\": 2", "\"format\": \"two\""), "no valid number");
    expectRefused(with("\"assets\": [", "\"Assets\": ["), "\"assets\"");
    expectRefused(with("{", ""), "table of contents");
    expectRefused({sound[0]}, "\"manifest.json\" is missing");
    expectRefused({{"manifest.json", std::string(600, '[') + "0123456789abcdef", true}}, "table of contents");
    expectRefused(write("empty.tdsn", ""), "no package");
    expectRefused(write("noise.tdsn", std::string(100000, 'x')), "no package");
}

TEST_F(NativeBadInputTest, APackageThatWasMadeToDoHarmIsRefused)
{
    const std::vector<Entry> sound = readPackage(savedFile("sound.tdsn"));
    for (const char* name : {"../../etc/passwd", "/etc/passwd", "assets/../../x", "..", "a\\..\\b", "C:x"})
        expectRefused({sound[0], sound[1], {name, "x", false}}, "forbidden name");

    // One name twice: the library writes none, so the second is given the name afterwards.
    writePackage(scratch("twice.tdsn"), {sound[0], sound[1], {"manifest.jsoN", "{}", false}});
    std::string content = contentOf(scratch("twice.tdsn"));
    for (size_t place; (place = content.find("manifest.jsoN")) != std::string::npos;)
        content[place + 12] = 'n';
    expectRefused(write("twice.tdsn", content), "twice");

    // 100 MB of nothing pack into 100 KB.
    std::vector<Entry> bomb = changed("\"place\": ", "\"place\": 1");
    bomb[0] = {bomb[0].name, std::string(100'000'000, '\0'), true};
    expectRefused(bomb, "impossible size");
    bomb = sound;
    bomb[1].packed = true;
    bomb[1].content = "{\"x\":\"" + std::string(100'000'000, ' ');
    expectRefused(bomb, "\"manifest.json\"");
}
