#pragma once

#include "Server/DataModel/FileUser.h"

#include <memory>
#include <string>

namespace Vs::Native {

/// The note next to a file that says who works on it, for other programs and machines. It is locked, and the
/// system releases the lock when the process dies, however it does, so that a note of a dead process on this
/// machine counts for nothing; one from another machine counts as long as it exists, since not every file
/// system tells whether that process still lives. If the file's folder can't be written, the note is in the
/// program's state folder, where this user's programs find it. Paths are bytes.
class FileLock
{
public:
    /// Null, with who has the file, if somebody else works on it. Null with a nameless user if no note can be
    /// written anywhere. With `anyway` the note of another machine is replaced.
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
