#pragma once

#include "Server/Base/Event.h"

#include <boost/filesystem/path.hpp>

#include <string>

namespace Vs {

/// What happened to the session with the drive, or to a file of its cache.
class CloudEvent : public Implements<CloudEvent, Event>
{
public:
    explicit CloudEvent(boost::filesystem::path file = {}, std::wstring text = {})
        : m_file(std::move(file)), m_text(std::move(text))
    {
    }
    /// Empty if the event concerns no single file.
    const boost::filesystem::path& file() const { return m_file; }
    /// For the person, where there is something to say.
    const std::wstring& text() const { return m_text; }

private:
    boost::filesystem::path m_file;
    std::wstring m_text;
};

/// What happens to the cloud drive. Each operation does nothing unless overridden.
class CloudEventSite : public EventSite
{
public:
    /// Somebody signed in or out, or the drive can be reached again or no more.
    virtual void cloudSessionChanged(CloudEvent*) {}
    /// CloudCacheManager::state of a file is another one.
    virtual void cloudFileStateChanged(CloudEvent*) {}
    /// A save was refused, since another wrote a newer version; the text says who and when. Not fired under
    /// replay.
    virtual void cloudFileConflicted(CloudEvent*) {}
    /// What had waited has arrived; the file's identifier is known now.
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
