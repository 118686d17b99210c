#pragma once

#include "UI/Base/Window/PointerKeys.h"

#include <set>

class QKeyEvent;
class QWidget;

namespace Vu {

class CommandPanel;

/// What the keys of a window do that none of its widgets had a use for: they move the view, point at things
/// in it, end or commit the tool, or go to the active command.
class WindowKeys
{
public:
    using Tell = std::function<void(const QString&)>;
    /// Window and panel outlive it; `tell` shows a text in the status bar.
    WindowKeys(const QWidget& window, CommandPanel& panel, const Tell& tell)
        : m_window(window), m_panel(panel), m_tell(tell), m_pointer(tell)
    {
    }

    /// Each returns false if nobody wants the key.
    bool press(const QKeyEvent& event);
    bool release(const QKeyEvent& event);
    /// Ctrl and an arrow, which lists and menus of a panel would take for themselves (PointerKeys::point).
    bool point(int arrow);
    /// Whether Tab leads to the values of the tool: who has picked something in the view goes on with them.
    bool walks() const;
    /// Brings the keyboard to the view, or else to the contents that begin with it, if what had it is gone,
    /// so that nobody works there.
    void findKeyboard(const QWidget& leftovers) const;
    /// Tells what keys do in the view, if the keyboard has come there.
    void tellIfInView() const;

private:
    QWidget* viewWidget() const;
    bool isInView() const;

    const QWidget& m_window;
    CommandPanel& m_panel;
    Tell m_tell;
    PointerKeys m_pointer;
    std::set<int> m_down; ///< Those whose press the active command got.
};

} // namespace Vu
