#pragma once

#include "UI/Base/Window/PointerKeys.h"

#include <set>

class QKeyEvent;
class QWidget;

namespace Vu {

class CommandPanel;

/// Handles the keys of a window that none of its widgets used: they move the view, point at things in it, end
/// or commit the tool, or go to the active command.
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
    /// Ctrl and an arrow, which lists and menus of a panel would otherwise consume (PointerKeys::point).
    bool point(int arrow);
    /// Whether Tab leads to the values of the tool: a user who has picked something in the view goes on with
    /// them.
    bool walks() const;
    /// Moves the focus to the view, or else to the contents that start with it, if the widget that had it is
    /// gone, so that the user isn't typing into nothing.
    void findKeyboard(const QWidget& leftovers) const;
    /// Explains what keys do in the view, once it has the focus.
    void tellIfInView() const;

private:
    QWidget* viewWidget() const;
    bool isInView() const;

    const QWidget& m_window;
    CommandPanel& m_panel;
    Tell m_tell;
    PointerKeys m_pointer;
    std::set<int> m_down; ///< Those whose press went to the active command.
};

} // namespace Vu
