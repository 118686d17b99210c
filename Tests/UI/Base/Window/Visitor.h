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

/// Somebody at the program's window, on a display of its own with a window manager: presses the keys and
/// buttons that the display server knows, by xdotool, and sees what shows. Sits on a thread of their own, so
/// that the program may open dialogs that wait for them.
class Visitor
{
public:
    /// Starts the program with its window in a folder of its own. False, with a notice, without a display,
    /// openbox or xdotool.
    [[nodiscard]] bool begin();
    void end();
    const boost::filesystem::path& folder() const { return m_folder.path(); }

    /// Has the visitor do something while the program runs.
    static void run(const std::function<void()>& visit);

    /// Everything below is for the visitor's thread.

    /// One thing that a designer wants: at most eight keys or three clicks. Nothing once something failed.
    void step(const char* what, const std::function<void()>& act);

    /// As "ctrl+o a Return".
    void keys(const QString& keys);
    void press(const QPoint& place, int button = 1);
    void doublePress(const QPoint& place);
    /// Drags until it is so, in small steps that way.
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

    /// Where something shows on the display; waits for it. The first of those by that object name, or that
    /// text, in the window or dialog that has the keyboard.
    static QPoint widget(const char* name);
    static QPoint button(const QString& text);
    static QPoint entry(const QString& title); ///< Of the menu that is open.
    static QPoint file(const QString& name);   ///< In the dialog for files.

    using Test = std::function<bool(const Vs::ObjectPath& path)>;
    /// A place in the view at which a click would take such a thing.
    static QPoint thing(const Test& test);
    /// The same of what lies there, under what a click takes.
    static QPoint edgeOrFace(const Test& test);
    /// Lights it up by the arrows, as few as it takes.
    void point(const Test& test);

private:
    static QObject* application();

    TestSupport::ScratchFolder m_folder;
    QProcess m_manager;
    unsigned m_keys = 0, m_clicks = 0;
};

} // namespace UiTests
