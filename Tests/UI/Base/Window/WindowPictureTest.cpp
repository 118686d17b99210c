// What a user sees in the window on a real display, compared with what a run without one renders.

#include "Server/AddInMgr/AddInMgr.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/CameraParameters.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/RenderParams.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Support/Process.h"
#include "Tests/UI/Becomes.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Private/ReducedMotion.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/AutoCamViewFragment.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/Private/FrameEvents.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QColor>
#include <QCursor>
#include <QDialog>
#include <QOpenGLContext>
#include <QOpenGLWidget>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QWindow>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

using namespace Vu;

/// What asks the driver for a reset. The library's own header doesn't go with those of the widgets.
extern "C" unsigned (*epoxy_glGetGraphicsResetStatus)();

namespace {

int resetsToCome = 0;

unsigned resetStatus()
{
    constexpr unsigned kInnocentContextReset = 0x8254;
    return resetsToCome > 0 && resetsToCome-- > 0 ? kInnocentContextReset : 0;
}

/// Longer than a camera takes to count as standing still, after which the picture is complete.
constexpr int kStillMilliseconds = 400;

class WindowPicture : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!canvas())
            GTEST_SKIP() << "NOTICE: no display with OpenGL to show a window on";
        // A slow display lays the window out long after the request.
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window(), 60000));
        ASSERT_TRUE(UiTests::becomes([] {
            return widget()->width() > window()->width() / 2 && canvas()->width() == widget()->width() &&
                   !TransitionMgr::get()->playing();
        }));
        m_before.copyFrom(*view()->modelFragment()->camera());
    }

    void TearDown() override
    {
        if (canvas())
            view()->modelFragment()->camera()->copyFrom(m_before);
        // A view keeps the options it was drawn with after they are reset.
        Vs::Scene::GraphicsOptionGroup::get()->reset();
        if (canvas())
            *view()->modelFragment()->renderParams() = Vs::Scene::RenderParams();
    }

    static void run(const std::wstring& line)
    {
        const Vs::TextCommandResult result = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line);
        EXPECT_EQ(result.first, 0u) << Vs::Strings::narrow(line + L": " + result.second);
        Application::get()->flushDeferredTasks();
    }
    static GraphicsCanvas* canvas() { return SceneUtilities::getActiveGraphicsCanvas(); }
    static GraphicsView* view() { return SceneUtilities::getActiveAssetGraphicView(); }
    static QOpenGLWidget* widget() { return qobject_cast<QOpenGLWidget*>(canvas()->existingWidget()); }

    static AutoCamViewFragment* orbicon()
    {
        for (Vs::Scene::ViewFragment* fragment : view()->viewFragments())
            if (auto* found = Vs::cast<AutoCamViewFragment>(fragment))
                return found;
        return nullptr;
    }
    /// As the display sends it: through the window, which finds the widget. Positions are logical pixels of
    /// the canvas.
    using Mouse = void (*)(QWindow*, Qt::MouseButton, Qt::KeyboardModifiers, QPoint, int);
    static void mouse(Mouse send, Qt::MouseButton button, const QPoint& place)
    {
        send(window(), button, {}, widget()->mapTo(widget()->window(), place), -1);
        QTest::qWait(20);
    }
    static void move(const QPoint& place)
    {
        QTest::mouseMove(window(), widget()->mapTo(widget()->window(), place));
        QTest::qWait(20);
    }
    static QWindow* window() { return widget()->window()->windowHandle(); }

    static QImage inWindow()
    {
        QTest::qWait(kStillMilliseconds);
        return widget()->grabFramebuffer().convertToFormat(QImage::Format_RGBA8888);
    }
    static QImage withoutWindow(int width, int height)
    {
        Vs::Scene::ImageOptions options = Vs::Scene::ImageOptions::current();
        options.fine = false;
        options.effects = true;
        options.pixelRatio = float(widget()->devicePixelRatioF());
        Vs::Scene::Image image;
        Vs::Status status;
        EXPECT_TRUE(Vs::Scene::OffscreenRenderer::get()->render(view()->viewFragments(), uint32_t(width),
                                                                uint32_t(height), options, image, status));
        return QImage(image.pixels.data(), width, height, width * 4, QImage::Format_RGBA8888).copy();
    }

private:
    Vs::Scene::Camera m_before;
};

/// How two pictures of the same size differ.
struct Difference
{
    double mean = 0;    ///< Over all channels, in steps of 255.
    double visible = 0; ///< The share of pixels that differ by more than 32 steps in a channel.
};

Difference difference(const QImage& a, const QImage& b)
{
    Difference result;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const uchar *p = a.constScanLine(y) + 4 * x, *q = b.constScanLine(y) + 4 * x;
            int most = 0;
            for (int channel = 0; channel < 3; ++channel) {
                most = std::max(most, std::abs(p[channel] - q[channel]));
                result.mean += std::abs(p[channel] - q[channel]) / 3.0;
            }
            result.visible += most > 32;
        }
    const double pixels = double(a.width()) * a.height();
    return {result.mean / pixels, result.visible / pixels};
}

/// The sizes in which the canvas was drawn.
class DrawnSizes : private FrameEventSite
{
public:
    std::set<std::pair<int, int>> sizes;

private:
    void frameDrawn(FrameEvent* event) override
    {
        sizes.emplace(event->canvas()->pixelWidth(), event->canvas()->pixelHeight());
    }

    FrameEventSource::Wanted m_wanted{this};
};

TEST_F(WindowPicture, IsDrawnOnlyInTheSizeThatAChangedLayoutLeavesIt)
{
    for (const wchar_t* line :
         {L"VuCommands.DockAssetToolbarsToBottomCmd", L"VuCommands.DockAssetToolbarsToTopCmd"}) {
        SCOPED_TRACE(Vs::Strings::narrow(line));
        QTest::qWait(kStillMilliseconds); // For what is still to be drawn.
        const int before = canvas()->pixelHeight();
        const DrawnSizes drawn;
        run(line);
        EXPECT_TRUE(UiTests::becomes([&] { return canvas()->pixelHeight() != before; }));
        QTest::qWait(kStillMilliseconds);
        EXPECT_EQ(drawn.sizes,
                  (std::set<std::pair<int, int>>{{canvas()->pixelWidth(), canvas()->pixelHeight()}}));
    }
}

TEST_F(WindowPicture, ShowsWhatARunWithoutAWindowDraws)
{
    const wchar_t* const settings[] = {
        L"VisualStyleCmd ViewVisualStyleShadedWithEdgesHL",
        L"VisualStyleCmd ViewVisualStyleWireframeHL",
        L"VisualStyleCmd ViewVisualStyleRealistic",
        L"GroundPlaneCmd ViewGroundPlaneOnCommand",
        L"ObjectShadowCmd ViewObjectShadowSoft2Command",
        L"LayoutGridOnCmd ViewLayoutGridOnCommand",
        L"NPREffectCmd ViewNPRPastelCommand",
        L"MSAACmd ViewMSAAOffCommand",
    };
    for (const wchar_t* setting : settings) {
        SCOPED_TRACE(Vs::Strings::narrow(setting));
        run(std::wstring(L"VuCommands.View") + setting);
        const QImage shown = inWindow();
        ASSERT_EQ(shown.size(), QSize(canvas()->pixelWidth(), canvas()->pixelHeight()));
        const Difference differs = difference(shown, withoutWindow(shown.width(), shown.height()));
        // A large picture is assembled from tiles, whose matrices are rounded individually.
        EXPECT_LT(differs.mean, 0.4);
        EXPECT_LT(differs.visible, 0.001);
    }
}

TEST_F(WindowPicture, IsTheSameInAnotherContextAfterAResetAndInAnotherWindow)
{
    const QImage plain = inWindow();
    run(L"Commands.Start SelectAllCommand");
    const QImage before = inWindow();
    ASSERT_GT(difference(before, plain).visible, 0.005) << "what is selected shows";
    const auto isAsBefore = [&] {
        const QImage shown = inWindow();
        ASSERT_EQ(shown.size(), before.size());
        EXPECT_LT(difference(shown, before).visible, 0.0005);
    };
    const auto status = std::exchange(epoxy_glGetGraphicsResetStatus, resetStatus);
    for (const int resets : {1, 2}) {
        SCOPED_TRACE(resets);
        bool gone = false;
        QObject::connect(widget()->context(), &QObject::destroyed, widget(), [&] { gone = true; });
        resetsToCome = resets;
        widget()->update();
        EXPECT_TRUE(UiTests::becomes([&] { return gone && resetsToCome == 0; }));
        isAsBefore();
    }
    // The pointer still reaches what lies under the canvas.
    const QPoint middle = widget()->rect().center();
    EXPECT_EQ(QApplication::widgetAt(widget()->mapToGlobal(middle)), widget());
    epoxy_glGetGraphicsResetStatus = status;

    QWidget* const frame = widget()->parentWidget();
    const QRect place = widget()->geometry();
    QWidget other;
    other.resize(frame->size());
    widget()->setParent(&other);
    widget()->setGeometry(place);
    widget()->show();
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
    isAsBefore();
    widget()->setParent(frame);
    widget()->setGeometry(place);
    widget()->lower();
    widget()->show();
    isAsBefore();
    run(L"Selection.Clear");
}

TEST_F(WindowPicture, IsDarkInADarkWindowUnlessAnotherEnvironmentWasChosen)
{
    const auto corner = [] { return QColor(inWindow().pixel(2, 2)).lightness(); };
    Vs::Option<std::wstring>& theme = UIBaseOptionGroup::get()->theme;
    theme(L"light");
    EXPECT_GT(corner(), 170);
    theme(L"dark");
    EXPECT_LT(corner(), 85);
    run(L"VuCommands.ViewEnvironmentCmd ViewEnvPhotoBoothCommand");
    EXPECT_GT(corner(), 170);
    theme(L"light");
    EXPECT_GT(corner(), 170);
    UIBaseOptionGroup::get()->reset();
}

TEST_F(WindowPicture, IsAsSharpAsTheScreenAndTheMouseIsWhereThePictureIs)
{
    const double ratio = widget()->devicePixelRatioF();
    EXPECT_EQ(canvas()->pixelWidth(), std::lround(canvas()->width() * ratio));
    EXPECT_EQ(canvas()->pixelHeight(), std::lround(canvas()->height() * ratio));

    // What is grabbed stays under the pointer.
    const QPoint from(canvas()->width() / 2, canvas()->height() / 2), to = from + QPoint(90, -40);
    mouse(&QTest::mousePress, Qt::MiddleButton, from);
    const QPoint on = from + QPoint(40, -20);
    move(on);
    // The drag uses the depth of the point where it began.
    const GkPoint3d grabbed = view()->windowToWorld({on.x(), on.y()});
    move(to);
    mouse(&QTest::mouseRelease, Qt::MiddleButton, to);
    EXPECT_LT(view()->windowToWorld({to.x(), to.y()}).distanceTo(grabbed), 0.5);

    // The cube's middle, seen straight from the front, is its front.
    const AutoCamViewFragment* cube = orbicon();
    const AutoCamViewFragment::Place place = cube->place();
    const QPoint middle(int(place.left + place.size / 2), int(place.top + place.size / 2));
    Vs::Scene::Camera& camera = *view()->modelFragment()->camera();
    camera.look({0.1, 1, -0.1}, {0, 0, 1});
    mouse(&QTest::mouseClick, Qt::LeftButton, middle);
    EXPECT_GT(camera.direction().y, 1 - 1e-9);
}

TEST_F(WindowPicture, ACapturedImageHasThePixelsOfTheWindow)
{
    const TestSupport::ScratchFolder folder;
    const QString path = QString::fromStdString((folder.path() / "shot.png").string());
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [] {
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
            dialog->accept();
    });
    answer.start(50);
    run(L"Commands.Start SaveAsImageCommand Path=" + path.toStdWString());
    EXPECT_EQ(QImage(path).size(), QSize(canvas()->pixelWidth(), canvas()->pixelHeight()));
}

TEST_F(WindowPicture, NamesOfTenThousandLettersLeaveTheWindowAsItWas)
{
    const QWidget* top = widget()->window();
    const QSize size = top->size();
    const auto* unit = top->findChild<QToolButton*>(QStringLiteral("unit"));
    ASSERT_TRUE(unit);
    const auto place = [&] { return unit->mapTo(top, QPoint()); };
    const QPoint before = place();
    const std::wstring name = Vs::DocumentMgr::get()->activeAsset()->document()->displayName();
    run(L"Selection.Select Post");
    run(L"Commands.Start RenameCommand NewName=" + std::wstring(10000, L'N'));
    run(L"Document.Rename " + std::wstring(10000, L'M'));
    for (const wchar_t* screen : {L"ManagementShellCommand", L"CycleOpenDocumentsCommand"}) {
        run(std::wstring(L"Commands.Start ") + screen);
        QTest::qWait(kStillMilliseconds);
        EXPECT_EQ(top->size(), size);
        EXPECT_EQ(place(), before) << Vs::Strings::narrow(screen);
    }
    run(L"Document.Rename " + name);
    run(L"Selection.Clear");
    run(L"Commands.Start UndoCommand");
}

class Program : public testing::Environment
{
public:
    void SetUp() override
    {
        if (!std::getenv("DISPLAY"))
            return;
        m_folder.emplace();
        Vs::PathInfo::profileDirectory(m_folder->path() / "profile");
        installHost();
        static int count = 1;
        static char name[] = "test_window";
        static char* arguments[] = {name, nullptr};
        Application::initialize(count, arguments, false);
        Application::testing(true);
        Vs::Status status;
        Vs::AddInMgr::get()->loadAddIns(status);
        ASSERT_TRUE(status.isOk()) << status.matchingError("");
        // The display's own pointer, in its middle, would move into a window that comes up there, perhaps
        // only in the midst of a drag by the test.
        Application::get()->needGui();
        QCursor::setPos(QGuiApplication::primaryScreen()->geometry().bottomRight());
        WorkspaceMgr::get()->create()->window()->show();
        ASSERT_EQ(Vs::TextCommandMgr::get()->executeCommandWithoutOutput(L"Design.Sample").first, 0u);
        QTest::qWait(kStillMilliseconds);
    }
    void TearDown() override
    {
        if (!std::getenv("DISPLAY"))
            return;
        Application::get()->exit(true);
        Application::get()->shutDown();
        Vs::AddInMgr::get()->unloadAddIns();
    }

private:
    std::optional<TestSupport::ScratchFolder> m_folder; ///< Created in the process that runs the tests.
};

const auto* const theProgram = testing::AddGlobalTestEnvironment(new Program);

TEST_F(WindowPicture, ALineThatSetsTheCameraIsNotUndoneByAGlideThatStillPlays)
{
    using namespace Vs::Scene;
    const auto camera = [] { return view()->viewFragments().front()->camera(); };
    run(L"VuCommands.ViewCameraCmd ViewCameraPerspCommand");
    run(L"Camera.ZoomIn 3");
    for (const auto& [line, wanted] :
         {std::pair(L"VuCommands.ViewCameraCmd ViewCameraOrthoCommand", kParallelProjection),
          std::pair(L"Camera.Set 900,0,0 0,0,0 0,0,1 1 2000 400 300 2", kPerspectiveProjection)}) {
        run(L"Commands.Start FitCommand");
        run(line);
        const GkPoint3d position = camera()->position();
        EXPECT_EQ(camera()->projection(), wanted);
        QTest::qWait(kStillMilliseconds);
        EXPECT_EQ(camera()->projection(), wanted);
        EXPECT_TRUE(camera()->position().isEqualTo(position));
    }
}

TEST_F(WindowPicture, ACameraThatGlidesEndsExactlyWhereItsRecordedLineSays)
{
    const TestSupport::ScratchFolder folder;
    const std::string file = (folder.path() / "glides.txt").string();
    // To the last bit.
    const auto stand = [] {
        const Vs::Scene::CameraParameters at(*view()->viewFragments().front()->camera());
        return std::array{at.position.x, at.position.y,   at.position.z,   at.target.x, at.target.y,
                          at.target.z,   at.up.x,         at.up.y,         at.up.z,     at.clipNear,
                          at.clipFar,    at.extentsWidth, at.extentsHeight};
    };
    const auto ended = [&](const std::function<void()>& begin) {
        Application::testing(false);
        begin();
        Application::testing(true);
        EXPECT_TRUE(TransitionMgr::get()->playing());
        TransitionMgr::get()->finish();
        return stand();
    };
    view()->modelFragment()->camera()->look({0.1, 1, -0.1}, {0, 0, 1});
    run(L"Transcripting.Start " + Vs::Strings::quote(Vs::Strings::widen(file)));
    const auto fitted = ended([] { run(L"Commands.Start FitCommand"); });
    const auto turned = ended([] {
        const AutoCamViewFragment::Place& place = orbicon()->place();
        QTest::mouseClick(widget(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(int(place.left + place.size / 2), int(place.top + place.size / 2)));
    });
    EXPECT_NE(turned, fitted);
    run(L"Transcripting.Stop");
    std::vector<std::string> cameras;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);)
        if (line.starts_with("Camera.Set "))
            cameras.push_back(line);
    ASSERT_EQ(cameras.size(), 2u);
    for (const std::string& line : cameras)
        EXPECT_FALSE(std::regex_search(line, std::regex("[0-9]{11}|[0-9.]{12}"))) << line;
    run(Vs::Strings::widen(cameras.front()));
    EXPECT_EQ(stand(), fitted);
    run(Vs::Strings::widen(cameras.back()));
    EXPECT_EQ(stand(), turned);
}

TEST_F(WindowPicture, APictureOfTheWindowShowsWhatTheLineBeforeItHasChanged)
{
    const TestSupport::ScratchFolder folder;
    QWidget* const whole = widget()->window();
    const auto* panel = whole->findChild<QWidget*>(QStringLiteral("properties"));
    ASSERT_TRUE(panel && panel->isVisible());
    const auto picture = [&](const QWidget* part) {
        const std::string file = (folder.path() / "window.png").string();
        run(L"View.SaveWindow " + Vs::Strings::quote(Vs::Strings::widen(file)));
        const QImage image(QString::fromStdString(file));
        const double ratio = image.width() / double(whole->width());
        const QPoint corner = part->mapTo(whole, QPoint());
        return image.copy(QRect((QPointF(corner) * ratio).toPoint(), part->size() * ratio));
    };
    const QImage before = picture(panel);
    run(L"Selection.Select Table:1");
    EXPECT_NE(picture(panel), before);
    run(L"Selection.Clear");
    // A near rim gets a finer mesh first.
    run(L"Design.Torus 300 100 3000,0,0");
    run(L"Camera.Set 3398,60,500 3398,60,0 0,1,0 1 1000 40 30 1");
    const QImage rim = picture(widget());
    QTest::qWait(5 * kStillMilliseconds);
    EXPECT_EQ(picture(widget()), rim);
    run(L"Commands.Start UndoCommand");
    run(L"Commands.Start FitCommand");
}

/// Logs what is shown of it.
class Shown : public Vs::Implements<Shown, TransitionItem>
{
public:
    Shown(std::vector<std::pair<int, double>>& log, int number) : m_log(log), m_number(number) {}
    void apply(double fraction) override { m_log.emplace_back(m_number, fraction); }

private:
    std::vector<std::pair<int, double>>& m_log;
    int m_number;
};

TEST_F(WindowPicture, TransitionsOfOneEventPlayOneAfterTheOtherAndOneOfALaterEventEndsThem)
{
    using Log = std::vector<std::pair<int, double>>;
    Log log;
    TransitionMgr* transitions = TransitionMgr::get();
    const auto play = [&](int number) {
        Transition* transition = transitions->beginTransition();
        ASSERT_TRUE(transition);
        transition->add(new Shown(log, number));
        transitions->endTransition();
    };
    const bool testing = Application::testing();
    Application::testing(false);
    play(1);
    play(2);
    EXPECT_EQ(log, (Log{{1, 0}, {1, 1}, {1, 0}})) << "the second one begins where the first one ends";
    log.clear();
    ASSERT_TRUE(UiTests::becomes([&] { return !transitions->playing(); }));
    EXPECT_TRUE(std::is_sorted(log.begin(), log.end()));
    EXPECT_EQ(log.front().first, 1);
    EXPECT_NE(std::find(log.begin(), log.end(), std::pair(1, 1.0)), log.end());
    EXPECT_EQ(log.back(), std::pair(2, 1.0));

    play(3);
    play(4);
    log.clear();
    ASSERT_TRUE(UiTests::becomes([&] { return !log.empty(); }));
    log.clear();
    play(5);
    EXPECT_EQ(log, (Log{{3, 1}, {4, 1}, {5, 0}}));
    transitions->finish();
    EXPECT_EQ(log.back(), std::pair(5, 1.0));

    desktopReducesMotion(true);
    log.clear();
    play(6);
    EXPECT_EQ(log, (Log{{6, 1}})) << "whoever wants less motion sees the end at once";
    desktopReducesMotion(false);
    Application::testing(testing);
}

} // namespace
