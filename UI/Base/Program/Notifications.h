#pragma once

#include "Server/Base/Event.h"

#include <ctime>
#include <memory>
#include <string>
#include <vector>

namespace Vs {

/// How a notification looks, and how long it stays.
class NotificationType
{
public:
    enum Kind { Error = 0, Warning = 1, Information = 2, Offer = 3 };

    /// An unknown number counts as information.
    [[nodiscard]] static NotificationType makeByType(int kind)
    {
        return NotificationType(kind >= Error && kind <= Offer ? static_cast<Kind>(kind) : Information);
    }
    Kind kind() const { return m_kind; }

private:
    explicit NotificationType(Kind kind) : m_kind(kind) {}
    Kind m_kind;
};

/// Who sent a notification.
class NotificationContextInfo
{
public:
    explicit NotificationContextInfo(std::wstring clientID) : m_clientID(std::move(clientID)) {}
    const std::wstring& clientID() const { return m_clientID; }

private:
    std::wstring m_clientID;
};

/// Something that the user is told without having to answer it. Owned by the centre.
class Notification
{
public:
    const std::wstring& title() const { return m_title; }
    const std::wstring& text() const { return m_text; }
    /// What a click on it does; empty if it does nothing.
    const std::wstring& clickText() const { return m_clickText; }
    const std::wstring& file() const { return m_file; }
    const NotificationContextInfo* contextInfo() const { return &m_contextInfo; }
    NotificationType type() const { return m_type; }
    std::time_t time() const { return m_time; }
    /// What the sender gave with it; not owned.
    Object* subject() const { return m_subject; }

private:
    friend class NotificationCenter;
    Notification(std::wstring title, std::wstring text, std::wstring clickText, std::wstring file,
                 std::wstring clientID, NotificationType type, Object* subject)
        : m_title(std::move(title)),
          m_text(std::move(text)),
          m_clickText(std::move(clickText)),
          m_file(std::move(file)),
          m_contextInfo(std::move(clientID)),
          m_type(type),
          m_time(std::time(nullptr)),
          m_subject(subject)
    {
    }

    std::wstring m_title, m_text, m_clickText, m_file;
    NotificationContextInfo m_contextInfo;
    NotificationType m_type;
    std::time_t m_time;
    Object* m_subject;
};

class NotificationEvent : public Implements<NotificationEvent, Event>
{
public:
    explicit NotificationEvent(Notification* notification)
        : Implements(Timing::After), m_notification(notification)
    {
    }
    Notification* notification() const { return m_notification; }

private:
    Notification* m_notification;
};

/// The user clicked on a notification.
class ActivateNotificationEvent : public Implements<ActivateNotificationEvent, NotificationEvent>
{
public:
    explicit ActivateNotificationEvent(Notification* notification) : Implements(notification) {}

    /// Whether the click was all that the notification was there for: it is removed then.
    bool handled() const { return m_handled; }
    void handled(bool handled) { m_handled = handled; }

private:
    bool m_handled = false;
};

/// Hears of notifications. Each operation does nothing unless overridden.
class NotificationsEventSite : public EventSite
{
public:
    virtual void notificationSent(NotificationEvent*) {}
    /// While it is still there.
    virtual void notificationRemoved(NotificationEvent*) {}
    /// Each site is asked; it looks whether the notification is one of its own, and still exists.
    virtual void onActivateNotification(ActivateNotificationEvent*) {}
};

class NotificationsEventSource : public EventSource<NotificationsEventSite>
{
public:
    static NotificationsEventSource* get()
    {
        static auto* const source = new NotificationsEventSource;
        return source;
    }
    void fireNotificationSent(NotificationEvent* event)
    {
        fire(&NotificationsEventSite::notificationSent, event);
    }
    void fireNotificationRemoved(NotificationEvent* event)
    {
        fire(&NotificationsEventSite::notificationRemoved, event);
    }
    void fireOnActivateNotification(ActivateNotificationEvent* event)
    {
        fire(&NotificationsEventSite::onActivateNotification, event);
    }
};

/// All notifications that weren't dismissed. Main thread only.
class NotificationCenter
{
public:
    static NotificationCenter* get();

    /// `file` is the file that it is about, if any; `subject` isn't owned.
    Notification* sendNotification(const std::wstring& title, const std::wstring& text,
                                   const std::wstring& clickText, const std::wstring& file,
                                   const std::wstring& clientID, NotificationType type, Object* subject);
    [[nodiscard]] bool exists(const Notification* notification) const;
    /// Adds those of one sender, the oldest first.
    void notificationsByClientID(const std::wstring& clientID, std::vector<Notification*>& found) const;
    /// The newest first.
    [[nodiscard]] std::vector<Notification*> notifications() const;
    /// One that isn't there is passed over.
    void remove(Notification* notification);
    /// As a click does.
    void activate(Notification* notification);

private:
    NotificationCenter() = default;
    std::vector<std::unique_ptr<Notification>> m_notifications;
};

} // namespace Vs

namespace Vu {

class NotificationsEventSiteFactory
{
public:
    /// The site that shows notifications: in the window's alert list, or without one as a line of text. The
    /// caller owns it and deletes it; it subscribes by itself.
    [[nodiscard]] static Vs::NotificationsEventSite* buildEventSite();
};

} // namespace Vu
