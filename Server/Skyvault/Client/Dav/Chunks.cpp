#include "Server/Skyvault/Client/Dav/Chunks.h"

#include <QCryptographicHash>

#include <algorithm>

namespace Vs::Cloud {

namespace {

// All parts but the last must have at least this size, and at most 10000 are allowed.
constexpr qint64 kLeastPart = qint64(5) << 20;
constexpr qint64 kPart = qint64(10) << 20;
constexpr qint64 kMostParts = 10000;

QUrl placeOf(const Session& session, const QByteArray& content)
{
    const QByteArray name = QCryptographicHash::hash(content, QCryptographicHash::Sha1).toHex();
    return Address(session.service.uploads).of("/quillet-" + name.toStdString());
}

} // namespace

bool Chunks::isWorthwhile(qint64 size)
{
    return size > kLeastPart;
}

Chunks::Chunks(Session& session, const QUrl& destination, const QByteArray& mark)
    : m_session(session),
      m_destination("Destination", destination.toEncoded()),
      m_place(placeOf(session, m_destination.second + ' ' + mark))
{
}

DriveResult Chunks::begin(const std::string& action)
{
    m_sent.clear();
    const Request make{.method = "MKCOL", .url = m_place.root(), .headers = {m_destination}};
    Answer made = m_session.http.ask(make);
    // Creating it twice is harmless.
    if (made.isLost() && made.wasReset)
        made = m_session.http.ask(make);
    if (made.status == 201)
        return {};
    if (made.status != 405 && !made.isLost())
        return resultOf(made, action);
    // An earlier attempt created it, or the request whose response was lost.
    MultiStatus reader(m_place, [&](DavItem&& each) { m_sent[each.entry.path] = each.entry.size; });
    Request request{
        .method = "PROPFIND",
        .url = m_place.of("/", true),
        .headers = {m_destination, {"Depth", "1"}, {"Content-Type", "application/xml; charset=utf-8"}},
        .body = propertiesWanted()};
    request.sink = [&](const QByteArray& piece) { return reader.add(piece); };
    const Answer listed = m_session.http.ask(request);
    if (!listed.isOk())
        return resultOf(made.isLost() ? made : listed, action);
    const DriveResult whole = reader.end();
    return whole.isOk() ? whole : failed(whole.state, action, whole.detail);
}

DriveResult Chunks::send(const std::string& source, qint64 size, const std::string& action,
                         const DriveWatch& watch)
{
    const DriveResult sent = sendMissing(source, size, action, watch);
    return m_isGone ? sendMissing(source, size, action, watch) : sent;
}

DriveResult Chunks::sendMissing(const std::string& source, qint64 size, const std::string& action,
                                const DriveWatch& watch)
{
    if (DriveResult begun = begin(action); !begun.isOk())
        return begun;
    const qint64 part = std::max(kPart, (size + kMostParts - 1) / kMostParts);
    qint64 offset = 0;
    for (int number = 1; offset < size; ++number) {
        const qint64 length = std::min(part, size - offset);
        const std::string path = "/" + QByteArray::number(number).rightJustified(5, '0').toStdString();
        const auto there = m_sent.find(path);
        if (there == m_sent.end() || qint64(there->second) != length) {
            DriveWatch partly;
            if (watch.progress)
                partly.progress = [&](std::uint64_t done, std::uint64_t) {
                    return watch.progress(std::uint64_t(offset) + done, std::uint64_t(size));
                };
            const Request request{.method = "PUT",
                                  .url = m_place.of(path),
                                  .headers = {m_destination,
                                              {"OC-Total-Length", QByteArray::number(size)},
                                              {"Content-Type", "application/octet-stream"}},
                                  .file = FilePart{source, offset, length}};
            Answer answer = m_session.http.ask(request, partly);
            // Sending the same bytes to the same part twice is harmless.
            if (answer.isLost() && answer.wasReset)
                answer = m_session.http.ask(request, partly);
            // 409 as well: the folder above the target is missing.
            m_isGone = answer.status == 404 || answer.status == 409;
            if (!answer.isOk())
                return resultOf(answer, action);
        }
        offset += length;
        // A chunk may be done before progress was ever reported, or may not need to be sent.
        if (watch.progress && !watch.progress(std::uint64_t(offset), std::uint64_t(size)))
            return failed(CloudErrorState::Cancelled, action, {});
    }
    return {};
}

void Chunks::remove()
{
    static_cast<void>(
        m_session.http.ask({.method = "DELETE", .url = m_place.root(), .headers = {m_destination}}));
}

} // namespace Vs::Cloud
