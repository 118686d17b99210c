#pragma once

#include <string>

namespace Vs {
class Status;
namespace Scene {
struct Image;
}
} // namespace Vs

namespace Vu {

/// To what a file is given.
enum class ShareWith {
    Mail,    ///< A new message with the file attached, in the desktop's mail program.
    Program, ///< A program that the person chooses where the desktop asks, or else the usual one of its kind.
    Folder,  ///< The file manager, which shows the file in its folder.
};

/// Gives a file to another program of the desktop, and returns before that is there. Inside a sandbox the
/// desktop's portal does it. `path` is absolute, and the file must stay; `title` is the subject of a message.
/// If nothing on this desktop takes it, the user is told so afterwards, with where the file is. A run that
/// shows nothing, or is a test, tells the path instead. Main thread only.
void shareFile(ShareWith with, const std::wstring& path, const std::wstring& title, Vs::Status& status);

/// Puts a picture on the desktop's clipboard. A run that shows nothing has none, which is an error. Main
/// thread only.
void copyPicture(const Vs::Scene::Image& image, Vs::Status& status);

} // namespace Vu
