#pragma once

#include "Server/Base/Event.h"
#include "Server/Itemhub/WebServices.h"

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

namespace Vs {

/// The session or the upload queue has changed; ask ItemhubUtilities for the current state.
class ItemhubEvent : public Implements<ItemhubEvent, Event>
{
public:
    ItemhubEvent() = default;
};

/// A failure to be reported to the user.
class ItemhubErrorEvent : public Implements<ItemhubErrorEvent, ItemhubEvent>
{
public:
    explicit ItemhubErrorEvent(std::wstring message) : m_message(std::move(message)) {}
    const std::wstring& getErrorMessage() const { return m_message; }

private:
    std::wstring m_message;
};

/// The results of a search.
class ItemhubSearchResultsEvent : public Implements<ItemhubSearchResultsEvent, ItemhubEvent>
{
public:
    using Items = std::vector<Corvane::Itemstore::WebServices::Item>;
    ItemhubSearchResultsEvent(std::wstring query, bool mode, Items items, std::wstring failure)
        : m_query(std::move(query)), m_items(std::move(items)), m_failure(std::move(failure)), m_mode(mode)
    {
    }

    const std::wstring& query() const { return m_query; }
    /// As passed when the search was started.
    bool mode() const { return m_mode; }
    /// Best match first.
    const Items& items() const { return m_items; }
    /// Why there are none, as text for the user; empty if the search succeeded.
    const std::wstring& failure() const { return m_failure; }

private:
    std::wstring m_query;
    Items m_items;
    std::wstring m_failure;
    bool m_mode;
};

/// Something happened to an item, here or elsewhere.
class ItemhubItemEvent : public Implements<ItemhubItemEvent, ItemhubEvent>
{
public:
    ItemhubItemEvent(std::string kind, std::int64_t itemId, std::int64_t attachmentId, std::int64_t version,
                     std::wstring account)
        : m_kind(std::move(kind)),
          m_itemId(itemId),
          m_attachmentId(attachmentId),
          m_version(version),
          m_account(std::move(account))
    {
    }

    /// "item.added", "item.changed", "item.removed", "link.added", "link.removed", "comment.added",
    /// "comment.removed", "attachment.added", "attachment.removed" or "version.added"; others may be added.
    const std::string& kind() const { return m_kind; }
    std::int64_t itemId() const { return m_itemId; }
    std::int64_t attachmentId() const { return m_attachmentId; } ///< 0 if none is concerned.
    std::int64_t version() const { return m_version; }           ///< The same.
    const std::wstring& account() const { return m_account; }    ///< Who did it.

private:
    std::string m_kind;
    std::int64_t m_itemId, m_attachmentId, m_version;
    std::wstring m_account;
};

/// The service's dashboard requests something; ItemhubUtilities::takeDashboardRequest claims it.
class ItemhubDashboardEvent : public Implements<ItemhubDashboardEvent, ItemhubEvent>
{
public:
    explicit ItemhubDashboardEvent(std::int64_t request) : m_request(request) {}
    std::int64_t request() const { return m_request; }

private:
    std::int64_t m_request;
};

/// The upload state of a document has changed.
class ItemhubUploadEvent : public Implements<ItemhubUploadEvent, ItemhubEvent>
{
public:
    ItemhubUploadEvent(boost::filesystem::path document, std::int64_t version)
        : m_document(std::move(document)), m_version(version)
    {
    }
    /// The local file of the document.
    const boost::filesystem::path& document() const { return m_document; }
    /// The version that has just arrived; 0 if none has.
    std::int64_t version() const { return m_version; }

private:
    boost::filesystem::path m_document;
    std::int64_t m_version;
};

/// Events of the lifecycle service. Every operation does nothing unless overridden. Main thread only:
/// results of other threads arrive through ItemhubUtilities::results().
class ItemhubEventSite : public EventSite
{
public:
    /// A sign-in succeeded.
    virtual void userAuthenticated(ItemhubEvent*) {}
    /// Somebody signed in or out, or the service became reachable or unreachable.
    virtual void sessionChanged(ItemhubEvent*) {}
    virtual void onErrorMessage(ItemhubErrorEvent*) {}
    /// An upload failed and stays failed until somebody retries it
    /// (ItemhubUtilities::getAllRecoverFiles).
    virtual void onRecoveryMessage(ItemhubEvent*) {}
    virtual void onRecoveryFileDeleted(ItemhubEvent*) {}
    /// The account's favourites have changed, through this program or another.
    virtual void favoritesChanged(ItemhubEvent*) {}
    virtual void searchResultsReceived(ItemhubSearchResultsEvent*) {}
    virtual void itemChanged(ItemhubItemEvent*) {}
    virtual void uploadStateChanged(ItemhubUploadEvent*) {}
    virtual void dashboardAsked(ItemhubDashboardEvent*) {}
};

class ItemhubEventSource : public EventSource<ItemhubEventSite>
{
public:
    static ItemhubEventSource* get()
    {
        static auto* const source = new ItemhubEventSource;
        return source;
    }

    void fireUserAuthenticated(ItemhubEvent* event) { fire(&ItemhubEventSite::userAuthenticated, event); }
    void fireSessionChanged(ItemhubEvent* event) { fire(&ItemhubEventSite::sessionChanged, event); }
    void fireErrorMessage(ItemhubErrorEvent* event) { fire(&ItemhubEventSite::onErrorMessage, event); }
    void fireRecoveryMessage(ItemhubEvent* event) { fire(&ItemhubEventSite::onRecoveryMessage, event); }
    void fireRecoveryFileDeleted(ItemhubEvent* event)
    {
        fire(&ItemhubEventSite::onRecoveryFileDeleted, event);
    }
    void fireFavoritesChanged(ItemhubEvent* event) { fire(&ItemhubEventSite::favoritesChanged, event); }
    void fireSearchResultsReceived(ItemhubSearchResultsEvent* event)
    {
        fire(&ItemhubEventSite::searchResultsReceived, event);
    }
    void fireItemChanged(ItemhubItemEvent* event) { fire(&ItemhubEventSite::itemChanged, event); }
    void fireUploadStateChanged(ItemhubUploadEvent* event)
    {
        fire(&ItemhubEventSite::uploadStateChanged, event);
    }
    void fireDashboardAsked(ItemhubDashboardEvent* event) { fire(&ItemhubEventSite::dashboardAsked, event); }
};

} // namespace Vs
