#include "Server/DataModel/Native/Paths.h"

#include "Server/Base/PathInfo.h"

#include <boost/filesystem/operations.hpp>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace Vs::Native {

namespace fs = boost::filesystem;

fs::path comparablePath(const std::wstring& path)
{
    boost::system::error_code error;
    const fs::path absolute = PathInfo::absolute(fs::path(path)).lexically_normal();
    const fs::path canonical = fs::weakly_canonical(absolute, error);
    return error ? absolute : canonical;
}

std::string followedPath(const std::string& path)
{
    constexpr int kMostLinks = 40;
    boost::system::error_code error;
    fs::path at = PathInfo::absolute(path);
    for (int links = 0; fs::is_symlink(at, error); ++links) {
        if (links == kMostLinks)
            throw std::runtime_error(std::strerror(ELOOP));
        const fs::path next = fs::read_symlink(at, error);
        if (error)
            throw std::runtime_error(error.message());
        at = fs::absolute(next, at.parent_path());
    }
    return at.lexically_normal().string();
}

bool isWriteProtected(const std::string& path)
{
    struct stat info;
    if (stat(path.c_str(), &info) != 0)
        return false;
    return (info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 || access(path.c_str(), W_OK) != 0;
}

bool isStillAt(int descriptor, const std::string& path)
{
    struct stat opened = {}, there = {};
    return fstat(descriptor, &opened) == 0 && lstat(path.c_str(), &there) == 0 &&
           opened.st_ino == there.st_ino && opened.st_dev == there.st_dev && S_ISREG(there.st_mode);
}

} // namespace Vs::Native
