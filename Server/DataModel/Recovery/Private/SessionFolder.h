#pragma once

#include <memory>
#include <string>

namespace Vs::Recovery {

/// The folder of one run's recovery files, with a lock that the system releases when the run dies, however it
/// does: whose folder it is, a living run's or nobody's, is never a guess. Where files can't be locked a note
/// tells which process has it. The lock is inherited by forked children, so that a folder is nobody's only
/// when its last child has finished. Paths are bytes. Errors throw std::runtime_error.
class SessionFolder
{
public:
    /// A new one below that folder, for this run.
    [[nodiscard]] static std::unique_ptr<SessionFolder> create(const std::string& root);
    struct Claim
    {
        std::unique_ptr<SessionFolder> folder; ///< Null if somebody has it, or it is none.
        bool unfinished = false; ///< It is null because a run that has died left a child that still writes.
    };
    /// Takes over one that nobody has any more.
    [[nodiscard]] static Claim claim(const std::string& path);
    /// Gives it free.
    ~SessionFolder();
    SessionFolder(const SessionFolder&) = delete;
    SessionFolder& operator=(const SessionFolder&) = delete;

    const std::string& path() const { return m_path; }
    /// Of the lock; to be kept open by a child that writes in here.
    int descriptor() const { return m_lock; }
    /// Whether it is still there, and nobody has put another one in its place.
    [[nodiscard]] bool isThere() const;
    /// Removes the folders in it that hold no file, and it, if there is nothing left; says whether it is
    /// gone.
    bool removeIfEmpty();

private:
    SessionFolder(std::string path, int lock) : m_path(std::move(path)), m_lock(lock) {}

    std::string m_path;
    int m_lock;
};

} // namespace Vs::Recovery
