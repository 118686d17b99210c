#include "UI/Commands/Adaptations/QT/Cloud/CloudCacheFiles.h"

#include "Server/DataModel/DocumentMgr.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"

#include <boost/filesystem/operations.hpp>

namespace Vu::Commands::CloudCacheFiles {
namespace {

namespace fs = boost::filesystem;

/// Only a file for which the index says so: all others, like the index itself, aren't copies of the drive's.
bool isRemovable(const fs::path& file)
{
    return Vs::CloudCacheManager::getInstance()->state(file) == Vs::CloudFileState::Clean &&
           !Vs::DocumentMgr::get()->document(file.wstring());
}

} // namespace

Usage usage()
{
    Usage usage;
    const Vs::MeshportAuth* auth = Vs::MeshportAuth::globalInstance();
    const fs::path root = auth->isLoggedIn() ? Vs::SkyvaultUtilities::currentCachePath(auth) : fs::path();
    boost::system::error_code error;
    if (root.empty() || !fs::is_directory(root, error))
        return usage;
    // A file that disappears meanwhile counts as nothing.
    for (fs::recursive_directory_iterator each(root, error), end; !error && each != end;
         each.increment(error)) {
        boost::system::error_code gone;
        if (!fs::is_regular_file(each->symlink_status(gone)))
            continue;
        const std::uintmax_t size = fs::file_size(each->path(), gone);
        if (gone)
            continue;
        usage.bytes += size;
        if (isRemovable(each->path())) {
            usage.removableBytes += size;
            usage.removable.push_back(each->path());
        }
    }
    return usage;
}

std::uint64_t removeWhatTheDriveHas()
{
    std::uint64_t bytes = 0;
    for (const fs::path& file : usage().removable) {
        boost::system::error_code error;
        const std::uintmax_t size = fs::file_size(file, error);
        if (!error && fs::remove(file, error) && !error)
            bytes += size;
    }
    return bytes;
}

std::vector<Vs::SkyvaultNodeData> openable(std::vector<Vs::SkyvaultNodeData> nodes)
{
    std::erase_if(nodes, [](const Vs::SkyvaultNodeData& node) {
        return !node.isFolder() && Vs::CloudCacheManager::getInstance()->downloadRequired(&node);
    });
    return nodes;
}

} // namespace Vu::Commands::CloudCacheFiles
