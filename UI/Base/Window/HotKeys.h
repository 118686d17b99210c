#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>

#include <functional>

class QAction;
class QWidget;

namespace Vu {

class CommandDefinition;

/// Binds the shortcuts of the commands (KeyTable) to a window, and again whenever they change. Commands of
/// which only one is offered at a time may share a shortcut.
class HotKeys : public QObject
{
public:
    /// `run` is called with each command whose keys were pressed.
    HotKeys(QWidget* window, std::function<void(CommandDefinition*)> run);

    /// A key of the window itself, which is fixed.
    static void add(QWidget* window, const QKeySequence& key, std::function<void()> run);

private:
    void bind();

    QWidget* m_window;
    std::function<void(CommandDefinition*)> m_run;
    QList<QAction*> m_actions;
};

} // namespace Vu
