#pragma once

#include <QDateTime>
#include <QImage>

#include <functional>
#include <string>

class QObject;

namespace Vu::Commands {

/// What a tile tells of a file.
struct FilePreview
{
    bool exists = false;
    QDateTime modified;
    QImage picture; ///< The file's own, or the one that was kept of it (FilePictures); null without any.
};

/// Looks at the file: any thread. A folder is no file. `pictures` is where pictures of others are kept.
FilePreview lookAt(const std::wstring& path, const std::wstring& pictures);

/// Looks at the file in another thread, since a disk or a network may take its time or never answer, and
/// hands over what it found in this one. If `receiver` goes before that, nobody is told. Main thread.
void lookAtLater(const std::wstring& path, QObject* receiver, std::function<void(const FilePreview&)> then);

/// When a file was changed, as a person would say it on that day: "Today, 14:05", "Yesterday, 9:30", or the
/// date.
QString dayText(const QDateTime& when, const QDateTime& now);

} // namespace Vu::Commands
