#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/IDocMgmtHandler.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "Tests/Support/Files.h"
#include "Tests/UI/Commands/Cloud/WithDrive.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Commands/Cloud/CloudDialog.h"
#include "UI/Commands/Cloud/CloudDocuments.h"

#include <boost/filesystem/operations.hpp>

#include <sys/stat.h>

using Vs::CloudFileState;
using Vu::Commands::CloudDialog;

namespace {

namespace fs = boost::filesystem;
using TestSupport::contentOf;

class CloudSaveTest : public CommandsTests::WithDrive
{
protected:
    static CloudFileState state(const std::string& id)
    {
        return Vs::CloudCacheManager::getInstance()->state(cached(id));
    }
    /// The drive's file by its number, which a new file gets anew.
    unsigned long long writesOf(const std::string& id) const
    {
        struct stat status = {};
        stat((m_server.folder().string() + id).c_str(), &status);
        return static_cast<unsigned long long>(status.st_mtim.tv_sec) * 1'000'000'000U +
               static_cast<unsigned long long>(status.st_mtim.tv_nsec);
    }
    void chooseFolder(const std::string& id)
    {
        CloudDialog::responder([id](const CloudDialog::Request&, Vs::SkyvaultNodeData& node, std::wstring&) {
            node = folder(id);
            return true;
        });
    }
    void chooseName(const std::wstring& chosen)
    {
        CloudDialog::responder(
            [chosen](const CloudDialog::Request&, Vs::SkyvaultNodeData& node, std::wstring& name) {
                node = folder("/");
                name = chosen;
                return true;
            });
    }
};

TEST_F(CloudSaveTest, WhatIsSavedIsOnTheDriveAsItLiesInTheCacheAndAnUnchangedFileIsNotSentAgain)
{
    saveNew("/parts/new/wheel.vlra");
    ASSERT_TRUE(fs::exists(cached("/parts/new/wheel.vlra")));
    const std::string first = contentOf(cached("/parts/new/wheel.vlra"));
    EXPECT_TRUE(onDrive("/parts/new/wheel.vlra") == first);
    EXPECT_TRUE(first.starts_with("PK"));
    EXPECT_EQ(activeDocument()->cloudId(), "/parts/new/wheel.vlra");
    EXPECT_EQ(state("/parts/new/wheel.vlra"), CloudFileState::Clean);
    EXPECT_TRUE(Vu::RecentDocumentMgr::get()->newestFirst(1).front()->isCloud());
    EXPECT_TRUE(applicable(L"CloudSaveQATCommand"));
    EXPECT_FALSE(applicable(L"SaveDocumentCommand"));

    const auto written = writesOf("/parts/new/wheel.vlra");
    Vs::SkyvaultNodeData result;
    EXPECT_EQ(Vs::SkyvaultUtilities::SaveVersionToCloud(Vs::MeshportAuth::globalInstance(),
                                                        "/parts/new/wheel.vlra",
                                                        cached("/parts/new/wheel.vlra"), "", {}, result),
              Vs::CloudErrorState::Success);
    EXPECT_EQ(writesOf("/parts/new/wheel.vlra"), written);

    change();
    // Its own path, except for the kind of slash.
    std::wstring own = cached("/parts/new/wheel.vlra").wstring();
    own[own.rfind(L'/')] = L'\\';
    answer(line(L"CloudSaveCmd", own));
    EXPECT_EQ(activeDocument()->path(), cached("/parts/new/wheel.vlra").wstring());
    EXPECT_TRUE(onDrive("/parts/new/wheel.vlra") != first);
    EXPECT_TRUE(onDrive("/parts/new/wheel.vlra") == contentOf(cached("/parts/new/wheel.vlra")));
    EXPECT_FALSE(activeDocument()->isDirty(false));
}

TEST_F(CloudSaveTest, ANewerVersionOfAnotherIsNotOverwrittenAndACopyCanBeSavedBesideIt)
{
    saveNew("/wheel.vlra");
    writeByAnother("/wheel.vlra", "the work of another");
    change();
    answerBoxes(1);
    answer(L"VuCommands.CloudSaveQATCmd");
    EXPECT_EQ(onDrive("/wheel.vlra"), "the work of another");
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_NE(boxes()[0].find(L"wheel.vlra was saved to the drive on"), std::wstring::npos)
        << Vs::Strings::narrow(boxes()[0]);
    EXPECT_NE(boxes()[0].find(L"Select Save Local to save wheel.vlra locally?"), std::wstring::npos);
    EXPECT_EQ(conflicts().size(), 1u);
    const Vs::Notification* offer = Vs::NotificationCenter::get()->notifications().front();
    EXPECT_NE(offer->text().find(L"Skyvault \u203a wheel.vlra"), std::wstring::npos)
        << "where it is on the drive: " << Vs::Strings::narrow(offer->text());
    EXPECT_EQ(state("/wheel.vlra"), CloudFileState::Changed);
    EXPECT_EQ(activeDocument()->cloudId(), "/wheel.vlra");

    const std::string mine = contentOf(cached("/wheel.vlra"));
    Vu::Commands::CloudDocuments::saveConflictCopy(cached("/wheel.vlra"));
    const std::string copy = activeDocument()->cloudId();
    EXPECT_TRUE(copy.starts_with("/wheel (")) << copy;
    EXPECT_EQ(activeDocument()->path(), cached(copy).wstring());
    EXPECT_TRUE(contentOf(m_server.folder() / copy) == mine);
    EXPECT_TRUE(contentOf(cached(copy)) == mine);
    EXPECT_EQ(state(copy), CloudFileState::Clean);
    EXPECT_EQ(onDrive("/wheel.vlra"), "the work of another");
    EXPECT_FALSE(fs::exists(cached("/wheel.vlra")));
}

TEST_F(CloudSaveTest, ALocalDocumentBecomesANewVersionWithoutAQuestionAndTheOthersFileIsKept)
{
    writeByAnother("/wheel.vlra", "the work of another");
    answer(L"Design.New");
    change();
    answer(L"Document.SaveAs " + scratch(L"wheel.vlra"));
    chooseFolder("/");
    answer(L"VuCommands.CloudSaveCmd");
    EXPECT_TRUE(boxes().empty());
    EXPECT_TRUE(onDrive("/wheel.vlra") == contentOf(cached("/wheel.vlra")));
    const std::vector<std::string> names = m_server.names();
    ASSERT_EQ(names.size(), 2u);
    const std::string kept = names[0] == "wheel.vlra" ? names[1] : names[0];
    EXPECT_EQ(contentOf(m_server.folder() / kept), "the work of another");
    EXPECT_EQ(activeDocument()->path(), cached("/wheel.vlra").wstring());
}

TEST_F(CloudSaveTest, OnlyANewDocumentAndSaveAsAskBeforeTheyReplaceAFile)
{
    writeByAnother("/wheel.vlra", "the work of another");
    chooseName(L"wheel");
    answer(L"Design.New");
    answerBoxes(0); // No
    answer(L"VuCommands.CloudSaveCmd");
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_EQ(boxes()[0], L"wheel.vlra already exists on the drive.\nDo you want to replace it?");
    EXPECT_FALSE(activeDocument()->isOnDisk());
    chooseName(L"other");
    answer(L"VuCommands.CloudSaveCmd");
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(activeDocument()->cloudId(), "/other.vlra");
    // Its own name asks, even if nobody has looked at the drive.
    answer(line(L"CloudSaveAsCmd", cached("/other.vlra")));
    EXPECT_EQ(boxes().size(), 2u);
    answer(line(L"CloudSaveAsCmd", cached("/third.vlra")));
    EXPECT_EQ(boxes().size(), 2u);
    EXPECT_EQ(activeDocument()->cloudId(), "/third.vlra");
    EXPECT_EQ(onDrive("/wheel.vlra"), "the work of another");
}

TEST_F(CloudSaveTest, WhatCantBeSentWaitsAndArrivesLater)
{
    saveNew("/old.vlra");
    change();
    m_server.stop();
    answerBoxes(1);
    answer(L"VuCommands.CloudSaveQATCmd");
    EXPECT_TRUE(boxes().empty()) << Vs::Strings::narrow(boxes()[0]);
    EXPECT_EQ(state("/old.vlra"), CloudFileState::Waiting);
    saveNew("/new.vlra");
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(activeDocument()->path(), cached("/new.vlra").wstring());
    EXPECT_EQ(activeDocument()->cloudId(), "") << "nothing is on the drive yet";
    // The save key still treats it as a file of the drive.
    EXPECT_TRUE(applicable(L"CloudSaveQATCommand"));
    EXPECT_FALSE(applicable(L"SaveDocumentCommand"));
    change();
    answer(L"VuCommands.CloudSaveQATCmd");
    EXPECT_TRUE(boxes().empty());
    EXPECT_FALSE(activeDocument()->isDirty(false));
    using Files = std::vector<fs::path>;
    EXPECT_EQ(Vs::CloudCacheManager::getInstance()->waiting(),
              (Files{cached("/old.vlra"), cached("/new.vlra")}));
    // Pending changes can be opened, and are never overwritten by a download.
    answer(line(L"CloudOpenDocumentCmd", cached("/old.vlra")));
    EXPECT_EQ(state("/old.vlra"), CloudFileState::Waiting);

    answer(line(L"CloudOpenDocumentCmd", cached("/new.vlra")));
    m_server.start();
    Vs::CloudCacheManager::getInstance()->uploadWaiting();
    EXPECT_TRUE(waitUntil([&] { return state("/new.vlra") == CloudFileState::Clean; }));
    EXPECT_EQ(state("/old.vlra"), CloudFileState::Clean);
    EXPECT_TRUE(onDrive("/old.vlra") == contentOf(cached("/old.vlra")));
    EXPECT_TRUE(onDrive("/new.vlra") == contentOf(cached("/new.vlra")));
    EXPECT_EQ(activeDocument()->cloudId(), "/new.vlra");
    EXPECT_EQ(Vs::CloudCacheManager::getInstance()->waiting(), Files());
}

TEST_F(CloudSaveTest, ARefusedPathAndARefusedUploadLeaveTheDocumentAsItWas)
{
    answer(L"Design.New");
    EXPECT_EQ(
        failure(L"VuCommands.CloudSaveCmd " + scratch(L"elsewhere.vlra")).find(L"The path does not lie"), 0u);
    EXPECT_FALSE(activeDocument()->isOnDisk());
    answerBoxes(0);
    answer(line(L"SaveDocumentCmd", cached("/direct.vlra")));
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_EQ(boxes()[0].find(L"The document direct.vlra has been saved to the cloud."), 0u);
    EXPECT_FALSE(activeDocument()->isOnDisk() || fs::exists(cached("/direct.vlra")));
    saveNew("/wheel.vlra");
    m_server.request("LOCK", "wheel.vlra",
                     "<?xml version=\"1.0\"?><lockinfo xmlns=\"DAV:\"><lockscope><exclusive/></lockscope>"
                     "<locktype><write/></locktype></lockinfo>",
                     {"Content-Type: text/xml"});
    const std::string before = onDrive("/wheel.vlra");
    change();
    // The proposed local copy detaches the document from the drive.
    const std::wstring local = scratch(L"local.vlra");
    Vu::FileDialog::responder([local](const Vu::FileDialog::Request&, std::vector<std::wstring>& names) {
        names = {local};
        return true;
    });
    answerBoxes(0);
    answer(L"VuCommands.CloudSaveQATCmd");
    ASSERT_EQ(boxes().size(), 2u);
    EXPECT_NE(boxes()[1].find(L"locked"), std::wstring::npos) << Vs::Strings::narrow(boxes()[1]);
    EXPECT_TRUE(onDrive("/wheel.vlra") == before);
    EXPECT_EQ(activeDocument()->path(), local);
    EXPECT_FALSE(activeDocument()->isCloud());
    EXPECT_TRUE(contentOf(cached("/wheel.vlra")) != before) << "the file in the cache stays";
}

TEST_F(CloudSaveTest, AReplayAsksAndTellsNothing)
{
    saveNew("/wheel.vlra");
    writeByAnother("/wheel.vlra", "the work of another");
    writeByAnother("/other.vlra", "older work");
    change();
    answerBoxes(0);
    const std::wstring transcript = scratch(L"replayed.txt");
    TestSupport::overwrite(transcript, "VuCommands.CloudSaveQATCmd\n");
    answer(L"Transcripting.Replay " + transcript);
    EXPECT_EQ(onDrive("/wheel.vlra"), "the work of another");
    EXPECT_EQ(activeDocument()->cloudId(), "/wheel.vlra");
    EXPECT_TRUE(conflicts().empty());
    TestSupport::overwrite(transcript,
                           "VuCommands.CloudSaveAsCmd \"" + cached("/other.vlra").string() + "\"\n");
    answer(L"Transcripting.Replay " + transcript);
    EXPECT_EQ(activeDocument()->cloudId(), "/other.vlra");
    EXPECT_TRUE(onDrive("/other.vlra") == contentOf(cached("/other.vlra")));
    EXPECT_TRUE(boxes().empty());
}

TEST_F(CloudSaveTest, ADocumentIsOfTheDriveByItsPathAndSavedThereWhenItCloses)
{
    saveNew("/wheel.vlra");
    answer(L"Design.New");
    activeDocument()->path(cached("/wheel.vlra").wstring());
    EXPECT_EQ(activeDocument()->cloudId(), "/wheel.vlra") << "as a recovered one gets it";
    activeDocument()->path(scratch(L"local.vlra"));
    EXPECT_FALSE(activeDocument()->isCloud());
    answer(L"Document.CloseAll");

    answer(line(L"CloudOpenDocumentCmd", cached("/wheel.vlra")));
    change();
    answerBoxes(0); // Save
    EXPECT_EQ(Vs::IDocMgmtHandler::notifyClosingDirtyDocuments({activeDocument()}), Vs::eDocMgmtGoOn);
    EXPECT_EQ(boxes(), std::vector<std::wstring>{L"Save changes to wheel?"});
    EXPECT_FALSE(activeDocument()->isDirty(false));
    EXPECT_TRUE(onDrive("/wheel.vlra") == contentOf(cached("/wheel.vlra")));
}

TEST_F(CloudSaveTest, ASharedPictureGoesBesideItsDocumentUnderANameOfItsOwn)
{
    saveNew("/parts/wheel.vlra");
    answer(L"Commands.Start ShareSheetsCommand CmdId=ShareToDriveCommand");
    EXPECT_TRUE(onDrive("/parts/wheel.png").starts_with("\x89PNG"));
    const std::string first = onDrive("/parts/wheel.png");
    writeByAnother("/parts/wheel%202.png", "the picture of another");
    answer(L"Commands.Start ShareSheetsCommand CmdId=ShareToDriveCommand");
    EXPECT_TRUE(onDrive("/parts/wheel.png") == first);
    EXPECT_EQ(onDrive("/parts/wheel%202.png"), "the picture of another");
    EXPECT_TRUE(onDrive("/parts/wheel%203.png").starts_with("\x89PNG"));

    // A document that isn't on the drive has no folder there.
    answer(L"Design.New");
    activeDocument()->displayName(L"loose");
    answer(L"Commands.Start ShareSheetsCommand CmdId=ShareToDriveCommand");
    EXPECT_TRUE(onDrive("/loose.png").starts_with("\x89PNG"));

    m_server.stop();
    answer(L"Commands.Start ShareSheetsCommand CmdId=ShareToDriveCommand");
    EXPECT_EQ(state("/loose 2.png"), CloudFileState::Waiting);
}

} // namespace
