#pragma once

#include <set>

class QKeyEvent;
class QWidget;

namespace Vu {

class CommandPanel;

/// What the keys of a window do that none of its widgets had a use for: they move the view, end or commit the
/// tool, or go to the active command.
class WindowKeys
{
public:
    /// Both outlive it.
    WindowKeys(const QWidget& window, CommandPanel& panel) : m_window(window), m_panel(panel) {}

    /// Each returns false if nobody wants the key.
    bool press(const QKeyEvent& event);
    bool release(const QKeyEvent& event);
    /// Whether Tab leads to the values of the tool: who has picked something in the view goes on with them.
    bool walks() const;

private:
    QWidget* viewWidget() const;

    const QWidget& m_window;
    CommandPanel& m_panel;
    std::set<int> m_down; ///< Those whose press the active command got.
};

} // namespace Vu
