#include "Server/DataModel/NativeFile.h"

#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/ThumbnailSource.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/DataModel/Fixture.h"
#include "Tests/Support/RealData.h"

#include <boost/filesystem/operations.hpp>

using namespace Vs;

namespace {

const std::string kPicture = "\x89PNG\r\n\x1a\n and so on";

/// Writes down what is told of saving.
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

class NativeFileTest : public DataModelTest
{
protected:
    ~NativeFileTest() override { ThumbnailSource::install({}); }

    std::string message() const { return Strings::narrow(status.toString()); }
    /// A document with a red box and a cylinder beside it.
    Asset* madeAsset()
    {
        Asset* asset = newAsset();
        ModelBuilder builder(asset);
        builder.box(10, 20, 30, {GkMatrix3d(), L"Größe \"1\"", Colour{1, 0, 0, 1}}, status);
        builder.cylinder(5, 40, {GkMatrix3d::translation({50, 0, 0}), L"", std::nullopt}, status);
        EXPECT_TRUE(status.isOk()) << message();
        return asset;
    }
    bool saveAs(Document* document, const std::wstring& path)
    {
        status.clear();
        const bool saved = document->saveAs(path, status);
        EXPECT_EQ(saved, status.isOk());
        return saved;
    }
    Document* reopen(Document* document)
    {
        const std::wstring path = document->path();
        DocumentMgr::get()->close(document);
        Document* opened = open(path);
        EXPECT_NE(opened, nullptr) << message();
        return opened;
    }
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
