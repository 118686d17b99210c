#pragma once

#include "Server/Base/OptionGroup.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Base/Window/FollowedSelection.h"

#include <QTimer>
#include <QWidget>

class QLabel;
class QToolButton;

namespace Vu {

/// The permanent fields of the status bar: the running command, the selection, the unit of length, snapping,
/// and the running recording. The unit and snapping can be changed there.
class StatusFields : public QWidget,
                     private Vs::OptionEventSite,
                     private Vs::SelectionSetSite,
                     private SessionEventSite
{
public:
    explicit StatusFields(QWidget* parent);
    ~StatusFields() override;

    /// Call when commands or sessions have changed; updates at the end of the event.
    void refreshSoon();
    /// The same, now.
    void refresh();

private:
    void optionChanged(Vs::OptionEvent* event) override;
    void selectionSetChanged() override { refreshSoon(); }
    void currentSessionChanged(SessionEvent*) override { refreshSoon(); }
    void sessionClosed(SessionEvent* event) override;
    void showPrompt();
    void showSelection();
    void showRecording();
    void chooseUnit();
    void chooseSnap();

    QLabel* m_prompt;
    QLabel* m_selection;
    QToolButton* m_unit;
    QToolButton* m_snap;
    QLabel* m_recording;
    QTimer m_soon, m_second;
    FollowedSelection m_followed{*this}; ///< Of the active session, as long as that lasts.
    std::wstring m_recordedFile;
    qint64 m_recordedSince = 0; ///< In milliseconds since the epoch.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
