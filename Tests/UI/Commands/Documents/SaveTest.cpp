#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/UsageEvents.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Session/SessionMgr.h"

#include <boost/filesystem/operations.hpp>

#include <deque>

using namespace Vu;

namespace {

namespace fs = boost::filesystem;
using TestSupport::contentOf;
using TestSupport::overwrite;

class SaveTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        emptyScratch(L"save");
        emptyScratch(L"save/last");
        UIBaseOptionGroup::get()->lastDirectory(scratch(L"save/last"));
        RecentDocumentMgr::get()->clearRecent();
    }

    static std::wstring file(const std::wstring& name) { return scratch(L"save/" + name); }
    static bool isPackage(const std::wstring& path) { return contentOf(path).starts_with("PK"); }
    static size_t filesIn(const std::wstring& folder)
    {
        return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }
    static std::vector<std::wstring> recent()
    {
        std::vector<std::wstring> paths;
        for (const RecentDocument* document : RecentDocumentMgr::get()->newestFirst(100))
            paths.push_back(document->path());
        return paths;
    }
    static bool available(const wchar_t* id)
    {
        CommandContext context = CommandContext::activeContext();
        return definition(id)->isAvailable(&context);
    }
    /// Answers each file dialog with the next name; with none left, as cancelled.
    void answerDialogs(std::deque<std::wstring> names)
    {
        FileDialog::responder(
            [this, names](const FileDialog::Request& request, std::vector<std::wstring>& answer) mutable {
                m_requests.push_back(request);
                if (names.empty())
                    return false;
                answer = {names.front()};
                names.pop_front();
                return true;
            });
    }

    std::vector<FileDialog::Request> m_requests;
};

class SavedEvents : private Vs::DocumentEventSite
{
public:
    SavedEvents() { Vs::DocumentEventSource::get()->subscribe(this); }
    ~SavedEvents() override { Vs::DocumentEventSource::get()->unsubscribe(this); }
    std::vector<Vs::Timing> timings;

private:
    void documentSaved(Vs::DocumentEvent* event) override { timings.push_back(event->timing()); }
};

TEST_F(SaveTest, ANewDocumentTakesItsNameFromTheLineAndIsThenSavedWithoutOne)
{
    EXPECT_EQ(failure(L"Document.Save"), L"There is no active document to save");
    answer(L"Design.New");
    EXPECT_EQ(failure(L"Document.Save"), L"You need to specify a filename as a parameter");
    answer(L"Asset.MarkDirty");
    answer(L"Document.Save " + file(L"bracket"));
    EXPECT_TRUE(isPackage(file(L"bracket.vlra")));
    EXPECT_EQ(activeDocument()->path(), file(L"bracket.vlra"));
    EXPECT_EQ(activeDocument()->displayName(), L"bracket");
    EXPECT_FALSE(activeDocument()->isDirty(false));
    EXPECT_EQ(recent(), std::vector<std::wstring>{file(L"bracket.vlra")});
    answer(L"Design.Box 10 20 30");
    EXPECT_TRUE(activeDocument()->isDirty(false));
    answer(L"Document.Save");
    EXPECT_FALSE(activeDocument()->isDirty(false));
}

TEST_F(SaveTest, WhatNamesNoFileIsRefusedAndWritesNone)
{
    answer(L"Design.New");
    const size_t files = filesIn(scratch(L"save")) + filesIn(scratch(L"save/last"));
    for (const std::wstring& name :
         {std::wstring(), std::wstring(L"."), std::wstring(L".."), file(L""), file(L".")})
        for (const wchar_t* line : {L"Document.SaveAs", L"Document.Save"})
            EXPECT_EQ(failure(line + (L" \"" + name + L"\"")),
                      L"\"" + name + L"\" is not the name of a file");
    EXPECT_NE(failure(L"VuCommands.SaveDocumentAsCmd " + file(L"")), L"");
    EXPECT_EQ(filesIn(scratch(L"save")) + filesIn(scratch(L"save/last")), files);
    EXPECT_FALSE(activeDocument()->isOnDisk());
}

TEST_F(SaveTest, ABareNameIsSavedInTheLastFolderWhichFollowsTheNamesThatHaveOne)
{
    answer(L"Design.New");
    answer(L"Document.Save part");
    EXPECT_EQ(activeDocument()->path(), file(L"last/part.vlra"));
    answer(L"Document.SaveAs " + file(L"other.vlra"));
    EXPECT_EQ(UIBaseOptionGroup::get()->lastDirectory(), scratch(L"save"));
    answer(L"Document.SaveAs third.");
    EXPECT_EQ(activeDocument()->path(), file(L"third.vlra"));
}

TEST_F(SaveTest, ASaveOverAnExistingFileReplacesItAndLeavesNothingBeside)
{
    for (const fs::perms rights : {fs::owner_read | fs::owner_write | fs::group_read, fs::owner_read}) {
        overwrite(file(L"last/old.vlra"), "old");
        fs::permissions(file(L"last/old.vlra"), rights);
        answer(L"Design.New");
        answer(L"Document.Save old.vlra");
        EXPECT_TRUE(isPackage(file(L"last/old.vlra")));
        EXPECT_EQ(filesIn(file(L"last")), 1u);
        answer(L"Document.Close");
        fs::remove(file(L"last/old.vlra"));
    }
}

TEST_F(SaveTest, AFailedSaveIsToldLeavesTheOldFileAndCanBeTriedUnderAnotherName)
{
    overwrite(file(L"last/old.vlra"), "old");
    fs::permissions(file(L"last"), fs::owner_read | fs::owner_exe);
    answer(L"Design.New");
    answer(L"Asset.MarkDirty");
    const std::wstring gone = file(L"nowhere/part.vlra");
    EXPECT_NE(failure(L"Document.Save " + gone).find(L"part.vlra"), std::wstring::npos);
    EXPECT_TRUE(boxes().empty());
    // The definition itself ends without an error, so a message gives the reason.
    answerBoxes(0);
    answer(L"VuCommands.SaveDocumentCmd " + gone);
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_NE(boxes().front().find(L"part.vlra"), std::wstring::npos);
    EXPECT_TRUE(activeDocument()->isDirty(false));
    EXPECT_FALSE(activeDocument()->isOnDisk());
    EXPECT_TRUE(recent().empty());
    fs::permissions(file(L"last"), fs::owner_all);
    EXPECT_EQ(contentOf(file(L"last/old.vlra")), "old");
    answer(L"Document.Save " + file(L"part.vlra"));
    EXPECT_FALSE(activeDocument()->isDirty(false));
}

TEST_F(SaveTest, AFileThatWasSetAsideComesBackWhenTheSaveFails)
{
    answer(L"Design.New");
    answer(L"Document.Rename Earlier");
    Vs::Asset* earlier = activeDocument()->activeAsset();
    answer(L"Design.New");
    answer(L"Document.Save " + file(L"mine.vlra"));
    fs::permissions(file(L"mine.vlra"), fs::owner_read);
    answer(L"Design.New");
    // The name belongs to an open document, so the save is refused.
    const std::string before = contentOf(file(L"mine.vlra"));
    failure(L"Document.Save " + file(L"mine.vlra"));
    EXPECT_EQ(contentOf(file(L"mine.vlra")), before);
    answer(L"Asset.Activate " + earlier->name() + L" Earlier");
    ASSERT_EQ(activeDocument(), earlier->document());
    failure(L"Document.Save " + file(L"mine.vlra"));
    EXPECT_EQ(activeDocument()->displayName(), L"Earlier") << "as it was";
    EXPECT_EQ(contentOf(file(L"mine.vlra")), before);
    EXPECT_EQ(filesIn(scratch(L"save")), 2u);
}

TEST_F(SaveTest, ADocumentWithAFileIsSavedThereWhateverTheLineNames)
{
    answer(L"Design.New");
    answer(L"Document.Save " + file(L"own.vlra"));
    fs::permissions(file(L"own.vlra"), fs::owner_read | fs::owner_write | fs::group_read);
    overwrite(file(L"other.vlra"), "other");
    for (const wchar_t* name : {L"own.vlra", L"other.vlra", L"fresh.vlra"}) {
        answer(L"Asset.MarkDirty");
        answer(L"Document.Save " + file(name));
        EXPECT_FALSE(activeDocument()->isDirty(false));
        EXPECT_EQ(activeDocument()->path(), file(L"own.vlra"));
    }
    // Since the file was not moved out of the way, the new content has its permissions.
    EXPECT_EQ(fs::status(file(L"own.vlra")).permissions(), fs::owner_read | fs::owner_write | fs::group_read);
    EXPECT_EQ(contentOf(file(L"other.vlra")), "other");
    EXPECT_FALSE(fs::exists(file(L"fresh.vlra")));
}

TEST_F(SaveTest, SavingByButtonAsksForTheFirstNameOnceAndCancellingSavesNothing)
{
    answer(L"Design.New");
    answer(L"Asset.MarkDirty");
    answerDialogs({});
    answer(L"Commands.Start SaveDocumentCommand");
    EXPECT_EQ(m_requests.size(), 1u);
    EXPECT_FALSE(activeDocument()->isOnDisk());
    answerDialogs({file(L"named.vlra")});
    answer(L"Commands.Start SaveDocumentCommand");
    EXPECT_EQ(m_requests.size(), 2u);
    EXPECT_EQ(m_requests.back().filter, L"Quillet Design (*.vlra)");
    answer(L"Commands.Start SaveDocumentCommand");
    EXPECT_EQ(m_requests.size(), 2u);
    EXPECT_TRUE(isPackage(file(L"named.vlra")));
}

TEST_F(SaveTest, SavingWithoutANameSaysSoWhereNobodyCanBeAsked)
{
    answer(L"Design.New");
    answerBoxes(0);
    answer(L"VuCommands.SaveDocumentCmd");
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_NE(boxes().front().find(L"has no file name"), std::wstring::npos);
    EXPECT_NE(failure(L"VuCommands.SaveDocumentAsCmd").find(L"no file name"), std::wstring::npos);
}

TEST_F(SaveTest, AnyOtherCountOfParametersNamesNothing)
{
    answer(L"Design.New");
    answerBoxes(0);
    answer(L"VuCommands.SaveDocumentCmd a b c");
    EXPECT_FALSE(activeDocument()->isOnDisk());
    const Vs::Document* first = activeDocument();
    answer(L"Design.New");
    answer(L"VuCommands.SaveDocumentCmd " + first->displayName() + L" " + file(L"first.vlra"));
    EXPECT_EQ(first->path(), file(L"first.vlra"));
    EXPECT_FALSE(activeDocument()->isOnDisk());
}

TEST_F(SaveTest, SaveAsWritesEveryAssetAndTellsOfIt)
{
    answer(L"Design.New");
    answer(L"Asset.Create SimulationAssetType");
    answer(L"Document.Save " + file(L"first.vlra"));
    EXPECT_EQ(failure(L"Document.SaveAs"), L"You need to specify a filename as a parameter");
    const SavedEvents events;
    answer(L"Document.SaveAs " + file(L"second.vlra"));
    EXPECT_EQ(events.timings, std::vector<Vs::Timing>{Vs::Timing::Notification});
    EXPECT_EQ(recent(), (std::vector<std::wstring>{file(L"second.vlra"), file(L"first.vlra")}));
    EXPECT_FALSE(activeDocument()->isDirty(false));
    answer(L"Document.CloseAll");
    answer(L"Document.Open " + file(L"second.vlra"));
    EXPECT_EQ(activeDocument()->assets(), 2u);
    answer(L"Document.CloseAll");
    EXPECT_EQ(failure(L"Document.SaveAs x"), L"There is no active document to save");
}

TEST_F(SaveTest, AFailedSaveAsLeavesTheDocumentUnderItsOldName)
{
    answer(L"Design.New");
    answer(L"Document.Save " + file(L"first.vlra"));
    const SavedEvents events;
    EXPECT_NE(failure(L"Document.SaveAs " + file(L"nowhere/second.vlra")).find(L"second.vlra"),
              std::wstring::npos);
    EXPECT_TRUE(events.timings.empty());
    EXPECT_EQ(recent(), std::vector<std::wstring>{file(L"first.vlra")});
    EXPECT_EQ(activeDocument()->path(), file(L"first.vlra"));
}

TEST_F(SaveTest, AFailedSaveAsByButtonIsOneAlertWithNameAndCause)
{
    answer(L"Design.New");
    answer(L"Asset.MarkDirty");
    AlertController* alerts = CommandMgr::getActiveCommandManager()->GetAlertController();
    alerts->clearAllAlerts();
    answerBoxes(0);
    answerDialogs({file(L"nowhere/part.vlra")});
    CommandContext context = CommandContext::activeContext();
    definition(L"SaveDocumentAsCommand")->executeLater(context);
    run(L"");
    ASSERT_EQ(alerts->alerts().size(), 1u);
    const Alert& alert = alerts->alerts().front();
    EXPECT_EQ(alert.severity, EAlertSeverity::Error);
    EXPECT_EQ(alert.text, L"\"" + file(L"nowhere/part.vlra") + L"\" can't be saved: the folder " +
                              file(L"nowhere") + L" doesn't exist.");
    EXPECT_TRUE(boxes().empty());
    EXPECT_TRUE(activeDocument()->isDirty(false));
    EXPECT_FALSE(activeDocument()->isOnDisk());
    alerts->clearAllAlerts();
}

/// The tests' folder may contain a dot, which would make every name count as already handled by the dialog.
class NameLoopTest : public SaveTest
{
protected:
    void SetUp() override
    {
        SaveTest::SetUp();
        m_before = fs::current_path();
        fs::current_path(file(L"last"));
        answer(L"Design.New");
    }
    void TearDown() override
    {
        fs::current_path(m_before);
        SaveTest::TearDown();
    }

    fs::path m_before;
};

TEST_F(NameLoopTest, ANameWithADotAnywhereIsTakenAsTheDialogGaveIt)
{
    fs::create_directory("fold.er");
    answerBoxes(1);
    answerDialogs({L"fold.er/bare"});
    answer(L"VuCommands.SaveDocumentAsCmd");
    EXPECT_TRUE(isPackage(file(L"last/fold.er/bare")));
    EXPECT_TRUE(boxes().empty());
}

TEST_F(NameLoopTest, NoAsksForAnotherNameAndYesReplaces)
{
    overwrite(file(L"last/taken.vlra"), "old");
    answerBoxes(1);
    answerDialogs({L"taken", L"free"});
    answer(L"VuCommands.SaveDocumentAsCmd");
    EXPECT_EQ(boxes(), std::vector<std::wstring>{L"taken.vlra already exists.\nDo you want to replace it?"});
    EXPECT_TRUE(isPackage(file(L"last/free.vlra")));
    EXPECT_EQ(contentOf(file(L"last/taken.vlra")), "old");
    answerBoxes(0);
    answerDialogs({L"taken"});
    answer(L"VuCommands.SaveDocumentAsCmd");
    EXPECT_TRUE(isPackage(file(L"last/taken.vlra")));
}

TEST_F(NameLoopTest, TheFifthNoOverwritesTheFileOfTheFifthNameAndACancelBeforeWritesNothing)
{
    for (const wchar_t* name : {L"a", L"b", L"c", L"d", L"e"})
        overwrite(file(L"last/" + std::wstring(name) + L".vlra"), "old");
    answerBoxes(1);
    answerDialogs({L"a", L"b", L"c", L"d"});
    answer(L"VuCommands.SaveDocumentAsCmd");
    EXPECT_FALSE(activeDocument()->isOnDisk());
    answerDialogs({L"a", L"b", L"c", L"d", L"e"});
    answer(L"VuCommands.SaveDocumentAsCmd");
    EXPECT_TRUE(isPackage(file(L"last/e.vlra")));
    EXPECT_EQ(contentOf(file(L"last/d.vlra")), "old");
}

TEST_F(NameLoopTest, AGivenNameThatExistsIsNotOverwrittenWhereNobodyCanAgree)
{
    overwrite(file(L"last/taken.vlra"), "old");
    failure(L"VuCommands.SaveDocumentAsCmd taken");
    EXPECT_EQ(contentOf(file(L"last/taken.vlra")), "old");
}

TEST_F(SaveTest, WhoseFileWasChangedOutsideIsAskedWhatToDoWithIt)
{
    answer(L"Design.New");
    answer(L"Document.SaveAs " + file(L"shared"));
    const std::wstring path = file(L"shared.vlra");
    const auto changeOutside = [&] {
        overwrite(path, "theirs");
        answer(L"Design.Box 10 20 30");
    };
    // With nobody there it fails, and says why.
    changeOutside();
    EXPECT_NE(failure(L"Document.Save").find(L"another program has changed the file"), std::wstring::npos);
    // Cancel: nothing is written, and the user isn't told what they already know.
    answerBoxes(2);
    answer(L"Commands.Start SaveDocumentCommand");
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_NE(boxes()[0].find(path), std::wstring::npos);
    EXPECT_EQ(contentOf(path), "theirs");
    EXPECT_TRUE(activeDocument()->isDirty(false));
    answerBoxes(2);
    EXPECT_NE(failure(L"Document.Save"), L"");
    // Save As: saved there, and the other program's file stays.
    answerBoxes(1);
    answerDialogs({file(L"mine.vlra")});
    answer(L"Commands.Start SaveDocumentCommand");
    EXPECT_EQ(contentOf(path), "theirs");
    EXPECT_TRUE(isPackage(file(L"mine.vlra")));
    EXPECT_EQ(activeDocument()->path(), file(L"mine.vlra"));
    // Overwrite, also by Save As under its own name.
    overwrite(file(L"mine.vlra"), "theirs");
    answerBoxes(0);
    const size_t asked = boxes().size();
    answer(L"Document.SaveAs " + file(L"mine"));
    EXPECT_EQ(boxes().size(), asked + 1);
    EXPECT_TRUE(isPackage(file(L"mine.vlra")));
}

TEST_F(SaveTest, TheClosePromptSavesAndThenCloses)
{
    answer(L"Design.New");
    answer(L"Document.Save " + file(L"prompt.vlra"));
    answer(L"Design.Box 1 2 3");
    answerBoxes(0);
    answer(L"VuCommands.CloseDocumentCmd");
    EXPECT_EQ(boxes(), std::vector<std::wstring>{L"Save changes to prompt?"});
    EXPECT_EQ(documents(), 0u);
    answer(L"Document.Open " + file(L"prompt.vlra"));
    EXPECT_FALSE(activeDocument()->isDirty(false));
    EXPECT_NE(activeDocument()->activeAsset()->components(), nullptr);
}

TEST_F(SaveTest, ACloudDocumentIsSavedAsALocalOneOnly)
{
    answer(L"Design.New");
    EXPECT_TRUE(available(L"SaveDocumentCommand"));
    EXPECT_TRUE(available(L"SaveDocumentAsCommand"));
    activeDocument()->setCloudId("cloud-1");
    EXPECT_FALSE(available(L"SaveDocumentCommand"));
    EXPECT_TRUE(available(L"SaveDocumentAsCommand"));
    UIBaseOptionGroup::get()->offlineWorkflowsDisabled(true);
    EXPECT_FALSE(available(L"SaveDocumentAsCommand"));
    EXPECT_EQ(failure(L"VuCommands.SaveDocumentAsCmd " + file(L"x.vlra")),
              L"Saving to local disk is not supported!!");
    UIBaseOptionGroup::get()->offlineWorkflowsDisabled(false);
}

TEST_F(SaveTest, APathOfTheCloudDriveIsRefusedWithTheCommandThatSavesThere)
{
    const fs::path cloud = Vs::PathInfo::cloudCacheDirectory();
    fs::create_directories(cloud);
    answer(L"Design.New");
    answer(L"Document.Rename Mine");
    answer(L"Asset.MarkDirty");
    answerBoxes(0);
    answer(L"VuCommands.SaveDocumentCmd " + Vs::Strings::quote((cloud / "on drive.vlra").wstring()));
    EXPECT_EQ(boxes(),
              std::vector<std::wstring>{L"The document on drive.vlra has been saved to the cloud.  You must "
                                        L"use the Save to Skyvault command for this operation"});
    EXPECT_FALSE(fs::exists(cloud / "on drive.vlra"));
    EXPECT_TRUE(activeDocument()->isDirty(false));
    EXPECT_FALSE(activeDocument()->isOnDisk());
    EXPECT_EQ(activeDocument()->displayName(), L"Mine");
    answer(L"Document.Save " + file(L"mine.vlra"));
    EXPECT_FALSE(activeDocument()->isDirty(false));
}

TEST_F(SaveTest, ARecordedSaveCarriesItsNameAndAnAgreedUserIsCounted)
{
    std::vector<std::string> keys;
    const boost::signals2::scoped_connection connection =
        vuGA::gaCommandEvent.connect([&](const std::string& key) { keys.push_back(key); });
    answer(L"Design.New");
    Vs::Status status;
    ASSERT_TRUE(Vs::TranscriptMgr::get()->startRecording(file(L"saved.txt"), Vs::kTextTranscript, status));
    answer(L"VuCommands.SaveDocumentCmd " + file(L"recorded.vlra"));
    EXPECT_TRUE(keys.empty());
    UIBaseOptionGroup::get()->analytics(true);
    answer(L"Commands.Start SaveDocumentCommand");
    answer(L"VuCommands.SaveDocumentAsCmd " + file(L"again.vlra"));
    UIBaseOptionGroup::get()->analytics(false);
    Vs::TranscriptMgr::get()->endRecording();
    EXPECT_EQ(keys, (std::vector<std::string>{"Quillet.SaveDocumentCmd", "Quillet.SaveDocumentAsCmd"}));
    // Files beside the transcript can be moved together with it.
    const std::string save = "VuCommands.SaveDocumentCmd recorded.vlra\n";
    const std::string recorded = contentOf(file(L"saved.txt"));
    EXPECT_TRUE(recorded.ends_with("it was.\n" + save + save + "VuCommands.SaveDocumentAsCmd again.vlra\n"))
        << recorded;
}

} // namespace
