#pragma once

#include "Server/DataModel/Selection/ObjectPath.h"
#include "Tests/Support/Process.h"

#include <QMetaObject>
#include <QPoint>
#include <QProcess>
#include <QString>
#include <QWidget>

#include <chrono>
#include <functional>
#include <optional>
#include <thread>
#include <type_traits>

namespace Vu {
class GraphicsView;
class MouseEvent;
} // namespace Vu

namespace UiTests {

/// A user at the program's window, on a display of its own with a window manager: presses keys and mouse
/// buttons through the display server, by xdotool, and sees what is shown. Runs on its own thread, so that
/// the program may open dialogs that wait for the user.
class Visitor
{
public:
    /// Starts the program with its window in a folder of its own. False, with a notice, without a display,
    /// openbox or xdotool.
    [[nodiscard]] bool begin();
    void end();
    const boost::filesystem::path& folder() const { return m_folder.path(); }

    /// Lets the visitor act while the program runs.
    static void run(const std::function<void()>& visit);

    /// Everything below is for the visitor's thread.

    /// One task of a designer: at most eight keys or three clicks. Does nothing after a failure.
    void step(const char* what, const std::function<void()>& act);

    /// As "ctrl+o a Return".
    void keys(const QString& keys);
    void press(const QPoint& place, int button = 1);
    void doublePress(const QPoint& place);
    /// Drags until the condition holds, in small steps in that direction.
    void drag(const QPoint& from, const QPointF& way, const std::function<bool()>& isEnough, int button = 1);
    void moveTo(const QPoint& place);

    /// On the main thread, even while a dialog waits.
    template <class Function>
    static auto see(Function&& function)
    {
        using Result = std::invoke_result_t<Function>;
        if constexpr (std::is_void_v<Result>) {
            QMetaObject::invokeMethod(application(), std::forward<Function>(function),
                                      Qt::BlockingQueuedConnection);
        } else {
            Result result{};
            QMetaObject::invokeMethod(application(), std::forward<Function>(function),
                                      Qt::BlockingQueuedConnection, &result);
            return result;
        }
    }
    template <class Condition>
    static bool becomes(const Condition& condition)
    {
        using namespace std::chrono_literals;
        const auto end = std::chrono::steady_clock::now() + 60s;
        bool is = see(condition);
        while (!is && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(20ms);
            is = see(condition);
        }
        return is;
    }

    /// The position of something on the display; waits for it. The first with that object name, or that text,
    /// in the window or dialog that has the focus.
    static QPoint widget(const char* name);
    static QPoint button(const QString& text);
    static QPoint entry(const QString& title); ///< Of the open menu.
    static QPoint file(const QString& name);   ///< In the file dialog.

    using Test = std::function<bool(const Vs::ObjectPath& path)>;
    /// A place in the view at which a click would pick such a thing.
    static QPoint thing(const Test& test);
    /// The same for what lies there, below what a click picks.
    static QPoint edgeOrFace(const Test& test);
    /// Highlights it with the arrow keys, with as few as possible.
    void point(const Test& test);

private:
    static QObject* application();

    TestSupport::ScratchFolder m_folder;
    QProcess m_manager;
    unsigned m_keys = 0, m_clicks = 0;
};

} // namespace UiTests
