#include "Services/Itemhub/Routes/UploadRoutes.h"

#include "Services/Itemhub/Blobs/Digest.h"
#include "Services/Itemhub/Routes/Json.h"
#include "Services/Itemhub/Store/Attachments.h"
#include "Services/Itemhub/Store/Uploads.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <optional>
#include <system_error>

namespace Itemhub::Routes {

namespace {

using Blobs::Digest;
using Blobs::UploadWriter;
using Http::Problem;

constexpr size_t kPiece = 256UL * 1024;

void requireProtocol(const Call& call)
{
    if (call.request.header("Tus-Resumable") != "1.0.0")
        throw Problem(412, "protocol", "Uploads need Tus-Resumable: 1.0.0.").with("Tus-Version", "1.0.0");
}

qint64 headerNumber(const Call& call, const char* name)
{
    bool good = false;
    const qint64 number = QString::fromStdString(call.request.header(name)).toLongLong(&good);
    if (!good || number < 0)
        throw Problem(400, "bad_header", std::string(name) + " must be a number.");
    return number;
}

Store::Upload uploadOf(Call& call, const QString& id)
{
    const auto upload = Store::findUpload(call.store, id);
    if (!upload || upload->account != call.account())
        throw Problem(404, "no_upload", "There is no such upload.");
    if (upload->expiresAt <= Store::now())
        throw Problem(410, "upload_expired", "The upload has expired.");
    return *upload;
}

std::string expiryOf(const Store::Upload& upload)
{
    return QLocale::c()
        .toString(QDateTime::fromMSecsSinceEpoch(upload.expiresAt, Qt::UTC),
                  "ddd, dd MMM yyyy hh:mm:ss 'GMT'")
        .toStdString();
}

Problem busy(const char* why)
{
    return Problem(423, "upload_busy", why).with("Retry-After", "1");
}

/// The file, locked against other writers. Nothing if a request that was waited for has delivered the rest,
/// as the record then says.
std::optional<UploadWriter> writerOf(Call& call, Store::Upload& upload)
{
    std::optional<UploadWriter> writer;
    try {
        writer = call.service.uploads.write(upload.id.toStdString());
    } catch (const std::system_error& error) {
        // A faster request has completed or ended it since the record was read.
        upload = uploadOf(call, upload.id);
        if (error.code() != std::errc::no_such_file_or_directory || upload.sha256.isEmpty())
            throw;
        return std::nullopt;
    }
    if (!writer)
        throw busy("Another request is writing to this upload.");
    upload = uploadOf(call, upload.id);
    if (!upload.sha256.isEmpty())
        return std::nullopt;
    return writer;
}

/// Removes the file once the record says that it is no longer needed. A repeatable request is one transaction
/// as a whole, which may still be rolled back, and then the file is all there is.
void removeFile(Call& call, const std::string& id)
{
    Store::Connection& store = call.store;
    store.afterCommit([&files = call.service.uploads, id] { files.remove(id); });
}

/// Stores what was uploaded. If killed in between, it is done again: each step can be repeated.
void keep(Call& call, const Store::Upload& upload, UploadWriter& writer, const std::string& sha256)
{
    const std::string id = upload.id.toStdString();
    if (!upload.wanted.isEmpty() && upload.wanted != QString::fromStdString(sha256)) {
        writer.cutBack(0);
        throw Problem(460, "wrong_hash", "What came has another SHA-256 than was announced; send it again.");
    }
    call.service.blobs.put(sha256, call.service.uploads.pathOf(id));
    changing(call, [&] {
        Store::addBlob(call.store, QString::fromStdString(sha256), upload.length);
        Store::finishUpload(call.store, upload.id, QString::fromStdString(sha256));
        return 0;
    });
    removeFile(call, id);
}

/// The same for a file whose hash isn't known.
void keepRead(Call& call, const Store::Upload& upload, UploadWriter& writer)
{
    Digest whole;
    if (!Blobs::addFile(whole, writer.descriptor(), 0, writer.offset()))
        throw std::system_error(EIO, std::generic_category(), "Cannot read an upload");
    keep(call, upload, writer, whole.hexResult());
}

/// The checksum of the extension: an algorithm and the hash in Base64.
struct Checksum
{
    std::optional<Digest> digest; ///< Of the data received.
    std::string wanted;
};

void readChecksum(const Call& call, Checksum& checksum)
{
    const QString header = QString::fromStdString(call.request.header("Upload-Checksum"));
    if (header.isEmpty())
        return;
    const QString algorithm = header.section(' ', 0, 0);
    if (algorithm != "sha1" && algorithm != "sha256")
        throw Problem(400, "bad_checksum", "Checksums are sha1 or sha256.");
    checksum.digest.emplace(algorithm == "sha1" ? Digest::Kind::Sha1 : Digest::Kind::Sha256);
    checksum.wanted = QByteArray::fromBase64(header.section(' ', 1).toLatin1()).toStdString();
}

/// Writes the request's body. If its client is silent, disconnected or not, a new request takes over.
/// @returns whether the body was complete
bool receive(Call& call, UploadWriter& writer, uint64_t length, Checksum& checksum, Digest* whole)
{
    std::string piece;
    piece.reserve(kPiece);
    const auto put = [&] {
        if (checksum.digest)
            checksum.digest->add(piece);
        if (whole)
            whole->add(piece);
        writer.append(piece);
        piece.clear();
    };
    bool tooLong = false, isOvertaken = false;
    // A client may send slowly, and no connection is needed meanwhile.
    call.service.database.giveBack();
    const bool complete = call.request.readBody(
        [&](const char* data, size_t size) {
            tooLong = size > length - writer.offset() - piece.size();
            if (tooLong)
                return false;
            if (piece.size() + size > kPiece)
                put();
            piece.append(data, size);
            return true;
        },
        [&] { return !(isOvertaken = writer.isWanted()); });
    put();
    if (tooLong)
        throw Problem(413, "too_large", "More comes than the upload's length.");
    if (isOvertaken && !checksum.digest)
        throw busy("Another request goes on with this upload.");
    return complete;
}

Http::Response offsetAnswer(const Store::Upload& upload, uint64_t offset)
{
    Http::Response response = nothing();
    response.headers = {{"Upload-Offset", std::to_string(offset)}, {"Upload-Expires", expiryOf(upload)}};
    return response;
}

QString wantedHash(const Call& call)
{
    // Pairs of name and Base64 value, separated by commas.
    for (const QString& entry : QString::fromStdString(call.request.header("Upload-Metadata")).split(','))
        if (entry.trimmed().section(' ', 0, 0) == "sha256") {
            QString hash = QByteArray::fromBase64(entry.trimmed().section(' ', 1).toLatin1()).toLower();
            constexpr qsizetype kDigits = 64;
            if (hash.size() != kDigits || QByteArray::fromHex(hash.toLatin1()).size() != kDigits / 2)
                throw Problem(400, "bad_checksum",
                              "The metadata \"sha256\" must be a hash in hexadecimal digits.");
            return hash;
        }
    return {};
}

} // namespace

void addUploadAbilities(const Service& service, Http::Response& response)
{
    response.headers.insert(response.headers.end(),
                            {{"Tus-Version", "1.0.0"},
                             {"Tus-Extension", "creation,checksum,expiration,termination"},
                             {"Tus-Checksum-Algorithm", "sha1,sha256"},
                             {"Tus-Max-Size", std::to_string(service.config.largestUpload)}});
}

Http::Response beginUpload(Call& call)
{
    constexpr size_t kIdBytes = 18;
    requireProtocol(call);
    Store::Upload upload;
    upload.length = headerNumber(call, "Upload-Length");
    upload.wanted = wantedHash(call);
    if (upload.length > call.service.config.largestUpload)
        throw Problem(413, "too_large",
                      "An upload must not exceed " + std::to_string(call.service.config.largestUpload) +
                          " bytes.");
    removeExpiredUploads(call.service);
    upload.id = Access::randomText(kIdBytes);
    upload.account = call.account();
    upload.expiresAt = Store::now() + call.service.config.uploadHours * 3600 * 1000;
    call.service.uploads.make(upload.id.toStdString());
    changing(call, [&] {
        if (Store::announcedBytes(call.store, call.account()) + upload.length >
            call.service.config.announcedUploads)
            throw Problem(413, "too_many_uploads", "The account has too many unfinished uploads.");
        Store::addUpload(call.store, upload);
        return 0;
    });
    Http::Response response;
    response.status = 201;
    response.headers = {{"Location", call.base + "/uploads/" + upload.id.toStdString()},
                        {"Upload-Expires", expiryOf(upload)}};
    return response;
}

Http::Response tellUpload(Call& call)
{
    requireProtocol(call);
    const Store::Upload upload = uploadOf(call, call.text("upload"));
    const std::string id = upload.id.toStdString();
    // The client resumes from there, so an earlier request must not write any more, unless it is still
    // receiving.
    call.service.uploads.settle(id);
    const int64_t size = call.service.uploads.size(id);
    Http::Response response = offsetAnswer(
        upload, static_cast<uint64_t>(upload.sha256.isEmpty() ? std::max<int64_t>(size, 0) : upload.length));
    response.status = 200;
    response.headers.emplace_back("Upload-Length", std::to_string(upload.length));
    return response;
}

Http::Response continueUpload(Call& call)
{
    requireProtocol(call);
    if (call.request.header("Content-Type") != "application/offset+octet-stream" ||
        call.request.hasHeader("Content-Encoding"))
        throw Problem(415, "bad_type", "An upload's bytes come as application/offset+octet-stream.");
    Store::Upload upload = uploadOf(call, call.text("upload"));
    const auto length = static_cast<uint64_t>(upload.length);
    const auto offset = static_cast<uint64_t>(headerNumber(call, "Upload-Offset"));
    const auto requireOffset = [&](uint64_t right) {
        if (offset != right)
            throw Problem(409, "wrong_offset",
                          "The upload has " + std::to_string(right) + " bytes; go on from there.")
                .with("Upload-Offset", std::to_string(right));
    };
    Checksum checksum;
    readChecksum(call, checksum);
    std::optional<UploadWriter> taken;
    if (upload.sha256.isEmpty())
        taken = writerOf(call, upload);
    if (!taken) {
        requireOffset(length);
        return offsetAnswer(upload, length);
    }
    UploadWriter& writer = *taken;
    requireOffset(writer.offset());

    // An upload sent in one piece is hashed on the way; any other is read again once it is complete.
    std::optional<Digest> whole;
    if (offset == 0)
        whole.emplace();
    const bool complete = receive(call, writer, length, checksum, whole ? &*whole : nullptr);
    if (checksum.digest && (!complete || checksum.digest->result() != checksum.wanted)) {
        writer.cutBack(offset);
        throw complete ? Problem(460, "wrong_checksum", "What came has another checksum; send it again.")
                       : Problem(400, "cut", "The request ended early.");
    }
    if (!complete)
        throw Problem(400, "cut", "The request ended early; what came is kept.");
    const uint64_t reached = writer.offset();
    if (reached != length)
        writer.flush();
    else if (whole)
        keep(call, upload, writer, whole->hexResult());
    else
        keepRead(call, upload, writer);
    return offsetAnswer(upload, reached);
}

Http::Response endUpload(Call& call)
{
    requireProtocol(call);
    const Store::Upload upload = uploadOf(call, call.text("upload"));
    changing(call, [&] {
        Store::removeUpload(call.store, upload.id);
        return 0;
    });
    call.service.uploads.remove(upload.id.toStdString());
    return nothing();
}

void finishUpload(Call& call, const QString& id)
{
    const auto found = Store::findUpload(call.store, id);
    // A repeated request finds it taken; its stored response, or the transaction, will decide.
    if (!found || !found->sha256.isEmpty())
        return;
    Store::Upload upload = uploadOf(call, id);
    auto writer = writerOf(call, upload);
    if (!writer)
        return;
    if (writer->offset() != static_cast<uint64_t>(upload.length))
        throw Problem(409, "upload_incomplete",
                      "The upload has " + std::to_string(writer->offset()) + " of " +
                          std::to_string(upload.length) + " bytes.");
    keepRead(call, upload, *writer);
}

QString takeUpload(Call& call, const QString& id)
{
    const Store::Upload upload = uploadOf(call, id);
    if (upload.sha256.isEmpty())
        throw Problem(409, "upload_incomplete", "The upload is not complete.");
    if (call.service.blobs.size(upload.sha256.toStdString()) != upload.length)
        throw Problem(409, "upload_lost", "The service lost what was uploaded; send it again.");
    Store::removeUpload(call.store, id);
    removeFile(call, id.toStdString()); // Left over from a request that ended between the two steps.
    return upload.sha256;
}

void removeExpiredUploads(Service& service)
{
    Store::Connection& store = service.database.connection();
    for (const QString& id : Store::expiredUploads(store)) {
        service.uploads.remove(id.toStdString());
        Store::removeUpload(store, id);
    }
}

} // namespace Itemhub::Routes
