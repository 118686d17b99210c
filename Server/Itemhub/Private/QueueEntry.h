#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/Private/WorkFiles.h"
#include "Server/Itemhub/UploadQueuedFileInfo.h"

#include <boost/filesystem/path.hpp>

#include <optional>
#include <string>
#include <vector>

namespace Vs::Itemhub {

/// One save that is to become a version, as its record on the disk has it. The record lies beside the link to
/// the content: "000000000012.json" and "000000000012.file".
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
    bool isFound = false; ///< Nobody told of the save: it was found on the disk.
    State state = State::Waiting;
    std::string reason; ///< Of Failed.
    Web::Version other; ///< Of Outdated: the newer version; number, author and time of it alone.
    bool onTop = false; ///< Becomes the newest version, whatever it was made from.

    // What has been done of the upload.
    std::string sha256;
    std::uint64_t size = 0;
    std::string upload;                          ///< The service's name for it; empty before it has begun.
    bool isPosted = false;                       ///< The request that makes the version may have been sent.
    std::int64_t attachmentId = 0, madeFrom = 0; ///< As they are in that request.

    [[nodiscard]] Path record() const;
    /// Makes the record, or replaces it as a whole. Throws Vs::Exception. The disk may write it later: what a
    /// loss of power takes of it, the next sign-in finds by the working file's own record.
    void write() const;
    /// Removes the record, then the link.
    void remove() const;
    /// Main thread, which knows the user's language.
    [[nodiscard]] UploadQueuedFileInfo info() const;
    /// For the person: why it failed. Main thread.
    [[nodiscard]] std::wstring reasonText() const;

    /// Links the content under the next serial that is free, and writes the record. In between, a kill leaves
    /// a link that nothing refers to.
    void create();
    /// All of an account, the oldest first; links without a record are removed.
    [[nodiscard]] static std::vector<QueueEntry> all(const std::string& account);
    [[nodiscard]] static std::optional<QueueEntry> read(const Path& record);
};

} // namespace Vs::Itemhub
