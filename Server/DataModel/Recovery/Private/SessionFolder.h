#pragma once

#include <memory>
#include <string>

namespace Vs::Recovery {

/// The folder of one run's recovery files, with a lock that the system releases when the run dies, however it
/// does: whether a folder belongs to a living run or to nobody is never a guess. Where files can't be locked,
/// a note says which process has it. The lock is inherited by forked children, so that a folder is free only
/// when its last child has finished. Paths are bytes. Errors throw std::runtime_error.
class SessionFolder
{
public:
    /// A new one below that folder, for this run.
    [[nodiscard]] static std::unique_ptr<SessionFolder> create(const std::string& root);
    struct Claim
    {
        std::unique_ptr<SessionFolder> folder; ///< Null if somebody has it, or it isn't one.
        bool unfinished = false; ///< It is null because a run that died left a child that is still writing.
    };
    /// Takes over one that nobody has any more.
    [[nodiscard]] static Claim claim(const std::string& path);
    /// Releases it.
    ~SessionFolder();
    SessionFolder(const SessionFolder&) = delete;
    SessionFolder& operator=(const SessionFolder&) = delete;

    const std::string& path() const { return m_path; }
    /// Of the lock; to be kept open by a child that writes in here.
    int descriptor() const { return m_lock; }
    /// Whether it still exists, and hasn't been replaced by another one.
    [[nodiscard]] bool isThere() const;
    /// Removes its subfolders that hold no file, and the folder itself if nothing is left; returns whether it
    /// is gone.
    bool removeIfEmpty();

private:
    SessionFolder(std::string path, int lock) : m_path(std::move(path)), m_lock(lock) {}

    std::string m_path;
    int m_lock;
};

} // namespace Vs::Recovery
