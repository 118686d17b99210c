// The bell, the list behind it and the toasts.

#include "UI/Base/Program/Notifications.h"

#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/ProgressBar.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Session/Private/AutoSaveMessages.h"
#include "UI/Base/Window/BellButton.h"
#include "UI/Base/Window/MainWindow.h"
#include "UI/Base/Window/NotificationPanel.h"
#include "UI/Base/Window/NotificationRow.h"
#include "UI/Base/Window/ToastStack.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QToolButton>
#include <QtTest/QTest>

using namespace Vu;
using Vs::Notification;
using Vs::NotificationCenter;
using Vs::NotificationType;

namespace {

/// Responds to clicks on notifications of one sender.
class Clicks : public Vs::NotificationsEventSite
{
public:
    explicit Clicks(bool handles) : m_handles(handles)
    {
        Vs::NotificationsEventSource::get()->subscribe(this);
    }
    ~Clicks() override { Vs::NotificationsEventSource::get()->unsubscribe(this); }
    void onActivateNotification(Vs::ActivateNotificationEvent* event) override
    {
        ++count;
        event->handled(m_handles);
    }
    int count = 0;

private:
    bool m_handles;
};

class NotificationsTest : public UiTest
{
protected:
    NotificationsTest()
    {
        Application::get()->needGui();
        WorkspaceWindow* shown = WorkspaceMgr::get()->create()->window();
        shown->show();
        window = static_cast<MainWindow*>(shown->widget());
        window->resize(1366, 768);
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    }

    static Notification* send(NotificationType::Kind kind, const std::wstring& title, bool quiet = false)
    {
        Vs::NotificationRequest request;
        request.title = title;
        request.clientID = L"Test";
        request.type = NotificationType::makeByType(kind);
        request.quiet = quiet;
        return NotificationCenter::get()->sendNotification(std::move(request));
    }
    NotificationPanel* openList() const
    {
        QTest::keyClick(window, Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
        return window->bell()->panel();
    }
    static void settle()
    {
        QApplication::processEvents();
        Application::get()->processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
    }
    std::string count() const { return window->bell()->text().toStdString(); }
    std::vector<std::wstring> titles() const
    {
        std::vector<std::wstring> found;
        for (const NotificationRow* row : window->bell()->panel()->rows())
            found.push_back(row->notification()->title());
        return found;
    }

    MainWindow* window;
};

} // namespace

TEST_F(NotificationsTest, TheBellCountsWhatWasNotSeenAndTheListShowsTheNewestFirst)
{
    EXPECT_EQ(count(), "");
    send(NotificationType::Information, L"First");
    send(NotificationType::Error, L"Second");
    send(NotificationType::Offer, L"Third", true);
    EXPECT_EQ(count(), "3");
    EXPECT_TRUE(window->bell()->accessibleName().contains(QStringLiteral("3")));
    ASSERT_EQ(window->toasts()->toasts().size(), 2u) << "what is quiet shows in the list alone";

    const NotificationPanel* list = openList();
    settle();
    EXPECT_TRUE(list->isVisible());
    EXPECT_EQ(titles(), (std::vector<std::wstring>{L"Third", L"Second", L"First"}));
    EXPECT_EQ(count(), "");
    EXPECT_TRUE(window->toasts()->toasts().empty()) << "also the error has been seen now";
    EXPECT_TRUE(list->rows()[1]->accessibleName().startsWith(QStringLiteral("Error. Second")));
    const QRect bell(window->bell()->mapToGlobal(QPoint()), window->bell()->size());
    EXPECT_LE(list->geometry().bottom(), bell.top());
    EXPECT_TRUE(window->geometry().adjusted(0, -40, 0, 0).contains(list->geometry()));
    // What arrives while it is open is seen at once.
    send(NotificationType::Error, L"Fourth");
    settle();
    EXPECT_EQ(titles().front(), L"Fourth");
    EXPECT_EQ(count(), "");
}

TEST_F(NotificationsTest, AFileThatAServiceKeepsIsShownByItsPlaceAndSavedWhenItHasArrived)
{
    const std::wstring kept = (folder.path() / "copies/wheel.vlra").wstring();
    const std::wstring own = (folder.path() / "own.vlra").wstring();
    const FilePlace place([&](const boost::filesystem::path& file) -> std::optional<FilePlace::Answer> {
        if (file.wstring() != kept)
            return std::nullopt;
        return FilePlace::Answer{.place = L"Drive \u203a wheel", .folder = L"Drive", .isSent = true};
    });
    Vs::Document* document = newAsset()->document();
    const auto save = [&](const std::wstring& path) {
        document->path(path);
        Vs::DocumentEvent event(document, Vs::Timing::After);
        Vs::DocumentEventSource::get()->fireDocumentSaved(&event);
    };
    save(kept);
    EXPECT_TRUE(NotificationCenter::get()->notifications().empty()) << "the service's side tells it";
    save(own);
    save(own);
    Vs::NotificationRequest request;
    request.title = L"Held";
    request.file = kept;
    request.clientID = L"Test";
    NotificationCenter::get()->sendNotification(std::move(request));
    const NotificationPanel* list = openList();
    settle();
    ASSERT_EQ(list->rows().size(), 2u) << "one for each file";
    EXPECT_TRUE(list->rows()[0]->accessibleName().contains(QStringLiteral("Drive \u203a wheel")));
    EXPECT_FALSE(list->rows()[0]->accessibleName().contains(QStringLiteral("copies")));
    EXPECT_TRUE(list->rows()[1]->accessibleName().contains(QString::fromStdWString(own)));
}

TEST_F(NotificationsTest, TheKeysReachEverythingInTheList)
{
    const Clicks clicks(false);
    for (const wchar_t* title : {L"A", L"B", L"C"})
        send(NotificationType::Warning, title);
    NotificationPanel* list = openList();
    settle();
    ASSERT_EQ(list->rows().size(), 3u);
    EXPECT_EQ(list->focusWidget(), list->rows()[0]);
    QTest::keyClick(list->focusWidget(), Qt::Key_Down);
    EXPECT_EQ(list->focusWidget(), list->rows()[1]);
    QTest::keyClick(list->focusWidget(), Qt::Key_Return);
    settle();
    EXPECT_EQ(clicks.count, 1);
    QTest::keyClick(list->focusWidget(), Qt::Key_Delete);
    settle();
    EXPECT_EQ(titles(), (std::vector<std::wstring>{L"C", L"A"}));
    EXPECT_EQ(list->focusWidget(), list->rows()[1]) << "the focus stays where it was";
    QTest::keyClick(list->focusWidget(), Qt::Key_Up);
    EXPECT_EQ(list->focusWidget(), list->rows()[0]);
    QTest::keyClick(list, Qt::Key_Escape);
    EXPECT_FALSE(list->isVisible());

    openList();
    QTest::mouseClick(list->findChild<QToolButton*>(QStringLiteral("clearNotifications")), Qt::LeftButton);
    settle();
    EXPECT_TRUE(titles().empty());
    EXPECT_TRUE(NotificationCenter::get()->notifications().empty());
}

TEST_F(NotificationsTest, AToastTakesNoFocusAndClosingItKeepsItInTheList)
{
    auto* line = new QLineEdit(window);
    line->show();
    line->setFocus();
    Vs::NotificationRequest request;
    request.title = std::wstring(200, L'x');
    request.clientID = L"Test";
    int done = 0;
    request.actions = {{L"Stay", [&] { ++done; }, false}, {L"Go", [&] { ++done; }}, {L"Unseen", [] {}}};
    const Notification* sent = NotificationCenter::get()->sendNotification(std::move(request));
    ASSERT_EQ(window->toasts()->toasts().size(), 1u);
    NotificationRow* toast = window->toasts()->toasts().front();
    EXPECT_TRUE(window->rect().contains(toast->geometry()));
    const auto buttons = toast->findChildren<QToolButton*>(QStringLiteral("notificationAction"));
    ASSERT_EQ(buttons.size(), 2);
    QTest::mouseClick(buttons[0], Qt::LeftButton);
    settle();
    EXPECT_EQ(done, 1);
    EXPECT_EQ(QApplication::focusWidget(), line);
    EXPECT_TRUE(NotificationCenter::get()->exists(sent));
    QTest::mouseClick(toast->findChild<QToolButton*>(QStringLiteral("dismissNotification")), Qt::LeftButton);
    settle();
    EXPECT_TRUE(window->toasts()->toasts().empty());
    ASSERT_TRUE(NotificationCenter::get()->exists(sent));
    EXPECT_TRUE(sent->seen());
    EXPECT_EQ(QApplication::focusWidget(), line);

    const NotificationPanel* list = openList();
    settle();
    ASSERT_EQ(list->rows().size(), 1u);
    QTest::mouseClick(list->rows()[0]->findChildren<QToolButton*>(QStringLiteral("notificationAction"))[1],
                      Qt::LeftButton);
    settle();
    EXPECT_EQ(done, 2);
    EXPECT_FALSE(NotificationCenter::get()->exists(sent)) << "its purpose is served";
}

TEST_F(NotificationsTest, AClickActivatesAndEndsWhatIsHandled)
{
    for (const bool handles : {false, true}) {
        const Clicks clicks(handles);
        const Notification* sent = send(NotificationType::Offer, L"Offer");
        QTest::mouseClick(window->toasts()->toasts().front(), Qt::LeftButton);
        settle();
        EXPECT_EQ(clicks.count, 1);
        EXPECT_EQ(NotificationCenter::get()->exists(sent), !handles);
        NotificationCenter::get()->removeByClientID(L"Test");
        settle();
    }
}

TEST_F(NotificationsTest, ThereIsABoundToToastsAndToWhatIsKept)
{
    for (int i = 0; i < 250; ++i)
        send(NotificationType::Error, std::to_wstring(i));
    settle();
    const std::vector<Notification*> kept = NotificationCenter::get()->notifications();
    EXPECT_EQ(kept.size(), 100u);
    EXPECT_EQ(kept.front()->title(), L"249");
    EXPECT_EQ(kept.back()->title(), L"150");
    ASSERT_EQ(window->toasts()->toasts().size(), 3u);
    EXPECT_EQ(window->toasts()->toasts().back()->notification()->title(), L"249");
    EXPECT_EQ(count(), "100");
}

TEST_F(NotificationsTest, NothingOfALongWordIsCutOff)
{
    for (const std::wstring& word :
         {std::wstring(90, L'w'), L"/home/somebody" + std::wstring(20, L'w') + L"/designs/bracket.stp",
          std::wstring(L"*.stp;*.step;*.igs;*.iges;*.brep;*.stl;*.obj;*.gltf;*.glb;*.wrl;*.ply;*.off")}) {
        send(NotificationType::Error, L"It failed: " + word + L" is there.");
        settle();
        const auto* title =
            window->toasts()->toasts().back()->findChild<QLabel*>(QStringLiteral("notificationTitle"));
        const QRect needed = title->fontMetrics().boundingRect(QRect(0, 0, title->width(), QWIDGETSIZE_MAX),
                                                               Qt::TextWordWrap, title->text());
        EXPECT_LE(needed.width(), title->width()) << title->text().toStdString();
        EXPECT_LE(needed.height(), title->height()) << title->text().toStdString();
    }
}

TEST_F(NotificationsTest, AlertsStandAmongThemAsLongAsTheyStand)
{
    AlertController* alerts = CommandMgr::get()->GetAlertController();
    alerts->addAlert(EAlertSeverity::Error, L"It failed.");
    alerts->addAlert(EAlertSeverity::Error, L"Too small.", true);
    Application::get()->inform(L"By the way.");
    EXPECT_EQ(count(), "3");
    ASSERT_EQ(window->toasts()->toasts().size(), 1u) << "an input's fault is told beside it";
    EXPECT_EQ(window->toasts()->toasts().front()->notification()->title(), L"It failed.");
    alerts->clearBlockingAlerts();
    EXPECT_EQ(count(), "2");
    alerts->clearAllAlerts();
    settle();
    EXPECT_EQ(count(), "");
    EXPECT_TRUE(NotificationCenter::get()->notifications().empty());
}

TEST_F(NotificationsTest, ThatNothingCanBeKeptStandsThereOnceAndAsLongAsItIsSo)
{
    const AutoSaveMessages messages;
    auto* source = Vs::AutoSaveEventSource::get();
    Vs::AutoSaveEvent failed({}, L"No space left on device."), kept({}, L"It was not recovered."),
        again({}, {});
    source->fireAutoSaveFailed(&failed);
    source->fireAutoSaveFailed(&failed);
    source->fireAutoSavedRecoveryFileKept(&kept);
    // The next command ends alerts.
    CommandMgr::get()->GetAlertController()->clearAllAlerts();
    const std::vector<Notification*> told = NotificationCenter::get()->notifications();
    ASSERT_EQ(told.size(), 2u);
    EXPECT_EQ(told[1]->text(), L"No space left on device.");
    EXPECT_EQ(told[1]->type().kind(), NotificationType::Error);
    source->fireAutoSaveWorksAgain(&again);
    ASSERT_EQ(NotificationCenter::get()->notifications().size(), 1u);
    EXPECT_EQ(NotificationCenter::get()->notifications()[0]->text(), L"It was not recovered.");
}

TEST_F(NotificationsTest, WorkCanBeCancelledFromTheListWhileItRuns)
{
    send(NotificationType::Offer, L"Offer");
    ProgressBar* bar = ProgressBar::get();
    const Vs::ProgressScope work(L"Reading the file");
    ASSERT_TRUE(bar->busy());
    QTest::mouseClick(window->bell(), Qt::LeftButton);
    NotificationPanel* list = window->bell()->panel();
    ASSERT_TRUE(list->isVisible());
    auto* cancel = list->findChild<QToolButton*>(QStringLiteral("cancelWork"));
    ASSERT_TRUE(cancel->isVisible());
    EXPECT_FALSE(list->rows()[0]->isEnabled()) << "nothing is begun meanwhile";
    EXPECT_FALSE(Vs::Progress::cancelled());
    QTest::mouseClick(cancel, Qt::LeftButton);
    EXPECT_TRUE(Vs::Progress::cancelled());
}
