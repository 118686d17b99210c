#pragma once

#include "Server/Base/Event.h"

#include <boost/filesystem/path.hpp>

#include <string>

namespace Vs {

/// Something happened to the session with the drive, or to a file in its cache.
class CloudEvent : public Implements<CloudEvent, Event>
{
public:
    explicit CloudEvent(boost::filesystem::path file = {}, std::wstring text = {})
        : m_file(std::move(file)), m_text(std::move(text))
    {
    }
    /// Empty if the event doesn't concern a single file.
    const boost::filesystem::path& file() const { return m_file; }
    /// Text for the user, if there is something to say.
    const std::wstring& text() const { return m_text; }

private:
    boost::filesystem::path m_file;
    std::wstring m_text;
};

/// Events of the cloud drive. Every operation does nothing unless overridden.
class CloudEventSite : public EventSite
{
public:
    /// Somebody signed in or out, or the drive became reachable or unreachable.
    virtual void cloudSessionChanged(CloudEvent*) {}
    /// CloudCacheManager::state of a file has changed.
    virtual void cloudFileStateChanged(CloudEvent*) {}
    /// A save was refused because somebody else wrote a newer version; the text says who and when. Not fired
    /// during replay.
    virtual void cloudFileConflicted(CloudEvent*) {}
    /// A waiting upload has arrived; the file's identifier is known now.
    virtual void cloudFileArrived(CloudEvent*) {}
};

class CloudEventSource : public EventSource<CloudEventSite>
{
public:
    static CloudEventSource* get()
    {
        static auto* const source = new CloudEventSource;
        return source;
    }

    void fireCloudSessionChanged(CloudEvent* event) { fire(&CloudEventSite::cloudSessionChanged, event); }
    void fireCloudFileStateChanged(CloudEvent* event) { fire(&CloudEventSite::cloudFileStateChanged, event); }
    void fireCloudFileConflicted(CloudEvent* event) { fire(&CloudEventSite::cloudFileConflicted, event); }
    void fireCloudFileArrived(CloudEvent* event) { fire(&CloudEventSite::cloudFileArrived, event); }
};

} // namespace Vs
