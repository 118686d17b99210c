#include "Server/Base/PathInfo.h"
#include "Tests/Support/Process.h"
#include "Tests/UI/Commands/Documents/AutoSaveFixture.h"

#include <csignal>
#include <filesystem>

using namespace Vs;

namespace {

constexpr const wchar_t* kClient = L"AutoSaveNotification";
constexpr const wchar_t* kNotify = L"AutoSave.NotifyAutoSavedFiles";
constexpr const wchar_t* kRecovered = L"Do recovery process of auto-saved files successfully";

class AutoSaveTest : public CommandsTests::WithAutoSave
{
protected:
    static std::vector<Notification*> own()
    {
        std::vector<Notification*> found;
        NotificationCenter::get()->notificationsByClientID(kClient, found);
        return found;
    }
};

} // namespace

TEST_F(AutoSaveTest, TheNotificationStaysUntilTheLastFileIsGone)
{
    EXPECT_EQ(answer(kNotify), L"No recover files.");
    EXPECT_EQ(answer(L"AutoSave.Recovery"), L"");
    closeUnsaved(L"First");
    closeUnsaved(L"Second");
    ASSERT_EQ(files().size(), 2u);
    EXPECT_EQ(answer(kNotify), L"Successfully Notify.");
    ASSERT_EQ(own().size(), 1u);
    Notification* const notification = own().front();
    EXPECT_EQ(notification->title(), L"File Recovery");
    EXPECT_NE(notification->text().find(L", "), std::wstring::npos);
    EXPECT_EQ(notification->clickText(), L"Click here to view and recover files.");
    // A click shows the files, and doesn't end it.
    NotificationCenter::get()->activate(notification);
    EXPECT_TRUE(NotificationCenter::get()->exists(notification));

    AutoSaveController* controller = AutoSaveController::get();
    EXPECT_TRUE(controller->deleteARecoveryFile(files().front().autoSavedFile(),
                                                AutoSaveController::Reason::Unwanted));
    EXPECT_TRUE(NotificationCenter::get()->exists(notification));
    const std::wstring left = files().front().fileName();
    EXPECT_EQ(answer(L"AutoSave.Recovery"), kRecovered);
    EXPECT_FALSE(NotificationCenter::get()->exists(notification));
    ASSERT_EQ(documents(), 1u);
    EXPECT_TRUE(activeDocument()->isDirty(false));
    EXPECT_TRUE(activeDocument()->path().empty());
    EXPECT_EQ(activeDocument()->displayName(), left);
}

TEST_F(AutoSaveTest, OfSeveralNotificationsNoneGoesAndOthersAreNotTouched)
{
    closeUnsaved(L"Part");
    answer(kNotify);
    answer(kNotify);
    NotificationCenter* center = NotificationCenter::get();
    const Notification* other = center->sendNotification(L"Other", L"text", {}, {}, L"Other",
                                                         NotificationType::makeByType(2), nullptr);
    answer(L"AutoSave.Recovery");
    EXPECT_EQ(own().size(), 2u);
    EXPECT_TRUE(center->exists(other));
    EXPECT_EQ(center->notifications().front(), other);
}

TEST_F(AutoSaveTest, WhoWantsNoneIsToldOfNone)
{
    closeUnsaved(L"Part");
    AutoSaveOptionsGroup::get()->performAutoSave(false);
    EXPECT_EQ(answer(kNotify), L"No recover files.");
    EXPECT_TRUE(own().empty());
    EXPECT_FALSE(applicable(L"NotifyAutoSaveFilesCommand"));
    AutoSaveOptionsGroup::get()->performAutoSave(true);
    EXPECT_TRUE(applicable(L"NotifyAutoSaveFilesCommand"));
}

TEST_F(AutoSaveTest, AFileThatCannotBeOpenedStaysAndNoOtherDocumentGetsItsPlace)
{
    // Of a kind of document unknown to any add-in.
    const TestSupport::ScratchFolder folder;
    const auto killed =
        TestSupport::runProcess((TestSupport::runningTree() / "bin/recovery_probe").string(),
                                {folder.path().string(), "new", "Strange", "box", "save",
                                 (folder.path() / "strange.tdsn").string(), "box", "write", "die"});
    ASSERT_EQ(killed.signal, SIGKILL) << killed.output;
    std::filesystem::copy((folder.path() / "recovery").string(), PathInfo::recoveryDirectory().string(),
                          std::filesystem::copy_options::recursive);
    answer(L"Design.New");
    const Document* open = activeDocument();
    ASSERT_EQ(files().size(), 1u);
    EXPECT_NE(failure(L"AutoSave.Recovery").find(L"TestDocType"), std::wstring::npos);
    EXPECT_EQ(files().size(), 1u);
    ASSERT_EQ(documents(), 1u);
    EXPECT_EQ(activeDocument(), open);
    EXPECT_TRUE(open->path().empty());
}
