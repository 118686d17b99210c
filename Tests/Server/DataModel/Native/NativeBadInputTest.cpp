// Native files of other versions, damaged ones, and malicious ones.

#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/FileChecks.h"
#include "Server/DataModel/NativeFile.h"
#include "Server/DataModel/ThumbnailSource.h"
#include "Server/Types/Uuid.h"
#include "Tests/Server/DataModel/Model/CraftedModel.h"
#include "Tests/Server/DataModel/Native/NativeFixture.h"

#include <cstring>
#include <memory>
#include <sys/stat.h>
#include <zlib.h>

using namespace Vs;

namespace {

/// Records for which documents damage is reported, and how.
class DamageDiary : public FileDamageEventSite
{
public:
    DamageDiary() { FileDamageEventSource::get()->subscribe(this); }
    ~DamageDiary() override { FileDamageEventSource::get()->unsubscribe(this); }
    void fileDamaged(DocumentFailureEvent* event) override
    {
        entries.emplace_back(event->document(), Strings::narrow(event->status().toString()));
    }
    std::vector<std::pair<Document*, std::string>> entries;
};

} // namespace

class NativeBadInputTest : public NativeTest
{
protected:
    ~NativeBadInputTest() override { ThumbnailSource::install({}); }
    static void finishChecks()
    {
        FileChecks::wait();
        FileChecks::results().flush();
    }
    /// Opens a file that can't be opened: checks that there is one message, and that nothing stays half open.
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
    /// As a package holds it.
    static std::string checksumOf(const std::string& content)
    {
        const auto crc = static_cast<uint32_t>(
            crc32(0, reinterpret_cast<const Bytef*>(content.data()), static_cast<uInt>(content.size())));
        return std::string(reinterpret_cast<const char*>(&crc), sizeof crc);
    }
};

TEST_F(NativeBadInputTest, FilesOfOlderLayoutsOpenAndAreSavedInTheCurrentOne)
{
    const std::vector<Entry> current = changed("\"format\": 5", "\"format\": 2");
    const std::string guid = "0f5e2b34-8a6c-4d1e-9b7f-123456789abc";
    writeFirstLayout("old.tdsn", guid, current[1].content);
    const std::string expected = digestOf(*open(scratch("sound.tdsn"))->activeAsset());
    DocumentMgr::get()->close(DocumentMgr::get()->document(0u));

    // The second had no type at its beginning.
    writePackage(scratch("second.tdsn"), {current[1], current[2]});
    EXPECT_TRUE(NativeFile::isNative(scratch("second.tdsn")));
    Document* second = open(scratch("second.tdsn"));
    ASSERT_NE(second, nullptr) << message();
    EXPECT_EQ(digestOf(*second->activeAsset()), expected);
    ASSERT_TRUE(save(second)) << message();
    EXPECT_EQ(NativeFile::summary(second->path(), status)->formatVersion, 5);
    EXPECT_EQ(readPackage(second->path())[0].name, "mimetype");
    DocumentMgr::get()->close(second);

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
    EXPECT_EQ(NativeFile::summary(document->path(), status)->formatVersion, 5);
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

// Models of the third layout have materials in the exact data alone.
TEST_F(NativeBadInputTest, AModelOfTheThirdLayoutLooksAsItDidThoughItsExactDataKnowMaterials)
{
    Document* made =
        open(write("glow.gltf",
                   R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],
"meshes":[{"primitives":[{"attributes":{"POSITION":0},"material":0}]}],"materials":[{"pbrMetallicRoughness":{}}],
"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]}],
"bufferViews":[{"buffer":0,"byteLength":36}],"buffers":[{"byteLength":36,
"uri":"data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"}]})"));
    ASSERT_NE(made, nullptr) << message();
    const auto mesh = made->activeAsset()->components()->children.at(0)->body->mesh();
    ASSERT_FALSE(mesh->finishes.empty());
    ASSERT_TRUE(saveAs(made, scratch("new.tdsn"))) << message();
    CraftedModel model(readPackage(scratch("new.tdsn"))[1].content);
    model.replaceMesh(*mesh, 3);
    writeFirstLayout("old.tdsn", "0f5e2b34-8a6c-4d1e-9b7f-123456789abc", model.sealed());
    Document* document = open(scratch("old.tdsn"));
    ASSERT_NE(document, nullptr) << message();
    Asset* asset = document->activeAsset();
    const std::unique_ptr<EditRequest> mirror(EditRequest::make(
        asset, L"Mirror", MirrorEdit{{asset->components()->children.at(0)->id}, {-1, 0, 0}, {1, 0, 0}}));
    ASSERT_TRUE(mirror->execute(asset, status)) << message();
    // One as it was in the file, and one that the kernel made of it.
    ASSERT_EQ(asset->components()->children.size(), 2u);
    for (const auto& part : asset->components()->children)
        EXPECT_TRUE(part->body->mesh()->finishes.empty()) << part->id;
}

TEST_F(NativeBadInputTest, AFileOfALaterProgramIsRefusedByItsVersion)
{
    std::vector<Entry> entries = changed("\"format\": 5", "\"format\": 6");
    std::string& manifest = entries.back().content;
    const std::string ours = "\"" + SoftwareVersion::currentSoftwareVersion() + "\"";
    manifest.replace(manifest.find(ours), ours.size(), "\"7.3.1\"");
    expectRefused(entries, "7.3.1");
    EXPECT_TRUE(status.matchingError("format 6"));
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

TEST_F(NativeBadInputTest, DamagedExactDataAreToldOfBeforeAndWhenTheyAreNeededAndNoSaveHidesThem)
{
    ThumbnailSource::install([](const Document&) { return "\x89PNG\r\n\x1a\n and so on"; });
    Document* document = madeAsset()->document();
    ModelBuilder(Asset::create(document, L"Sound one", document->activeAsset()->assetType()))
        .sphere(7, {}, status);
    const std::wstring path = scratch("exact.tdsn");
    ASSERT_TRUE(saveAs(document, path)) << message();
    ThumbnailSource::install({});
    DamageDiary diary;
    document = reopen(document);
    finishChecks();
    EXPECT_TRUE(diary.entries.empty());
    DocumentMgr::get()->close(document);

    std::string content = contentOf(path);
    const size_t exact = content.find("BINFILE"), picture = content.find("and so on");
    ASSERT_NE(exact, std::string::npos) << "the kernel's own data begin with this word";
    for (const size_t place : {exact + 2000, picture})
        content[place] = static_cast<char>(content[place] ^ 0x55);
    overwrite(path, content);
    DocumentMgr::get()->close(open(path));
    finishChecks();
    EXPECT_TRUE(diary.entries.empty()) << "nobody is told of a document that isn't open any more";
    document = open(path);
    ASSERT_NE(document, nullptr) << message();
    finishChecks();
    ASSERT_EQ(diary.entries.size(), 1u);
    EXPECT_EQ(diary.entries[0].first, document);
    for (const char* text : {"exact.tdsn", "\"Design\"", "picture"})
        EXPECT_NE(diary.entries[0].second.find(text), std::string::npos)
            << text << ": " << diary.entries[0].second;
    EXPECT_EQ(diary.entries[0].second.find("Sound one"), std::string::npos) << diary.entries[0].second;

    Asset* damaged = document->asset(0);
    EXPECT_GT(trianglesOf(*damaged), 0u);
    EXPECT_EQ(ModelBuilder(damaged).box(1, 1, 1, {}, status), nullptr);
    EXPECT_TRUE(status.matchingError("damaged"));
    EXPECT_FALSE(document->isDirty(false));
    ModelBuilder(document->asset(1)).sphere(1, {}, status);
    ASSERT_TRUE(save(document)) << message();
    document = reopen(document);
    finishChecks();
    ASSERT_EQ(diary.entries.size(), 2u);
    EXPECT_NE(diary.entries[1].second.find("\"Design\""), std::string::npos) << diary.entries[1].second;
    EXPECT_EQ(componentsOf(*document->asset(1)).size(), 2u);
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
    expectRefused(with("\"format\": 5", "\"format\": \"two\""), "no valid number");
    expectRefused(with("\"assets\": [", "\"Assets\": ["), "\"assets\"");
    expectRefused(with("{", ""), "table of contents");
    expectRefused({sound[0]}, "\"manifest.json\" is missing");
    expectRefused({{"manifest.json", std::string(600, '[') + "0123456789abcdef", true}}, "table of contents");
    expectRefused(write("empty.tdsn", ""), "not a package");
    expectRefused(write("noise.tdsn", std::string(100000, 'x')), "not a package");
}

TEST_F(NativeBadInputTest, APackageThatWasMadeToDoHarmIsRefused)
{
    const std::vector<Entry> sound = readPackage(savedFile("sound.tdsn"));
    for (const char* name : {"../../etc/passwd", "/etc/passwd", "assets/../../x", "..", "a\\..\\b", "C:x"})
        expectRefused({sound[0], sound[1], {name, "x", false}}, "forbidden name");

    // One name twice: the library doesn't write that, so the second is renamed afterwards.
    writePackage(scratch("twice.tdsn"), {sound[1], sound[2], {"manifest.jsoN", "{}", false}});
    std::string content = contentOf(scratch("twice.tdsn"));
    for (size_t place; (place = content.find("manifest.jsoN")) != std::string::npos;)
        content[place + 12] = 'n';
    expectRefused(write("twice.tdsn", content), "twice");

    // 100 MB of zeros pack into 100 KB.
    std::vector<Entry> bomb = changed("\"place\": ", "\"place\": 1");
    bomb[1] = {bomb[1].name, std::string(100'000'000, '\0'), true};
    expectRefused(bomb, "impossible size");
    bomb = sound;
    bomb[2].packed = true;
    bomb[2].content = "{\"x\":\"" + std::string(100'000'000, ' ');
    expectRefused(bomb, "\"manifest.json\"");
}

// Each of these used up all memory, or ended the program by an endless recursion.
TEST_F(NativeBadInputTest, AssetsThatReferInACircleOrShareOneModelAreRefused)
{
    Document* document = madeAsset()->document();
    for (const wchar_t* name : {L"Second", L"Third"})
        ModelBuilder(Asset::create(document, name, document->activeAsset()->assetType()))
            .sphere(3, {}, status);
    ASSERT_TRUE(saveAs(document, scratch("three.tdsn"))) << message();
    std::vector<std::string> guids;
    for (unsigned i = 0; i < 3; ++i)
        guids.push_back(Strings::narrow(fromUuid(document->asset(i)->guid())));
    DocumentMgr::get()->close(document);
    const std::vector<Entry> sound = readPackage(scratch("three.tdsn"));

    // The assets' references, in the order of the list.
    const auto referring = [&](const std::vector<std::vector<size_t>>& references) {
        std::vector<Entry> entries = sound;
        std::string& manifest = entries.back().content;
        size_t place = 0;
        for (const std::vector<size_t>& each : references) {
            std::string list;
            for (const size_t asset : each)
                list += (list.empty() ? "\"" : ", \"") + guids[asset] + "\"";
            const std::string member = "\"references\": [";
            place = manifest.find(member, place) + member.size();
            manifest.insert(place, list);
        }
        return entries;
    };
    expectRefused(referring({{0}}), "circle");
    expectRefused(referring({{1}, {0}}), "circle");
    expectRefused(referring({{1}, {2}, {1}}), "circle");
    expectRefused(referring({{}, {2, 2}, {0, 1}}), "circle");
    writePackage(scratch("chain.tdsn"), referring({{1, 2, 2}, {2}, {}}));
    Document* chain = open(scratch("chain.tdsn"));
    ASSERT_NE(chain, nullptr) << message();
    EXPECT_FALSE(chain->isDirty(true));
    chain->asset(2)->markDirty();
    EXPECT_TRUE(chain->asset(0)->isDirty(true));
    EXPECT_FALSE(chain->asset(0)->isDirty(false));
    DocumentMgr::get()->close(chain);

    const auto valueOf = [&](const std::string& member, int number) {
        const std::string& manifest = sound.back().content;
        size_t begin = 0;
        for (int i = 0; i <= number; ++i)
            begin = manifest.find("\"" + member + "\": ", begin) + member.size() + 4;
        return manifest.substr(begin, manifest.find_first_of(",\n}", begin) - begin);
    };
    const auto replaced = [&](std::vector<Entry> entries, const char* member, int by) {
        const std::string from = valueOf(member, 1), to = valueOf(member, by);
        std::string& manifest = entries.back().content;
        manifest.replace(manifest.find(from), from.size(), to);
        return entries;
    };
    expectRefused(replaced(sound, "entry", 0), "another asset's as well");
    // Two names for one place in the file: two spheres are the same model.
    std::string content = contentOf(scratch("three.tdsn")), manifest = sound.back().content;
    const std::string before = checksumOf(manifest), from = valueOf("place", 2);
    std::string to = valueOf("place", 1);
    ASSERT_LE(to.size(), from.size());
    to.resize(from.size(), ' ');
    manifest.replace(manifest.find("\"place\": " + from) + 9, from.size(), to);
    content.replace(content.find(sound.back().content), manifest.size(), manifest);
    for (size_t at = 0; (at = content.find(before, at)) != std::string::npos; ++at)
        content.replace(at, before.size(), checksumOf(manifest));
    expectRefused(write("shared.tdsn", content), "one over the other");
}

TEST_F(NativeBadInputTest, APlaceThatIsWrongInTheTableOfContentsDoesNoHarm)
{
    const std::wstring path = savedFile("sound.tdsn");
    const std::string digest = digestOf(*open(path)->activeAsset());
    DocumentMgr::get()->close(DocumentMgr::get()->document(0u));
    for (const char* place : {"1", "4097", "4104", "8", "99999999", "9223372036854775807", "0"}) {
        std::vector<Entry> entries =
            changed("\"place\": ", std::string("\"place\": ") + place + ", \"was\": ");
        writePackage(scratch("odd.tdsn"), entries);
        Document* opened = open(scratch("odd.tdsn"));
        ASSERT_NE(opened, nullptr) << place << ": " << message();
        EXPECT_EQ(digestOf(*opened->activeAsset()), digest);
        DocumentMgr::get()->close(opened);
    }
    for (const char* place : {"-1", "1e300", "\"4096\"", "null"})
        expectRefused(changed("\"place\": ", std::string("\"place\": ") + place + ", \"was\": "),
                      "is not a count");
}

TEST_F(NativeBadInputTest, EntriesThatLieOneOverTheOtherAreRefused)
{
    writePackage(scratch("two.tdsn"), {{"a", "", false}, {"b", std::string(2000, 'b'), false}});
    std::string bytes = contentOf(scratch("two.tdsn"));
    // The first, which is empty, is made to extend over the whole of the second.
    const size_t begin = bytes.find('a', 30) + 1, end = bytes.find("PK\1\2");
    const std::string content = bytes.substr(begin, end - begin);
    const auto size = static_cast<uint32_t>(content.size());
    for (const size_t header : {size_t(14), end + 16}) {
        bytes.replace(header, 4, checksumOf(content));
        std::memcpy(&bytes[header + 4], &size, sizeof size);
        std::memcpy(&bytes[header + 8], &size, sizeof size);
    }
    expectRefused(write("two.tdsn", bytes), "one over the other");
}

// By its name it belongs to nobody, by its content it would be ours.
TEST_F(NativeBadInputTest, TheCauseIsToldWhateverTheNameIs)
{
    std::vector<Entry> entries = readPackage(savedFile("sound.tdsn"));
    entries.push_back({"../evil", "x", false});
    for (const char* name : {"bad", "bad.backup", "bad.zip"}) {
        writePackage(scratch(name), entries);
        expectRefused(scratch(name), "forbidden name \"../evil\"");
        const std::string whole = contentOf(scratch("sound.tdsn"));
        expectRefused(write(name, whole.substr(0, whole.size() / 2)), "cut short");
        // Any other archive isn't one of our files.
        writePackage(scratch(name), {{"readme.txt", "text"}});
        expectRefused(scratch(name), "of no kind");
    }
    ASSERT_EQ(mkfifo(Strings::narrow(scratch("pipe")).c_str(), 0600), 0);
    expectRefused(scratch("pipe"), "isn't an ordinary file");
}
