#pragma once

#include <sys/types.h>

namespace Vs::Native {

/// The system calls that a save is made of, each behaving like its namesake: -1 and errno on failure. A
/// single seam, so that tests can make any of them fail.
class FileCalls
{
public:
    virtual ~FileCalls() = default;

    virtual int open(const char* path, int flags, mode_t mode);
    virtual ssize_t write(int descriptor, const void* data, size_t size);
    virtual ssize_t writeAt(int descriptor, const void* data, size_t size, off_t place);
    /// Between files on one file system, by the file system itself where it can (copy_file_range).
    virtual ssize_t copy(int from, off_t* place, int to, size_t size);
    virtual int lock(int descriptor); ///< Exclusive, without waiting.
    virtual int giveTo(int descriptor, uid_t owner, gid_t group);
    virtual int rights(int descriptor, mode_t mode);
    /// Extended attributes, which include access lists: the names of a file's, each terminated by a zero byte
    /// (listxattr), the value of one (getxattr), and setting one on an open file (fsetxattr).
    virtual ssize_t attributes(const char* path, char* names, size_t size);
    virtual ssize_t attribute(const char* path, const char* name, void* value, size_t size);
    virtual int giveAttribute(int descriptor, const char* name, const void* value, size_t size);
    virtual int flush(int descriptor); ///< To the disk (fsync).
    virtual int close(int descriptor);
    virtual int rename(const char* from, const char* to);
    virtual int remove(const char* path);

    /// The calls that saves use. Main thread.
    static FileCalls& current();
    /// Not owned; null for the system's.
    static void replace(FileCalls* calls);
};

} // namespace Vs::Native
