#include "Server/DataModel/Native/FileCalls.h"

#include "Server/Base/Require.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace Vs::Native {

namespace {

FileCalls* s_replacement = nullptr;

} // namespace

int FileCalls::open(const char* path, int flags, mode_t mode)
{
    return ::open(path, flags, mode);
}

ssize_t FileCalls::write(int descriptor, const void* data, size_t size)
{
    return ::write(descriptor, data, size);
}

ssize_t FileCalls::writeAt(int descriptor, const void* data, size_t size, off_t place)
{
    return ::pwrite(descriptor, data, size, place);
}

ssize_t FileCalls::copy(int from, off_t* place, int to, size_t size)
{
    return ::copy_file_range(from, place, to, nullptr, size, 0);
}

int FileCalls::lock(int descriptor)
{
    return ::flock(descriptor, LOCK_EX | LOCK_NB);
}

int FileCalls::giveTo(int descriptor, uid_t owner, gid_t group)
{
    return ::fchown(descriptor, owner, group);
}

int FileCalls::rights(int descriptor, mode_t mode)
{
    return ::fchmod(descriptor, mode);
}

ssize_t FileCalls::attributes(const char* path, char* names, size_t size)
{
    return ::listxattr(path, names, size);
}

ssize_t FileCalls::attribute(const char* path, const char* name, void* value, size_t size)
{
    return ::getxattr(path, name, value, size);
}

int FileCalls::giveAttribute(int descriptor, const char* name, const void* value, size_t size)
{
    return ::fsetxattr(descriptor, name, value, size, 0);
}

int FileCalls::flush(int descriptor)
{
    return ::fsync(descriptor);
}

int FileCalls::close(int descriptor)
{
    return ::close(descriptor);
}

int FileCalls::rename(const char* from, const char* to)
{
    return ::rename(from, to);
}

int FileCalls::remove(const char* path)
{
    return ::remove(path);
}

FileCalls& FileCalls::current()
{
    assertMainThread();
    static FileCalls own;
    return s_replacement ? *s_replacement : own;
}

void FileCalls::replace(FileCalls* calls)
{
    assertMainThread();
    s_replacement = calls;
}

} // namespace Vs::Native
