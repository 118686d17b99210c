#include "UI/Base/Window/ToastStack.h"

#include "UI/Base/Window/NotificationRow.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QEvent>
#include <QMainWindow>
#include <QStatusBar>

#include <algorithm>

namespace Vu {
namespace {

constexpr size_t kMostToasts = 3;
constexpr int kWidth = 340;
/// Between toasts, and to the window's edges.
constexpr int kDistance = 12;
constexpr int kTick = 250;          // milliseconds
constexpr int kShownTime = 6000;    // milliseconds
constexpr int kWarningTime = 12000; // milliseconds
constexpr const char* kLeft = "timeLeft";

int timeOf(const Vs::Notification& notification)
{
    switch (notification.type().kind()) {
    case Vs::NotificationType::Error:
        return 0;
    case Vs::NotificationType::Information:
        return kShownTime;
    default:
        return kWarningTime;
    }
}

} // namespace

ToastStack::ToastStack(QMainWindow* window) : QObject(window), m_window(window)
{
    window->installEventFilter(this);
    m_placeTimer.setSingleShot(true);
    connect(&m_placeTimer, &QTimer::timeout, this, [this] { place(); });
    connect(&m_tick, &QTimer::timeout, this, [this] { tick(); });
    m_subscriptions.add(Vs::NotificationsEventSource::get(), this);
}

bool ToastStack::eventFilter(QObject* object, QEvent* event)
{
    // A new layout of the window's areas is stacked above what was there before.
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest)
        m_placeTimer.start(0);
    return QObject::eventFilter(object, event);
}

void ToastStack::notificationSent(Vs::NotificationEvent* event)
{
    Vs::Notification* notification = event->notification();
    const WorkspaceWindow* active = WorkspaceWindow::activeWorkspaceWindow();
    if (notification->quiet() || notification->seen() || !active || active->widget() != m_window)
        return;
    auto* toast = new NotificationRow(notification, NotificationRow::Place::Toast, m_window);
    // Closing only hides it for now: it stays in the list.
    toast->onClose([this, notification] {
        Vs::NotificationCenter::get()->markSeen(notification);
        take(notification);
    });
    toast->setProperty(kLeft, timeOf(*notification));
    m_toasts.push_back(toast);
    if (m_toasts.size() > kMostToasts)
        take(m_toasts.front()->notification());
    toast->show();
    place();
    m_tick.start(kTick);
}

void ToastStack::take(const Vs::Notification* notification)
{
    const auto found = std::find_if(m_toasts.begin(), m_toasts.end(), [&](const NotificationRow* toast) {
        return toast->notification() == notification;
    });
    if (found == m_toasts.end())
        return;
    NotificationRow* toast = *found;
    m_toasts.erase(found);
    toast->hide();
    // It may be the caller.
    toast->deleteLater();
    m_placeTimer.start(0);
}

/// The things that users work with at the foot of the window (the command box, the bars over a view) stay
/// uncovered.
int ToastStack::freeBottom(const QRect& column) const
{
    int bottom = column.bottom() + 1 - kDistance;
    for (const char* name : {"commandBox", "hud"})
        for (const QWidget* widget : m_window->findChildren<QWidget*>(QString::fromLatin1(name))) {
            const QRect place(widget->mapTo(m_window, QPoint()), widget->size());
            if (widget->isVisible() && place.intersects(column) && place.height() < column.height() / 2 &&
                place.center().y() > column.center().y())
                bottom = std::min(bottom, place.top() - kDistance);
        }
    return bottom;
}

void ToastStack::place()
{
    const QWidget* centre = m_window->centralWidget();
    if (!centre)
        return;
    const QRect area = centre->geometry();
    const int width = std::min(kWidth, area.width() - 2 * kDistance);
    int bottom = freeBottom(QRect(area.right() + 1 - kDistance - width, area.top(), width, area.height()));
    for (auto toast = m_toasts.rbegin(); toast != m_toasts.rend(); ++toast) {
        const int height =
            (*toast)->hasHeightForWidth() ? (*toast)->heightForWidth(width) : (*toast)->sizeHint().height();
        (*toast)->setGeometry(area.right() + 1 - kDistance - width, bottom - height, width, height);
        (*toast)->raise();
        bottom -= height + kDistance;
    }
}

void ToastStack::tick()
{
    if (m_toasts.empty()) {
        m_tick.stop();
        return;
    }
    if (!m_window->isActiveWindow())
        return;
    const std::vector<NotificationRow*> shown = m_toasts;
    for (NotificationRow* toast : shown) {
        Vs::Notification* notification = toast->notification();
        if (timeOf(*notification) == 0 || toast->underMouse())
            continue;
        const int left = toast->property(kLeft).toInt() - kTick;
        toast->setProperty(kLeft, left);
        if (left > 0)
            continue;
        // The user has seen it; what needs an answer or attention is counted until the list is opened.
        if (notification->type().kind() == Vs::NotificationType::Information)
            Vs::NotificationCenter::get()->markSeen(notification);
        take(notification);
    }
}

} // namespace Vu
