// One session by the keyboard alone, on a real display: open an assembly, turn it, measure a hole, hide a
// plate, round an edge, export, save and open again. Only the names of files are given by the test, since the
// dialogs that ask for them are the toolkit's. Besides, what is typed while the window is made anew.

#include "Server/AddInMgr/AddInMgr.h"
#include "Server/Base/PathInfo.h"
#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/Outermost.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/RealData.h"
#include "Tests/UI/Becomes.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QWindow>

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>

using namespace Vu;
using UiTests::becomes;

namespace {

class KeyWalkTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!std::getenv("DISPLAY"))
            GTEST_SKIP() << "NOTICE: no display to show a window on";
        Vs::PathInfo::profileDirectory(m_folder.path() / "profile");
        installHost();
        static int count = 1;
        static char name[] = "test_key_walk";
        static char* arguments[] = {name, nullptr};
        Application::initialize(count, arguments, false);
        Application::testing(true);
        Vs::Status status;
        Vs::AddInMgr::get()->loadAddIns(status);
        ASSERT_TRUE(status.isOk()) << status.matchingError("");
        WorkspaceMgr::get()->create()->window()->show();
        m_started = true;
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window(), 60000));
    }

    void TearDown() override
    {
        FileDialog::responder(nullptr);
        if (!m_started)
            return;
        Application::get()->exit(true);
        Application::get()->shutDown();
        Vs::AddInMgr::get()->unloadAddIns();
    }

    static QWidget* window() { return WorkspaceWindow::activeWorkspaceWindow()->widget(); }
    static void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        // A display without a window manager makes no window the active one.
        QApplication::setActiveWindow(window());
        QTest::keyClick(window()->windowHandle(), key, modifiers);
        settle();
    }
    static void settle()
    {
        Application::get()->flushDeferredTasks();
        QTest::qWait(50);
    }
    /// In the command line, and from there to the view.
    static void line(const char* text)
    {
        key(Qt::Key_L, Qt::ControlModifier);
        ASSERT_NE(qobject_cast<QLineEdit*>(QApplication::focusWidget()), nullptr);
        QTest::keyClicks(QApplication::focusWidget(), QLatin1String(text));
        key(Qt::Key_Return);
        key(Qt::Key_Escape);
    }
    /// Starts what is found first.
    static void search(const char* words)
    {
        key(Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
        ASSERT_NE(qobject_cast<QLineEdit*>(QApplication::focusWidget()), nullptr);
        QTest::keyClicks(QApplication::focusWidget(), QLatin1String(words));
        key(Qt::Key_Return);
    }
    void nextFile(const boost::filesystem::path& path)
    {
        FileDialog::responder([path](const FileDialog::Request&, std::vector<std::wstring>& names) {
            names = {path.wstring()};
            return true;
        });
    }
    /// Presses Return in the dialog that opens next.
    static void acceptDialog()
    {
        QTimer::singleShot(100, qApp, [] {
            if (QWidget* dialog = QApplication::activeModalWidget())
                QTest::keyClick(dialog, Qt::Key_Return);
            else
                acceptDialog();
        });
    }

    static std::wstring running()
    {
        const CommandBase* active = CommandBase::getActiveCommand();
        return active && active->commandDefinition() ? active->commandDefinition()->id() : std::wstring();
    }
    static const Vs::Component* component(const wchar_t* path)
    {
        const Vs::Asset* asset = Vs::DocumentMgr::get()->activeAsset();
        Vs::Status status;
        const auto found = asset ? Vs::findPath(*asset, path, status) : std::nullopt;
        return found ? Vs::resolvePath(*found, *asset, status) : nullptr;
    }
    static size_t facesOfBracket()
    {
        return component(L"as1/l-bracket-assembly_1/l-bracket_1")->body->mesh()->faces.size();
    }
    /// Whether what of the model is furthest to the left, right, top and bottom is seen, and not behind a
    /// bar.
    static bool isFramed()
    {
        const GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
        const Vs::Scene::ViewFragment* model = view->modelFragment();
        const GkVector3d up = model->camera()->up(), right = model->camera()->direction().crossProduct(up);
        return std::ranges::all_of(std::array{up, -up, right, -right}, [&](const GkVector3d& way) {
            const auto point = Vs::Scene::outermostPoint(*model->viewFragmentNode(), way);
            const auto place = point ? view->worldToWindow(*point) : std::nullopt;
            const auto covers = [&](const CanvasRect& rect) {
                return place->x > rect.left && place->x < rect.right && place->y > rect.top &&
                       place->y < rect.bottom;
            };
            return place && place->x > 0 && place->y > 0 && place->x < view->canvasWidth() &&
                   place->y < view->canvasHeight() && std::ranges::none_of(view->canvas()->covered(), covers);
        });
    }
    static bool hasButton(const QString& tip)
    {
        const auto buttons = window()->findChildren<QToolButton*>();
        return std::ranges::any_of(buttons, [&](const QToolButton* button) {
            return button->isVisible() && button->toolTip().contains(tip);
        });
    }
    static bool says(const QString& text)
    {
        const auto labels = window()->findChildren<QLabel*>();
        return std::ranges::any_of(
            labels, [&](const QLabel* label) { return label->isVisible() && label->text() == text; });
    }
    static bool shows(const QString& text)
    {
        for (const QLineEdit* field : window()->findChildren<QLineEdit*>())
            if (field->isVisible() && field->text() == text)
                return true;
        return false;
    }

    /// What the display server has a real keyboard do.
    static bool xdotool(const QStringList& arguments)
    {
        return QProcess::execute(QStringLiteral("xdotool"), arguments) == 0;
    }
    /// The line opens the first document, whose canvas has the toolkit make the native window anew.
    static void typeBehindALineThatOpensTheFirstDocument()
    {
        ASSERT_TRUE(QTest::qWaitForWindowActive(window(), 60000));
        key(Qt::Key_L, Qt::ControlModifier);
        const auto* line = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        ASSERT_NE(line, nullptr);
        const WId before = window()->winId();
        QString typed;
        for (int i = 0; i < 9; ++i)
            typed += QStringLiteral("%1fhv ").arg(i); // letters that are hot keys of the view
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

TEST_F(KeyWalkTest, AnAssemblyIsTurnedMeasuredChangedExportedSavedAndOpenedAgain)
{
    if (TestSupport::realDataFolder().empty())
        GTEST_SKIP() << "NOTICE: no real CAD files";
    const boost::filesystem::path model = m_folder.path() / "walk.vlra", step = m_folder.path() / "walk.stp";
    nextFile(TestSupport::realDataFolder() / "as1-oc-214.stp");
    key(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(becomes([] { return component(L"as1/plate_1") != nullptr; }));
    settle();
    EXPECT_TRUE(becomes(isFramed));
    window()->resize(1280, 700);
    settle();
    EXPECT_TRUE(hasButton(QStringLiteral("Redo"))) << "not in a menu of what has no room";

    key(Qt::Key_Escape);
    const auto direction = [] {
        return SceneUtilities::getActiveAssetGraphicView()->modelFragment()->camera()->direction();
    };
    const GkVector3d before = direction();
    key(Qt::Key_Right);
    EXPECT_LT(before.dotProduct(direction()), 0.99);

    line("Selection.Select as1/plate_1/Body1/Face7");
    search("messen");
    EXPECT_EQ(running(), L"MeasureCommand") << "by its German title";
    EXPECT_TRUE(becomes([] { return shows("5 mm"); }));
    key(Qt::Key_Escape);
    EXPECT_NE(running(), L"MeasureCommand");

    line("Selection.Select as1/plate_1");
    key(Qt::Key_H);
    EXPECT_FALSE(component(L"as1/plate_1")->visible);

    const size_t faces = facesOfBracket();
    line("Selection.Select as1/l-bracket-assembly_1/l-bracket_1/Body1/Edge1");
    key(Qt::Key_M, Qt::AltModifier);
    ASSERT_NE(qobject_cast<QMenu*>(QApplication::activePopupWidget()), nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_F);
    ASSERT_TRUE(becomes([] { return running() == L"FilletCommand"; }));
    settle();
    key(Qt::Key_Tab);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("4"));
    EXPECT_TRUE(becomes([&] { return facesOfBracket() == faces + 1; }));
    EXPECT_TRUE(becomes([] { return says(QStringLiteral("Edge of l-bracket_1")); }))
        << "and not how long another edge of the preview is";
    key(Qt::Key_Return);
    EXPECT_TRUE(becomes([&] { return running() != L"FilletCommand" && facesOfBracket() == faces + 1; }));

    nextFile(step);
    acceptDialog();
    key(Qt::Key_E, Qt::ControlModifier);
    EXPECT_TRUE(becomes([&] { return boost::filesystem::exists(step); }));

    nextFile(model);
    key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(becomes([&] { return boost::filesystem::exists(model); }));
    key(Qt::Key_W, Qt::ControlModifier);
    ASSERT_TRUE(becomes([] { return Vs::DocumentMgr::get()->documents() == 0; }));
    key(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(becomes([] { return component(L"as1/plate_1") != nullptr; }));
    EXPECT_FALSE(component(L"as1/plate_1")->visible);
    EXPECT_EQ(facesOfBracket(), faces + 1);
    EXPECT_TRUE(becomes(isFramed));
}

TEST_F(KeyWalkTest, WhatIsTypedWhileTheFirstCanvasIsMadeComesIntoTheCommandLine)
{
    ASSERT_TRUE(xdotool({QStringLiteral("windowfocus"), QString::number(window()->winId())}));
    typeBehindALineThatOpensTheFirstDocument();
}

TEST_F(KeyWalkTest, WhatIsTypedWhileTheFirstCanvasIsMadeComesThroughAWindowManager)
{
    QProcess manager;
    manager.start(QStringLiteral("openbox"), {});
    if (!manager.waitForStarted())
        GTEST_SKIP() << "NOTICE: openbox is not installed";
    EXPECT_TRUE(becomes([] {
        return xdotool({QStringLiteral("windowactivate"), QString::number(window()->winId())});
    }));
    typeBehindALineThatOpensTheFirstDocument();
    manager.terminate();
    manager.waitForFinished();
}

} // namespace
