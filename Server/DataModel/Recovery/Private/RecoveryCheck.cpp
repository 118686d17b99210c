#include "Server/DataModel/Recovery/Private/RecoveryCheck.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/DataModel/Native/DocumentContent.h"
#include "Server/DataModel/Native/NativeLoad.h"
#include "Server/DataModel/Native/Package.h"
#include "Server/DataModel/Recovery/Private/DocumentDigests.h"

#include <boost/filesystem/operations.hpp>

#include <exception>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace Vs::Recovery {

namespace {

constexpr uint64_t kMostRecord = uint64_t(1) << 20;

// A link, a pipe or another user's file is not ours.
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
    // What is there now may not be a document.
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

// The add-ins that bring the types aren't in such a process, and nothing of them is needed to read a model.
// The types are there until the process ends.
void registerTypesIn(const std::string& path)
{
    const Native::NativeLoad load = Native::NativeLoad::read(path);
    const std::string& document = load.manifest.documentType;
    if (!DocumentMgr::get()->documentType(document))
        DocumentMgr::get()->registerDocumentType(new DocumentType(document, L"Document", L".backup"));
    for (const Native::Manifest::Asset& asset : load.manifest.assets)
        if (!AssetTypeMgr::get()->assetType(asset.type))
            AssetTypeMgr::get()->registerType(new AssetType(asset.type, L"Asset", document));
}

constexpr std::string_view kLetters = "SQDN"; // by Answer

} // namespace

RecoveryCheck RecoveryCheck::of(const std::string& path)
{
    if (!isOwnFile(path))
        return {};
    try {
        return {Answer::Sound, readThrough(path)};
    } catch (const std::system_error&) {
        return {}; // It is the system that can't, for lack of a thread, say.
    } catch (const std::runtime_error&) {
        return {isOfNewerVersion(path) ? Answer::Strange : Answer::Damaged, {}};
    }
}

RecoveryCheck RecoveryCheck::byOpening(const std::string& path)
{
    RecoveryCheck check = of(path);
    if (check.answer != Answer::Sound)
        return check;
    // What isn't damaged may be opened where there is more memory, or room for threads.
    check.answer = Answer::Doubtful;
    try {
        Status status;
        registerTypesIn(path);
        if (Document* document = DocumentMgr::get()->open(Strings::fromBytes(path), status)) {
            if (check.record.digests.empty() || check.record.digests == digestsOf(*document))
                check.answer = Answer::Sound;
            DocumentMgr::get()->close(document);
        }
    } catch (const std::exception&) {
        check.answer = Answer::Doubtful;
    }
    return check;
}

std::string RecoveryCheck::write() const
{
    return kLetters[static_cast<size_t>(answer)] + (canBeOpened() ? record.write() : std::string());
}

RecoveryCheck RecoveryCheck::read(std::string_view text)
{
    const size_t answer = text.empty() ? text.npos : kLetters.find(text.front());
    RecoveryCheck check{answer == text.npos ? Answer::Damaged : static_cast<Answer>(answer), {}};
    try {
        if (check.canBeOpened())
            check.record = RecoveryRecord::read(text.substr(1));
    } catch (const std::runtime_error&) {
        check.answer = Answer::Damaged;
    }
    return check;
}

} // namespace Vs::Recovery
