#include "Server/Base/UniqueString.h"
#include "Server/DataModel/AssetAdapter.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/AutoSaveDisabler.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/IDocMgmtHandler.h"
#include "Server/Types/Uuid.h"
#include "Tests/Server/DataModel/Fixture.h"

#include <cstdlib>

using namespace Vs;

namespace {

const UniqueString* session()
{
    return UniqueString::find("AssetSession");
}

/// Records the events.
class Diary : public DocumentEventSite, public AssetEventSite
{
public:
    Diary()
    {
        DocumentEventSource::get()->subscribe(this);
        AssetEventSource::get()->subscribe(this);
    }
    ~Diary() override
    {
        DocumentEventSource::get()->unsubscribe(this);
        AssetEventSource::get()->unsubscribe(this);
    }
    void documentCreated(DocumentEvent*) override { entries.push_back("created"); }
    void documentUpdated(DocumentEvent*) override { entries.push_back("updated"); }
    void documentActiveAssetChanged(DocumentEvent*) override { entries.push_back("active asset"); }
    void documentClosed(DocumentEvent* event) override
    {
        // Before, the document is whole; after, the manager no longer knows it.
        const bool before = event->timing() == Timing::Before;
        EXPECT_EQ(DocumentMgr::get()->documents(), before ? 1u : 0u);
        EXPECT_EQ(event->document()->assets(), 1u);
        entries.push_back(before ? "closing" : "closed");
    }
    void assetCreated(AssetEvent*) override { entries.push_back("asset created"); }
    void assetDirtyChanged(AssetEvent*) override { entries.push_back("dirty"); }
    void assetClosed(AssetEvent*) override { entries.push_back("asset closed"); }

    std::vector<std::string> entries;
};

/// Gives one answer to everything and remembers the questions.
class Answer : public IDocMgmtHandler
{
public:
    explicit Answer(EDocMgmtOpCode answer) : m_answer(answer) {}
    EDocMgmtOpCode onClosingDirtyDocuments(const Documents& documents) override
    {
        asked.push_back(documents);
        return m_answer;
    }
    EDocMgmtOpCode onAssetDirtyFirstTime(Asset*) override
    {
        ++firstTimes;
        return m_answer;
    }

    std::vector<Documents> asked;
    int firstTimes = 0;

private:
    EDocMgmtOpCode m_answer;
};

} // namespace

class DocumentTest : public DataModelTest
{
};

TEST_F(DocumentTest, ADocumentTellsItsLifeInOrder)
{
    Diary diary;
    Document* document = newAsset()->document();
    EXPECT_EQ(DocumentMgr::get()->document(0u), document);
    DocumentMgr::get()->close(document);
    EXPECT_EQ(diary.entries, (std::vector<std::string>{"active asset", "asset created", "created", "closing",
                                                       "closed", "asset closed"}));
}

TEST_F(DocumentTest, ADocumentClosesWithItsLastLock)
{
    Asset* asset = newAsset();
    {
        const LockBase onDocument(session(), asset->document());
        {
            const LockBase onAsset(session(), asset);
            EXPECT_EQ(asset->document()->locks(), 2u);
        }
        EXPECT_EQ(DocumentMgr::get()->documents(), 1u);
        asset->document()->releaseLock(UniqueString::find("somebody else"));
        EXPECT_EQ(DocumentMgr::get()->documents(), 1u);
    }
    EXPECT_EQ(DocumentMgr::get()->documents(), 0u);
}

TEST_F(DocumentTest, TheDocumentOfAnUnknownTypeIsRefusedByName)
{
    AssetType stray("Stray", L"Stray Thing", "NoSuchDocType");
    Status refused;
    EXPECT_EQ(DocumentMgr::get()->create(&stray, refused), nullptr);
    EXPECT_TRUE(refused.matchingError("Stray Thing"));
    EXPECT_TRUE(refused.matchingError("NoSuchDocType"));
    EXPECT_EQ(DocumentMgr::get()->documents(), 0u);
}

TEST_F(DocumentTest, AssetsAreFoundByNameByGuidAndByAnUnambiguousBeginning)
{
    Asset* first = newAsset();
    Document* document = first->document();
    EXPECT_EQ(document->uniqueAssetName(L"Design"), L"Design1");
    Asset* second = Asset::create(document, L"Wheel", first->assetType());
    Asset* third = Asset::create(document, L"Wheelbase", first->assetType());
    EXPECT_EQ(document->activeAsset(), first);
    EXPECT_EQ(document->bestAsset(L"Wheel"), second);
    EXPECT_EQ(document->bestAsset(L"Wheelb"), third);
    EXPECT_EQ(document->bestAsset(L"Whe"), nullptr);
    EXPECT_EQ(document->bestAsset(L""), nullptr);
    EXPECT_EQ(document->bestAsset(fromUuid(third->guid())), third);
}

TEST_F(DocumentTest, HiddenAssetsBelongToTheirParentAndNeverBecomeActive)
{
    Asset* parent = newAsset();
    Document* document = parent->document();
    EXPECT_EQ(Asset::createHidden(document, nullptr, L"x", parent->assetType()), nullptr);
    Asset* hidden = Asset::createHidden(document, parent, L"Helper", parent->assetType());
    EXPECT_FALSE(hidden->isVisible());
    EXPECT_EQ(hidden->parent(), parent);
    EXPECT_EQ(parent->refdAssets(), 1u);
    EXPECT_EQ(document->assets(), 1u);
    document->activeAsset(hidden);
    EXPECT_EQ(document->activeAsset(), parent);

    hidden->markDirty();
    EXPECT_FALSE(parent->isDirty(false));
    EXPECT_TRUE(parent->isDirty(true));
    EXPECT_TRUE(document->isDirty(false));
}

TEST_F(DocumentTest, DirtyAndSmudgedAreTwoMarks)
{
    Answer handler(eDocMgmtGoOn);
    Asset* asset = newAsset();
    asset->markSmudge();
    EXPECT_FALSE(asset->isDirty(true));
    asset->markDirty();
    asset->markDirty();
    EXPECT_EQ(handler.firstTimes, 1);
    EXPECT_TRUE(asset->isSmudge());
    asset->markClean();
    EXPECT_FALSE(asset->isDirty(false) || asset->isSmudge());
}

TEST_F(DocumentTest, HandlersAreAskedOnlyAboutDirtyDocumentsUntilOneStops)
{
    Answer first(eDocMgmtGoOn);
    Answer second(eDocMgmtStop);
    Answer third(eDocMgmtGoOn);
    Document* clean = newAsset()->document();
    Asset* changed = newAsset();
    EXPECT_EQ(IDocMgmtHandler::notifyClosingDirtyDocuments({clean, changed->document()}), eDocMgmtGoOn);
    EXPECT_TRUE(first.asked.empty());
    changed->markDirty();
    EXPECT_EQ(IDocMgmtHandler::notifyClosingDirtyDocuments({clean, changed->document()}), eDocMgmtStop);
    EXPECT_EQ(second.asked, std::vector{IDocMgmtHandler::Documents{changed->document()}});
    EXPECT_TRUE(third.asked.empty());
    EXPECT_EQ(IDocMgmtHandler::notifyPreClosingDocuments({clean}), eDocMgmtGoOn);
}

TEST_F(DocumentTest, DocumentsAreFoundByPathByFileNameAndByDisplayName)
{
    Document* one = newAsset()->document();
    Document* two = newAsset()->document();
    one->path(scratch("a/part.tdsn"));
    two->path(scratch("b/part.tdsn"));
    const DocumentMgr* manager = DocumentMgr::get();
    EXPECT_EQ(one->displayName(), L"part");
    EXPECT_EQ(manager->document(scratch("b/../a/./part.tdsn")), one);
    EXPECT_EQ(manager->document(L"part.tdsn"), nullptr);
    two->path(scratch("b/other.tdsn"));
    EXPECT_EQ(manager->document(L"part.tdsn"), one);
    EXPECT_EQ(manager->document(L""), nullptr);
    two->displayName(L"My Wheel");
    EXPECT_EQ(manager->document(L"My Wheel"), nullptr);
    EXPECT_EQ(manager->bestDocument(L"My Wheel"), two);
}

TEST_F(DocumentTest, AutoSaveIsKeptOffOneDocumentOrAll)
{
    Document* one = newAsset()->document();
    Document* two = newAsset()->document();
    {
        const AutoSaveDisabler outer(one);
        {
            const AutoSaveDisabler inner(one);
        }
        EXPECT_TRUE(AutoSaveDisabler::disabled(one));
        EXPECT_FALSE(AutoSaveDisabler::disabled(two));
        const AutoSaveDisabler all(nullptr);
        EXPECT_TRUE(AutoSaveDisabler::disabled(two));
    }
    EXPECT_FALSE(AutoSaveDisabler::disabled(one));
}

TEST_F(DocumentTest, AnAssetGetsTheAdapterThatWasOfferedLast)
{
    class Mine : public Implements<Mine, AssetAdapter>
    {
    public:
        using Implements::Implements;
    };
    int calls = 0;
    const int offered = AssetAdapter::addFactory([&](Asset* asset) -> std::unique_ptr<AssetAdapter> {
        ++calls;
        return std::make_unique<Mine>(asset);
    });
    const int declining = AssetAdapter::addFactory([](Asset*) { return nullptr; });
    Asset* asset = newAsset();
    ASSERT_NE(cast<Mine>(asset->adapter()), nullptr);
    EXPECT_EQ(asset->adapter()->asset(), asset);
    EXPECT_EQ(calls, 1);
    AssetAdapter::removeFactory(offered);
    AssetAdapter::removeFactory(declining);
    EXPECT_EQ(newAsset()->adapter(), nullptr);
}

TEST_F(DocumentTest, AssetTypesAreKnownByTheirIdentifierOnce)
{
    AssetTypeMgr* types = AssetTypeMgr::get();
    AssetType twin("TestAssetType", L"Twin", "TestDocType");
    AssetType nameless("", L"Nameless", "TestDocType");
    EXPECT_FALSE(types->registerType(&twin));
    EXPECT_FALSE(types->registerType(&nameless));
    EXPECT_EQ(types->assetTypes(), 1u);
    EXPECT_EQ(types->assetType("TestAssetType"), types->assetType(0u));
    EXPECT_EQ(types->assetType(1u), nullptr);

    // And their text leads back to them.
    AssetType* type = types->assetType(0u);
    SerializableObjectFactory* factory = SerializableObjectFactory::findFactory(type->factoryName());
    ASSERT_NE(factory, nullptr);
    EXPECT_EQ(factory->name(), "AssetTypeSerializableObjectFactory");
    EXPECT_EQ(cast<AssetType>(factory->deserialize(type->serialize(), false)), type);
    EXPECT_EQ(factory->deserialize(L"NoSuchType", true), nullptr);
}

TEST_F(DocumentTest, TheProcessMayEndWithADocumentOpen)
{
    // In a separate process from the start, so that ending it takes nothing away from later tests.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    ModelBuilder(newAsset()).box(1, 2, 3, {}, status);
    EXPECT_EXIT(std::exit(0), testing::ExitedWithCode(0), "");
}
