#include "UI/Base/Window/DesktopNotifications.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QGuiApplication>

#include <algorithm>

namespace Vu {
namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kClick = QStringLiteral("default");
constexpr int kDesktopsChoice = -1; ///< How long it is shown.
constexpr qsizetype kMostActions = 2;

QDBusMessage call(const QString& method)
{
    return QDBusMessage::createMethodCall(kService, kPath, kService, method);
}

/// Low 0, normal 1, critical 2, by the interface's definition.
uchar urgencyOf(const Vs::Notification& notification)
{
    switch (notification.type().kind()) {
    case Vs::NotificationType::Error:
        return 2;
    case Vs::NotificationType::Information:
        return 0;
    default:
        return 1;
    }
}

QStringList actionsOf(const Vs::Notification& notification)
{
    const std::wstring& click = notification.clickText();
    QStringList actions{
        kClick, QString::fromStdWString(click.empty() ? localized("NotificationShow", "Show") : click)};
    for (const Vs::NotificationAction& action : notification.actions())
        if (const qsizetype number = actions.size() / 2 - 1; number < kMostActions)
            actions << QString::number(number) << QString::fromStdWString(action.text);
    return actions;
}

} // namespace

DesktopNotifications::DesktopNotifications(QObject* parent) : QObject(parent)
{
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        m_wasActive = m_wasActive || state == Qt::ApplicationActive;
    });
    m_subscriptions.add(Vs::NotificationsEventSource::get(), this);
}

bool DesktopNotifications::hasBus()
{
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

bool DesktopNotifications::connectToBus()
{
    if (!hasBus())
        return false;
    QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() &&
           bus.connect(kService, kPath, kService, QStringLiteral("ActionInvoked"), this,
                       SLOT(actionInvoked(uint, QString))) &&
           bus.connect(kService, kPath, kService, QStringLiteral("NotificationClosed"), this,
                       SLOT(closed(uint, uint)));
}

void DesktopNotifications::notificationSent(Vs::NotificationEvent* event)
{
    Vs::Notification* notification = event->notification();
    if (notification->quiet() || !m_wasActive || QGuiApplication::applicationState() == Qt::ApplicationActive)
        return;
    if (m_state == State::Unknown)
        m_state = connectToBus() ? State::Asking : State::None;
    if (m_state == State::None)
        return;
    if (m_state == State::Ready) {
        send(notification);
        return;
    }
    m_waiting.push_back(notification);
    if (m_waiting.size() == 1)
        askCapabilities();
}

void DesktopNotifications::askCapabilities()
{
    auto* watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(call(QStringLiteral("GetCapabilities"))), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        const QDBusPendingReply<QStringList> reply = *finished;
        finished->deleteLater();
        const std::vector<Vs::Notification*> waiting = std::exchange(m_waiting, {});
        if (reply.isError())
            return; // The service is gone; the next one is queried again.
        m_takesMarkup = reply.value().contains(QStringLiteral("body-markup"));
        m_takesActions = reply.value().contains(QStringLiteral("actions"));
        m_state = State::Ready;
        for (Vs::Notification* notification : waiting)
            send(notification);
    });
}

void DesktopNotifications::send(Vs::Notification* notification)
{
    QString body = QString::fromStdWString(notification->text());
    if (!notification->file().empty())
        body += (body.isEmpty() ? QString() : QStringLiteral("\n")) +
                QString::fromStdWString(FilePlace::shown(notification->file()));
    if (m_takesMarkup)
        body = body.toHtmlEscaped();
    QDBusMessage message = call(QStringLiteral("Notify"));
    message << QStringLiteral("Quillet") << uint(0) << QStringLiteral("quillet")
            << QString::fromStdWString(notification->title()) << body
            << (m_takesActions ? actionsOf(*notification) : QStringList())
            << QVariantMap{{QStringLiteral("urgency"), QVariant::fromValue(urgencyOf(*notification))},
                           {QStringLiteral("desktop-entry"), QStringLiteral("quillet")}}
            << kDesktopsChoice;
    m_sending.push_back(notification);
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, notification](QDBusPendingCallWatcher* finished) { answered(finished, notification); });
}

void DesktopNotifications::answered(QDBusPendingCallWatcher* watcher, Vs::Notification* notification)
{
    const QDBusPendingReply<uint> reply = *watcher;
    watcher->deleteLater();
    const bool wanted = std::find(m_sending.begin(), m_sending.end(), notification) != m_sending.end();
    std::erase(m_sending, notification);
    if (reply.isError())
        m_state = State::Asking; // Its successor may have other capabilities.
    else if (wanted)
        m_shown[reply.value()] = notification;
    else
        withdraw(reply.value());
}

void DesktopNotifications::withdraw(uint number)
{
    QDBusMessage message = call(QStringLiteral("CloseNotification"));
    message << number;
    QDBusConnection::sessionBus().asyncCall(message);
}

void DesktopNotifications::notificationRemoved(Vs::NotificationEvent* event)
{
    std::erase(m_waiting, event->notification());
    std::erase(m_sending, event->notification());
    for (auto shown = m_shown.begin(); shown != m_shown.end();)
        if (shown->second == event->notification()) {
            withdraw(shown->first);
            shown = m_shown.erase(shown);
        } else {
            ++shown;
        }
}

void DesktopNotifications::actionInvoked(uint number, const QString& key)
{
    const auto found = m_shown.find(number);
    if (found == m_shown.end())
        return;
    Vs::Notification* notification = found->second;
    if (WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow())
        window->activateWindow();
    bool isNumber = false;
    const uint action = key.toUInt(&isNumber);
    Application::get()->deferredTasks()->post([notification, action, isNumber] {
        auto* center = Vs::NotificationCenter::get();
        if (isNumber)
            center->act(notification, action);
        else
            center->activate(notification);
    });
}

void DesktopNotifications::closed(uint number, uint)
{
    // It is still in the list here.
    m_shown.erase(number);
}

} // namespace Vu
