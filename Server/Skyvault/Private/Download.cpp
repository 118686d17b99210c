#include "Server/Skyvault/Private/Download.h"

#include "Server/Base/Exception.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"
#include "Server/Skyvault/CloudEvents.h"
#include "Server/Skyvault/Private/Session.h"
#include "Server/Skyvault/Private/Texts.h"

#include <QDateTime>

#include <boost/filesystem/operations.hpp>

#include <algorithm>

namespace Vs::Cloud {

namespace fs = boost::filesystem;

namespace {

std::wstring title(const Cache::Place& place)
{
    return localizedFormat("CloudDownloading", "Fetching %1% from the cloud drive",
                           place.file().filename().wstring());
}

void moveTo(const fs::path& from, const fs::path& to)
{
    boost::system::error_code error;
    fs::rename(from, to, error);
    if (error)
        throw Exception(to.string() + ": " + error.message());
}

void setAside(const Cache::Place& place)
{
    const fs::path file = place.file();
    const fs::path kept =
        file.parent_path() / copyName(file, localized("CloudKeptHere", "kept from this computer"));
    moveTo(file, kept);
    warn(localizedFormat(
        "CloudSetAside",
        "%1% was changed on this computer and had not reached the drive. It is kept as \"%2%\".",
        file.filename().wstring(), kept.wstring()));
}

/// The two steps: record what has arrived, then that it is in place.
void takeIn(const Cache::Place& place, const fs::path& part, const DriveEntry& entry, const std::string& hash)
{
    Cache& cache = Cache::get();
    CacheRow row = cache.rowOrNew(place);
    row.onDrive = true;
    row.incomingEtag = entry.etag.empty() ? "?" : entry.etag;
    row.incomingHash = hash;
    cache.put(place, row);
    moveTo(part, place.file());
    row.incomingEtag.clear();
    row.incomingHash.clear();
    row.etag = entry.etag;
    row.hash = hash;
    row.size = fs::file_size(place.file());
    row.localTime = Cache::timeOf(place.file());
    row.otherEtag.clear();
    row.sent.clear();
    cache.put(place, row);
}

} // namespace

bool isDownloadRequired(const Cache::Place& place, const std::string& etag)
{
    boost::system::error_code error;
    if (!fs::exists(place.file(), error))
        return true;
    const std::optional<CacheRow> row = Cache::get().row(place);
    if (!row)
        return true;
    if (row->pending != CacheRow::Pending::No || Cache::get().isChanged(place, *row))
        return false;
    return !isSameEtag(row->etag, etag);
}

DriveResult download(const Cache::Place& place, DriveEntry& entry)
{
    Cache& cache = Cache::get();
    CacheIndexLibrary& library = cache.library();
    const std::optional<CacheRow> row = cache.row(place);
    const fs::path file = place.file();
    const fs::path part = file.parent_path() / ('.' + file.filename().string() + ".part");
    OwnFiles::makeFolder(file.parent_path());
    std::string hash;
    DriveResult result = Session::get().run(title(place), [&](Drive& drive, const DriveWatch& watch) {
        DriveResult read = drive.download(place.path, part.string(), entry, watch);
        if (read.isOk())
            hash = library.hashOf(part.string());
        return read;
    });
    boost::system::error_code error;
    if (!result.isOk()) {
        fs::remove(part, error);
        return result;
    }
    // The same content needs no copy.
    const bool differs = fs::exists(file, error) && library.hashOf(file.string()) != hash;
    if (differs && (!row || cache.isChanged(place, *row)))
        setAside(place);
    takeIn(place, part, entry, hash);
    CloudEvent event(file);
    CloudEventSource::get()->fireCloudFileStateChanged(&event);
    return result;
}

std::string copyName(const Cache::Path& file, const std::wstring& who)
{
    std::string by = Strings::narrow(who);
    std::replace_if(
        by.begin(), by.end(), [](unsigned char letter) { return letter < ' ' || letter == '/'; }, ' ');
    const std::string time =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH.mm")).toStdString();
    const std::string stem = file.stem().string() + " (" + by + ' ' + time,
                      suffix = ')' + file.extension().string();
    std::string name = stem + suffix;
    boost::system::error_code error;
    for (int number = 2; fs::exists(file.parent_path() / name, error); ++number)
        name.assign(stem).append(1, ' ').append(std::to_string(number)).append(suffix);
    return name;
}

} // namespace Vs::Cloud
