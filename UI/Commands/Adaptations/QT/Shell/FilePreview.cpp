#include "UI/Commands/Adaptations/QT/Shell/FilePreview.h"

#include "Server/DataModel/NativeFile.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Commands/Localized.h"

#include <QCoreApplication>
#include <QFutureWatcher>
#include <QLocale>
#include <QPromise>
#include <QThreadPool>

#include <boost/filesystem/operations.hpp>

#include <memory>

namespace Vu::Commands {

FilePreview lookAt(const std::wstring& path)
{
    FilePreview preview;
    boost::system::error_code error;
    preview.exists = boost::filesystem::is_regular_file(path, error);
    if (!preview.exists)
        return preview;
    preview.modified = QDateTime::fromSecsSinceEpoch(boost::filesystem::last_write_time(path, error));
    const std::string bytes = Vs::NativeFile::thumbnail(path);
    preview.picture = pngFromBytes(bytes);
    return preview;
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
    QThreadPool::globalInstance()->start([promise, path] {
        promise->addResult(lookAt(path));
        promise->finish();
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
