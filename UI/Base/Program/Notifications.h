#pragma once

#include "Server/Base/Event.h"

#include <ctime>
#include <functional>
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

/// Something that can be done about a notification, by a button.
struct NotificationAction
{
    std::wstring text; ///< On the button.
    std::function<void()> run;
    bool ends = true; ///< Whether the notification has served its purpose afterwards.
};

/// A sender's message; everything but the title and the sender may be left out.
struct NotificationRequest
{
    std::wstring title;
    std::wstring text;
    std::wstring clickText; ///< What a click does; empty if it does nothing.
    std::wstring file;      ///< The file that it is about.
    std::wstring clientID;  ///< Who sends it.
    NotificationType type = NotificationType::makeByType(NotificationType::Information);
    Object* subject = nullptr;               ///< Not owned.
    std::vector<NotificationAction> actions; ///< Two are shown.
    bool quiet = false;                      ///< Only the list shows it.
};

/// Something that the user is told without having to answer it. Owned by the centre.
class Notification
{
public:
    const std::wstring& title() const { return m_request.title; }
    const std::wstring& text() const { return m_request.text; }
    /// The text, which stands below the title.
    const std::wstring& subTitle() const { return m_request.text; }
    /// What a click on it does; empty if it does nothing.
    const std::wstring& clickText() const { return m_request.clickText; }
    const std::wstring& file() const { return m_request.file; }
    const NotificationContextInfo* contextInfo() const { return &m_contextInfo; }
    NotificationType type() const { return m_request.type; }
    std::time_t time() const { return m_time; }
    /// What the sender gave with it; not owned.
    Object* subject() const { return m_request.subject; }
    const std::vector<NotificationAction>& actions() const { return m_request.actions; }
    bool quiet() const { return m_request.quiet; }
    /// Whether the user has seen it.
    bool seen() const { return m_seen; }

private:
    friend class NotificationCenter;
    explicit Notification(NotificationRequest request)
        : m_request(std::move(request)), m_contextInfo(m_request.clientID), m_time(std::time(nullptr))
    {
    }

    NotificationRequest m_request;
    NotificationContextInfo m_contextInfo;
    std::time_t m_time;
    bool m_seen = false;
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
    virtual void notificationSeen(NotificationEvent*) {}
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
    void fireNotificationSeen(NotificationEvent* event)
    {
        fire(&NotificationsEventSite::notificationSeen, event);
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

/// All notifications that weren't dismissed, of which it keeps the latest hundred. Main thread only.
class NotificationCenter
{
public:
    static NotificationCenter* get();

    /// `file` is the file that it is about, if any; `subject` isn't owned.
    Notification* sendNotification(const std::wstring& title, const std::wstring& text,
                                   const std::wstring& clickText, const std::wstring& file,
                                   const std::wstring& clientID, NotificationType type, Object* subject);
    /// The answer is null if a site has removed it at once.
    Notification* sendNotification(NotificationRequest request);
    [[nodiscard]] bool exists(const Notification* notification) const;
    /// Adds those of one sender, the oldest first.
    void notificationsByClientID(const std::wstring& clientID, std::vector<Notification*>& found) const;
    /// The newest first.
    [[nodiscard]] std::vector<Notification*> notifications() const;
    void markSeen(Notification* notification);
    /// Here and below, one that doesn't exist is ignored.
    void remove(Notification* notification);
    void removeByClientID(const std::wstring& clientID);
    /// Those of one sender that are about a file, for reporting its new state.
    void removeAboutFile(const std::wstring& clientID, const std::wstring& file);
    /// As a click does.
    void activate(Notification* notification);
    /// As a click on the button of its action of that number.
    void act(Notification* notification, size_t action);

private:
    NotificationCenter() = default;
    std::vector<std::unique_ptr<Notification>> m_notifications;
};

} // namespace Vs

namespace Vu {

class NotificationsEventSiteFactory
{
public:
    /// The site that tells notifications where no window shows them: as a line of text. The caller owns it
    /// and deletes it; it subscribes by itself.
    [[nodiscard]] static Vs::NotificationsEventSite* buildEventSite();
};

} // namespace Vu
