#include "UI/Commands/Share/ShareWays.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Status.h"
#include "Server/DataModel/Document.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Sharing.h"
#include "UI/Commands/Cloud/CloudCommands.h"
#include "UI/Commands/Cloud/CloudSaveCmd.h"
#include "UI/Commands/Documents/FileNameFor.h"
#include "UI/Commands/Itemhub/ItemhubCommands.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <QStandardPaths>

#include <boost/filesystem/operations.hpp>

#include <ctime>
#include <exception>
#include <string>

namespace Vu::Commands {
namespace {

namespace fs = boost::filesystem;
using Vs::CloudErrorState;
using Vs::MeshportAuth;
using Vs::SkyvaultNodeData;
using Vs::SkyvaultUtilities;

const wchar_t* const kSuffix = L".png";

/// For what another program reads in its own time. What nobody can still be reading is removed.
fs::path passingFolder()
{
    constexpr std::time_t kDay = std::time_t(24) * 60 * 60;
    fs::path folder = Vs::PathInfo::temporaryDirectory(true) / "shared";
    boost::system::error_code ignored;
    fs::create_directories(folder, ignored);
    for (fs::directory_iterator entry(folder, ignored), end; entry != end; entry.increment(ignored)) {
        boost::system::error_code error;
        const std::time_t written = fs::last_write_time(entry->path(), error);
        if (!error && written < std::time(nullptr) - kDay)
            fs::remove(entry->path(), error);
    }
    return folder;
}

/// Where the person keeps pictures.
fs::path picturesFolder()
{
    fs::path folder = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation).toStdWString();
    boost::system::error_code ignored;
    fs::create_directories(folder, ignored);
    return folder;
}

template <ShareWith with>
void giveTo(const fs::path& picture, Vs::Document& document, Vs::Status& status)
{
    shareFile(with, picture.wstring(), document.displayName(), status);
}

bool driveIsThere(const Vs::Document&)
{
    return cloudIsEnabled();
}

/// Beside a document of the drive, and for any other one in the drive's first folder.
fs::path placeOnDrive(const Vs::Document& document)
{
    if (document.isOnDisk() && Vs::PathInfo::isPathInCloudCache(document.path()))
        return fs::path(document.path()).parent_path();
    return SkyvaultUtilities::currentCachePath(MeshportAuth::globalInstance());
}

void giveToDrive(const fs::path& picture, Vs::Document& document, Vs::Status& status)
{
    MeshportAuth::globalInstance()->forgetRefusal();
    if (!cloudLogin()) {
        status.addError(SkyvaultUtilities::getErrorString(CloudErrorState::LoginFailed));
        return;
    }
    const fs::path place = placeOnDrive(document);
    SkyvaultNodeData folder, result;
    fs::path target = place / picture.filename();
    CloudErrorState state = CloudSaveCmd::Ensure(true, true, target, folder);
    if (state == CloudErrorState::Success) {
        target = freePicturePath(place, fileNameFor(&document, {}),
                                 [&](const std::string& file) { return folder.findChild(file) != nullptr; });
        fs::copy_file(picture, target);
        state = SkyvaultUtilities::SaveDocumentToCloud(MeshportAuth::globalInstance(), folder.id(), target,
                                                       target.filename().string(), {}, result);
    }
    if (state != CloudErrorState::Success) {
        status.addError(SkyvaultUtilities::getErrorString(state));
        return;
    }
    const bool isThere =
        Vs::CloudCacheManager::getInstance()->state(target.wstring()) == Vs::CloudFileState::Clean;
    const std::wstring text =
        isThere
            ? localized("SharedOnDrive", "The picture is on %1% as \"%2%\".")
            : localized("ShareWaitsForDrive", "The picture goes to %1% as \"%2%\" when it answers again.");
    Application::get()->inform(
        Vs::filledText(text, SkyvaultUtilities::getCloud_TM(), target.filename().wstring()));
}

bool isItem(const Vs::Document& document)
{
    return isSignedInToItemhub() && document.isOnDisk() &&
           Vs::ItemhubUtilities::get()->itemOf(document.path()).has_value();
}

void giveToItem(const fs::path& picture, Vs::Document& document, Vs::Status& status)
{
    if (!isItem(document)) {
        status.addError(localizedFormat(
            "ShareNoItem", "\"%1%\" belongs to no item of %2% that the picture could be attached to.",
            document.displayName(), Vs::ItemhubUtilities::getItemhub_TM()));
        return;
    }
    try {
        const std::wstring address = Vs::ItemhubUtilities::get()->attachFile(document.path(), picture,
                                                                             fileNameFor(&document, kSuffix));
        if (!address.empty())
            Application::get()->inform(localizedFormat("SharedAtItem", "\"%1%\" is attached to the item.",
                                                       fileNameFor(&document, kSuffix)));
    } catch (const std::exception&) {
        status.addError(Vs::ItemhubUtilities::currentFailure());
    }
}

// clang-format off
const ShareWay kWays[] = {
    {{.key = L"ShareByMailCommand",      .title = "E-Mail...",               .icon = &Resources::ShareMail},   nullptr,      passingFolder,  giveTo<ShareWith::Mail>},
    {{.key = L"ShareCopyPictureCommand", .title = "Copy",                    .icon = &Resources::ShareCopy},   nullptr,      nullptr,        nullptr},
    {{.key = L"ShareOpenWithCommand",    .title = "Open With...",            .icon = &Resources::ShareProgram},nullptr,      passingFolder,  giveTo<ShareWith::Program>},
    {{.key = L"ShareInFolderCommand",    .title = "Keep and Show in Folder", .icon = &Resources::ShareFolder}, nullptr,      picturesFolder, giveTo<ShareWith::Folder>},
    {{.key = L"ShareToDriveCommand",     .title = "Put on the Drive",        .icon = &Resources::CloudSave},   driveIsThere, passingFolder,  giveToDrive},
    {{.key = L"ShareToItemCommand",      .title = "Attach to the Item",      .icon = &Resources::ShareItem},   isItem,       passingFolder,  giveToItem},
};
// clang-format on

} // namespace

std::span<const ShareWay> shareWays()
{
    return kWays;
}

fs::path freePicturePath(const fs::path& folder, const std::wstring& name,
                         const std::function<bool(const std::string&)>& isTaken)
{
    for (int number = 1;; ++number) {
        const std::wstring numbered = number == 1 ? name : name + L" " + std::to_wstring(number);
        fs::path path = folder / (numbered + kSuffix);
        boost::system::error_code ignored;
        if (!fs::exists(path, ignored) && !(isTaken && isTaken(path.filename().string())))
            return path;
    }
}

} // namespace Vu::Commands
