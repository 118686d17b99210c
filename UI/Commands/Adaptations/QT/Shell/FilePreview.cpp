#include "UI/Commands/Adaptations/QT/Shell/FilePreview.h"

#include "Server/DataModel/NativeFile.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Commands/Adaptations/QT/Shell/FilePictures.h"
#include "UI/Commands/Adaptations/QT/Shell/UnjoinedWork.h"
#include "UI/Commands/Localized.h"

#include <QCoreApplication>
#include <QFutureWatcher>
#include <QLocale>
#include <QPromise>

#include <boost/filesystem/operations.hpp>

#include <ctime>
#include <memory>

namespace Vu::Commands {

namespace {

/// As read from the disk.
struct Found
{
    bool exists = false;
    std::time_t modified = 0;
    std::string picture;
};

Found find(const std::wstring& path, const std::wstring& pictures)
{
    Found found;
    boost::system::error_code error;
    found.exists = boost::filesystem::is_regular_file(path, error);
    if (found.exists) {
        found.modified = boost::filesystem::last_write_time(path, error);
        found.picture = Vs::NativeFile::thumbnail(path);
        if (found.picture.empty())
            found.picture = FilePictures::of(path, pictures);
    }
    return found;
}

FilePreview previewOf(const Found& found)
{
    FilePreview preview;
    preview.exists = found.exists;
    if (found.exists) {
        preview.modified = QDateTime::fromSecsSinceEpoch(found.modified);
        preview.picture = pngFromBytes(found.picture);
    }
    return preview;
}

} // namespace

FilePreview lookAt(const std::wstring& path, const std::wstring& pictures)
{
    return previewOf(find(path, pictures));
}

void lookAtLater(const std::wstring& path, QObject* receiver, std::function<void(const FilePreview&)> then)
{
    auto promise = std::make_shared<QPromise<FilePreview>>();
    auto* watcher = new QFutureWatcher<FilePreview>(receiver);
    QObject::connect(watcher, &QFutureWatcher<FilePreview>::finished, receiver,
                     [watcher, then = std::move(then)] {
                         watcher->deleteLater();
                         if (watcher->future().resultCount() > 0)
                             then(watcher->result());
                     });
    promise->start();
    watcher->setFuture(promise->future());
    UnjoinedWork::start([promise, path, pictures = FilePictures::folder()]() -> UnjoinedWork::Then {
        return [promise, found = find(path, pictures)] {
            promise->addResult(previewOf(found));
            promise->finish();
        };
    });
}

QString dayText(const QDateTime& when, const QDateTime& now)
{
    const QLocale locale;
    // The locale without a country has seconds even in its short times.
    const QString form = locale.timeFormat(QLocale::ShortFormat).remove(QStringLiteral(":ss"));
    const QString time = locale.toString(when.time(), form);
    if (when.date() == now.date())
        return QString::fromStdWString(localizedFormat("HomeToday", "Today, %1%", time.toStdWString()));
    if (when.date().addDays(1) == now.date())
        return QString::fromStdWString(
            localizedFormat("HomeYesterday", "Yesterday, %1%", time.toStdWString()));
    return locale.toString(when.date(), QLocale::ShortFormat);
}

} // namespace Vu::Commands
