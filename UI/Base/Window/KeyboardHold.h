#pragma once

#include <QPointer>
#include <QWidget>

#include <cstdint>
#include <memory>

namespace Vu {

/// Keeps what is typed while the native window of a window is replaced, which the toolkit does when the first
/// canvas that draws by OpenGL comes into it: the display server sends keys to the native window that has the
/// keyboard, and those that the program hasn't seen yet when it destroys that one, or that are pressed before
/// the window manager has given the keyboard to the next, are lost otherwise.
///
/// Lives around the replacement. If the window has the keyboard, all keys come to the program meanwhile; that
/// ends with the next native window having the keyboard, for which it waits a few milliseconds, a third of a
/// second at most. They, and those that the old native window got, come to the window as if typed into it.
/// Without effect where the display server isn't X. Main thread.
///
/// Keys that the toolkit has taken from the server already, and not handed out, are out of reach. So whoever
/// starts from a key what may lead here calls `handOut` before.
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
    uint32_t m_root = 0; ///< That of the screen, to which keys go meanwhile; 0 if they don't.
};

} // namespace Vu
