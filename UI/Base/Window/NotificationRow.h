#pragma once

#include "UI/Base/Program/Notifications.h"

#include <QFrame>

#include <functional>

class QBoxLayout;

namespace Vu {

/// One notification as the user sees it: icon, title, text, file, actions, and a button that dismisses it.
/// Presses take effect after the event, so that the row may be removed with its notification.
class NotificationRow : public QFrame
{
public:
    enum class Place {
        List, ///< Takes the focus and the keys: Return clicks, Delete dismisses.
        Toast ///< Neither it nor its buttons ever take the focus.
    };
    NotificationRow(Vs::Notification* notification, Place place, QWidget* parent);

    /// It exists as long as the row: whoever owns rows removes them with their notifications.
    Vs::Notification* notification() const { return m_notification; }
    /// Up (-1) or Down (+1) was pressed, to move within the list.
    void onMove(std::function<void(int)> callback) { m_move = std::move(callback); }
    /// Called when the user closes the row. By default the notification is dismissed.
    void onClose(std::function<void()> callback) { m_close = std::move(callback); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void addHead(QBoxLayout& column);
    void addText(QBoxLayout& column, const QString& text, const char* name);
    void addActions(QBoxLayout& column);
    QString timeText() const;
    void activate();
    void closeList();

    Vs::Notification* m_notification;
    Place m_place;
    std::function<void(int)> m_move;
    std::function<void()> m_close;
};

} // namespace Vu
