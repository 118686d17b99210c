#include "Server/Itemhub/Client/Values.h"

#include "Server/Network/Origin.h"

#include <QXmlStreamReader>

#include <map>

namespace Vs::Itemhub {
namespace {

constexpr qsizetype kLongestName = 200;

/// The attributes and elements of a small document by name.
std::map<QString, QString> textsOf(const QByteArray& xml, const std::string& action)
{
    std::map<QString, QString> texts;
    QXmlStreamReader reader(xml);
    if (!reader.readNextStartElement() || reader.name() != QLatin1String("attachment"))
        throw Web::PayloadException(action + " failed: the answer is not an attachment's description");
    for (const QXmlStreamAttribute& attribute : reader.attributes())
        texts[attribute.name().toString()] = attribute.value().toString();
    while (reader.readNextStartElement()) {
        const QString name = reader.name().toString();
        texts[name] = reader.readElementText(QXmlStreamReader::SkipChildElements);
    }
    if (reader.hasError())
        throw Web::PayloadException(action +
                                    " failed: the answer is not XML: " + reader.errorString().toStdString());
    return texts;
}

} // namespace

Web::Workspace Values::workspace(const JsonReader& json)
{
    return {json.id("id"), json.text("name"), json.text("role")};
}

Web::Item Values::item(const JsonReader& json)
{
    Web::ItemValues values;
    values.id = json.id("id");
    values.workspaceId = json.id("workspaceId");
    values.caption = json.text("caption");
    values.description = json.text("description");
    values.revision = json.id("revision");
    values.createdBy = json.text("createdBy");
    values.createdAt = json.text("createdAt");
    values.changedAt = json.text("changedAt");
    values.isFavourite = json.flag("favourite");
    return Web::Item(std::move(values));
}

Web::Attachment Values::attachment(const JsonReader& json)
{
    Web::AttachmentValues values;
    values.id = json.id("id");
    values.itemId = json.id("itemId");
    values.workspaceId = json.id("workspaceId");
    values.name = json.text("name");
    values.docType = json.text("docType");
    values.latestVersion = json.number("latestVersion", 0);
    values.uri = json.text("uri");
    return Web::Attachment(std::move(values));
}

Web::Version Values::version(const JsonReader& json)
{
    Web::Version version;
    version.number = json.id("number");
    version.label = json.text("label");
    version.author = json.text("author");
    version.createdAt = json.text("createdAt");
    version.sha256 = json.sha256("sha256");
    version.size = static_cast<std::uint64_t>(json.number("size", 0));
    version.madeFrom = json.number("madeFrom", 0);
    return version;
}

Web::Comment Values::comment(const JsonReader& json)
{
    return {json.id("id"), json.text("author"), json.text("body"), json.text("createdAt")};
}

ItemEvent Values::event(const JsonReader& json)
{
    ItemEvent event;
    event.serial = json.id("serial");
    event.kind = json.text("kind");
    event.workspaceId = json.idOrNone("workspaceId");
    event.itemId = json.idOrNone("itemId");
    event.attachmentId = json.idOrNone("attachmentId");
    event.version = json.idOrNone("version");
    event.account = json.text("account");
    event.at = json.text("at");
    event.requestId = json.idOrNone("requestId");
    return event;
}

DashboardRequest Values::request(const JsonReader& json)
{
    constexpr qsizetype kMost = 16;
    DashboardRequest request{json.id("id"), json.text("name"), {}};
    const QJsonObject arguments = json.object("args");
    if (arguments.size() > kMost)
        throw Web::PayloadException(json.action() + " failed: \"args\" of the answer are too many");
    const JsonReader texts(arguments, json.action());
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        const std::string name = argument.key().toStdString();
        request.arguments[name] =
            argument->isDouble() ? std::to_string(texts.number(name.c_str(), 0)) : texts.text(name.c_str());
    }
    return request;
}

Content Values::content(const QByteArray& xml, const std::string& action)
{
    std::map<QString, QString> texts = textsOf(xml, action);
    const auto number = [&](const char* name, qint64 lowest) {
        bool isNumber = false;
        const qint64 value = texts[QString::fromLatin1(name)].toLongLong(&isNumber);
        if (!isNumber || value < lowest)
            throw Web::PayloadException(action + " failed: \"" + name + "\" of the answer is not a number");
        return value;
    };
    Content content;
    content.attachmentId = number("id", 1);
    content.itemId = number("item", 1);
    content.workspaceId = number("workspace", 1);
    content.version = number("version", 1);
    content.size = static_cast<std::uint64_t>(number("size", 0));
    content.docType = texts["docType"].toStdString();
    content.file = fileName(texts["file"].toStdString());
    content.sha256 = texts["sha256"].toStdString();
    content.address = texts["content"].toStdString();
    if (!isSha256(texts["sha256"]))
        throw Web::PayloadException(action + " failed: \"sha256\" of the answer is not a SHA-256");
    return content;
}

std::string Values::fileName(const std::string& name)
{
    QString text = QString::fromStdString(name);
    for (QChar& c : text)
        if (c == '/' || c == '\\' || !c.isPrint())
            c = '_';
    // The extension says what kind of file it is.
    if (text.size() > kLongestName) {
        const QString ending = text.mid(text.lastIndexOf('.')).left(16);
        text = text.left(kLongestName - ending.size()) + ending;
    }
    while (text.toUtf8().size() > kLongestName)
        text.remove(0, 1);
    if (text.startsWith('.'))
        text[0] = '_';
    return Network::isFileName(text.toUtf8()) ? text.toStdString() : "attachment";
}

} // namespace Vs::Itemhub
