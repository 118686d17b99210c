#include "Server/Base/UniqueString.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Types/Uuid.h"
#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/SessionMgr.h"

using namespace Vu;

namespace {

class SessionTest : public UiTest
{
protected:
    SessionMgr* sessions = SessionMgr::get();
};

class Environment : public EnvironmentDefinition
{
public:
    explicit Environment(const wchar_t* id) : EnvironmentDefinition(id, id) {}

protected:
    bool onIsApplicable(const AssetSession*) const override { return true; }
};

/// Logs what happens to sessions.
class SessionLog : public SessionEventSite
{
public:
    SessionLog() { SessionEventSource::get()->subscribe(this); }
    ~SessionLog() override { SessionEventSource::get()->unsubscribe(this); }
    void sessionCreated(SessionEvent*) override { text += "created "; }
    void currentSessionChanged(SessionEvent* event) override
    {
        text += event->assetSession() ? "current " : "none ";
    }
    void sessionClosed(SessionEvent* event) override
    {
        // Everything in the session still exists.
        EXPECT_NE(event->assetSession()->commandManager(), nullptr);
        text += "closed ";
    }
    std::string text;
};

} // namespace

TEST_F(SessionTest, ASessionIsMadeOnceAndHasACommandManagerFromTheStart)
{
    Vs::Asset* asset = newAsset();
    ASSERT_NE(asset, nullptr);
    EXPECT_EQ(sessions->getOpenAssetSession(asset), nullptr);
    AssetSession* session = sessions->assetSession(asset);
    ASSERT_NE(session, nullptr);
    EXPECT_EQ(sessions->assetSession(asset), session);
    EXPECT_EQ(session->commandManager()->assetSession(), session);
    EXPECT_EQ(session->documentSession(), sessions->documentSession(asset->document()));
    EXPECT_TRUE(session->documentSession()->firstSave());
}

TEST_F(SessionTest, HiddenAssetsAndNothingHaveNoSession)
{
    Vs::Asset* asset = newAsset();
    Vs::Asset* hidden = Vs::Asset::createHidden(asset->document(), asset, L"Sketch", asset->assetType());
    EXPECT_EQ(sessions->assetSession(hidden), nullptr);
    EXPECT_EQ(sessions->assetSession(nullptr), nullptr);
    EXPECT_EQ(sessions->documentSession(static_cast<Vs::Document*>(nullptr)), nullptr);
}

TEST_F(SessionTest, TheCurrentSessionIsActiveOnlyBetweenActivateAndDeactivate)
{
    AssetSession* session = sessions->assetSession(newAsset());
    sessions->currentAssetSession(session);
    EXPECT_EQ(sessions->activeAssetSession(), nullptr);
    EXPECT_EQ(sessions->currentDocumentSession(), session->documentSession());
    sessions->activate();
    EXPECT_EQ(sessions->activeAssetSession(), session);
    EXPECT_EQ(Vs::DocumentMgr::get()->activeAsset(), session->asset());
    sessions->deactivate();
    EXPECT_EQ(sessions->activeDocumentSession(), nullptr);
    EXPECT_EQ(Vs::DocumentMgr::get()->activeAsset(), nullptr);
}

TEST_F(SessionTest, AClosingDocumentTakesItsSessionsAlongWhileEverythingIsStillThere)
{
    Vs::Asset* asset = newAsset();
    SessionLog log;
    sessions->currentAssetSession(sessions->assetSession(asset));
    Vs::DocumentMgr::get()->close(asset->document());
    EXPECT_EQ(log.text, "created current closed none ");
    EXPECT_TRUE(sessions->assetSessions().empty());
    EXPECT_TRUE(sessions->documentSessions().empty());
    EXPECT_EQ(sessions->currentAssetSession(), nullptr);
}

TEST_F(SessionTest, TranscriptsFindSessionsByGuidAndByName)
{
    Vs::Asset* asset = newAsset();
    AssetSession* session = sessions->assetSession(asset);
    auto* assets = Vs::SerializableObjectFactory::findFactory(session->factoryName());
    auto* documents = Vs::SerializableObjectFactory::findFactory(session->documentSession()->factoryName());
    ASSERT_TRUE(assets && documents);
    EXPECT_EQ(assets->deserialize(session->serialize(), false), session);
    EXPECT_EQ(documents->deserialize(session->documentSession()->serialize(), false),
              session->documentSession());
    EXPECT_EQ(assets->deserialize(asset->document()->displayName() + L"|" + asset->name(), false), session);
    // A bare name refers to the current document.
    EXPECT_EQ(assets->deserialize(asset->name(), false), nullptr);
    sessions->currentAssetSession(session);
    EXPECT_EQ(assets->deserialize(asset->name(), false), session);
    EXPECT_EQ(assets->deserialize(Vs::fromUuid(Vs::makeUuid()), true), nullptr);
    EXPECT_EQ(documents->deserialize(L"no such document", true), nullptr);
}

TEST_F(SessionTest, AnEnvironmentEnteredOnTopLeadsBackAndOneEnteredDirectlyDoesNot)
{
    Environment first(L"First"), second(L"Second");
    AssetSession* session = sessions->assetSession(newAsset());
    session->activateEnvironment(&first, false);
    EXPECT_EQ(session->activeEnvironmentState()->returnState(), nullptr);
    session->activateEnvironment(&second, true);
    ASSERT_NE(session->activeEnvironmentState()->returnState(), nullptr);
    EXPECT_EQ(session->activeEnvironmentState()->returnState()->environmentDefinition(), &first);
    session->activateEnvironment(&first, false);
    EXPECT_EQ(session->activeEnvironmentState()->returnState(), nullptr);
    session->activateEnvironment(nullptr, false);
    EXPECT_EQ(session->activeEnvironment(), nullptr);
    EXPECT_EQ(EnvironmentDefinitionMgr::get()->findEnvironmentDefinitionById(L"Second"), &second);
}
