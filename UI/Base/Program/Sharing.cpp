#include "UI/Base/Program/Sharing.h"

#include "Server/Base/FilledText.h"
#include "Server/Base/Status.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Private/Display.h"

#include <boost/filesystem/operations.hpp>

namespace Vu {
namespace {

std::wstring notTaken(ShareWith with, const std::wstring& path)
{
    switch (with) {
    case ShareWith::Mail:
        return localizedFormat("ShareNoMail",
                               "No mail program on this desktop accepts a file. The picture is in \"%1%\".",
                               path);
    case ShareWith::Program:
        return localizedFormat("ShareNoProgram", "No program on this desktop opens \"%1%\".", path);
    case ShareWith::Folder:
        break;
    }
    return localizedFormat("ShareNoFolder", "No file manager on this desktop shows \"%1%\".", path);
}

} // namespace

void shareFile(ShareWith with, const std::wstring& path, const std::wstring& title, Vs::Status& status)
{
    boost::system::error_code error;
    if (!boost::filesystem::path(path).is_absolute() || !boost::filesystem::is_regular_file(path, error)) {
        status.addError(
            localizedFormat("ShareNoFile", "\"%1%\" can't be shared: there is no such file.", path));
        return;
    }
    if (Application::headless() || Application::testing()) {
        Application::get()->inform(path);
        return;
    }
    Display::get()->share(with, path, title,
                          [with, path] { Application::get()->inform(notTaken(with, path)); });
}

void copyPicture(const Vs::Scene::Image& image, Vs::Status& status)
{
    if (Application::headless())
        status.addError(
            localized("ShareNoClipboard", "A run without a window has no clipboard to put a picture on."));
    else
        Display::get()->copyPicture(image);
}

} // namespace Vu
