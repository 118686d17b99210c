// What is typed on a real display while a line creates the first canvas, for which the toolkit recreates the
// native window.

#include "Server/AddInMgr/AddInMgr.h"
#include "Server/Base/PathInfo.h"
#include "Tests/Support/Process.h"
#include "Tests/UI/Becomes.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QLineEdit>
#include <QProcess>
#include <QTest>
#include <QWindow>

#include <cstdlib>
#include <gtest/gtest.h>

using namespace Vu;
using UiTests::becomes;

namespace {

class TypedAheadTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!std::getenv("DISPLAY"))
            GTEST_SKIP() << "NOTICE: no display to show a window on";
        Vs::PathInfo::profileDirectory(m_folder.path() / "profile");
        installHost();
        static int count = 1;
        static char name[] = "test_typed_ahead";
        static char* arguments[] = {name, nullptr};
        Application::initialize(count, arguments, false);
        Vs::Status status;
        Vs::AddInMgr::get()->loadAddIns(status);
        ASSERT_TRUE(status.isOk()) << status.matchingError("");
        WorkspaceMgr::get()->create()->window()->show();
        m_started = true;
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window(), 60000));
    }
    void TearDown() override
    {
        if (!m_started)
            return;
        Application::get()->exit(true);
        Application::get()->shutDown();
        Vs::AddInMgr::get()->unloadAddIns();
    }

    static QWidget* window() { return WorkspaceWindow::activeWorkspaceWindow()->widget(); }
    /// What the display server would have a real keyboard do to the window.
    static bool xdotool(const char* command)
    {
        return QProcess::execute(QStringLiteral("xdotool"),
                                 {QLatin1String(command), QString::number(window()->winId())}) == 0;
    }
    static void typeBehindALineThatOpensTheFirstDocument()
    {
        ASSERT_TRUE(QTest::qWaitForWindowActive(window(), 60000));
        QTest::keyClick(window()->windowHandle(), Qt::Key_L, Qt::ControlModifier);
        const auto* line = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        ASSERT_NE(line, nullptr);
        const WId before = window()->winId();
        QString typed;
        for (int i = 0; i < 9; ++i)
            typed += QStringLiteral("%1fhv ").arg(i); // Letters that are shortcuts of the view.
        QProcess typist;
        typist.start(QStringLiteral("xdotool"),
                     QStringLiteral("type --args 1 Design.Sample key Return type --delay 40").split(u' ')
                         << typed);
        EXPECT_TRUE(becomes(
            [&] { return typist.state() == QProcess::NotRunning && line->text().endsWith(typed.last(5)); }));
        EXPECT_EQ(line->text().toStdString(), typed.toStdString());
        if (window()->winId() == before)
            GTEST_SKIP() << "NOTICE: no display with OpenGL to show a window on";
    }

    TestSupport::ScratchFolder m_folder;
    bool m_started = false;
};

TEST_F(TypedAheadTest, ComesIntoTheCommandLine)
{
    ASSERT_TRUE(xdotool("windowfocus"));
    typeBehindALineThatOpensTheFirstDocument();
}

TEST_F(TypedAheadTest, ComesThroughAWindowManager)
{
    QProcess manager;
    manager.start(QStringLiteral("openbox"), {});
    if (!manager.waitForStarted())
        GTEST_SKIP() << "NOTICE: openbox is not installed";
    EXPECT_TRUE(becomes([] { return xdotool("windowactivate"); }));
    typeBehindALineThatOpensTheFirstDocument();
    manager.terminate();
    manager.waitForFinished();
}

} // namespace
