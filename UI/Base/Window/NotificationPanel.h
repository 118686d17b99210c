#pragma once

#include "UI/Base/Program/Notifications.h"

#include <QFrame>
#include <QTimer>

#include <vector>

class QBoxLayout;
class QLabel;
class QProgressBar;
class QScrollArea;
class QToolButton;

namespace Vu {

class NotificationRow;
class ProgressPanel;

/// The list behind the bell, the newest first; above it the work in progress, each with its progress and a
/// button that cancels it. A popup: Escape and clicks elsewhere close it. Opening it marks everything as
/// seen.
class NotificationPanel : public QFrame, private Vs::NotificationsEventSite
{
public:
    /// `progress` outlives the panel.
    NotificationPanel(ProgressPanel* progress, QWidget* parent);

    /// Opens it above that widget, within the screen.
    void openAbove(const QWidget& anchor);
    const std::vector<NotificationRow*>& rows() const { return m_rows; }

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void notificationSent(Vs::NotificationEvent*) override;
    void notificationRemoved(Vs::NotificationEvent* event) override;
    void notificationSeen(Vs::NotificationEvent*) override {}

    void addHead(QBoxLayout& column);
    void addWork(QBoxLayout& column);
    void fill();
    void clear();
    void showWork();
    void place();
    qsizetype focusedRow() const;
    void focusRow(qsizetype index);

    ProgressPanel* m_progress;
    QWidget* m_work;
    QLabel* m_workText = nullptr;
    QProgressBar* m_workBar = nullptr;
    QToolButton* m_cancel = nullptr;
    QToolButton* m_clear = nullptr;
    QScrollArea* m_scroll;
    std::vector<NotificationRow*> m_rows;
    qsizetype m_focused = -1; ///< Of a list about to be rebuilt; -1 for none.
    QTimer m_fillTimer, m_workTimer;
    QRect m_anchor; ///< On the screen.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
