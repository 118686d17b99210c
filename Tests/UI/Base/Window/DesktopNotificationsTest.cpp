// What reaches the desktop while the window isn't active, and what comes back from there.

#include "UI/Base/Window/DesktopNotifications.h"

#include "Server/Base/PathInfo.h"
#include "Tests/Support/Process.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QProcess>
#include <QtTest/QTest>

#include <gtest/gtest.h>
#include <optional>

using namespace Vu;
using Vs::Notification;
using Vs::NotificationCenter;
using Vs::NotificationType;

namespace {

std::optional<TestSupport::ScratchFolder> profile;

class Program : public testing::Environment
{
public:
    void SetUp() override
    {
        if (!std::getenv("DISPLAY"))
            return;
        profile.emplace();
        Vs::PathInfo::profileDirectory(profile->path());
        installHost();
        static int count = 1;
        static char name[] = "test_desktop_notifications";
        static char* arguments[] = {name, nullptr};
        Application::initialize(count, arguments, false);
        Application::testing(true);
        WorkspaceMgr::get()->create()->window()->show();
    }
    void TearDown() override
    {
        if (!std::getenv("DISPLAY"))
            return;
        Application::get()->exit(true);
        Application::get()->shutDown();
        profile.reset();
    }
};

const auto* const theProgram = testing::AddGlobalTestEnvironment(new Program);

class Clicks : public Vs::NotificationsEventSite
{
public:
    Clicks() { Vs::NotificationsEventSource::get()->subscribe(this); }
    ~Clicks() override { Vs::NotificationsEventSource::get()->unsubscribe(this); }
    void onActivateNotification(Vs::ActivateNotificationEvent*) override { ++count; }
    int count = 0;
};

QWidget* window()
{
    return WorkspaceWindow::activeWorkspaceWindow()->widget();
}

/// There is no window manager, whose job this would be.
void focus(const QStringList& what)
{
    EXPECT_EQ(QProcess::execute(QStringLiteral("xdotool"), what), 0);
}

void comeBack()
{
    focus({QStringLiteral("windowfocus"), QString::number(window()->winId())});
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
}

/// As if the user switched to another program.
void goElsewhere()
{
    comeBack();
    focus({QStringLiteral("search"), QStringLiteral("--maxdepth"), QStringLiteral("0"), QStringLiteral(".*"),
           QStringLiteral("windowfocus")});
    ASSERT_TRUE(QTest::qWaitFor([] { return QGuiApplication::applicationState() != Qt::ApplicationActive; }));
}

Notification* send(const std::wstring& title, std::vector<Vs::NotificationAction> actions = {})
{
    Vs::NotificationRequest request;
    request.title = title;
    request.text = L"<b>bold & brave</b>";
    request.file = L"/somewhere/part.vlra";
    request.clientID = L"Test";
    request.actions = std::move(actions);
    return NotificationCenter::get()->sendNotification(std::move(request));
}

/// The program that shows notifications, as seen on the bus.
class Daemon
{
public:
    Daemon()
    {
        const auto configuration =
            m_folder.write("dunstrc", "[global]\n    markup = full\n    format = \"%s|%b\"\n"
                                      "    notification_limit = 9\n    idle_threshold = 0\n");
        m_process.start(QStringLiteral(DUNST),
                        {QStringLiteral("-config"), QString::fromStdString(configuration.string())});
        EXPECT_TRUE(m_process.waitForStarted());
        EXPECT_TRUE(QTest::qWaitFor([&] { return shown() == 0; }, 10000))
            << m_process.readAll().toStdString();
    }
    ~Daemon()
    {
        m_process.terminate();
        m_process.waitForFinished();
    }
    /// -1 as long as it doesn't exist.
    int shown()
    {
        const QVariant length = control().property("displayedLength");
        return length.isValid() ? length.toInt() : -1;
    }
    bool showsSoon(int count)
    {
        return QTest::qWaitFor([&] { return shown() == count; }, 10000);
    }
    /// Presses the first action of the newest one.
    void press() { control().call(QStringLiteral("NotificationAction"), 0u); }
    std::string newestText()
    {
        control().call(QStringLiteral("NotificationCloseLast"));
        const QDBusReply<QList<QVariantMap>> history =
            control().call(QStringLiteral("NotificationListHistory"));
        if (!history.isValid() || history.value().isEmpty())
            return history.error().message().toStdString();
        const QVariantMap newest = history.value().front();
        return (newest[QStringLiteral("summary")].toString() + QLatin1Char('|') +
                newest[QStringLiteral("body")].toString())
            .toStdString();
    }

private:
    static QDBusInterface& control()
    {
        // Created again: it remembers that the service wasn't there.
        static std::unique_ptr<QDBusInterface> interface;
        interface = std::make_unique<QDBusInterface>(
            QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
            QStringLiteral("org.dunstproject.cmd0"), QDBusConnection::sessionBus());
        return *interface;
    }

    TestSupport::ScratchFolder m_folder;
    QProcess m_process;
};

class DesktopNotificationsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!std::getenv("DISPLAY"))
            GTEST_SKIP() << "no display is set";
    }
    void TearDown() override
    {
        NotificationCenter::get()->removeByClientID(L"Test");
        Application::get()->processEvents();
    }
};

TEST_F(DesktopNotificationsTest, WithoutABusNothingHappens)
{
    EXPECT_FALSE(DesktopNotifications::hasBus());
    goElsewhere();
    EXPECT_TRUE(NotificationCenter::get()->exists(send(L"Nobody hears it")));
    Application::get()->processEvents();
}

TEST_F(DesktopNotificationsTest, WhatIsToldWhileTheWindowIsNotActiveShowsOnTheDesktop)
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    // There is no service at first: that must not shut out one that starts later.
    goElsewhere();
    send(L"Nobody shows it");
    QTest::qWait(200);
    NotificationCenter::get()->removeByClientID(L"Test");
    Daemon daemon;
    comeBack();
    send(L"Seen in the window");
    QTest::qWait(200);
    EXPECT_EQ(daemon.shown(), 0) << "who works in the window isn't told twice";

    goElsewhere();
    Notification* first = send(L"First");
    ASSERT_TRUE(daemon.showsSoon(1));
    Notification* second = send(L"Second");
    ASSERT_TRUE(daemon.showsSoon(2));
    // What is dismissed here is dismissed there.
    NotificationCenter::get()->remove(second);
    EXPECT_TRUE(daemon.showsSoon(1));

    Clicks clicks;
    daemon.press();
    EXPECT_TRUE(QTest::qWaitFor([&] { return clicks.count == 1; }));

    goElsewhere();
    ASSERT_TRUE(NotificationCenter::get()->exists(first));
    NotificationCenter::get()->removeByClientID(L"Test");
    ASSERT_TRUE(daemon.showsSoon(0));
    send(L"Letters");
    ASSERT_TRUE(daemon.showsSoon(1));
    const std::string text = daemon.newestText();
    EXPECT_NE(text.find("Letters"), std::string::npos) << text;
    EXPECT_NE(text.find("bold &amp; brave"), std::string::npos) << "letters, not markup: " << text;
    EXPECT_NE(text.find("/somewhere/part.vlra"), std::string::npos) << text;
    EXPECT_EQ(NotificationCenter::get()->notifications().size(), 1u)
        << "closed there, it is still listed here";
}

} // namespace
