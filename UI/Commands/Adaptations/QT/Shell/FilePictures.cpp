#include "UI/Commands/Adaptations/QT/Shell/FilePictures.h"

#include "Server/Base/PathInfo.h"
#include "Server/DataModel/PictureName.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>

#include <boost/filesystem/operations.hpp>

#include <ctime>

namespace Vu::Commands::FilePictures {
namespace {

// At another size it is none of these pictures.
constexpr qint64 kMostBytes = 1 << 20;

QString nameOf(const boost::filesystem::path& file)
{
    return QString::fromStdString(Vs::pictureStem(file.native()));
}

/// Empty for anything but a file.
QString placeOf(const boost::filesystem::path& file, const std::wstring& folder)
{
    boost::system::error_code error;
    if (!boost::filesystem::is_regular_file(file, error))
        return {};
    const std::time_t modified = boost::filesystem::last_write_time(file, error);
    const uintmax_t size = boost::filesystem::file_size(file, error);
    return error ? QString()
                 : QString::fromStdWString(folder) + u'/' +
                       QString::fromStdString(Vs::pictureName(file.native(), modified, size));
}

} // namespace

std::wstring folder()
{
    const boost::filesystem::path folder = Vs::PathInfo::cacheDirectory() / Vs::kPictureFolder;
    boost::system::error_code ignored; // Without it there are no pictures.
    boost::filesystem::create_directory(folder, ignored);
    return folder.wstring();
}

std::string of(const std::wstring& path, const std::wstring& folder)
{
    const QString place = placeOf(path, folder);
    QFile file(place);
    if (place.isEmpty() || file.size() > kMostBytes || !file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll().toStdString();
}

void keep(const std::wstring& path, const std::string& picture, const std::wstring& folder)
{
    const QString place = placeOf(path, folder);
    if (place.isEmpty())
        return;
    const QDir pictures(QString::fromStdWString(folder));
    const QString name = nameOf(path);
    for (const QString& earlier : pictures.entryList({name + QStringLiteral("-*.png")}, QDir::Files))
        QFile::remove(pictures.filePath(earlier));
    QSaveFile file(place);
    if (file.open(QIODevice::WriteOnly) && file.write(picture.data(), static_cast<qint64>(picture.size())) ==
                                               static_cast<qint64>(picture.size())) {
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        file.commit();
    }
}

void keepOnly(const std::vector<std::wstring>& paths, const std::wstring& folder)
{
    QSet<QString> names;
    for (const std::wstring& path : paths)
        names.insert(nameOf(path));
    QDirIterator each(QString::fromStdWString(folder), {QStringLiteral("*-*.png")}, QDir::Files);
    while (each.hasNext()) {
        const QFileInfo file(each.next());
        if (!names.contains(file.fileName().section(u'-', 0, 0)))
            QFile::remove(file.filePath());
    }
}

} // namespace Vu::Commands::FilePictures
