#include "Server/Skyvault/Private/Upload.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Progress.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Skyvault/CloudEvents.h"
#include "Server/Skyvault/Private/Failures.h"
#include "Server/Skyvault/Private/Session.h"
#include "Server/Skyvault/Private/Texts.h"

#include <QDateTime>
#include <QLocale>

#include <boost/filesystem/operations.hpp>

namespace Vs::Cloud {

namespace fs = boost::filesystem;

namespace {

std::int64_t now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

std::string folderOf(const std::string& path)
{
    const size_t slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool hasWord(const std::string& words, const std::string& word)
{
    return (' ' + words + ' ').find(' ' + word + ' ') != std::string::npos;
}

std::wstring title(const Cache::Place& place)
{
    return localizedFormat("CloudUploading", "Saving %1% to the cloud drive",
                           place.file().filename().wstring());
}

/// The digest of the drive's content.
DriveResult hashOnDrive(Drive& drive, const DriveWatch& watch, CacheIndexLibrary& library,
                        const DriveUpload& upload, std::string& hash)
{
    const fs::path local(upload.source);
    const std::string copy = (local.parent_path() / ('.' + local.filename().string() + ".seen")).string();
    DriveEntry entry;
    DriveResult result = drive.download(upload.path, copy, entry, watch);
    if (result.isOk())
        hash = library.hashOf(copy);
    boost::system::error_code error;
    fs::remove(copy, error);
    return result;
}

/// The "who" and "when" of somebody else's version, as text for the user.
std::wstring changedText(const Cache::Place& place, const CacheRow& row)
{
    const std::wstring name = place.file().filename().wstring();
    const std::wstring when =
        row.otherTime == 0 ? std::wstring()
                           : QLocale()
                                 .toString(QDateTime::fromSecsSinceEpoch(row.otherTime), QLocale::ShortFormat)
                                 .toStdWString();
    if (when.empty())
        return localizedFormat("CloudChanged", "There is a newer version of %1% on the drive.", name);
    if (row.otherUser.empty())
        return localizedFormat("CloudChangedAt", "A newer version of %1% was saved to the drive on %2%.",
                               name, when);
    return localizedFormat("CloudChangedByAt", "%1% saved a newer version of %2% to the drive on %3%.",
                           Strings::widen(row.otherUser), name, when);
}

void putNews(const Cache::Place& place, const CacheRow& row)
{
    Cache::get().put(place, row);
    CloudEvent event(place.file());
    CloudEventSource::get()->fireCloudFileStateChanged(&event);
}

} // namespace

void noteSeen(const Cache::Place& place, const DriveEntry& entry)
try {
    std::optional<CacheRow> row = Cache::get().row(place);
    if (!row || row->etag.empty() || entry.etag.empty() || row->pending != CacheRow::Pending::No)
        return;
    const std::string other = isSameEtag(row->etag, entry.etag) ? std::string() : entry.etag;
    if (other == row->otherEtag && row->onDrive)
        return;
    row->onDrive = true;
    row->otherEtag = other;
    row->otherUser = entry.modifiedBy;
    row->otherTime = std::chrono::system_clock::to_time_t(entry.modified);
    putNews(place, *row);
} catch (const Exception& error) {
    Failures::note(CloudErrorState::CacheFailed, error.message());
}

void noteRemoved(const Cache::Place& place)
try {
    std::optional<CacheRow> row = Cache::get().row(place);
    if (!row || !row->onDrive || row->pending != CacheRow::Pending::No)
        return;
    row->onDrive = false;
    row->otherEtag.clear();
    putNews(place, *row);
} catch (const Exception& error) {
    Failures::note(CloudErrorState::CacheFailed, error.message());
}

Upload::Upload(Cache::Place place, bool isNew)
    : m_place(std::move(place)), m_isNew(isNew), m_row(Cache::get().rowOrNew(m_place))
{
}

Upload::Sent Upload::prepared() const
{
    Sent sent;
    sent.row = m_row;
    sent.upload.path = m_place.path;
    sent.upload.source = m_place.file().string();
    if (!m_isNew && !m_row.etag.empty())
        sent.upload.known = m_row.etag;
    // Nobody here has seen the existing version, so it is preserved for its author.
    sent.keepsOther = !m_isNew && !sent.upload.known;
    sent.upload.keepOther = sent.keepsOther;
    return sent;
}

DriveResult Upload::read(CacheIndexLibrary& library, Sent& sent)
{
    sent.time = Cache::timeOf(sent.upload.source);
    sent.hash = library.hashOf(sent.upload.source);
    sent.size = fs::file_size(sent.upload.source);
    return {};
}

DriveResult Upload::send(Drive& drive, const DriveWatch& watch, CacheIndexLibrary& library, Sent& sent)
{
    if (sent.upload.known && sent.hash == sent.row.hash) {
        DriveResult found = drive.find(sent.upload.path, sent.entry);
        if (found.isOk() && isSameEtag(sent.entry.etag, *sent.upload.known))
            return found;
        if (!found.isOk() && found.state != CloudErrorState::NotFound)
            return found;
    }
    DriveResult result = drive.upload(sent.upload, sent.entry, watch);
    if (result.state == CloudErrorState::NotFound) {
        // The file or its folder is gone: nobody's version is lost.
        sent.upload.known.reset();
        sent.upload.keepOther = false;
        result = drive.makeFolders(folderOf(sent.upload.path));
        if (result.isOk())
            result = drive.upload(sent.upload, sent.entry, watch);
    }
    return result.state == CloudErrorState::Changed ? resolve(drive, watch, library, sent, result) : result;
}

// The existing version may be one sent before, whose response was lost with the connection or the program.
DriveResult Upload::resolve(Drive& drive, const DriveWatch& watch, CacheIndexLibrary& library, Sent& sent,
                            DriveResult refused)
{
    const DriveEntry other = sent.entry;
    if (sent.row.sent.empty() && other.size != sent.size)
        return refused;
    std::string there;
    if (!hashOnDrive(drive, watch, library, sent.upload, there).isOk())
        return refused;
    if (there == sent.hash)
        return {};
    if (!hasWord(sent.row.sent, there) || other.etag.empty())
        return refused;
    sent.upload.known = other.etag;
    return drive.upload(sent.upload, sent.entry, watch);
}

void Upload::begin(const Sent& sent)
{
    m_row.pending = CacheRow::Pending::Uploading;
    if (m_row.since == 0)
        m_row.since = now();
    if (!hasWord(m_row.sent, sent.hash))
        m_row.sent += (m_row.sent.empty() ? "" : " ") + sent.hash;
    m_row.onDrive = m_row.onDrive || !m_isNew;
    Cache::get().put(m_place, m_row);
    Cache::get().uploading().insert(m_place.file().string());
    tellState();
}

DriveResult Upload::end(const DriveResult& result, const Sent& sent)
{
    Cache::get().uploading().erase(m_place.file().string());
    m_row.pending = CacheRow::Pending::No;
    switch (result.state) {
    case CloudErrorState::Success:
        m_row.onDrive = true;
        m_row.etag = sent.entry.etag;
        m_row.hash = sent.hash;
        m_row.size = sent.size;
        m_row.localTime = sent.time;
        m_row.sent.clear();
        m_row.otherEtag.clear();
        break;
    case CloudErrorState::Unreachable:
        m_row.pending = CacheRow::Pending::Waiting;
        break;
    case CloudErrorState::Changed:
        m_row.onDrive = true;
        m_row.otherEtag = sent.entry.etag.empty() ? "?" : sent.entry.etag;
        m_row.otherUser = sent.entry.modifiedBy;
        m_row.otherTime = std::chrono::system_clock::to_time_t(sent.entry.modified);
        break;
    default:
        if (m_hasWaited)
            m_row.pending = CacheRow::Pending::Waiting;
        break;
    }
    if (!waits())
        m_row.since = 0;
    Cache::get().put(m_place, m_row);
    tellState();
    if (result.state == CloudErrorState::Changed) {
        const std::wstring text = changedText(m_place, m_row);
        Failures::note(result.state, text);
        CloudEvent event(m_place.file(), text);
        if (!TranscriptMgr::get()->replaying())
            CloudEventSource::get()->fireCloudFileConflicted(&event);
    } else {
        Failures::note(result);
    }
    return waits() ? DriveResult() : result;
}

void Upload::tellState() const
{
    CloudEvent event(m_place.file());
    CloudEventSource::get()->fireCloudFileStateChanged(&event);
}

DriveResult Upload::run()
{
    const std::wstring shown = title(m_place);
    ProgressScope scope(shown);
    CacheIndexLibrary& library = Cache::get().library();
    Sent sent = prepared();
    DriveResult result =
        DriveThread::get().run(shown, [&](const DriveWatch&) { return read(library, sent); });
    if (!result.isOk()) {
        if (result.state == CloudErrorState::BadAnswer)
            result.state = CloudErrorState::CacheFailed;
        Failures::note(result);
        return result;
    }
    begin(sent);
    result = Session::get().run(
        shown, [&](Drive& drive, const DriveWatch& watch) { return send(drive, watch, library, sent); });
    return end(result, sent);
}

void Upload::post(const Cache::Place& place, const std::function<void()>& done)
{
    CacheIndexLibrary& library = Cache::get().library();
    const auto upload = std::make_shared<Upload>(place, !Cache::get().rowOrNew(place).onDrive);
    const auto sent = std::make_shared<Sent>(upload->prepared());
    // A file that was new to the drive may have run into somebody else's of the same name meanwhile.
    sent->keepsOther = sent->keepsOther || upload->m_isNew;
    sent->upload.keepOther = false;
    if (!read(library, *sent).isOk())
        return done();
    upload->m_hasWaited = true;
    upload->begin(*sent);
    Session::get().post(
        [sent, &library](Drive& drive, const DriveWatch& watch) {
            DriveResult result = send(drive, watch, library, *sent);
            if (result.state == CloudErrorState::Changed && sent->keepsOther) {
                sent->upload.keepOther = true;
                result = drive.upload(sent->upload, sent->entry, watch);
            }
            return result;
        },
        [upload, sent, done](const DriveResult& result) {
            try {
                const bool arrived = upload->end(result, *sent).isOk() && !upload->waits();
                CloudEvent event(upload->m_place.file());
                if (arrived)
                    CloudEventSource::get()->fireCloudFileArrived(&event);
            } catch (const Exception& error) {
                Failures::note(CloudErrorState::CacheFailed, error.message());
            }
            done();
        });
}

} // namespace Vs::Cloud
