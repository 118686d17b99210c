#include "Server/Skyvault/Client/Dav/Upload.h"

#include "Server/Skyvault/Client/Dav/Chunks.h"
#include "Server/Skyvault/Client/Dav/Compare.h"
#include "Server/Skyvault/Client/Dav/KeepOther.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QUuid>

#include <chrono>
#include <thread>

namespace Vs::Cloud {

namespace {

// Until a weak ETag has become a strong one: it is weak while its file is younger than a second.
constexpr std::chrono::milliseconds kFirstSecond{1200};
// Until a MOVE without an answer has been done, if it is done at all.
constexpr int kLooks = 5;
constexpr std::chrono::milliseconds kBetweenLooks{200};

/// What a gateway says is no word of the server behind it.
bool isLost(const Answer& answer)
{
    return answer.isLost() || answer.status == 502 || answer.status == 504 ||
           answer.failure.state == CloudErrorState::Cancelled;
}

} // namespace

Upload::Upload(Session& session, const DriveUpload& upload, const DriveWatch& watch)
    : m_session(session), m_upload(upload), m_watch(watch), m_action(session.action("Writing", upload.path))
{
}

DriveResult Upload::run(DriveEntry& entry)
{
    DriveResult result = save(entry);
    m_lock.reset();
    m_session.http.hurry(false);
    return result;
}

DriveResult Upload::save(DriveEntry& entry)
{
    if (DriveResult opened = openSource(); !opened.isOk())
        return opened;
    if (m_session.traits.locks) {
        // Some servers make an empty file of a name that is locked, and don't say so.
        DriveEntry before;
        if (!m_upload.known) {
            const DriveResult found = m_session.find(m_upload.path, before);
            m_wasAbsent = found.state == CloudErrorState::NotFound;
            if (!found.isOk() && !m_wasAbsent)
                return found;
        }
        DriveResult locked = Lock::take(m_session, m_upload.path, m_lock);
        if (!locked.isOk())
            return locked;
    }
    DriveResult result = underLock(entry);
    if (!result.isOk() && m_lock && m_isFresh && !m_isWritten)
        removeEmpty();
    // Another's file of the same size must not get the ETag of ours.
    if (m_isWritten && m_lock && !m_session.traits.etagsDifferInOneTick)
        std::this_thread::sleep_until(m_writtenAt + m_session.traits.etagTick);
    return result;
}

DriveResult Upload::underLock(DriveEntry& entry)
{
    DriveResult result = compare();
    if (result.state == CloudErrorState::Changed) {
        if (!m_upload.keepOther) {
            entry = m_before;
            return result;
        }
        result = keepOther(m_session, m_before);
    }
    if (result.isOk())
        result = write();
    if (result.isOk())
        result = readBack();
    if (result.isOk() || result.state == CloudErrorState::Changed)
        entry = m_after;
    return result;
}

DriveResult Upload::openSource()
{
    if (!isDrivePath(m_upload.path) || m_upload.path == "/")
        return failed(CloudErrorState::BadName, m_action, "no file can be called so");
    const QFileInfo source(QString::fromStdString(m_upload.source));
    if (!source.isFile() || !source.isReadable())
        return failed(CloudErrorState::CacheFailed, m_action,
                      "\"" + m_upload.source + "\" can't be read on this machine");
    m_size = source.size();
    return {};
}

DriveResult Upload::changed(const std::string& why) const
{
    return failed(CloudErrorState::Changed, m_action, why + whoAndWhen(m_before));
}

DriveResult Upload::compare()
{
    DriveResult found = m_session.find(m_upload.path, m_before);
    if (found.state == CloudErrorState::NotFound)
        return {}; // What another has removed comes back: nobody's work goes by that.
    if (!found.isOk())
        return found;
    if (m_before.isFolder)
        return failed(CloudErrorState::BadName, m_action, "a folder has this name");
    m_isFresh = m_lock && m_before.size == 0 && (m_lock->madeFile() || m_wasAbsent);
    if (m_isFresh)
        return {};
    m_isThere = true;
    if (!m_upload.known)
        return changed("a file of this name is there");
    // Without an ETag the server itself has to compare.
    const bool isSame = m_before.etag.empty() ? bool(m_session.traits.refusesStale)
                                              : strongPart(m_before.etag) == strongPart(*m_upload.known);
    return isSame ? DriveResult() : changed("another version is there");
}

DriveResult Upload::write()
{
    const DriveTraits& traits = m_session.traits;
    const bool isInChunks = traits.chunkedUpload && Chunks::isWorthwhile(m_size);
    if (traits.checksums || isInChunks)
        m_sum = sha1Of(m_upload.source);
    if (isInChunks)
        return putInChunks();
    return !traits.keepsOldOnBreak && traits.movesOntoExisting ? putAndMove() : put();
}

Headers Upload::conditions() const
{
    Headers headers;
    if (m_lock)
        headers.push_back(m_lock->condition());
    const bool isKnown = m_isThere && !m_before.etag.empty();
    if (isKnown && m_session.traits.refusesStale.mayHold())
        headers.push_back({"If-Match", QByteArray::fromStdString(m_before.etag)});
    else if (m_isThere && m_before.etag.empty() && m_upload.known && !m_upload.keepOther)
        headers.push_back({"If-Match", QByteArray::fromStdString(*m_upload.known)});
    else if (!m_isThere && !m_isFresh && m_session.traits.refusesExisting.mayHold())
        headers.push_back({"If-None-Match", "*"});
    return headers;
}

Answer Upload::putTo(const std::string& path, Headers headers)
{
    headers.push_back({"Content-Type", "application/octet-stream"});
    if (m_session.traits.checksums)
        headers.push_back({"OC-Checksum", "SHA1:" + m_sum});
    return m_session.http.ask({.method = "PUT",
                               .url = m_session.address.of(path),
                               .headers = std::move(headers),
                               .file = FilePart{m_upload.source, 0, m_size}},
                              m_watch);
}

void Upload::wasWritten()
{
    m_isWritten = true;
    m_writtenAt = std::chrono::steady_clock::now();
}

DriveResult Upload::put()
{
    for (bool isFirst = true;; isFirst = false) {
        const Answer answer = putTo(m_upload.path, conditions());
        if (answer.isOk()) {
            wasWritten();
            m_putEtag = answer.header("ETag").toStdString();
            return {};
        }
        bool isUntouched = false;
        // The first one, whose answer was lost, may have been done after we had looked.
        if (!isFirst && settle(answer, isUntouched).isOk())
            return {};
        if (answer.status == 412)
            return putAfterAWhile();
        if (!isLost(answer))
            return resultOf(answer, m_action);
        DriveResult settled = settle(answer, isUntouched);
        if (settled.isOk() || !isUntouched || !answer.wasReset || !isFirst)
            return settled;
    }
}

DriveResult Upload::putAfterAWhile()
{
    const std::string before = m_before.etag;
    const bool wasWeak = m_isThere && before.starts_with("W/");
    if (wasWeak)
        std::this_thread::sleep_for(kFirstSecond);
    DriveEntry now;
    DriveResult found = m_session.find(m_upload.path, now);
    if (!found.isOk() && found.state != CloudErrorState::NotFound)
        return found;
    m_after = m_before = now;
    if (!wasWeak || strongPart(now.etag) != strongPart(before))
        return changed("another version came to be there meanwhile");
    const Answer answer = putTo(m_upload.path, conditions());
    if (isLost(answer)) {
        bool isUntouched = false;
        return settle(answer, isUntouched);
    }
    if (answer.isOk())
        wasWritten();
    m_putEtag = answer.header("ETag").toStdString();
    return answer.status == 412 ? changed("another version came to be there meanwhile")
                                : resultOf(answer, m_action);
}

DriveResult Upload::putAndMove()
{
    // Under a lock it is the same name for each save, so that what a killed one left goes with the next.
    const QByteArray mark =
        m_lock ? QCryptographicHash::hash(QByteArray::fromStdString(m_upload.path), QCryptographicHash::Sha1)
                     .toHex()
               : QUuid::createUuid().toByteArray(QUuid::Id128);
    const std::string hidden = joined(parentOf(m_upload.path), ownPrefix() + mark.toStdString());
    const auto withoutHidden = [&](DriveResult result) {
        static_cast<void>(m_session.remove(hidden));
        return result;
    };
    const Answer put = putTo(hidden, {});
    DriveEntry sent;
    const DriveResult found = put.isOk() || isLost(put) ? m_session.find(hidden, sent) : DriveResult();
    if (!put.isOk() && !(isLost(put) && found.isOk() && qint64(sent.size) == m_size))
        return withoutHidden(resultOf(put, m_action));
    if (!found.isOk())
        return withoutHidden(found);
    if (qint64(sent.size) != m_size)
        return withoutHidden(
            failed(CloudErrorState::NotKept, m_action,
                   "of " + std::to_string(m_size) + " bytes the server kept " + std::to_string(sent.size)));
    DriveResult moved = moveFrom(m_session.address.of(hidden));
    // What may still be on its way to its place stays: the next save uses the same name.
    const bool isUnderWay = moved.state == CloudErrorState::Unreachable;
    return moved.isOk() || isUnderWay ? moved : withoutHidden(moved);
}

DriveResult Upload::putInChunks()
{
    const QUrl destination = m_session.address.of(m_upload.path);
    const QByteArray name = QCryptographicHash::hash(destination.toEncoded() + ' ' + m_sum + ' ' +
                                                         QByteArray::fromStdString(m_before.etag),
                                                     QCryptographicHash::Sha1)
                                .toHex();
    Chunks chunks(m_session, "quillet-" + name, destination);
    DriveResult result = chunks.send(m_upload.source, m_size, m_action, m_watch);
    if (result.isOk())
        result = moveFrom(chunks.whole());
    // What a broken connection left is gone on with by the next save of the same content.
    if (!result.isOk() && result.state != CloudErrorState::Unreachable)
        chunks.remove();
    return result;
}

DriveResult Upload::moveFrom(const QUrl& place)
{
    Headers headers{{"Destination", m_session.address.of(m_upload.path).toEncoded()},
                    {"Overwrite", m_isThere || m_lock ? "T" : "F"}};
    if (m_lock)
        headers.push_back(m_lock->taggedCondition());
    if (m_session.traits.chunkedUpload)
        headers.push_back({"OC-Total-Length", QByteArray::number(m_size)});
    if (m_session.traits.checksums)
        headers.push_back({"OC-Checksum", "SHA1:" + m_sum});
    const Answer moved = m_session.http.ask({.method = "MOVE", .url = place, .headers = headers});
    if (moved.isOk()) {
        wasWritten();
        return {};
    }
    if (moved.status == 412)
        return changed("another file came to be there meanwhile");
    return isLost(moved) ? settleMove(moved) : resultOf(moved, m_action);
}

DriveResult Upload::settleMove(const Answer& moved)
{
    // It isn't sent again: it may be under way, and one that is done twice has cost both files.
    bool unused = false;
    DriveResult settled = settle(moved, unused);
    for (int i = 0; i < kLooks && !settled.isOk(); ++i) {
        std::this_thread::sleep_for(kBetweenLooks);
        settled = settle(moved, unused);
    }
    return settled;
}

DriveResult Upload::settle(const Answer& answer, bool& isUntouched)
{
    // A server that stood still isn't waited for as long again, three times over.
    m_session.http.hurry(answer.status == 0 && !answer.wasReset);
    DriveEntry now;
    const DriveResult found = m_session.find(m_upload.path, now);
    if (found.isOk() && isOurs(now)) {
        wasWritten();
        return {};
    }
    const bool isAbsent = found.state == CloudErrorState::NotFound;
    isUntouched =
        isAbsent ? !m_isThere : found.isOk() && (m_lock || (m_isThere && now.etag == m_before.etag));
    if (found.isOk() && m_isThere && m_lock)
        m_before.etag = now.etag;
    return resultOf(answer, m_action);
}

bool Upload::isOurs(const DriveEntry& found)
{
    if (qint64(found.size) != m_size || (m_isThere && found.etag == m_before.etag))
        return false;
    // Nobody else may have written under our lock.
    if (m_lock && !m_lock->isLost() && !found.etag.empty() && (m_isThere || m_size > 0))
        return true;
    std::string etag;
    return hasContent(m_session, m_upload.path, m_upload.source, etag).isOk();
}

DriveResult Upload::readBack()
{
    DavItem kept;
    DriveResult found = m_session.look(m_upload.path, kept, "<o:checksums/>");
    if (!found.isOk())
        return found;
    m_after = kept.entry;
    const QString sums = kept.properties[QStringLiteral("checksum")];
    if (!m_sum.isEmpty() && sums.contains("SHA1:") &&
        !sums.contains("SHA1:" + QString::fromLatin1(m_sum), Qt::CaseInsensitive))
        return failed(CloudErrorState::NotKept, m_action, "the server keeps another checksum");
    if (qint64(m_after.size) != m_size) {
        m_isWritten = false;
        return failed(CloudErrorState::NotKept, m_action,
                      "of " + std::to_string(m_size) + " bytes the server keeps " +
                          std::to_string(m_after.size));
    }
    if (m_lock && !m_lock->isLost()) {
        // The same ETag is that of two versions in one tick, or nothing was written and another than the
        // server answered, such as the network of a hotel.
        const bool isNew = !m_isThere || m_after.etag.empty() || m_after.etag != m_before.etag;
        std::string etag;
        DriveResult compared =
            isNew ? DriveResult() : hasContent(m_session, m_upload.path, m_upload.source, etag);
        if (compared.state != CloudErrorState::Changed)
            return compared;
        m_isWritten = false;
        return failed(CloudErrorState::NotKept, m_action, "the server still keeps what it had before");
    }
    // Without a lock another may have written between. His version must not be taken for ours.
    if (m_putEtag.empty() || strongPart(m_putEtag) != strongPart(m_after.etag)) {
        std::string etag;
        const DriveResult compared = hasContent(m_session, m_upload.path, m_upload.source, etag);
        if (compared.state == CloudErrorState::Changed)
            return changed("another version came to be there meanwhile");
        if (!compared.isOk())
            return compared;
        if (!etag.empty())
            m_after.etag = etag;
    }
    return {};
}

void Upload::removeEmpty()
{
    static_cast<void>(m_session.remove(m_upload.path, {m_lock->condition()}));
}

} // namespace Vs::Cloud
