#pragma once

#include <cstdint>
#include <string>

namespace Vs {

/// A save that isn't at the service yet: a value, a snapshot of the time it was queried.
class UploadQueuedFileInfo
{
public:
    enum class State {
        Waiting,   ///< Its turn will come, or the service is unreachable.
        Uploading, ///< Now.
        Failed,    ///< The service refused it; it stays until somebody retries or abandons it.
        Outdated   ///< Refused, since another made a newer version meanwhile. Asked for again, it becomes the
                   ///< newest, and the other's stays as the version before.
    };
    struct Values
    {
        std::wstring fileName;
        std::wstring uploadQueuedFile;
        std::wstring document;
        std::wstring label;
        std::wstring reason;
        State state = State::Waiting;
        std::int64_t itemId = 0;
        std::uint64_t bytes = 0;
    };

    UploadQueuedFileInfo() = default;
    explicit UploadQueuedFileInfo(Values values) : m_values(std::move(values)) {}

    /// The file's name for the user, for example "wheel.vlra".
    const std::wstring& fileName() const { return m_values.fileName; }
    /// The queue's own link to the content. It identifies the entry in ItemhubUtilities' functions.
    const std::wstring& uploadQueuedFile() const { return m_values.uploadQueuedFile; }
    /// The local file of the document.
    const std::wstring& document() const { return m_values.document; }
    /// The label of the future version; may be empty.
    const std::wstring& label() const { return m_values.label; }
    /// For Failed and Outdated, as text for the user: what the service said, who made the newer version
    /// and when.
    const std::wstring& reason() const { return m_values.reason; }
    State state() const { return m_values.state; }
    std::int64_t itemId() const { return m_values.itemId; }
    std::uint64_t bytes() const { return m_values.bytes; }

private:
    Values m_values;
};

} // namespace Vs
