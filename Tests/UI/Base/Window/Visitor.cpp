#include "Tests/UI/Base/Window/Visitor.h"

#include "Server/AddInMgr/AddInMgr.h"
#include "Server/Base/PathInfo.h"
#include "Server/DataModel/Selection/SelectionFilter.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Tests/UI/Becomes.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/Private/CanvasPicker.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseOverlay.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QEventLoop>
#include <QFileDialog>
#include <QMenu>
#include <QTest>

#include <boost/filesystem/operations.hpp>

#include <cstdlib>
#include <gtest/gtest.h>

using namespace Vu;

namespace UiTests {
namespace {

constexpr int kStep = 4; ///< Between sampled places in the view, in pixels.

QWidget* mainWidget()
{
    return WorkspaceWindow::activeWorkspaceWindow()->widget();
}

/// What has the focus: a dialog, or the window.
QWidget* front()
{
    QWidget* dialog = QApplication::activeModalWidget();
    return dialog ? dialog : mainWidget();
}

template <class Find>
QPoint place(Find&& find, const std::string& what)
{
    std::optional<QPoint> found;
    const bool isThere = Visitor::becomes([&] {
        found = find();
        return found.has_value();
    });
    EXPECT_TRUE(isThere) << "nobody can see " << what;
    return found.value_or(QPoint());
}

std::optional<QPoint> middleOf(const QWidget* widget)
{
    return widget ? std::optional(widget->mapToGlobal(widget->rect().center())) : std::nullopt;
}

bool isFree(const GraphicsCanvas& canvas, MouseEvent& event)
{
    const QWidget& widget = *canvas.existingWidget();
    // A panel or a bar over the view.
    const QWidget* top = QApplication::widgetAt(widget.mapToGlobal(QPoint(int(event.x()), int(event.y()))));
    MouseOverlay* overlay = canvas.view()->mouseOverlay();
    return top == &widget && !(overlay && overlay->takesMouse(&event));
}

class EverythingInParts : public Vs::Implements<EverythingInParts, Vs::SelectionFilter>
{
public:
    bool accepts(const Vs::Selection&) const override { return true; }
    bool mayAccept(Vs::ObjectPath::Leaf leaf) const override
    {
        using Leaf = Vs::ObjectPath::Leaf;
        return leaf == Leaf::Edge || leaf == Leaf::Face;
    }
};

const Vs::ObjectPath* pathOf(const Vs::Selection* selection)
{
    const auto* object = Vs::cast<Vs::LogicalSelection>(selection);
    return object ? &object->path() : nullptr;
}

/// The place surrounded by the most equally good ones.
template <class IsGood>
std::optional<QPoint> bestPlace(IsGood&& isGood)
{
    GraphicsCanvas* canvas = SplitViewMgr::get()->activeCanvas();
    if (!canvas || !canvas->existingWidget() || !canvas->view() || TransitionMgr::get()->playing())
        return std::nullopt;
    const int columns = canvas->width() / kStep, rows = canvas->height() / kStep;
    std::vector<char> good(static_cast<size_t>(columns * rows));
    const auto at = [&](int column, int row) -> char& {
        return good[static_cast<size_t>(row * columns + column)];
    };
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column) {
            MouseEvent event(canvas, {.x = double(column * kStep), .y = double(row * kStep)});
            at(column, row) = isFree(*canvas, event) && isGood(event);
        }
    int best = 0;
    std::optional<QPoint> found;
    for (int row = 1; row + 1 < rows; ++row)
        for (int column = 1; column + 1 < columns; ++column) {
            int count = 0;
            for (int down = -1; down <= 1; ++down)
                for (int right = -1; right <= 1; ++right)
                    count += at(column + right, row + down);
            if (at(column, row) && count > best) {
                best = count;
                found = canvas->existingWidget()->mapToGlobal(QPoint(column * kStep, row * kStep));
            }
        }
    return found;
}

/// The mouse position for the view, which the keys move as well.
class Pointer : private MouseEventSite
{
public:
    Pointer() { MouseEventSource::get()->subscribe(this); }
    ~Pointer() override { MouseEventSource::get()->unsubscribe(this); }

    std::optional<QPoint> last; ///< On the display.

private:
    void mouseMove(MouseEvent* event) override
    {
        if (const QWidget* widget = event->canvas() ? event->canvas()->existingWidget() : nullptr)
            last = widget->mapToGlobal(QPoint(int(event->x()), int(event->y())));
    }
};

void pause()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    Visitor::see([] { Application::get()->flushDeferredTasks(); });
}

void xdotool(const QStringList& arguments)
{
    constexpr int kPatience = 60'000; // In milliseconds: a display that hangs would block it forever.
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    EXPECT_TRUE(process.waitForFinished(kPatience) && process.exitCode() == 0)
        << arguments.join(u' ').toStdString();
    pause();
}

} // namespace

QObject* Visitor::application()
{
    return qApp;
}

bool Visitor::begin()
{
    m_manager.start(QStringLiteral("openbox"), {});
    if (!std::getenv("DISPLAY") || !m_manager.waitForStarted() ||
        QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("version")}) != 0)
        return false;
    Vs::PathInfo::profileDirectory(folder() / "profile");
    // The initial folder of file dialogs.
    boost::filesystem::current_path(folder());
    installHost();
    static int count = 1;
    static char name[] = "test_walk";
    static char* arguments[] = {name, nullptr};
    Application::initialize(count, arguments, false);
    Vs::Status status;
    Vs::AddInMgr::get()->loadAddIns(status);
    EXPECT_TRUE(status.isOk()) << status.matchingError("");
    WorkspaceMgr::get()->create()->window()->show();
    mainWidget()->setGeometry(20, 40, 1300, 760);
    // The window manager may start after the window, and then doesn't focus it.
    const bool isActive = UiTests::becomes([] {
        return QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("windowactivate"),
                                                             QString::number(mainWidget()->winId())}) == 0 &&
               mainWidget()->isActiveWindow();
    });
    // Nobody presses anything before the home screen has settled.
    constexpr int kRest = 1000;
    QTest::qWait(kRest);
    return isActive;
}

void Visitor::end()
{
    Application::get()->exit(true);
    Application::get()->shutDown();
    Vs::AddInMgr::get()->unloadAddIns();
    boost::filesystem::current_path("/");
    m_manager.terminate();
    m_manager.waitForFinished();
}

void Visitor::run(const std::function<void()>& visit)
{
    QEventLoop loop;
    std::thread visitor([&] {
        visit();
        // A failed visit may leave menus and dialogs open, which would block the program forever.
        const auto closesAny = [] {
            QWidget* menu = QApplication::activePopupWidget();
            QWidget* open = menu ? menu : QApplication::activeModalWidget();
            return open && open->close();
        };
        constexpr int kMost = 20; // Closing one may open another, which asks.
        for (int i = 0; i < kMost && see(closesAny); ++i)
            pause();
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    visitor.join();
}

void Visitor::step(const char* what, const std::function<void()>& act)
{
    SCOPED_TRACE(what);
    if (testing::Test::HasFailure())
        return;
    m_keys = m_clicks = 0;
    act();
    EXPECT_LE(m_keys, 8u) << "keys to " << what;
    EXPECT_LE(m_clicks, 3u) << "clicks to " << what;
}

void Visitor::keys(const QString& keys)
{
    for (const QString& key : keys.split(u' ')) {
        ++m_keys;
        xdotool({QStringLiteral("key"), key});
    }
}

void Visitor::moveTo(const QPoint& place)
{
    xdotool({QStringLiteral("mousemove"), QString::number(place.x()), QString::number(place.y())});
}

void Visitor::press(const QPoint& place, int button)
{
    ++m_clicks;
    moveTo(place);
    xdotool({QStringLiteral("click"), QString::number(button)});
}

void Visitor::doublePress(const QPoint& place)
{
    m_clicks += 2;
    moveTo(place);
    xdotool({QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"),
             QStringLiteral("--delay"), QStringLiteral("80"), QStringLiteral("1")});
}

void Visitor::drag(const QPoint& from, const QPointF& way, const std::function<bool()>& isEnough, int button)
{
    constexpr int kFarthest = 600;
    moveTo(from);
    xdotool({QStringLiteral("mousedown"), QString::number(button)});
    const double length = std::hypot(way.x(), way.y());
    for (int gone = 1; gone < kFarthest && !see(isEnough); ++gone)
        moveTo(from + (way / length * gone).toPoint());
    xdotool({QStringLiteral("mouseup"), QString::number(button)});
    EXPECT_TRUE(see(isEnough)) << "the drag led nowhere";
}

QPoint Visitor::widget(const char* name)
{
    return place(
        [name]() -> std::optional<QPoint> {
            for (const QWidget* each : front()->findChildren<QWidget*>(QLatin1String(name)))
                if (each->isVisible())
                    return middleOf(each);
            return std::nullopt;
        },
        name);
}

QPoint Visitor::button(const QString& text)
{
    return place(
        [&]() -> std::optional<QPoint> {
            for (const QAbstractButton* each : front()->findChildren<QAbstractButton*>())
                if (each->isVisible() &&
                    (QString(each->text()).remove(u'&') == text || each->accessibleName() == text))
                    return middleOf(each);
            return std::nullopt;
        },
        text.toStdString());
}

QPoint Visitor::entry(const QString& title)
{
    return place(
        [&]() -> std::optional<QPoint> {
            // A submenu is the topmost.
            const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            for (QAction* action : menu ? menu->actions() : QList<QAction*>())
                if (QString(action->text()).remove(u'&') == title && action->isEnabled())
                    return menu->mapToGlobal(menu->actionGeometry(action).center());
            return std::nullopt;
        },
        title.toStdString());
}

QPoint Visitor::file(const QString& name)
{
    return place(
        [&]() -> std::optional<QPoint> {
            const auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            for (const auto* view :
                 dialog ? dialog->findChildren<QAbstractItemView*>() : QList<QAbstractItemView*>()) {
                const QModelIndexList found =
                    view->isVisible() && view->model() && view->rootIndex().isValid()
                        ? view->model()->match(view->model()->index(0, 0, view->rootIndex()), Qt::DisplayRole,
                                               name, 1, Qt::MatchExactly)
                        : QModelIndexList();
                if (!found.isEmpty())
                    return view->viewport()->mapToGlobal(view->visualRect(found.front()).center());
            }
            return std::nullopt;
        },
        name.toStdString());
}

QPoint Visitor::thing(const Test& test)
{
    return place(
        [&] {
            const SelectionCommandInput* input =
                SelectionCommandInput::currentOf(CommandBase::getActiveCommand());
            return input ? bestPlace([&](const MouseEvent& event) {
                const auto found = input->under(event);
                const Vs::ObjectPath* path = pathOf(found.get());
                return path && test(*path);
            })
                         : std::nullopt;
        },
        "such a thing");
}

QPoint Visitor::edgeOrFace(const Test& test)
{
    return place(
        [&] {
            const AssetSession* session = ActiveAssetUtils::assetSession();
            const EverythingInParts filter;
            return session ? bestPlace([&](const MouseEvent& event) {
                const auto found = objectsUnder(event, *session, &filter);
                const Vs::ObjectPath* path = found.empty() ? nullptr : pathOf(found.front().get());
                return path && test(*path);
            })
                           : std::nullopt;
        },
        "such an edge or face");
}

void Visitor::point(const Test& test)
{
    constexpr int kMost = 8;
    const auto isLit = [&] {
        const auto& lit = ActiveAssetUtils::selectionManager()->highlightSet().selections();
        const Vs::ObjectPath* path = lit.empty() ? nullptr : pathOf(lit.front().get());
        return path && test(*path);
    };
    std::optional<Pointer> pointer;
    see([&] { pointer.emplace(); });
    const QString arrows[] = {QStringLiteral("ctrl+Right"), QStringLiteral("ctrl+Down"),
                              QStringLiteral("ctrl+Left"), QStringLiteral("ctrl+Up")};
    std::optional<QPoint> before;
    size_t aside = 0;
    for (int i = 0; i < kMost && !see(isLit); ++i) {
        const QPoint from = see([&] { return pointer->last.value_or(QCursor::pos()); });
        const QPoint way = thing(test) - from;
        const size_t arrow =
            std::abs(way.x()) > std::abs(way.y()) ? (way.x() > 0 ? 0 : 2) : (way.y() > 0 ? 1 : 3);
        // Where one arrow led nowhere, another may.
        aside = before == from ? aside + 1 : 0;
        before = from;
        keys(arrows[(arrow + aside) % std::size(arrows)]);
    }
    EXPECT_TRUE(see(isLit)) << "keys don't lead there";
    see([&] { pointer.reset(); });
}

} // namespace UiTests
