#pragma once

#include <string>
#include <sys/types.h>

namespace Vs {

/// Stands for a file that is only complete once written. Whoever writes it removes it on failure; if the
/// process ends in the middle of writing, only `removeAll` does so. Any thread.
class [[nodiscard]] UnfinishedFile
{
public:
    explicit UnfinishedFile(std::string path);
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    /// Removes the files of all existing objects, for a process that is about to end.
    static void removeAll();

private:
    const std::string m_path;
};

/// The permissions of a new file of this process: 0666 without its umask. The system reveals the umask only
/// by changing it, for all threads, so it is read from the process's state. Any thread.
[[nodiscard]] mode_t permissionsOfNewFiles();

} // namespace Vs
