#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/Private/WorkFiles.h"
#include "Server/Itemhub/UploadQueuedFileInfo.h"

#include <boost/filesystem/path.hpp>

#include <optional>
#include <string>
#include <vector>

namespace Vs::Itemhub {

/// One save that is to become a version, as recorded on disk. The record is stored beside the link to the
/// content: "000000000012.json" and "000000000012.file".
struct QueueEntry
{
    using Path = boost::filesystem::path;
    using State = UploadQueuedFileInfo::State;

    std::uint64_t serial = 0;
    std::string account; ///< The account's folder.
    Path document;       ///< The working file.
    Path link;           ///< The content.
    FileStamp stamp;     ///< Of the working file when it was queued.
    std::int64_t itemId = 0;
    std::string label;
    std::string key;      ///< For the request that makes the version.
    bool isFound = false; ///< The save wasn't reported, but found on disk.
    State state = State::Waiting;
    std::string reason; ///< Of Failed.
    Web::Version other; ///< For Outdated: the newer version; only its number, author and time.
    bool onTop = false; ///< Becomes the newest version, whatever it is based on.

    // The progress of the upload.
    std::string sha256;
    std::uint64_t size = 0;
    std::string upload;    ///< The service's identifier of it; empty before it has begun.
    bool isPosted = false; ///< The request that makes the version may have been sent.
    std::int64_t attachmentId = 0, madeFrom = 0; ///< As they are in that request.

    [[nodiscard]] Path record() const;
    /// Creates the record, or replaces it atomically. Throws Vs::Exception. The disk may write it later:
    /// what is lost in a power failure is found at the next sign-in through the working file's own record.
    void write() const;
    /// Removes the record, then the link.
    void remove() const;
    /// Main thread, which has the user's language.
    [[nodiscard]] UploadQueuedFileInfo info() const;
    /// Why it failed, as text for the user. Main thread.
    [[nodiscard]] std::wstring reasonText() const;

    /// Links the content under the next free serial, then writes the record. A kill in between leaves an
    /// unreferenced link.
    void create();
    /// All entries of an account, oldest first; removes links without a record.
    [[nodiscard]] static std::vector<QueueEntry> all(const std::string& account);
    [[nodiscard]] static std::optional<QueueEntry> read(const Path& record);
};

} // namespace Vs::Itemhub
