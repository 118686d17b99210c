#pragma once

#include <QDateTime>
#include <QImage>

#include <functional>
#include <string>

class QObject;

namespace Vu::Commands {

/// The information on a file's tile.
struct FilePreview
{
    bool exists = false;
    QDateTime modified;
    QImage picture; ///< The file's own, or the one stored for it (FilePictures); null without any.
};

/// Reads the file's information: any thread. A folder doesn't count as a file. `pictures` is the folder with
/// stored pictures.
FilePreview lookAt(const std::wstring& path, const std::wstring& pictures);

/// Reads the file's information on another thread, since a disk or a network may be slow or never respond,
/// and delivers it on this one, unless `receiver` has been destroyed by then. Main thread.
void lookAtLater(const std::wstring& path, QObject* receiver, std::function<void(const FilePreview&)> then);

/// When a file was changed, relative to today: "Today, 14:05", "Yesterday, 9:30", or the date.
QString dayText(const QDateTime& when, const QDateTime& now);

} // namespace Vu::Commands
