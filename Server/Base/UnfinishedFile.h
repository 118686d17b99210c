#pragma once

#include <string>
#include <sys/types.h>

namespace Vs {

/// Stands for a file that is on the disk only until it is complete. Whoever writes it removes it if that
/// fails; where the process ends from within the writing, nobody comes to do so but `removeAll`. Any thread.
class [[nodiscard]] UnfinishedFile
{
public:
    explicit UnfinishedFile(std::string path);
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    /// Removes the files of all that live, for a process that is about to end.
    static void removeAll();

private:
    const std::string m_path;
};

/// The permissions that a new file of this process gets: 0666 without its mask. The system tells the mask
/// only to who changes it, for all threads; so it is read from the process's state. Any thread.
[[nodiscard]] mode_t permissionsOfNewFiles();

} // namespace Vs
