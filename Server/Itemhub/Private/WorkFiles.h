#pragma once

#include "Server/Itemhub/ItemStore.h"

#include <boost/filesystem/path.hpp>

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace Vs::Itemhub {

/// What tells one state of a file on the disk from another: a file that is saved anew is another one.
struct FileStamp
{
    std::uint64_t inode = 0, size = 0;
    std::int64_t changed = 0; ///< In nanoseconds.

    /// All zero if there is no such file.
    [[nodiscard]] static FileStamp of(const boost::filesystem::path& file);
    bool exists() const { return inode != 0; }
    /// The numbers, for a record; JSON's own don't hold all of an inode.
    [[nodiscard]] std::string text() const;
    /// All zero for another text.
    [[nodiscard]] static FileStamp ofText(const std::string& text);
    bool operator==(const FileStamp&) const = default;
};

/// A file on this machine that is an attachment's, or will be with its first version.
struct WorkFile
{
    boost::filesystem::path file;
    std::string account; ///< The account's folder.
    std::int64_t workspaceId = 0, itemId = 0;
    std::int64_t attachmentId = 0; ///< 0 until the first version has arrived.
    std::int64_t version = 0;      ///< That the file goes back to; 0 for none.
    std::string sha256;            ///< Of that version.
    std::string docType;
    FileStamp stamp; ///< Of the content that was downloaded or uploaded last, or given up.

    /// Whether the disk has another content; it may be queued.
    [[nodiscard]] bool isChanged() const;
};

/// The files of items on this machine, each in a folder of its own with a record beside it. Any thread. What
/// can't be written throws Vs::Exception.
class WorkFiles
{
public:
    using Path = boost::filesystem::path;

    static WorkFiles& get();

    /// Nothing if it isn't one.
    [[nodiscard]] std::optional<WorkFile> find(const Path& file) const;
    [[nodiscard]] std::vector<WorkFile> all(const std::string& account) const;
    /// Makes the folder and the record of a new file with that name; the file itself is the caller's to make.
    [[nodiscard]] WorkFile make(WorkFile values, const std::string& name);
    /// Changes a record as one step. Nothing if there is none.
    void change(const Path& file, const std::function<void(WorkFile&)>& action);
    /// Notes that the file is in use now. False if it isn't one of these. Doesn't throw.
    bool touch(const Path& file);
    /// Removes folders whose file nobody has used for so many seconds, and which the service has as it is,
    /// unless something else lies there, such as another program's note that it has the file, or `isNeeded`
    /// says so. Doesn't throw.
    void removeUnused(const std::string& account, std::int64_t seconds,
                      const std::function<bool(const WorkFile&)>& isNeeded);

private:
    mutable std::mutex m_mutex;
};

} // namespace Vs::Itemhub
