#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptReplay.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/NativeFile.h"
#include "Server/Types/Uuid.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

#include <boost/filesystem/operations.hpp>

using namespace Vu;
using namespace Vu::Commands;

namespace {

class AssetsTest : public CommandsTests::WithProgram
{
protected:
    static Vs::Document* document(unsigned index = 0) { return Vs::DocumentMgr::get()->document(index); }
    static Vs::Asset* current() { return activeSession() ? activeSession()->asset() : nullptr; }
    static size_t listed() { return SharedWorkflows::activeAssetShell()->assetSessions().size(); }
};

TEST_F(AssetsTest, LinesSayWhatTheyMiss)
{
    EXPECT_EQ(failure(L"Asset.Create"), L"No asset type specified as parameter");
    EXPECT_EQ(failure(L"Asset.Create NoSuchType"),
              L"Invalid asset type identifier specified as parameter; see AssetMgt.AssetTypes for more info");
    EXPECT_EQ(failure(L"Asset.Create VeloraAssetType nowhere.vlra"),
              L"There is no document UI associated with the given path");
    EXPECT_EQ(failure(L"Asset.Close"), L"There is no active asset to close");
    for (const wchar_t* line : {L"Asset.UseForTesting", L"Asset.MarkDirty", L"Asset.MarkSmudge"})
        EXPECT_EQ(failure(line), L"There is no active asset to use");
    EXPECT_EQ(failure(L"Document.Create"), L"No asset type specified as parameter");
    EXPECT_EQ(failure(L"Document.Create NoSuchType"),
              L"Invalid asset type identifier specified as parameter; see AssetMgt.AssetTypes for more info");
}

TEST_F(AssetsTest, TheListsThatMessagesNameTellWhatThereIs)
{
    const std::wstring types = answer(L"AssetMgt.AssetTypes");
    EXPECT_NE((L"\n" + types + L"\n").find(L"\nVeloraAssetType\tDesign\n"), std::wstring::npos)
        << Vs::Strings::narrow(types);
    EXPECT_EQ(answer(L"DocumentMgt.List"), L"");
    answer(L"Design.New");
    answer(L"Document.SaveAs " + scratch(L"listed.vlra"));
    answer(L"Asset.Create TorvexAssetType /Hidden");
    answer(L"Design.New");
    answer(L"Document.Rename Second");
    const std::wstring first = L"listed\t" + scratch(L"listed.vlra");
    EXPECT_EQ(answer(L"DocumentMgt.List"), first + L"\nSecond\t");
    EXPECT_EQ(answer(L"DocumentMgt.List /Assets"),
              first + L"\n\tDesign\tVeloraAssetType\n\tTorvex\tTorvexAssetType\thidden\nSecond\t\n\tDesign\t"
                      L"VeloraAssetType");
}

TEST_F(AssetsTest, WhatIsShownIsWhatItsDocumentKeepsAndIsAskedAbout)
{
    answer(L"Design.New");
    answer(L"Asset.Create VeloraAssetType");
    Vs::Asset *first = document()->asset(0), *second = document()->asset(1);
    EXPECT_EQ(document()->activeAsset(), second);
    answer(L"Asset.Activate " + first->name());
    EXPECT_EQ(document()->activeAsset(), first);
    answer(L"VuCommands.NextAssetCmd");
    EXPECT_EQ(document()->activeAsset(), second);
    answer(L"Asset.Create TorvexAssetType /Hidden");
    EXPECT_EQ(document()->hiddenAsset(0)->parent(), second);
    // The first one is empty, so a picture is of the second.
    answer(L"Design.Box 10 10 10");
    answer(L"Document.SaveAs " + scratch(L"second.vlra"));
    EXPECT_FALSE(Vs::NativeFile::thumbnail(scratch(L"second.vlra")).empty());
    // Another document on top leaves it unchanged, and a user asked about its changes sees it.
    answer(L"Design.Box 10 10 10");
    answer(L"Design.New");
    const Vs::Asset* asked = nullptr;
    MessageBox::responder([&](const MessageBox&) {
        asked = current();
        return 2;
    });
    failure(L"Document.Close second.vlra");
    MessageBox::responder({});
    EXPECT_EQ(asked, second);
    answer(L"Document.Save");
    answer(L"Design.New");
    EXPECT_EQ(document(0)->activeAsset(), second);
    answer(L"VuCommands.CycleOpenDocumentsCmd");
    EXPECT_EQ(current(), second);
    answer(L"Document.CloseAll");
    answer(L"Document.Open " + scratch(L"second.vlra"));
    EXPECT_EQ(current()->name(), L"Design1");
}

TEST_F(AssetsTest, AnInsertedAssetIsNamedForItsTypeShownAndDirty)
{
    answer(L"Design.New");
    answer(L"Asset.Create VeloraAssetType");
    answer(L"Asset.Create VeloraAssetType");
    ASSERT_EQ(document()->assets(), 3u);
    EXPECT_EQ(document()->asset(1)->name(), L"Design1");
    EXPECT_EQ(document()->asset(2)->name(), L"Design2");
    EXPECT_EQ(current(), document()->asset(2));
    EXPECT_EQ(listed(), 3u);
    EXPECT_TRUE(current()->isDirty(false));
    EXPECT_FALSE(document()->asset(0)->isDirty(false));
}

TEST_F(AssetsTest, AHiddenAssetAddsNoSessionAndDirtiesTheOneItBelongsTo)
{
    answer(L"Design.New");
    const Vs::Asset* before = current();
    answer(L"Asset.Create TorvexAssetType /Hidden");
    ASSERT_EQ(document()->hiddenAssets(), 1u);
    EXPECT_EQ(document()->hiddenAsset(0)->parent(), before);
    EXPECT_EQ(current(), before);
    EXPECT_EQ(listed(), 1u);
    EXPECT_TRUE(before->isDirty(false));
    const std::wstring list = answer(L"Asset.List");
    EXPECT_NE(list.find(L"Asset name: Torvex\tHidden: true  Parent: Design"), std::wstring::npos);
    EXPECT_NE(list.find(L"\trefdAssets:  Torvex"), std::wstring::npos);
}

TEST_F(AssetsTest, AnAssetGoesIntoTheDocumentThatIsNamed)
{
    answer(L"Design.New");
    const std::wstring path = scratch(L"host.vlra");
    answer(L"Document.Save " + path);
    answer(L"Design.New");
    answer(L"Asset.Create SimulationAssetType " + path);
    EXPECT_EQ(document(0)->assets(), 2u);
    EXPECT_EQ(document(1)->assets(), 1u);
    EXPECT_EQ(current(), document(0)->asset(1));
    boost::filesystem::remove(path);
}

TEST_F(AssetsTest, ChoosingATypeFromTheListInsertsIntoTheActiveDocument)
{
    answer(L"Design.New");
    auto* list = Vs::cast<ListControl>(definition(L"InsertAssetCommand")->inputControl());
    ASSERT_NE(list, nullptr);
    for (Info* item : list->items())
        if (item->key() == L"VeloraAssetType")
            list->selectedItem(item, true);
    run(L"");
    EXPECT_EQ(document()->assets(), 2u);
    EXPECT_EQ(current()->assetTypeIdentifier(), "VeloraAssetType");
}

TEST_F(AssetsTest, ClosingOneOfTwoAssetsLeavesTheOtherAndWhileThatIsDirtyNothingIsAsked)
{
    answer(L"Design.New");
    answer(L"Asset.MarkDirty");
    answer(L"Asset.Create VeloraAssetType");
    answerBoxes(2);
    answer(L"Asset.Close");
    EXPECT_TRUE(boxes().empty());
    ASSERT_EQ(documents(), 1u);
    EXPECT_EQ(listed(), 1u);
    EXPECT_EQ(document()->activeAsset(), document()->asset(0));
    answer(L"VuCommands.AssetShellCmd \"" +
           SessionMgr::get()->assetSession(document()->asset(0))->serialize() + L"\"");
    answer(L"Asset.Close");
    EXPECT_EQ(boxes().size(), 1u) << "the last asset takes the document along";
    EXPECT_EQ(documents(), 1u);
}

TEST_F(AssetsTest, ARecordedInsertIsPlayedAgainWithTheHiddenOnesHidden)
{
    Vs::TranscriptMgr* transcripts = Vs::TranscriptMgr::get();
    Vs::Status status;
    ASSERT_TRUE(transcripts->startRecording(scratch(L"insert.txt"), Vs::kTextTranscript, status));
    answer(L"VuCommands.NewSingleDocumentCmd");
    answer(L"Asset.Create SimulationAssetType");
    const std::wstring guid = Vs::fromUuid(current()->guid());
    answer(L"Asset.Create TorvexAssetType /Hidden");
    answer(L"VuCommands.PreviousAssetCmd");
    answer(L"VuCommands.ActiveViewAssetCmd " + guid);
    transcripts->endRecording();
    answerBoxes(1);
    answer(L"Document.CloseAll");
    ASSERT_TRUE(transcripts->replay(scratch(L"insert.txt"), Vs::kTextTranscript, {}).ok());
    run(L"");
    ASSERT_EQ(documents(), 1u);
    EXPECT_EQ(document()->assets(), 2u);
    EXPECT_EQ(document()->hiddenAssets(), 1u);
    EXPECT_EQ(current(), document()->asset(1));
    EXPECT_NE(Vs::fromUuid(current()->guid()), guid);
}

TEST_F(AssetsTest, TheActiveViewsListShowsTheSessionsAndSwitchesBetweenThem)
{
    definition(L"ActiveViewAssetCommand")->inputControl();
    answer(L"Design.New");
    answer(L"Asset.Create SimulationAssetType");
    auto* list = Vs::cast<ListControl>(definition(L"ActiveViewAssetCommand")->inputControl());
    ASSERT_EQ(list->items().size(), 2u);
    EXPECT_EQ(list->items()[1]->key(), Vs::fromUuid(current()->guid()));
    EXPECT_EQ(list->selectedItem(), list->items()[1]);
    list->selectedItem(list->items()[0], true);
    run(L"");
    EXPECT_EQ(current(), document()->asset(0));
    const Toolbar* toolbar = ToolbarManager::get()->toolbarById(L"ActiveViewToolbar");
    ASSERT_NE(toolbar, nullptr);
    EXPECT_NE(toolbar->findItem(list), nullptr);
    EXPECT_TRUE(list->synchronizedWithCurrentItem());
    answerBoxes(1);
    answer(L"Document.CloseAll");
    EXPECT_TRUE(list->items().empty());
}

TEST_F(AssetsTest, TestCommandsWorkOnTheAssetThatWasNamedUntilItIsGivenUpOrCloses)
{
    answer(L"Design.New");
    answer(L"Asset.UseForTesting");
    answer(L"Design.Sample");
    EXPECT_EQ(documents(), 1u);
    EXPECT_TRUE(document()->isDirty(false));
    answer(L"Asset.UseForTesting /Stop");
    answer(L"Design.Sample");
    EXPECT_EQ(documents(), 2u);
    answer(L"Asset.UseForTesting");
    answerBoxes(1);
    answer(L"Document.CloseAll");
    answer(L"Design.Sample");
    EXPECT_EQ(documents(), 1u);
}

TEST_F(AssetsTest, TheExampleDocumentLivesOnlyForAMoment)
{
    answer(L"Document.ExampleDoc");
    EXPECT_EQ(documents(), 0u);
}

} // namespace
