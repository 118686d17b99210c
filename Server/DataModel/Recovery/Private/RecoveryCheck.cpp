#include "Server/DataModel/Recovery/Private/RecoveryCheck.h"

#include "Server/DataModel/Native/DocumentContent.h"
#include "Server/DataModel/Native/NativeLoad.h"
#include "Server/DataModel/Native/Package.h"

#include <boost/filesystem/operations.hpp>

#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace Vs::Recovery {

namespace {

constexpr uint64_t kMostRecord = uint64_t(1) << 20;

// A link, a pipe or another user's file is nothing of ours.
bool isOwnFile(const std::string& path)
{
    struct stat state = {};
    return lstat(path.c_str(), &state) == 0 && S_ISREG(state.st_mode) && state.st_uid == getuid();
}

RecoveryRecord readThrough(const std::string& path)
{
    const Native::NativeLoad load = Native::NativeLoad::read(path);
    const Native::Package package(load.file);
    const auto goOn = [] { return true; };
    for (const Native::Manifest::Asset& asset : load.manifest.assets)
        if (!asset.part.empty())
            package.check(asset.part, goOn);
    for (const Native::Manifest::Extra& extra : load.manifest.extras)
        package.check(extra.entry, goOn);
    auto record = RecoveryRecord::read(package.read(Native::kRecordName, kMostRecord));
    // What stands there now may be something else than a document.
    boost::system::error_code error;
    const auto kind = boost::filesystem::status(record.source, error).type();
    if (kind != boost::filesystem::regular_file && kind != boost::filesystem::file_not_found)
        record.source.clear();
    return record;
}

bool isOfNewerVersion(const std::string& path)
{
    try {
        return isNewer(Native::Package(path).read(Native::kManifestName, Native::Package::kMostManifest));
    } catch (const std::runtime_error&) {
        return false;
    }
}

} // namespace

RecoveryCheck RecoveryCheck::of(const std::string& path)
{
    if (!isOwnFile(path))
        return {};
    try {
        return {Answer::Sound, readThrough(path)};
    } catch (const std::runtime_error&) {
        return {isOfNewerVersion(path) ? Answer::Strange : Answer::Damaged, {}};
    }
}

} // namespace Vs::Recovery
