#include "Server/Skyvault/Client/Dav/Upload.h"

#include "Server/Skyvault/Client/Dav/Chunks.h"
#include "Server/Skyvault/Client/Dav/Compare.h"
#include "Server/Skyvault/Client/Dav/KeepOther.h"

#include <chrono>
#include <thread>

namespace Vs::Cloud {

namespace {

// Until a weak ETag becomes a strong one.
constexpr std::chrono::milliseconds kFirstSecond{1200};
// Until a request without a response is done, if it is done at all.
constexpr int kLooks = 5;
constexpr std::chrono::milliseconds kBetweenLooks{200};

} // namespace

Upload::Upload(Session& session, const DriveUpload& upload, const DriveWatch& watch)
    : m_session(session),
      m_upload(upload),
      m_watch(watch),
      m_action(session.action("Writing", upload.path)),
      m_source(upload.source)
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
    if (!isDrivePath(m_upload.path) || m_upload.path == "/")
        return failed(CloudErrorState::BadName, m_action, "no file can have that name");
    if (DriveResult opened = m_source.open(m_action); !opened.isOk())
        return opened;
    if (m_session.traits.locks) {
        // Some servers create an empty file for a locked name without saying so.
        DriveEntry before;
        if (!m_upload.known) {
            DriveResult found = m_session.find(m_upload.path, before);
            m_wasAbsent = found.state == CloudErrorState::NotFound;
            if (!found.isOk() && !m_wasAbsent)
                return found;
        }
        DriveResult locked = Lock::take(m_session, m_upload.path, m_lock);
        if (!locked.isOk())
            return locked;
    }
    DriveResult result = underLock(entry);
    m_session.http.hurry(result.state == CloudErrorState::Unreachable);
    if (!result.isOk() && m_lock && !m_isWritten && (m_lock->madeFile() || m_wasAbsent))
        m_lock->removeEmptyFile();
    // Somebody else's file of the same size must not get the ETag of ours.
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
        // An empty file is nobody's work: some servers create one for a lock, whose response may have been
        // lost.
        result = m_before.size > 0 ? keepOther(m_session, m_before) : DriveResult();
    }
    if (result.isOk())
        result = write();
    if (result.isOk())
        result = readBack();
    if (result.isOk() && m_aside)
        m_aside->drop(m_after);
    if (result.isOk() || result.state == CloudErrorState::Changed)
        entry = m_after;
    return result;
}

DriveResult Upload::changed(const std::string& why) const
{
    return failed(CloudErrorState::Changed, m_action, why + whoAndWhen(m_before));
}

DriveResult Upload::cutShort(std::uint64_t size) const
{
    return failed(CloudErrorState::NotKept, m_action,
                  "of " + std::to_string(m_source.size()) + " bytes the server keeps " +
                      std::to_string(size));
}

DriveResult Upload::compare()
{
    DavItem there;
    DriveResult found = m_session.look(m_upload.path, there, m_lock ? "<D:lockdiscovery/>" : "");
    if (found.state == CloudErrorState::NotFound)
        return {}; // A file that somebody else removed is restored: no work is lost by that.
    if (!found.isOk())
        return found;
    if (m_lock && m_lock->isSecond(there))
        return Lock::another(there, m_action);
    m_before = std::move(there.entry);
    if (m_before.isFolder)
        return failed(CloudErrorState::BadName, m_action, "a folder has this name");
    m_isFresh = m_lock && m_before.size == 0 && (m_lock->madeFile() || m_wasAbsent);
    if (m_isFresh)
        return {};
    m_isThere = true;
    if (!m_upload.known)
        return changed("a file of this name is there");
    // Without an ETag, the comparison is left to the server.
    const bool isSame = m_before.etag.empty() ? bool(m_session.traits.refusesStale)
                                              : strongPart(m_before.etag) == strongPart(*m_upload.known);
    return isSame ? DriveResult() : changed("another version is there");
}

DriveResult Upload::compareAgain()
{
    DriveEntry now;
    DriveResult found = m_session.find(m_upload.path, now);
    if (found.state == CloudErrorState::NotFound) {
        m_isThere = false;
        return {};
    }
    if (!found.isOk() || (m_isThere && strongPart(now.etag) == strongPart(m_before.etag)))
        return found;
    m_after = m_before = now;
    return changed("another version has appeared there meanwhile");
}

DriveResult Upload::write()
{
    const DriveTraits& traits = m_session.traits;
    const bool isInChunks = traits.chunkedUpload && Chunks::isWorthwhile(m_source.size());
    if (traits.checksums || isInChunks)
        m_source.addSum();
    if (isInChunks)
        return putInChunks();
    if (!isGuarded())
        return putAside();
    return !traits.keepsOldOnBreak && traits.movesOntoExisting ? putAndMove() : put();
}

bool Upload::isGuarded() const
{
    return m_lock || m_session.traits.refusesStale || m_session.traits.versions;
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

void Upload::wasWritten()
{
    m_isWritten = true;
    m_writtenAt = std::chrono::steady_clock::now();
}

DriveResult Upload::put()
{
    for (bool isFirst = true;; isFirst = false) {
        const Answer answer = m_source.putTo(m_session, m_upload.path, conditions(), m_watch);
        if (answer.isOk()) {
            wasWritten();
            m_putEtag = answer.header("ETag").toStdString();
            return {};
        }
        bool isUntouched = false; // The first request may have been carried out after we looked.
        if (!isFirst && settle(answer, isUntouched).isOk())
            return {};
        if (answer.status == 412)
            return putAfterAWhile();
        if (!mayBeDone(answer))
            return resultOf(answer, m_action);
        // A server that has received everything may write it even though the user has cancelled.
        DriveResult settled = answer.failure.state == CloudErrorState::Cancelled
                                  ? settleSlowly(answer, isUntouched)
                                  : settle(answer, isUntouched);
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
        return changed("another version has appeared there meanwhile");
    // It stays weak if the file's time is in the future. Nobody else writes under our lock.
    const bool isStillWeak = now.etag.starts_with("W/") && m_lock && !m_lock->isLost();
    const Headers headers = isStillWeak ? Headers{m_lock->condition()} : conditions();
    const Answer answer = m_source.putTo(m_session, m_upload.path, headers, m_watch);
    if (mayBeDone(answer)) {
        bool isUntouched = false;
        return settle(answer, isUntouched);
    }
    if (answer.isOk())
        wasWritten();
    m_putEtag = answer.header("ETag").toStdString();
    return answer.status == 412 ? changed("another version has appeared there meanwhile")
                                : resultOf(answer, m_action);
}

DriveResult Upload::putAndMove()
{
    const std::string hidden = hiddenNameOf(m_upload.path, m_lock != nullptr);
    DriveResult result = putHidden(hidden);
    if (result.isOk())
        result = moveFrom(m_session.address.of(hidden));
    removeHidden(hidden, result);
    return result;
}

void Upload::removeHidden(const std::string& hidden, const DriveResult& result)
{
    // Some servers remove the target first: in between, this is all that is left of the file.
    if (result.isOk() || m_mayBeMoving || m_session.remove(hidden).isOk())
        m_hidden.drop();
}

DriveResult Upload::putHidden(const std::string& hidden)
{
    if (!m_lock) // Under a lock, the next save of this file uses the same name.
        m_hidden = m_session.leftovers.note(hidden);
    const Answer put = m_source.putTo(m_session, hidden, {}, m_watch);
    DriveEntry sent;
    const DriveResult found = put.isOk() || mayBeDone(put) ? m_session.find(hidden, sent) : DriveResult();
    const bool isWhole = found.isOk() && qint64(sent.size) == m_source.size();
    if (!put.isOk() && !(mayBeDone(put) && isWhole))
        return resultOf(put, m_action);
    return isWhole || !found.isOk() ? found : cutShort(sent.size);
}

DriveResult Upload::putAside()
{
    const std::string hidden = hiddenNameOf(m_upload.path, false);
    DriveResult result = putHidden(hidden);
    if (result.isOk() && m_isThere)
        result = Aside::take(m_session, m_before, m_aside);
    // The name is free now, and whoever takes it meanwhile keeps it.
    m_isThere = false;
    if (result.isOk())
        result = moveFrom(m_session.address.of(hidden));
    removeHidden(hidden, result);
    if (!result.isOk() && m_aside)
        m_aside->giveBack();
    return result;
}

DriveResult Upload::putInChunks()
{
    const QUrl destination = m_session.address.of(m_upload.path);
    Chunks chunks(m_session, destination, m_source.sum() + ' ' + QByteArray::fromStdString(m_before.etag));
    DriveResult result = chunks.send(m_upload.source, m_source.size(), m_action, m_watch);
    // That took a while, and not every server honours a condition along the way.
    if (result.isOk() && (!m_lock || m_lock->isLost()))
        result = compareAgain();
    if (result.isOk())
        result = moveFrom(chunks.whole());
    // What a broken connection left is resumed by the next save, unless the server is still working on it.
    if (!result.isOk() && result.state != CloudErrorState::Unreachable && !m_mayBeMoving)
        chunks.remove();
    return result;
}

DriveResult Upload::moveFrom(const QUrl& place)
{
    Headers headers{{"Destination", m_session.address.of(m_upload.path).toEncoded()},
                    {"Overwrite", m_isThere || m_lock ? "T" : "F"}};
    if (m_lock)
        headers.push_back(m_lock->taggedCondition());
    else if (m_isThere && m_session.traits.chunkedUpload && !m_before.etag.empty())
        headers.push_back(onlyOver(headers.front().second, m_before.etag));
    if (m_session.traits.chunkedUpload)
        headers.push_back({"OC-Total-Length", QByteArray::number(m_source.size())});
    if (m_session.traits.checksums)
        headers.push_back({"OC-Checksum", "SHA1:" + m_source.sum()});
    const Answer moved = m_session.http.ask({.method = "MOVE", .url = place, .headers = headers});
    if (moved.isOk()) {
        wasWritten();
        m_putEtag = moved.header("OC-ETag").toStdString();
        return {};
    }
    if (moved.status == 412) {
        const DriveResult compared = compareAgain();
        return compared.isOk() ? changed("another file has appeared there meanwhile") : compared;
    }
    if (!mayBeDone(moved))
        return resultOf(moved, m_action);
    bool unused = false; // It isn't retried: doing it twice has destroyed both files.
    m_mayBeMoving = true;
    return settleSlowly(moved, unused);
}

DriveResult Upload::settleSlowly(const Answer& answer, bool& isUntouched)
{
    for (int i = 0;; ++i) {
        DriveResult settled = settle(answer, isUntouched);
        if (settled.isOk() || !m_isSeen || i == kLooks)
            return settled;
        std::this_thread::sleep_for(kBetweenLooks);
    }
}

DriveResult Upload::settle(const Answer& answer, bool& isUntouched)
{
    // Don't wait as long again, three times over, for a server that has stalled.
    m_session.http.hurry(answer.status == 0 && !answer.wasReset);
    DriveEntry now;
    const DriveResult found = m_session.find(m_upload.path, now);
    if (found.isOk() && isOurs(now)) {
        wasWritten();
        return {};
    }
    const bool isAbsent = found.state == CloudErrorState::NotFound;
    m_isSeen = found.isOk() || isAbsent;
    isUntouched =
        isAbsent ? !m_isThere : found.isOk() && (m_lock || (m_isThere && now.etag == m_before.etag));
    if (found.isOk() && m_isThere && m_lock)
        m_before.etag = now.etag;
    return resultOf(answer, m_action);
}

bool Upload::isOurs(const DriveEntry& found)
{
    if (qint64(found.size) != m_source.size() || (m_isThere && found.etag == m_before.etag))
        return false;
    // Nobody else can have written under our lock.
    if (m_lock && !m_lock->isLost() && !found.etag.empty() && (m_isThere || m_source.size() > 0))
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
    if (!m_source.sum().isEmpty() && sums.contains("SHA1:") &&
        !sums.contains("SHA1:" + QString::fromLatin1(m_source.sum()), Qt::CaseInsensitive))
        return failed(CloudErrorState::NotKept, m_action, "the server keeps another checksum");
    if (qint64(m_after.size) != m_source.size()) {
        m_isWritten = false;
        return cutShort(m_after.size);
    }
    if (m_lock && !m_lock->isLost()) {
        // The same ETag means two versions within one tick, or that nothing was written because something
        // other than the server responded, such as a hotel network.
        const bool isNew = !m_isThere || m_after.etag.empty() || m_after.etag != m_before.etag;
        std::string etag;
        DriveResult compared =
            isNew ? DriveResult() : hasContent(m_session, m_upload.path, m_upload.source, etag);
        if (compared.state != CloudErrorState::Changed)
            return compared;
        m_isWritten = false;
        return failed(CloudErrorState::NotKept, m_action, "the server still keeps what it had before");
    }
    // Without a lock, somebody else may have written in between. That version must not be taken for ours.
    if (m_putEtag.empty() || strongPart(m_putEtag) != strongPart(m_after.etag)) {
        std::string etag;
        DriveResult compared = hasContent(m_session, m_upload.path, m_upload.source, etag);
        if (compared.state == CloudErrorState::Changed)
            return changed("another version has appeared there meanwhile");
        if (!compared.isOk())
            return compared;
        if (!etag.empty())
            m_after.etag = etag;
    }
    return {};
}

} // namespace Vs::Cloud
