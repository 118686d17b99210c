#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/FileChecks.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"
#include "Tests/Support/Files.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Documents/OpenDocumentCmd.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

using namespace Vu;
using namespace Vu::Commands;

namespace {

class DocumentsTest : public CommandsTests::WithProgram
{
protected:
    static Vs::Document* document(unsigned index) { return Vs::DocumentMgr::get()->document(index); }
};

TEST_F(DocumentsTest, AListNamesEveryAssetOfEveryDocument)
{
    EXPECT_EQ(failure(L"Asset.List"), L"There is no asset in memory.");
    answer(L"Design.New");
    answer(L"Document.Rename Bracket");
    const std::wstring name = document(0)->activeAsset()->name();
    EXPECT_EQ(answer(L"Asset.List"), L"All the assets in memory are:\nActive asset name is: " + name +
                                         L"\tDocument name: Bracket\nAsset name: " + name +
                                         L"\tHidden: false");
    answer(L"Design.New");
    EXPECT_NE(answer(L"Asset.List").find(document(1)->displayName()), std::wstring::npos);
}

TEST_F(DocumentsTest, DirtGoesBeforeSmudgeAndNeitherIsClean)
{
    EXPECT_EQ(failure(L"Asset.ListDirty"), L"There is no active asset to use");
    answer(L"Design.Sample");
    const std::wstring name = document(0)->activeAsset()->name();
    EXPECT_EQ(answer(L"Asset.ListDirty"), name + L" is clean");
    answer(L"Asset.MarkSmudge");
    EXPECT_EQ(answer(L"Asset.ListDirty"), name + L" is smudged");
    answer(L"Asset.MarkDirty");
    EXPECT_EQ(answer(L"Asset.ListDirty"), name + L" is dirty");
}

TEST_F(DocumentsTest, ACleanDocumentClosesWithoutAQuestion)
{
    answerBoxes(2);
    answer(L"Design.Sample");
    answer(L"VuCommands.CloseDocumentCmd");
    EXPECT_EQ(documents(), 0u);
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(activeSession(), nullptr);
}

TEST_F(DocumentsTest, ADirtyDocumentStaysOnCancelAndGoesOnDontSave)
{
    answer(L"Design.New");
    answer(L"Document.Rename Bracket");
    answer(L"Asset.MarkDirty");
    answerBoxes(2);
    answer(L"VuCommands.CloseDocumentCmd");
    EXPECT_EQ(boxes(), std::vector<std::wstring>{L"Save changes to Bracket?"});
    EXPECT_EQ(documents(), 1u);
    answerBoxes(1);
    answer(L"VuCommands.CloseDocumentCmd");
    EXPECT_EQ(documents(), 0u);
}

TEST_F(DocumentsTest, ADocumentThatStaysDirtyAfterSaveStopsTheWholeClose)
{
    for (int i = 0; i < 2; ++i) {
        answer(L"Design.New");
        answer(L"Asset.MarkDirty");
    }
    answerBoxes(0);
    answer(L"VuCommands.CloseAllDocumentsCmd");
    // The question about the first document, and why it couldn't be saved.
    ASSERT_EQ(boxes().size(), 2u);
    EXPECT_NE(boxes().back().find(L"has no file name"), std::wstring::npos);
    EXPECT_EQ(documents(), 2u);
}

TEST_F(DocumentsTest, NobodyToAskCountsAsCancel)
{
    answer(L"Design.New");
    answer(L"Asset.MarkDirty");
    answer(L"Document.Rename Bracket");
    for (const wchar_t* line : {L"Document.Close", L"Document.CloseAll"})
        EXPECT_EQ(failure(line), L"\"Bracket\" has changes that are not saved, and was not closed");
    EXPECT_EQ(documents(), 1u);
}

TEST_F(DocumentsTest, ASilentCloseAsksNothingAndOnlyTheValueOneIsSilent)
{
    for (const int silently : {1, 2}) {
        answer(L"Design.New");
        answer(L"Asset.MarkDirty");
        answerBoxes(2);
        CommandContext context = CommandContext::activeContext();
        context.addArgument(CloseDocumentCmdDef::documentCloseSilentlyName(), silently);
        EXPECT_TRUE(CloseDocumentCmd::closeDocument(&context));
        Application::get()->flushDeferredTasks();
        EXPECT_EQ(documents(), 0u);
        EXPECT_TRUE(boxes().empty());
    }
}

TEST_F(DocumentsTest, CloseAllTakesTheDocumentsThatWereNeverSavedToo)
{
    EXPECT_EQ(failure(L"Document.CloseAll"), L"There is no document for closing");
    answer(L"Design.Sample");
    answer(L"Design.Sample");
    answer(L"Document.CloseAll");
    EXPECT_EQ(documents(), 0u);
}

TEST_F(DocumentsTest, CloseAllGoesOnPastADocumentThatStays)
{
    answer(L"Design.New");
    answer(L"Asset.MarkDirty");
    Vs::Document* dirty = document(0);
    answer(L"Design.New");
    answerBoxes(2);
    failure(L"Document.CloseAll");
    ASSERT_EQ(documents(), 1u);
    EXPECT_EQ(document(0), dirty);
    EXPECT_EQ(boxes().size(), 1u);
}

TEST_F(DocumentsTest, CloseLastMeansTheNewestDocumentNotTheActiveOne)
{
    answer(L"Design.Sample");
    answer(L"Document.Rename First");
    answer(L"Design.Sample");
    answer(L"Document.Rename Second");
    Vs::Document* first = document(0);
    answer(L"Asset.Activate " + first->activeAsset()->name() + L" First");
    ASSERT_EQ(activeDocument(), first);
    answer(L"Document.Close /CloseLast");
    ASSERT_EQ(documents(), 1u);
    EXPECT_EQ(document(0), first);
}

TEST_F(DocumentsTest, EveryLineSaysWhatItMisses)
{
    EXPECT_EQ(failure(L"Document.Open"), L"No filename specific as parameter");
    EXPECT_EQ(failure(L"Document.Open no-such-file.stp"), L"Filename not found");
    EXPECT_EQ(failure(L"Document.Open " + scratch(L"")), L"Filename not found");
    EXPECT_EQ(failure(L"Document.Close"), L"There is no active document");
    EXPECT_EQ(failure(L"Document.Close nowhere.vlra"),
              L"There is no document UI associated with the given path");
    EXPECT_EQ(failure(L"Document.Activate"), L"No path or filename specific as parameter");
    EXPECT_EQ(failure(L"Document.Activate nowhere"), L"No document matches the specified path or filename");
    EXPECT_EQ(failure(L"Document.SoftwareVersion"), L"There is no active document");
    EXPECT_EQ(failure(L"Document.Rename"), L"No name specific as parameter");
    EXPECT_EQ(failure(L"Document.Rename Name"), L"There is no active document");
    EXPECT_EQ(failure(L"Asset.Activate Name"), L"There is no active document displayed");
    EXPECT_EQ(failure(L"Asset.Activate Name nowhere"),
              L"No document matches the specified path or filename or name");
    EXPECT_EQ(failure(L"Asset.Export"), L"No filename specific as parameter");
    EXPECT_EQ(failure(L"Asset.Export x.stl"), L"There is no active asset to export");
    EXPECT_EQ(answer(L"Document.Path"), L"");
}

TEST_F(DocumentsTest, ARelativeNameIsFoundInTheLastFolderWhichThenFollows)
{
    answer(L"Design.Sample");
    boost::filesystem::create_directories(scratch(L"models"));
    answer(L"Asset.Export " + scratch(L"models/found.stl"));
    answer(L"Document.CloseAll");
    UIBaseOptionGroup::get()->lastDirectory(scratch(L"models"));
    answer(L"Document.Open found.stl");
    ASSERT_EQ(documents(), 1u);
    EXPECT_NE(document(0)->bestPath().find(L"found.stl"), std::wstring::npos);
    EXPECT_EQ(UIBaseOptionGroup::get()->lastDirectory(), scratch(L"models"));
}

TEST_F(DocumentsTest, OpeningReplacesTheCurrentDocumentWhileTheDesignCommandKeepsIt)
{
    answer(L"Design.Sample");
    answer(L"Asset.Export " + scratch(L"part.stl"));
    answer(L"Document.Open " + scratch(L"part.stl"));
    EXPECT_EQ(documents(), 2u);
    answer(L"VuCommands.OpenDocumentCmd " + scratch(L"part.stl"));
    EXPECT_EQ(documents(), 2u);
    ASSERT_NE(activeDocument(), nullptr);
    EXPECT_NE(activeDocument()->bestPath().find(L"part.stl"), std::wstring::npos);
}

TEST_F(DocumentsTest, AFileThatCannotBeReadLeavesTheCurrentDocumentAlone)
{
    boost::filesystem::ofstream(scratch(L"garbage.stp")) << "This is no model at all.";
    answer(L"Design.Sample");
    const Vs::Document* before = activeDocument();
    for (const wchar_t* line : {L"VuCommands.OpenDocumentCmd ", L"Document.Open "}) {
        const std::wstring reason = failure(line + scratch(L"garbage.stp"));
        EXPECT_NE(reason.find(L"garbage.stp"), std::wstring::npos);
        EXPECT_EQ(documents(), 1u);
        EXPECT_EQ(activeDocument(), before);
    }
}

TEST_F(DocumentsTest, DamageThatIsFoundAfterOpeningIsToldWithoutAQuestion)
{
    AlertController* alerts = CommandMgr::get()->GetAlertController();
    alerts->clearAllAlerts();
    const std::wstring path = scratch(L"damaged.vlra");
    answer(L"Design.New");
    answer(L"Design.Box 10 20 30");
    answer(L"Document.SaveAs " + path);
    answer(L"Document.CloseAll");
    std::string content = TestSupport::contentOf(path);
    char& byte = content[content.find("BINFILE") + 2000];
    byte = static_cast<char>(byte ^ 0x55);
    TestSupport::overwrite(path, content);
    answer(L"Document.Open " + path);
    Vs::FileChecks::wait();
    Application::get()->flushDeferredTasks();
    ASSERT_EQ(alerts->alerts().size(), 1u);
    EXPECT_NE(alerts->alerts().front().text.find(path), std::wstring::npos)
        << Vs::Strings::narrow(alerts->alerts().front().text);
    alerts->clearAllAlerts();
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(documents(), 1u);
}

TEST_F(DocumentsTest, AnEmptyPathOpensNothingAndSaysSoWhereNobodyCanBeAsked)
{
    EXPECT_NE(failure(L"VuCommands.OpenDocumentCmd \"\"").find(L"no file name"), std::wstring::npos);
    EXPECT_EQ(documents(), 0u);
}

TEST_F(DocumentsTest, WithLocalWorkSwitchedOffNothingIsOpened)
{
    answer(L"Design.Sample");
    answer(L"Asset.Export " + scratch(L"part.stl"));
    answer(L"Document.CloseAll");
    UIBaseOptionGroup::get()->offlineWorkflowsDisabled(true);
    EXPECT_EQ(failure(L"VuCommands.OpenDocumentCmd " + scratch(L"part.stl")),
              L"Opening of local files is not supported!!");
    UIBaseOptionGroup::get()->offlineWorkflowsDisabled(false);
    EXPECT_EQ(documents(), 0u);
}

TEST_F(DocumentsTest, TheOpenFilterHasAllFilesThenTheNativeKindsThatAreOpenedByThemselvesThenTheForeignOnes)
{
    Vs::TranslatorFileRecognizer recognizer("", false);
    recognizer.recognize();
    EXPECT_EQ(OpenDocumentCmd::getFilterValues(Vs::DocumentMgr::get(), &recognizer),
              L"All supported files ( " + recognizer.fileExtensions() +
                  L";*.vlra;*.vlsim;*.vldoc );;Quillet Design (*.vlra);;Quillet Simulation (*.vlsim);;"
                  L"Quillet Documentation (*.vldoc);;" +
                  recognizer.fileFilter());
}

TEST_F(DocumentsTest, DesignsAloneAreOfferedAndEveryKindMakesADocumentOfItsTypeThatTakesParts)
{
    std::vector<std::wstring> offered;
    for (unsigned i = 0; i < Vs::AssetTypeMgr::get()->assetTypes(); ++i) {
        Vs::AssetType* type = Vs::AssetTypeMgr::get()->assetType(i);
        if (type->isBuiltIn() || type->identifier() == std::string("TorvexAssetType"))
            continue;
        if (!type->isHidden())
            offered.push_back(type->name());
        Vs::Status status;
        Vs::Document* document = Vs::DocumentMgr::get()->create(type, status);
        ASSERT_NE(document, nullptr) << Vs::Strings::narrow(status.toString());
        EXPECT_EQ(document->documentType()->identifier(), type->defaultDocType());
        Vs::ModelBuilder builder(document->activeAsset());
        EXPECT_NE(builder.box(1, 2, 3, {}, status), nullptr) << Vs::Strings::narrow(status.toString());
        EXPECT_TRUE(type->icon());
    }
    EXPECT_EQ(offered, (std::vector<std::wstring>{L"Design"}));
}

TEST_F(DocumentsTest, TheVersionOfADocumentThatWasNeverSavedIsTheProgramsOwn)
{
    answer(L"Design.Sample");
    const std::wstring text = answer(L"Document.SoftwareVersion");
    EXPECT_NE(text.find(L", version number: "), std::wstring::npos);
    EXPECT_NE(text.front(), L',');
}

} // namespace
