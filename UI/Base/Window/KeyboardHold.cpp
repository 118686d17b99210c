#include "UI/Base/Window/KeyboardHold.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QWindow>

#include <cstdlib>
#include <map>
#include <xcb/xcb.h>

namespace Vu {
namespace {

/// How long a window manager may take to give the keyboard focus to a new window, in milliseconds; after
/// that, the window takes it itself.
constexpr qint64 kLongestWait = 300;
constexpr unsigned long kBetweenLooks = 2;
constexpr xcb_window_t kNoWindow = XCB_WINDOW_NONE;

struct Free
{
    void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using Answer = std::unique_ptr<Reply, Free>;

/// Null if the display server isn't X.
xcb_connection_t* server()
{
    const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_window_t withKeyboard(xcb_connection_t* server)
{
    const Answer<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
    return focus ? focus->focus : kNoWindow;
}

xcb_window_t rootOf(xcb_connection_t* server, xcb_window_t window)
{
    const Answer<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(server, xcb_query_tree(server, window), nullptr));
    return tree ? tree->root : kNoWindow;
}

bool grabKeyboard(xcb_connection_t* server, xcb_window_t root)
{
    const auto asked =
        xcb_grab_keyboard(server, false, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const Answer<xcb_grab_keyboard_reply_t> grab(xcb_grab_keyboard_reply(server, asked, nullptr));
    return grab && grab->status == XCB_GRAB_STATUS_SUCCESS;
}

/// Readdresses key events before the toolkit looks up their window.
class Readdressing : public QAbstractNativeEventFilter
{
public:
    static Readdressing& get()
    {
        static auto* const made = new Readdressing;
        return *made;
    }

    void add(xcb_window_t from, QWidget* to) { m_windows[from] = to; }

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override
    {
        constexpr unsigned kWithoutSender = 0x7f;
        if (type != "xcb_generic_event_t")
            return false;
        const unsigned kind = static_cast<xcb_generic_event_t*>(message)->response_type & kWithoutSender;
        if (kind != XCB_KEY_PRESS && kind != XCB_KEY_RELEASE)
            return false;
        auto* key = static_cast<xcb_key_press_event_t*>(message);
        if (const auto known = m_windows.find(key->event); known != m_windows.end() && known->second)
            key->event = static_cast<xcb_window_t>(known->second->internalWinId());
        return false;
    }

private:
    Readdressing() { qApp->installNativeEventFilter(this); }

    std::map<xcb_window_t, QPointer<QWidget>> m_windows;
};

} // namespace

void KeyboardHold::handOut(const QWidget& window)
{
    const QWindow* native = window.windowHandle();
    if (native && native->surfaceType() == QSurface::RasterSurface)
        QCoreApplication::processEvents();
}

KeyboardHold::KeyboardHold(QWidget* window) : m_window(window)
{
    xcb_connection_t* const x = server();
    if (!x || !window->internalWinId())
        return;
    m_old = static_cast<uint32_t>(window->internalWinId());
    // The program itself may not know yet that the user has switched to another window.
    if (!window->isVisible() || withKeyboard(x) != m_old)
        return;
    if (const xcb_window_t root = rootOf(x, m_old); root && grabKeyboard(x, root))
        m_root = root;
}

KeyboardHold::~KeyboardHold()
{
    const auto now = m_window ? static_cast<xcb_window_t>(m_window->internalWinId()) : kNoWindow;
    const bool replaced = m_old && now && now != m_old;
    if (replaced)
        Readdressing::get().add(m_old, m_window);
    if (!holdsKeyboard())
        return;
    xcb_connection_t* const x = server();
    if (replaced) {
        Readdressing::get().add(m_root, m_window);
        QElapsedTimer waited;
        waited.start();
        while (withKeyboard(x) != now && waited.elapsed() < kLongestWait)
            QThread::msleep(kBetweenLooks);
        // No window has it, as without a window manager.
        if (const xcb_window_t other = withKeyboard(x);
            other <= XCB_INPUT_FOCUS_POINTER_ROOT || other == m_root)
            xcb_set_input_focus(x, XCB_INPUT_FOCUS_POINTER_ROOT, now, XCB_CURRENT_TIME);
    }
    xcb_ungrab_keyboard(x, XCB_CURRENT_TIME);
    xcb_flush(x);
}

} // namespace Vu
