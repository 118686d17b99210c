#include "Server/DataModel/NativeFile.h"

#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentOpener.h"
#include "Server/DataModel/ThumbnailSource.h"
#include "Server/DataModel/Transaction.h"
#include "Server/Types/Uuid.h"
#include "Tests/Server/DataModel/Native/NativeFixture.h"
#include "Tests/Support/RealData.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>

using namespace Vs;

namespace {

const std::string kPicture = "\x89PNG\r\n\x1a\n and so on";

/// Records the notifications about saving.
class Diary : public DocumentEventSite
{
public:
    Diary() { DocumentEventSource::get()->subscribe(this); }
    ~Diary() override { DocumentEventSource::get()->unsubscribe(this); }
    void documentOpened(DocumentEvent*) override { entries.push_back("opened"); }
    void documentSaved(DocumentEvent*) override { entries.push_back("saved"); }
    void documentUpdated(DocumentEvent*) override { entries.push_back("updated"); }
    void documentSaveFailed(DocumentFailureEvent* event) override
    {
        entries.push_back("failed");
        EXPECT_TRUE(event->status().isError());
    }
    std::vector<std::string> entries;
};

} // namespace

class NativeFileTest : public NativeTest
{
protected:
    ~NativeFileTest() override { ThumbnailSource::install({}); }
};

TEST_F(NativeFileTest, WhatIsReopenedIsWhatWasSaved)
{
    Asset* asset = madeAsset();
    Document* document = asset->document();
    Asset* second = Asset::create(document, L"Empty one", asset->assetType());
    Asset* hidden = Asset::createHidden(document, asset, L"Hidden", asset->assetType());
    ModelBuilder(hidden).sphere(3, {}, status);
    hidden->setting("views", L"{\"front\": [0, 0, 1]} ü");
    document->activeAsset(second);
    const std::string digest = digestOf(*asset), hiddenDigest = digestOf(*hidden);
    const auto guid = asset->guid(), hiddenGuid = hidden->guid(), identifier = document->identifier();
    EXPECT_TRUE(document->isDirty(false));
    EXPECT_TRUE(hidden->isSmudge());
    EXPECT_EQ(document->lastSavedSoftwareVersion(), 0u);

    Diary diary;
    ASSERT_TRUE(saveAs(document, scratch("round.tdsn"))) << message();
    EXPECT_EQ(diary.entries, (std::vector<std::string>{"updated"}));
    EXPECT_FALSE(document->isDirty(true));
    EXPECT_FALSE(hidden->isSmudge());
    EXPECT_EQ(document->displayName(), L"round");

    Document* opened = reopen(document);
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(opened->identifier(), identifier);
    EXPECT_EQ(opened->lastSavedSoftwareVersion(), SoftwareVersion::currentVersionNumber());
    EXPECT_FALSE(opened->isDirty(true));
    ASSERT_EQ(opened->assets(), 2u);
    ASSERT_EQ(opened->hiddenAssets(), 1u);
    EXPECT_EQ(opened->activeAsset(), opened->asset(1));
    EXPECT_EQ(opened->asset(0)->guid(), guid);
    EXPECT_EQ(opened->asset(1)->name(), L"Empty one");
    EXPECT_TRUE(opened->asset(1)->components()->children.empty());
    Asset* reread = opened->hiddenAsset(0);
    EXPECT_EQ(reread->guid(), hiddenGuid);
    EXPECT_EQ(reread->parent(), opened->asset(0));
    EXPECT_EQ(opened->asset(0)->refdAsset(0), reread);
    EXPECT_EQ(reread->setting("views"), L"{\"front\": [0, 0, 1]} ü");
    EXPECT_EQ(digestOf(*opened->asset(0)), digest);
    EXPECT_EQ(digestOf(*reread), hiddenDigest);
}

TEST_F(NativeFileTest, APackageIsOneForEveryToolAndAlsoWhenAnotherPackedItAnew)
{
    const std::wstring path = savedFile("package.tdsn");
    const std::string digest = digestOf(*open(path)->activeAsset());
    DocumentMgr::get()->close(DocumentMgr::get()->document(0u));
    std::vector<Entry> entries = readPackage(path);
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_FALSE(entries[1].packed);
    // Where all programs that identify files by their content look for it.
    const std::string type = "application/vnd.quillet.document";
    EXPECT_EQ(contentOf(path).substr(30, 8 + type.size()), "mimetype" + type);
    if (boost::filesystem::exists("/usr/bin/unzip")) {
        const auto result = TestSupport::runProcess("/usr/bin/unzip", {"-t", Strings::narrow(path)});
        EXPECT_EQ(result.exitCode, 0) << result.output << result.errors;
    }
    entries[1].packed = true;
    writePackage(scratch("anew.tdsn"), {entries[2], entries[1], entries[0]});
    Document* opened = open(scratch("anew.tdsn"));
    ASSERT_NE(opened, nullptr) << message();
    EXPECT_EQ(digestOf(*opened->activeAsset()), digest);
    // And its next save is a normal one again.
    EXPECT_TRUE(save(opened)) << message();
    EXPECT_EQ(digestOf(*reopen(opened)->activeAsset()), digest);
}

TEST_F(NativeFileTest, OnlyTheModelThatChangedIsWrittenAnew)
{
    Document* document = madeAsset()->document();
    Asset* other = Asset::create(document, L"Other", document->activeAsset()->assetType());
    ModelBuilder(other).sphere(7, {}, status);
    ASSERT_TRUE(saveAs(document, scratch("two.tdsn"))) << message();
    document = reopen(document);
    const std::vector<Entry> before = readPackage(document->path());
    Asset *kept = document->asset(0), *changed = document->asset(1);
    ModelBuilder(changed).box(1, 1, 1, {}, status);
    EXPECT_FALSE(kept->isDirty(false));
    EXPECT_TRUE(changed->isDirty(false));
    ASSERT_TRUE(save(document)) << message();
    const std::vector<Entry> after = readPackage(document->path());
    EXPECT_EQ(after[1].content, before[1].content);
    EXPECT_NE(after[2].content, before[2].content);
    // The first one's meshes and shapes come from a file that no longer has a name.
    EXPECT_NEAR(volumeOf(*kept), 10 * 20 * 30 + M_PI * 25 * 40, 1e-2);
    ASSERT_TRUE(save(document)) << message();
    EXPECT_EQ(readPackage(document->path())[1].content, before[1].content);
    EXPECT_EQ(componentsOf(*reopen(document)->asset(1)).size(), 2u);
}

TEST_F(NativeFileTest, EntriesThatThisVersionDoesNotKnowStayAsLongAsTheirTermsSay)
{
    std::vector<Entry> entries = readPackage(savedFile("plain.tdsn"));
    const std::string guid =
        Strings::narrow(fromUuid(NativeFile::summary(scratch("plain.tdsn"), status)->assets[0].guid));
    std::string& manifest = entries.back().content;
    const std::string list = "\"extras\": [";
    ASSERT_NE(manifest.find(list), std::string::npos) << manifest;
    manifest.insert(manifest.find(list) + list.size(),
                    "{\"entry\": \"item.json\", \"until\": []},"
                    "{\"entry\": \"drive.json\", \"until\": [\"moved\"]},"
                    "{\"entry\": \"view.png\", \"asset\": \"" +
                        guid +
                        "\", \"until\": [\"changed\"]},"
                        "{\"entry\": \"later.bin\", \"until\": [\"the moon is full\"]},"
                        "{\"entry\": \"missing.bin\", \"until\": []},"
                        "{\"entry\": \"manifest.json\", \"until\": []},"
                        "{\"entry\": \"other.bin\", \"asset\": \"6ba7b810-9dad-11d1-80b4-00c04fd430c8\"},"
                        "{\"asset\": 7}, 7");
    const std::string content(3000, 'x');
    for (const char* name : {"item.json", "drive.json", "view.png", "later.bin", "other.bin", "nobody.txt"})
        entries.push_back({name, name + content, std::string(name) == "item.json"});
    writePackage(scratch("extras.tdsn"), entries);
    const auto extrasOf = [&](Document* document) {
        std::set<std::string> names;
        for (const Entry& entry : readPackage(document->path()))
            if (entry.content.ends_with(content)) {
                EXPECT_EQ(entry.content, entry.name + content);
                names.insert(entry.name);
            }
        return names;
    };
    using Names = std::set<std::string>;
    Document* document = open(scratch("extras.tdsn"));
    ASSERT_NE(document, nullptr) << message();
    document->activeAsset()->markDirty();
    ASSERT_TRUE(save(document)) << message();
    EXPECT_EQ(extrasOf(document), (Names{"item.json", "drive.json", "view.png"}));
    document = reopen(document);
    ASSERT_TRUE(saveAs(document, scratch("elsewhere.tdsn"))) << message();
    EXPECT_EQ(extrasOf(document), (Names{"item.json", "view.png"}));
    ModelBuilder(document->activeAsset()).box(1, 1, 1, {}, status);
    ASSERT_TRUE(save(document)) << message();
    EXPECT_EQ(extrasOf(document), (Names{"item.json"}));
    ASSERT_TRUE(save(document)) << message();
    EXPECT_EQ(extrasOf(reopen(document)), (Names{"item.json"}));
}

TEST_F(NativeFileTest, StepsGoOnBehindASaveAndMarkTheDocument)
{
    Asset* asset = madeAsset();
    Document* document = asset->document();
    const std::string two = digestOf(*asset);
    ASSERT_TRUE(saveAs(document, scratch("steps.tdsn"))) << message();
    EXPECT_TRUE(Transaction::undo(asset));
    EXPECT_TRUE(document->isDirty(false));
    ASSERT_TRUE(save(document)) << message();
    EXPECT_FALSE(document->isDirty(false));
    EXPECT_TRUE(Transaction::redo(asset));
    EXPECT_TRUE(document->isDirty(false));
    EXPECT_EQ(digestOf(*asset), two);
    asset = reopen(document)->activeAsset();
    EXPECT_EQ(componentsOf(*asset).size(), 1u) << "the redone step wasn't saved";
}

TEST_F(NativeFileTest, WithoutANameNothingIsSavedAndWithOneSaveWritesThere)
{
    Document* document = madeAsset()->document();
    Diary diary;
    EXPECT_FALSE(save(document));
    EXPECT_NE(message().find("Save As"), std::string::npos);
    EXPECT_EQ(diary.entries, (std::vector<std::string>{"failed"}));
    EXPECT_TRUE(document->isDirty(false));
    document->path(scratch("named.tdsn"));
    diary.entries.clear();
    EXPECT_TRUE(save(document)) << message();
    EXPECT_EQ(diary.entries, (std::vector<std::string>{"saved", "updated"}));
    EXPECT_TRUE(boost::filesystem::exists(scratch("named.tdsn")));
}

TEST_F(NativeFileTest, ANameOfAnyKindWorksAndOneThatIsTooLongIsToldOf)
{
    Document* document = madeAsset()->document();
    const std::string digest = digestOf(*document->activeAsset());
    const std::string longest = std::string(250, 'x') + ".tdsn";
    for (const std::string& name : {std::string("Größe – 日本 💾.tdsn"), std::string(" a \"b\" 'c' $d.tdsn"),
                                    std::string("without extension"), longest}) {
        ASSERT_TRUE(saveAs(document, scratch(name))) << message();
        document = reopen(document);
        ASSERT_NE(document, nullptr) << name;
        EXPECT_EQ(digestOf(*document->activeAsset()), digest);
    }
    const std::wstring tooLong = scratch("x" + longest);
    EXPECT_FALSE(saveAs(document, tooLong));
    EXPECT_TRUE(oneMessage(tooLong, "name too long"));
    EXPECT_EQ(document->path(), scratch(longest));
    EXPECT_EQ(open(tooLong), nullptr);
    EXPECT_TRUE(oneMessage(tooLong, "name too long"));
}

TEST_F(NativeFileTest, APictureIsAskedForOnceAndStaysWhereNobodyDrawsANewOne)
{
    int asked = 0;
    std::string picture = kPicture;
    ThumbnailSource::install([&](const Document&) {
        ++asked;
        return picture;
    });
    Document* document = madeAsset()->document();
    const std::wstring path = scratch("picture.tdsn");
    ASSERT_TRUE(saveAs(document, path)) << message();
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(NativeFile::thumbnail(path), kPicture);
    picture = "no picture at all";
    ASSERT_TRUE(save(document)) << message();
    EXPECT_EQ(NativeFile::thumbnail(path), kPicture);
    ThumbnailSource::install([](const Document&) -> std::string { throw std::runtime_error("no screen"); });
    EXPECT_TRUE(save(reopen(document))) << message();
    EXPECT_EQ(NativeFile::thumbnail(path), kPicture);
    EXPECT_EQ(NativeFile::thumbnail(scratch("nothing.tdsn")), "");
    EXPECT_EQ(NativeFile::thumbnail(write("noise.tdsn", "noise")), "");
}

TEST_F(NativeFileTest, ASummaryTellsTheContentsWithoutOpeningAnything)
{
    const std::wstring path = savedFile("summary.tdsn");
    const auto summary = NativeFile::summary(path, status);
    ASSERT_TRUE(summary) << message();
    EXPECT_EQ(summary->softwareVersion, SoftwareVersion::currentVersionNumber());
    EXPECT_EQ(summary->documentType, "TestDocType");
    ASSERT_EQ(summary->assets.size(), 1u);
    EXPECT_EQ(summary->assets[0].name, L"Design");
    EXPECT_EQ(DocumentMgr::get()->documents(), 0u);
    EXPECT_TRUE(NativeFile::isNative(path));
    EXPECT_FALSE(NativeFile::summary(write("noise.tdsn", "noise"), status));
    EXPECT_TRUE(oneMessage(L"noise.tdsn", "not a package"));
}

TEST_F(NativeFileTest, ACopyOfAnOpenFileIsADocumentOfItsOwn)
{
    const std::wstring path = savedFile("original.tdsn");
    boost::filesystem::copy_file(path, scratch("copy.backup"));
    Document* original = open(path);
    Document* copy = open(scratch("copy.backup"));
    ASSERT_TRUE(original && copy) << message();
    EXPECT_NE(copy->identifier(), original->identifier());
    EXPECT_NE(copy->activeAsset()->guid(), original->activeAsset()->guid());
    EXPECT_EQ(open(path), original);
    EXPECT_EQ(DocumentMgr::get()->documents(), 2u);
    // Neither may take the other's file away.
    EXPECT_FALSE(saveAs(copy, path));
    EXPECT_TRUE(oneMessage(path, "another document"));
    // After its path is cleared the copy is a never-saved one.
    copy->clearPath();
    EXPECT_FALSE(copy->isOnDisk());
    EXPECT_FALSE(save(copy));
}

// The check for damage comes later, and would keep the file's descriptor until then.
TEST_F(NativeFileTest, AFileThatWasClosedIsHeldNoLonger)
{
    namespace fs = std::filesystem;
    const std::wstring path = savedFile("held.tdsn");
    const auto holders = [&] {
        return std::ranges::count_if(fs::directory_iterator("/proc/self/fd"), [&](const auto& each) {
            std::error_code gone;
            return fs::read_symlink(each.path(), gone).filename() == "held.tdsn";
        });
    };
    const auto before = holders();
    for (int i = 0; i < 3; ++i) {
        Document* document = open(path);
        ASSERT_NE(document, nullptr) << message();
        EXPECT_GT(holders(), before);
        DocumentMgr::get()->close(document);
    }
    EXPECT_EQ(holders(), before);
}

TEST_F(NativeFileTest, SeveralFilesOpenSideBySideInTheirOrder)
{
    std::vector<boost::filesystem::path> paths;
    for (const char* name : {"a.tdsn", "b.tdsn", "c.tdsn", "d.tdsn"})
        paths.emplace_back(savedFile(name));
    overwrite(paths[1].wstring(), "noise");
    paths.push_back(paths[0]);
    paths.push_back(folder.path() / "missing.tdsn");
    DocumentOpener opener(paths);
    status.clear();
    opener.open(status, 1);
    ASSERT_EQ(opener.documentsOpened(), 4u);
    EXPECT_EQ(opener.documentOpened(0)->displayName(), L"a");
    EXPECT_EQ(opener.documentOpened(1)->displayName(), L"c");
    EXPECT_EQ(opener.documentOpened(2)->displayName(), L"d");
    EXPECT_EQ(opener.documentOpened(3), opener.documentOpened(0));
    EXPECT_EQ(DocumentMgr::get()->documents(), 3u);
    EXPECT_TRUE(status.matchingError("b.tdsn"));
    EXPECT_TRUE(status.matchingError("missing.tdsn"));
}

TEST_F(NativeFileTest, ATranslatedModelIsTheSameFromItsNativeFile)
{
    SKIP_WITHOUT_REAL_DATA();
    for (const char* name : {"as1-oc-214.stp", "sg1-c5-214.stp", "red_cube_blue_cylinder.step"}) {
        Document* document = open((TestSupport::realDataFolder() / name).wstring());
        ASSERT_NE(document, nullptr) << message();
        const std::string digest = digestOf(*document->activeAsset());
        const double volume = volumeOf(*document->activeAsset()), area = areaOf(*document->activeAsset());
        EXPECT_FALSE(save(document)) << "it has no native path yet";
        ASSERT_TRUE(saveAs(document, scratch(std::string(name) + ".tdsn"))) << message();
        document = reopen(document);
        EXPECT_EQ(digestOf(*document->activeAsset()), digest);
        EXPECT_NEAR(volumeOf(*document->activeAsset()), volume, 1e-9 * volume);
        EXPECT_NEAR(areaOf(*document->activeAsset()), area, 1e-9 * area);
        // The same again after a change, which rewrites everything.
        ModelBuilder(document->activeAsset()).box(1, 1, 1, {}, status);
        const std::string changed = digestOf(*document->activeAsset());
        ASSERT_TRUE(save(document)) << message();
        EXPECT_EQ(digestOf(*reopen(document)->activeAsset()), changed);
    }
}
