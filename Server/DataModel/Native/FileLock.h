#pragma once

#include "Server/DataModel/FileUser.h"

#include <memory>
#include <string>

namespace Vs::Native {

/// The note beside a file that says who works on it, for other programs and machines. It is locked, and the
/// system gives the lock free when the process dies, however it does, so that a note of a dead process on
/// this machine counts for nothing; one of another machine counts as long as it is there, since not every
/// file system tells whether that still lives. Where the file's folder can't be written it is in the folder
/// of the program's state, where this user's programs find it. Paths are bytes.
class FileLock
{
public:
    /// Null, with who has the file, if somebody else works on it. Null with a user without a name if there
    /// can be no note anywhere. With `anyway` the note of another machine is replaced.
    [[nodiscard]] static std::unique_ptr<FileLock> take(const std::string& file, FileUser& holder,
                                                        bool anyway = false);
    /// Removes the note.
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    FileLock(std::string path, int descriptor) : m_path(std::move(path)), m_descriptor(descriptor) {}
    static std::unique_ptr<FileLock> takeAt(const std::string& path, FileUser& holder, bool anyway,
                                            bool& possible);
    void note() const;

    std::string m_path;
    int m_descriptor;
};

} // namespace Vs::Native
