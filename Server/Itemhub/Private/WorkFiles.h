#pragma once

#include "Server/Itemhub/ItemStore.h"

#include <boost/filesystem/path.hpp>

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace Vs::Itemhub {

/// Distinguishes one state of a file on disk from another: saving the file changes it.
struct FileStamp
{
    std::uint64_t inode = 0, size = 0;
    std::int64_t changed = 0; ///< In nanoseconds.

    /// All zero if there is no such file.
    [[nodiscard]] static FileStamp of(const boost::filesystem::path& file);
    bool exists() const { return inode != 0; }
    /// As text, for a record; JSON numbers can't hold every inode number.
    [[nodiscard]] std::string text() const;
    /// All zero for another text.
    [[nodiscard]] static FileStamp ofText(const std::string& text);
    bool operator==(const FileStamp&) const = default;
};

/// A local file that belongs to an attachment, or will with its first version.
struct WorkFile
{
    boost::filesystem::path file;
    std::string account; ///< The account's folder.
    std::int64_t workspaceId = 0, itemId = 0;
    std::int64_t attachmentId = 0; ///< 0 until the first version has arrived.
    std::int64_t version = 0;      ///< The version it is based on; 0 for none.
    std::string sha256;            ///< Hash of that version.
    std::string docType;
    FileStamp stamp; ///< Of the content last downloaded, uploaded or abandoned.

    /// Whether the file on disk differs; the change may be queued.
    [[nodiscard]] bool isChanged() const;
};

/// The files of items on this machine, each in its own folder with a record beside it. Any thread. Throws
/// Vs::Exception if something can't be written.
class WorkFiles
{
public:
    using Path = boost::filesystem::path;

    static WorkFiles& get();

    /// Nothing if it isn't one of them.
    [[nodiscard]] std::optional<WorkFile> find(const Path& file) const;
    [[nodiscard]] std::vector<WorkFile> all(const std::string& account) const;
    /// Creates the folder and the record of a new file with that name; the file itself is left to the
    /// caller.
    [[nodiscard]] WorkFile make(WorkFile values, const std::string& name);
    /// Changes a record atomically. Does nothing if there is none.
    void change(const Path& file, const std::function<void(WorkFile&)>& action);
    /// Notes that the file is in use now. False if it isn't one of these. Doesn't throw.
    bool touch(const Path& file);
    /// Removes folders whose file hasn't been used for that many seconds and matches the service's
    /// version, unless they contain something else, such as another program's note that it has the file open,
    /// or `isNeeded` says so. Doesn't throw.
    void removeUnused(const std::string& account, std::int64_t seconds,
                      const std::function<bool(const WorkFile&)>& isNeeded);

private:
    mutable std::mutex m_mutex;
};

} // namespace Vs::Itemhub
