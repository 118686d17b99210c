#include "Server/Base/SerializableObject.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptReplay.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Types/Uuid.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Documents/NewDocumentCmd.h"

#include <boost/filesystem/fstream.hpp>

#include <algorithm>
#include <memory>

using namespace Vu;
using namespace Vu::Commands;

namespace {

constexpr const wchar_t* kList = L"NewDocumentCommand";
constexpr const wchar_t* kSingle = L"NewSingleDocumentCommand";

class NewDocumentTest : public CommandsTests::WithProgram
{
protected:
    static ListControl* list() { return Vs::cast<ListControl>(definition(kList)->inputControl()); }
    static bool listed(const wchar_t* key)
    {
        return std::any_of(list()->items().begin(), list()->items().end(),
                           [&](const Info* item) { return item->key() == key; });
    }
};

/// Leaves exactly `wanted` asset types registered for as long as it lives.
class AssetTypeCount
{
public:
    explicit AssetTypeCount(unsigned wanted)
    {
        Vs::AssetTypeMgr* types = Vs::AssetTypeMgr::get();
        while (types->assetTypes() > 0) {
            m_taken.push_back(types->assetType(0u));
            types->unregisterType(m_taken.back());
        }
        for (unsigned i = 0; i < wanted; ++i) {
            m_made.push_back(std::make_unique<Vs::AssetType>("Made" + std::to_string(i), L"Made",
                                                             "VeloraDocType", Vs::AssetTypeTraits{}));
            EXPECT_TRUE(types->registerType(m_made.back().get()));
        }
    }
    ~AssetTypeCount()
    {
        for (const auto& type : m_made)
            Vs::AssetTypeMgr::get()->unregisterType(type.get());
        for (Vs::AssetType* type : m_taken)
            EXPECT_TRUE(Vs::AssetTypeMgr::get()->registerType(type));
    }

private:
    std::vector<Vs::AssetType*> m_taken;
    std::vector<std::unique_ptr<Vs::AssetType>> m_made;
};

TEST_F(NewDocumentTest, TheCountOfAssetTypesSaysWhichOfTheTwoCommandsIsOffered)
{
    for (unsigned count = 0; count < 6; ++count) {
        const AssetTypeCount types(count);
        EXPECT_EQ(applicable(kSingle), count == 1 || count == 3) << count;
        EXPECT_NE(applicable(kSingle), applicable(kList)) << count;
        EXPECT_EQ(list()->items().size(), count);
    }
    UIBaseOptionGroup::get()->offlineWorkflowsDisabled(true);
    EXPECT_FALSE(applicable(kSingle) || applicable(kList));
    UIBaseOptionGroup::get()->offlineWorkflowsDisabled(false);
}

TEST_F(NewDocumentTest, TheListFollowsTheRegisteredTypesAndLeavesOutWhatNobodyMakes)
{
    Vs::AssetTypeMgr* types = Vs::AssetTypeMgr::get();
    const size_t before = list()->items().size();
    EXPECT_TRUE(listed(L"VeloraAssetType"));
    EXPECT_FALSE(listed(L"TorvexAssetType"));
    Vs::AssetType plain("PlainType", L"Plain", "VeloraDocType");
    Vs::AssetType builtIn("BuiltInType", L"Built in", "VeloraDocType", {.builtIn = true});
    Vs::AssetType hidden("HiddenType", L"Hidden", "VeloraDocType", {.hidden = true});
    for (Vs::AssetType* type : {&plain, &builtIn, &hidden, &plain})
        types->registerType(type);
    EXPECT_EQ(list()->items().size(), before + 1);
    EXPECT_TRUE(listed(L"PlainType"));
    Vs::AssetTypeEvent again(&plain), unknown(&hidden);
    Vs::AssetEventSource::get()->fireAssetTypeRegistered(&again);
    Vs::AssetEventSource::get()->fireAssetTypeUnregistered(&unknown);
    EXPECT_EQ(list()->items().size(), before + 1);
    for (Vs::AssetType* type : {&plain, &builtIn, &hidden})
        types->unregisterType(type);
    EXPECT_EQ(list()->items().size(), before);
}

TEST_F(NewDocumentTest, ChoosingFromTheListReplacesTheCurrentDocumentWithoutAQuestion)
{
    answerBoxes(2);
    list()->selectedItem(list()->items().front(), true);
    run(L"");
    ASSERT_EQ(documents(), 1u);
    const std::wstring first = activeDocument()->displayName();
    answer(L"Asset.MarkDirty");
    answer(L"VuCommands.NewDocumentCmd SimulationAssetType");
    ASSERT_EQ(documents(), 1u);
    EXPECT_NE(activeDocument()->displayName(), first);
    EXPECT_EQ(activeDocument()->documentType()->identifier(), "SimulationDocType");
    EXPECT_TRUE(boxes().empty());
}

TEST_F(NewDocumentTest, TheSingleCommandKeepsTheDocumentsThatAreOpen)
{
    answer(L"VuCommands.NewSingleDocumentCmd");
    answer(L"VuCommands.NewSingleDocumentCmd DocumentationAssetType");
    ASSERT_EQ(documents(), 2u);
    EXPECT_EQ(activeDocument()->documentType()->identifier(), "VeloraDocType") << "always the first type";
    const AssetTypeCount one(1);
    CommandContext context = CommandContext::activeContext();
    definition(kSingle)->updateInputControl(&context);
    EXPECT_EQ(definition(kSingle)->inputControl()->info()->name(), L"New Made Document");
}

TEST_F(NewDocumentTest, WithoutATypeOrWithAnUnknownOneNothingIsMadeAndNothingIsSaid)
{
    EXPECT_EQ(answer(L"VuCommands.NewDocumentCmd"), L"");
    EXPECT_EQ(answer(L"VuCommands.NewDocumentCmd NoSuchType"), L"");
    EXPECT_EQ(documents(), 0u);
}

TEST_F(NewDocumentTest, ATypeWithoutADocumentTypeLeavesThePreviousDocumentAndSaysWhy)
{
    answer(L"VuCommands.NewDocumentCmd VeloraAssetType");
    const Vs::Document* before = activeDocument();
    Vs::AssetType homeless("HomelessType", L"Homeless", "NoDocType");
    EXPECT_TRUE(Vs::AssetTypeMgr::get()->registerType(&homeless));
    EXPECT_NE(failure(L"VuCommands.NewDocumentCmd HomelessType").find(L"NoDocType"), std::wstring::npos);
    Vs::AssetTypeMgr::get()->unregisterType(&homeless);
    EXPECT_EQ(documents(), 1u);
    EXPECT_EQ(activeDocument(), before);
}

TEST_F(NewDocumentTest, WithLocalWorkSwitchedOffNeitherCommandMakesADocument)
{
    UIBaseOptionGroup::get()->offlineWorkflowsDisabled(true);
    for (const wchar_t* line :
         {L"VuCommands.NewDocumentCmd VeloraAssetType", L"VuCommands.NewSingleDocumentCmd"})
        EXPECT_EQ(failure(line), L"Creation of local files is not supported!!");
    UIBaseOptionGroup::get()->offlineWorkflowsDisabled(false);
    EXPECT_EQ(documents(), 0u);
}

TEST_F(NewDocumentTest, AFileThatIsNewHasItsPathBeforeItIsShown)
{
    Vs::Status status;
    EXPECT_EQ(NewDocumentCmd::NewFile(scratch(L"new.vlra"), status, "NoSuchType"), nullptr);
    Vs::Document* document = NewDocumentCmd::NewFile(scratch(L"new.vlra"), status, "VeloraAssetType");
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->path(), scratch(L"new.vlra"));
    EXPECT_EQ(activeDocument(), document);
}

TEST_F(NewDocumentTest, ARecordedSessionIsPlayedAgainThoughItsDocumentsHaveOtherIdentifiers)
{
    Vs::TranscriptMgr* transcripts = Vs::TranscriptMgr::get();
    Vs::Status status;
    ASSERT_TRUE(transcripts->startRecording(scratch(L"session.txt"), Vs::kTextTranscript, status));
    answer(L"VuCommands.NewSingleDocumentCmd");
    const std::wstring first = Vs::fromUuid(activeDocument()->identifier());
    answer(L"VuCommands.NewSingleDocumentCmd");
    const std::wstring second = Vs::fromUuid(activeDocument()->identifier());
    answer(L"VuCommands.AssetShellCmd \"" + SessionMgr::get()->assetSessions().front()->serialize() + L"\"");
    answer(L"VuCommands.CloseDocumentCmd " +
           SessionMgr::get()->documentSession(activeDocument())->serialize());
    failure(L"Commands.Cancel_is_no_command");
    transcripts->endRecording();
    ASSERT_EQ(documents(), 1u);
    answer(L"Document.CloseAll");

    boost::filesystem::ifstream file(scratch(L"session.txt"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        if (!line.starts_with('#'))
            lines.push_back(line);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0],
              "VuCommands.NewSingleDocumentCmd VeloraAssetType " + std::string(first.begin(), first.end()));

    const Vs::ReplayResult result = transcripts->replay(scratch(L"session.txt"), Vs::kTextTranscript, {});
    EXPECT_TRUE(result.ok());
    EXPECT_FALSE(transcripts->replaying());
    ASSERT_EQ(documents(), 1u);
    // What later lines name has been found under its new identifier; what none names has none in the
    // recording.
    auto* factory =
        Vs::SerializableObjectFactory::findFactory(DocumentSessionSerializableObjectFactory::kName);
    EXPECT_EQ(factory->deserialize(first, false), nullptr);
    EXPECT_EQ(lines[1].find(std::string(second.begin(), second.end())), std::string::npos);
}

} // namespace
