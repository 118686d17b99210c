#include "Services/Itemhub/Routes/AttachmentRoutes.h"

#include "Services/Itemhub/Routes/Json.h"
#include "Services/Itemhub/Routes/Range.h"
#include "Services/Itemhub/Routes/UploadRoutes.h"

#include <QJsonDocument>
#include <QUrl>
#include <QXmlStreamWriter>

namespace Itemhub::Routes {

namespace {

Store::Attachment attachmentOf(Call& call, qint64 id)
{
    const auto attachment = Store::findAttachment(call.store, id);
    if (!attachment)
        throw Http::Problem(404, "not_found", "The attachment is gone.");
    return *attachment;
}

/// The version numbered in the path, where "latest" means the newest.
Store::Version versionOf(Call& call)
{
    const qint64 attachment = call.subject.attachment;
    const qint64 number =
        call.names.at("version") == "latest" ? attachmentOf(call, attachment).latest : call.id("version");
    const auto version = Store::findVersion(call.store, attachment, number);
    if (!version)
        throw Http::Problem(404, "not_found", "The attachment has no such version.");
    return *version;
}

/// The version was made from one that is no longer the newest; says who was faster.
Http::Problem outdated(Call& call, qint64 attachment, qint64 madeFrom)
{
    const qint64 latest = attachmentOf(call, attachment).latest;
    const auto newest = Store::findVersion(call.store, attachment, latest);
    if (!newest)
        return Http::Problem(409, "no_version", "The attachment has no version yet; \"madeFrom\" must be 0.");
    Http::Problem problem(409, "outdated",
                          "Version " + std::to_string(madeFrom) + " is not the newest: " +
                              newest->author.toStdString() + " made version " + std::to_string(latest) +
                              " on " + timeText(newest->createdAt).toStdString() + '.');
    problem.members =
        "\"latest\":" +
        QJsonDocument(toJson(*newest, attachment, call.base)).toJson(QJsonDocument::Compact).toStdString();
    return problem;
}

/// Within a transaction: adds the version, which ends the upload.
Store::Version addVersion(Call& call, qint64 attachment, const QString& upload, const QString& label,
                          qint64 madeFrom)
{
    const qint64 number =
        Store::addVersion(call.store, attachment, call.account(), label, takeUpload(call, upload), madeFrom);
    if (number == 0)
        throw outdated(call, attachment, madeFrom);
    Store::touchItem(call.store, call.subject.item);
    call.note({.kind = "version.added",
               .workspace = call.subject.workspace,
               .item = call.subject.item,
               .attachment = attachment,
               .version = number});
    return *Store::findVersion(call.store, attachment, number);
}

} // namespace

Http::Response listAttachments(Call& call)
{
    const Store::Page page = call.page();
    return listAnswer(
        Store::attachmentsOf(call.reads(), call.subject.item, page), page, "attachments",
        [&](const Store::Attachment& attachment) { return toJson(attachment, call.base); },
        [](const Store::Attachment& attachment) { return attachment.id; });
}

Http::Response makeAttachment(Call& call)
{
    Members members(call.body);
    const QString name = members.fileName("name"), docType = members.name("docType");
    const auto upload = members.optionalName("upload");
    const QString label = members.optionalName("label").value_or(QString());
    members.end();
    constexpr qsizetype kLongestType = 64;
    if (docType.size() > kLongestType)
        throw badMember("docType", "must not have more than 64 characters");
    if (upload)
        finishUpload(call, *upload);
    return changing(call, [&] {
        const qint64 id = Store::addAttachment(call.store, call.subject.item, call.account(), name, docType);
        call.note({.kind = "attachment.added",
                   .workspace = call.subject.workspace,
                   .item = call.subject.item,
                   .attachment = id});
        if (upload)
            addVersion(call, id, *upload, label, 0);
        else
            Store::touchItem(call.store, call.subject.item);
        Store::indexItem(call.store, call.tenant(), call.subject.item);
        return created(toJson(attachmentOf(call, id), call.base), "/attachments/" + std::to_string(id));
    });
}

Http::Response readAttachment(Call& call)
{
    return answer(toJson(attachmentOf(call, call.subject.attachment), call.base));
}

Http::Response describeAttachment(Call& call)
{
    const Store::Attachment attachment = attachmentOf(call, call.subject.attachment);
    const auto version = Store::findVersion(call.store, attachment.id, attachment.latest);
    if (!version)
        throw Http::Problem(404, "no_version", "The attachment has no version yet.");
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.writeStartDocument();
    xml.writeStartElement("attachment");
    xml.writeAttribute("id", QString::number(attachment.id));
    xml.writeAttribute("item", QString::number(attachment.item));
    xml.writeAttribute("workspace", QString::number(attachment.workspace));
    xml.writeAttribute("docType", attachment.docType);
    xml.writeTextElement("file", attachment.name);
    xml.writeTextElement("version", QString::number(version->number));
    xml.writeTextElement("size", QString::number(version->size));
    xml.writeTextElement("sha256", version->sha256);
    xml.writeTextElement("content", toJson(*version, attachment.id, call.base).value("content").toString());
    xml.writeEndElement();
    xml.writeEndDocument();
    Http::Response response;
    response.type = "application/xml";
    response.body = text.toStdString();
    return response;
}

Http::Response deleteAttachment(Call& call)
{
    return changing(call, [&] {
        Store::removeAttachment(call.store, call.subject.attachment);
        Store::touchItem(call.store, call.subject.item);
        Store::indexItem(call.store, call.tenant(), call.subject.item);
        call.note({.kind = "attachment.removed",
                   .workspace = call.subject.workspace,
                   .item = call.subject.item,
                   .attachment = call.subject.attachment});
        call.audit("attachment removed", QString::number(call.subject.attachment));
        return nothing();
    });
}

Http::Response listVersions(Call& call)
{
    const Store::Page page = call.page();
    const qint64 attachment = call.subject.attachment;
    return listAnswer(
        Store::versionsOf(call.reads(), attachment, page), page, "versions",
        [&](const Store::Version& version) { return toJson(version, attachment, call.base); },
        [](const Store::Version& version) { return version.number; });
}

Http::Response makeVersion(Call& call)
{
    Members members(call.body);
    const QString upload = members.name("upload"), label = members.optionalName("label").value_or(QString());
    const auto madeFrom = members.number("madeFrom", 0, INT32_MAX);
    members.end();
    if (!madeFrom)
        throw badMember("madeFrom", "is missing");
    finishUpload(call, upload);
    return changing(call, [&] {
        const qint64 attachment = call.subject.attachment;
        const Store::Version version = addVersion(call, attachment, upload, label, *madeFrom);
        return created(toJson(version, attachment, call.base), "/attachments/" + std::to_string(attachment) +
                                                                   "/versions/" +
                                                                   std::to_string(version.number));
    });
}

Http::Response readVersion(Call& call)
{
    return answer(toJson(versionOf(call), call.subject.attachment, call.base));
}

Http::Response readContent(Call& call)
{
    const Store::Version version = versionOf(call);
    const std::string sha256 = version.sha256.toStdString(), etag = '"' + sha256 + '"';
    Http::Response response;
    response.type = "application/octet-stream";
    const QByteArray name = QUrl::toPercentEncoding(attachmentOf(call, call.subject.attachment).name);
    response.headers = {{"ETag", etag},
                        {"Accept-Ranges", "bytes"},
                        {"Content-Disposition", "attachment; filename*=UTF-8''" + name.toStdString()}};
    if (call.request.header("If-None-Match") == etag) {
        response.status = 304;
        return response;
    }
    Blobs::Descriptor content = call.service.blobs.open(sha256);
    if (!content.isValid() || content.size() != version.size)
        throw Http::Problem(
            500, content.isValid() ? "content_damaged" : "content_missing",
            "The service no longer has the content of this version as it was; restore it from a backup.");
    response.file = std::make_shared<Http::Response::File>(content.release());
    response.file->length = static_cast<uint64_t>(version.size);
    applyRange(call.request, etag, response);
    return response;
}

} // namespace Itemhub::Routes
