#pragma once

#include <sys/types.h>

namespace Vs::Native {

/// The system calls that a save is made of, each with the meaning of its namesake: -1 and errno on failure.
/// One seam, so that it can be tried out what happens when any of them fails.
class FileCalls
{
public:
    virtual ~FileCalls() = default;

    virtual int open(const char* path, int flags, mode_t mode);
    virtual ssize_t write(int descriptor, const void* data, size_t size);
    virtual ssize_t writeAt(int descriptor, const void* data, size_t size, off_t place);
    /// Between files of one kind, by the file system itself where it can (copy_file_range).
    virtual ssize_t copy(int from, off_t* place, int to, size_t size);
    virtual int lock(int descriptor); ///< Exclusively, without waiting.
    virtual int giveTo(int descriptor, uid_t owner, gid_t group);
    virtual int rights(int descriptor, mode_t mode);
    /// Extended attributes, to which access lists belong: the names of a file's, each with a zero behind it
    /// (listxattr), the value of one (getxattr), and giving one to an open file (fsetxattr).
    virtual ssize_t attributes(const char* path, char* names, size_t size);
    virtual ssize_t attribute(const char* path, const char* name, void* value, size_t size);
    virtual int giveAttribute(int descriptor, const char* name, const void* value, size_t size);
    virtual int flush(int descriptor); ///< To the disk (fsync).
    virtual int close(int descriptor);
    virtual int rename(const char* from, const char* to);
    virtual int remove(const char* path);

    /// What saves use. Main thread.
    static FileCalls& current();
    /// Not owned; null for the system's own.
    static void replace(FileCalls* calls);
};

} // namespace Vs::Native
