#pragma once

#include <string>

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

} // namespace Vs
