#pragma once

#include <QPointer>
#include <QWidget>

#include <cstdint>
#include <memory>

namespace Vu {

/// Keeps what is typed while the native window of a window is replaced, which the toolkit does when the first
/// OpenGL canvas is added to it. The display server sends keys to the native window that has the focus; keys
/// that the program hasn't received when it destroys that window, or that are pressed before the window
/// manager has focused the next, would otherwise be lost.
///
/// Use it around the replacement. If the window has the focus, all keys go to the program meanwhile, until
/// the new native window has the focus, for which it waits a few milliseconds, a third of a second at most.
/// Those keys, and those that the old native window received, reach the window as if typed into it. Without
/// effect where the display server isn't X. Main thread.
///
/// Keys that the toolkit has already read from the server but not dispatched are out of reach. So callers
/// that react to a key with something that may lead here call `handOut` first.
class [[nodiscard]] KeyboardHold
{
public:
    explicit KeyboardHold(QWidget* window);
    ~KeyboardHold();
    /// Runs the event loop for a moment, if the native window of that window may still be replaced.
    static void handOut(const QWidget& window);

    KeyboardHold(const KeyboardHold&) = delete;
    KeyboardHold& operator=(const KeyboardHold&) = delete;

private:
    bool holdsKeyboard() const { return m_root != 0; }

    QPointer<QWidget> m_window;
    uint32_t m_old = 0;  ///< Identifier of the native window at the beginning; 0 without X.
    uint32_t m_root = 0; ///< That of the screen, which gets keys meanwhile; 0 if it doesn't.
};

} // namespace Vu
