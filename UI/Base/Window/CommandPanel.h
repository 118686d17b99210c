#pragma once

#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Session/SessionEvents.h"

#include <QFrame>
#include <QPoint>
#include <QPointer>
#include <QTimer>

class QLabel;
class QPushButton;
class QScrollArea;

namespace Vu {

class CommandMgr;
class InputForm;
class Workspace;

/// The panel of the running command: title, inputs, what is wrong with them, OK and Cancel. It lies over the
/// active canvas and can be dragged by its title. Enter commits the command, Escape cancels it, Tab cycles
/// within the panel and enters it from the canvas.
class CommandPanel : public QFrame,
                     private CommandEventSite,
                     private SessionEventSite,
                     private CommandInputSetEventSite
{
public:
    /// Shows only the commands of this workspace, which outlives the panel.
    CommandPanel(const Workspace* workspace, QWidget* parent);
    ~CommandPanel() override;

    /// The command shown; null for none.
    CommandBase* command() const { return m_command; }
    /// Updates the panel now.
    void refresh();
    /// Performs a pending update that was put off to the end of the event.
    void settle()
    {
        if (m_soon.isActive())
            refresh();
    }
    /// Positions itself over the active canvas; for when the window has changed.
    void place();

    /// Commits the command with the values in the fields, if they are valid.
    void commit();
    void cancel();
    /// Moves the focus to the field before or after the focused one; from outside, to the one after the input
    /// that takes clicks in the view. False if there is none.
    bool walk(bool next);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override { return walk(next); }
    bool eventFilter(QObject* object, QEvent* event) override;
    bool event(QEvent* event) override;

private:
    void commandAvailabilitiesChanged(Vs::Event*) override { commandsChanged(); }
    void currentSessionChanged(SessionEvent*) override { commandsChanged(); }
    void sessionPostActivateForAsset(SessionEvent*) override { commandsChanged(); }
    void sessionDeactivated(SessionEvent*) override { commandsChanged(); }
    void commandInputChanged(CommandInputEvent* event) override;

    CommandBase* wanted() const;
    void commandsChanged();
    void open(CommandBase* command);
    void close();
    void showState();
    void cancelTopmost();
    QWidget* makeHead();
    void fillFoot();

    const Workspace* m_workspace;
    CommandBase* m_command = nullptr; ///< Never an ended one: every end is reported (CommandEventSite).
    CommandMgr* m_manager = nullptr;  ///< Of the command, and lives as long.
    QPointer<InputForm> m_form;       ///< Null if and only if there is no command.
    QWidget* m_head;
    QLabel* m_icon;
    QLabel* m_title;
    QScrollArea* m_scroll;
    QLabel* m_message;
    QWidget* m_foot; ///< With the buttons.
    QPushButton* m_ok;
    QTimer m_soon;
    QRect m_told;     ///< Where it was last placed.
    QPoint m_dragged; ///< How far from its usual place the panel was dragged.
    QPoint m_grabbed; ///< The last pointer position in the window, while dragging.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
