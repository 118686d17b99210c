#include "Server/Skyvault/SkyvaultUtilities.h"

#include "Server/Base/Exception.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Base/Strings.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/CloudOptionGroup.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/Private/Download.h"
#include "Server/Skyvault/Private/Failures.h"
#include "Server/Skyvault/Private/Nodes.h"
#include "Server/Skyvault/Private/Session.h"
#include "Server/Skyvault/Private/Texts.h"
#include "Server/Skyvault/Private/Upload.h"

#include <boost/filesystem/operations.hpp>

namespace Vs {

using namespace Cloud;
namespace fs = boost::filesystem;

namespace {

std::wstring plainText(CloudErrorState state)
{
    switch (state) {
    case CloudErrorState::Success:
        return localized("CloudStateSuccess", "Everything went well.");
    case CloudErrorState::Cancelled:
        return localized("CloudStateCancelled", "It was cancelled.");
    case CloudErrorState::Disabled:
        return localized("CloudStateDisabled", "The cloud drive is switched off.");
    case CloudErrorState::LoginFailed:
        return localized("CloudStateLoginFailed", "You are not signed in to the cloud drive.");
    case CloudErrorState::Unreachable:
        return localized("CloudStateUnreachable", "The cloud drive cannot be reached.");
    case CloudErrorState::LogoutFailed:
        return localized(
            "CloudStateLogoutFailed",
            "You could not be signed out: the keyring still has your password for the cloud drive.");
    case CloudErrorState::TooManyRequests:
        return localized("CloudStateTooManyRequests",
                         "The server of the cloud drive is busy and asks you to wait. Try again later.");
    case CloudErrorState::NotOnDisk:
        return localized("CloudStateNotOnDisk", "The document has no file yet. Save it first.");
    case CloudErrorState::NotFound:
        return localized("CloudStateNotFound", "The cloud drive has no such file or folder.");
    case CloudErrorState::Forbidden:
        return localized("CloudStateForbidden", "You are not allowed to do this on the cloud drive.");
    case CloudErrorState::Unauthorized:
        return localized(
            "CloudStateUnauthorized",
            "The server of the cloud drive does not accept your password any more. Sign in again.");
    case CloudErrorState::Changed:
        return localized("CloudStateChanged",
                         "Somebody else has changed the file on the drive. Nothing was written there.");
    case CloudErrorState::Locked:
        return localized("CloudStateLocked", "Somebody else has locked the file on the drive.");
    case CloudErrorState::NoFolders:
        return localized("CloudStateNoFolders", "The folder could not be made, here or on the cloud drive.");
    case CloudErrorState::DriveFull:
        return localized("CloudStateDriveFull", "The cloud drive is full.");
    case CloudErrorState::OutsideCache:
        return localized("CloudStateOutsideCache", "The path does not lie in the folder of the cloud drive.");
    case CloudErrorState::ServerError:
        return localized("CloudStateServerError", "The server of the cloud drive reports an error.");
    case CloudErrorState::BadAnswer:
        return localized("CloudStateBadAnswer", "The answer of the cloud drive's server makes no sense.");
    case CloudErrorState::Certificate:
        return localized("CloudStateCertificate",
                         "The certificate of the cloud drive's server cannot be trusted. Nothing was sent.");
    case CloudErrorState::Redirected:
        return localized(
            "CloudStateRedirected",
            "The server of the cloud drive redirects to a place that the program does not follow.");
    case CloudErrorState::BadName:
        return localized("CloudStateBadName", "The cloud drive cannot hold a file with this name.");
    case CloudErrorState::CacheFailed:
        return localized("CloudStateCacheFailed",
                         "The local copies of the cloud drive's files cannot be read or written.");
    case CloudErrorState::NotKept:
        return localized("CloudStateNotKept", "What the server stored is not what was sent. Save again.");
    case CloudErrorState::Unsupported:
        return localized("CloudStateUnsupported", "The server of the cloud drive cannot do this.");
    }
    return localized("CloudStateUnknown", "The cloud drive failed for an unknown reason.");
}

/// Runs something that queries the index, which may fail; records the state.
template <class Action>
CloudErrorState guarded(Action&& action)
try {
    if (MeshportAuth::globalInstance()->cloudDisabled())
        return Failures::note(CloudErrorState::Disabled, {});
    return action();
} catch (const Exception& error) {
    return Failures::note(CloudErrorState::CacheFailed, error.message());
} catch (const fs::filesystem_error& error) {
    return Failures::note(CloudErrorState::CacheFailed, Strings::widen(error.what()));
}

CloudErrorState save(const std::string& id, bool isNew, const fs::path& path,
                     const std::vector<std::string>& properties, SkyvaultNodeData& result)
{
    return guarded([&] {
        if (!properties.empty())
            return Failures::note(CloudErrorState::Unsupported, {});
        const fs::path root = SkyvaultUtilities::currentCachePath(nullptr);
        const Cache::Place place{root, id};
        if (root.empty() || !fs::equivalent(place.file(), path))
            return Failures::note(CloudErrorState::OutsideCache, path.wstring());
        Upload upload(place, isNew);
        const DriveResult sent = upload.run();
        if (!sent.isOk())
            return sent.state;
        result = nodeOf(upload.row());
        if (!upload.row().onDrive)
            result = SkyvaultNodeData({}, SkyvaultNodeData::fileKind());
        return CloudErrorState::Success;
    });
}

} // namespace

std::wstring SkyvaultUtilities::getCloud_TM()
{
    return L"Skyvault";
}

std::wstring SkyvaultUtilities::getErrorString(CloudErrorState state)
{
    const std::wstring detail = Failures::detail(state);
    return detail.empty() ? plainText(state) : plainText(state) + L'\n' + detail;
}

std::wstring SkyvaultUtilities::msgErrorOpenCloudLocal()
{
    return localized("OpenCloudLocal",
                     "A document of the cloud drive can only be opened from the cloud drive.");
}

bool SkyvaultUtilities::checkLocalFolders(const WPath& folder)
try {
    OwnFiles::makeFolder(folder);
    return true;
} catch (const Exception& error) {
    Failures::note(CloudErrorState::NoFolders, error.message());
    return false;
}

SkyvaultUtilities::WPath SkyvaultUtilities::currentCachePath(const BaseAuth* auth)
{
    if (!auth)
        auth = MeshportAuth::globalInstance();
    std::string address, user;
    if (!auth->serverUrl(address))
        return {};
    if (!auth->userId(user))
        user = Strings::narrow(CloudOptionGroup::get()->user());
    return Session::folderOf(address, user);
}

bool SkyvaultUtilities::getRelativeStack(const WPath& root, const WPath& path, std::vector<WPath>& stack)
{
    stack.clear();
    boost::system::error_code error;
    const WPath inside =
        fs::weakly_canonical(path, error).lexically_relative(fs::weakly_canonical(root, error));
    if (root.empty() || inside.empty() || *inside.begin() == "..")
        return false;
    for (const WPath& part : inside)
        if (part != ".")
            stack.push_back(part);
    return true;
}

bool SkyvaultUtilities::ensureCloudPath(const BaseAuth*, const std::vector<WPath>& stack,
                                        SkyvaultNodeData& node)
{
    std::string id;
    for (const WPath& part : stack)
        id += '/' + part.string();
    const CloudErrorState state = guarded([&] {
        // Without the drive, the folder is what the index knows; it is created when the waiting files are
        // uploaded.
        const DriveResult result = readFolder(id.empty() ? "/" : id, true, node);
        return result.state == CloudErrorState::Unreachable ? CloudErrorState::Success
                                                            : Failures::note(result);
    });
    if (state != CloudErrorState::Success)
        Failures::note(CloudErrorState::NoFolders, getErrorString(state));
    return state == CloudErrorState::Success;
}

CloudErrorState SkyvaultUtilities::GetFolderNode(const BaseAuth*, const std::string& id,
                                                 SkyvaultNodeData& node)
{
    return guarded([&] { return Failures::note(readFolder(id, false, node)); });
}

CloudErrorState SkyvaultUtilities::GetFileNode(const BaseAuth*, const WPath& root, const WPath& path,
                                               SkyvaultNodeData& node)
{
    return guarded([&] {
        std::vector<WPath> stack;
        if (!getRelativeStack(root, path, stack) || stack.empty())
            return Failures::note(CloudErrorState::OutsideCache, path.wstring());
        Cache::Place place{root, {}};
        for (const WPath& part : stack)
            place.path += '/' + part.string();
        DriveEntry entry;
        const DriveResult result = readNode(place.path, entry);
        if (result.isOk()) {
            node = nodeOf(entry);
            noteSeen(place, entry);
            return CloudErrorState::Success;
        }
        if (result.state == CloudErrorState::NotFound)
            noteRemoved(place);
        // A file that is here can be used without the drive.
        const std::optional<CacheRow> row = Cache::get().row(place);
        const bool isHere = row && fs::exists(place.file());
        const bool waits = row && row->pending != CacheRow::Pending::No;
        if (!isHere || (result.state != CloudErrorState::Unreachable && !waits))
            return Failures::note(result);
        node = nodeOf(*row);
        return CloudErrorState::Success;
    });
}

CloudErrorState SkyvaultUtilities::SaveDocumentToCloud(const BaseAuth*, const std::string& parentId,
                                                       const WPath& path, const std::string& name,
                                                       const std::vector<std::string>& properties,
                                                       SkyvaultNodeData& result)
{
    return save((parentId == "/" ? "" : parentId) + '/' + name, true, path, properties, result);
}

CloudErrorState SkyvaultUtilities::SaveVersionToCloud(const BaseAuth*, const std::string& nodeId,
                                                      const WPath& path, const std::string&,
                                                      const std::vector<std::string>& properties,
                                                      SkyvaultNodeData& result)
{
    return save(nodeId, false, path, properties, result);
}

CloudErrorState SkyvaultUtilities::SaveConflictCopy(const BaseAuth* auth, const WPath& path, WPath& copy,
                                                    SkyvaultNodeData& result)
{
    return guarded([&] {
        const auto place = Cache::placeOf(path);
        if (!place)
            return Failures::note(CloudErrorState::OutsideCache, path.wstring());
        std::wstring who;
        if (!auth || !auth->userName(who))
            who = localized("CloudSomebody", "copy");
        Cache::Place other = *place;
        other.path = place->path.substr(0, place->path.rfind('/') + 1) + copyName(place->file(), who);
        // The original stays in place until the copy is uploaded; the drive's version of it is somebody
        // else's.
        fs::copy_file(place->file(), other.file());
        Upload upload(other, true);
        const DriveResult sent = upload.run();
        if (!sent.isOk()) {
            fs::remove(other.file());
            return sent.state;
        }
        CacheRow row = upload.row();
        row.localTime = Cache::timeOf(place->file());
        fs::rename(place->file(), other.file());
        Cache::get().replace(*place, other, row);
        copy = other.file();
        result = row.onDrive ? nodeOf(row) : SkyvaultNodeData({}, SkyvaultNodeData::fileKind());
        return CloudErrorState::Success;
    });
}

CloudErrorState SkyvaultUtilities::DownloadToCacheById(const BaseAuth* auth, SkyvaultNodeData& node,
                                                       WPath& path, bool replace)
{
    return guarded([&] {
        const Cache::Place place{currentCachePath(auth), node.id()};
        path = place.file();
        const std::optional<CacheRow> row = Cache::get().row(place);
        const bool isHere = fs::exists(path);
        if (isHere && (!replace || (row && row->pending != CacheRow::Pending::No)))
            return CloudErrorState::Success;
        DriveEntry entry;
        const CloudErrorState state = Failures::note(download(place, entry));
        if (state == CloudErrorState::Success)
            node = nodeOf(entry);
        return state;
    });
}

CloudErrorState SkyvaultUtilities::Comment(const BaseAuth*, const std::string& id, const std::string& text,
                                           std::string& commentId)
{
    return guarded([&] {
        return Failures::note(Session::get().run(
            localized("CloudCommenting", "Sending a comment to the cloud drive"),
            [&](Drive& drive, const DriveWatch&) { return drive.comment(id, text, commentId); }));
    });
}

// No server reports recent activities; callers only ever ask for none.
CloudErrorState SkyvaultUtilities::GetActivities(const BaseAuth*, const std::vector<std::string>&,
                                                 const std::string&, const std::string&, int first, int count,
                                                 std::vector<SkyvaultNodeData>& activities)
{
    activities.clear();
    return first == 0 && count == 0 ? CloudErrorState::Success
                                    : Failures::note(CloudErrorState::Unsupported, {});
}

} // namespace Vs
