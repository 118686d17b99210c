#include "Services/Itemhub/Routes/Json.h"

#include "Services/Itemhub/Routes/Clean.h"

#include <QJsonDocument>

#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>

namespace Itemhub::Routes {

namespace {

/// Null for 0.
QJsonValue idOrNull(qint64 id)
{
    return id ? QJsonValue(id) : QJsonValue();
}

} // namespace

Http::Problem badMember(const char* name, const std::string& why)
{
    return Http::Problem(400, "bad_member", std::string("\"") + name + "\" " + why + '.');
}

bool Members::has(const char* name)
{
    m_known.insert(name);
    return m_object.contains(QLatin1String(name));
}

std::optional<QString> Members::given(const char* name, qsizetype longest)
{
    if (!has(name))
        return std::nullopt;
    const QJsonValue value = m_object.value(QLatin1String(name));
    if (!value.isString())
        throw badMember(name, "must be a text");
    if (value.toString().size() > longest)
        throw badMember(name, "must not have more than " + std::to_string(longest) + " characters");
    return value.toString();
}

std::optional<QString> Members::optionalName(const char* name)
{
    const auto text = given(name, kName);
    if (!text)
        return std::nullopt;
    const QString clean = cleanedName(*text);
    if (clean.isEmpty())
        throw badMember(name, "must not be empty");
    return clean;
}

QString Members::name(const char* name)
{
    const auto text = optionalName(name);
    if (!text)
        throw badMember(name, "is missing");
    return *text;
}

QString Members::fileName(const char* name)
{
    QString clean = cleanedFileName(this->name(name));
    if (clean.isEmpty())
        throw badMember(name, "must be the name of a file");
    return clean;
}

QString Members::text(const char* name, const QString& otherwise)
{
    const auto text = given(name, kText);
    return text ? cleanedText(*text) : otherwise;
}

QString Members::secret(const char* name)
{
    constexpr qsizetype kLongest = 1024;
    const auto text = given(name, kLongest);
    if (!text)
        throw badMember(name, "is missing");
    return *text;
}

std::optional<qint64> Members::number(const char* name, qint64 lowest, qint64 highest)
{
    if (!has(name))
        return std::nullopt;
    const QJsonValue value = m_object.value(QLatin1String(name));
    const double number = value.toDouble(NAN);
    if (number != std::floor(number) || number < static_cast<double>(lowest) ||
        number > static_cast<double>(highest))
        throw badMember(name, "must be a whole number from " + std::to_string(lowest) + " to " +
                                  std::to_string(highest));
    return value.toInteger();
}

std::optional<bool> Members::flag(const char* name)
{
    if (!has(name))
        return std::nullopt;
    const QJsonValue value = m_object.value(QLatin1String(name));
    if (!value.isBool())
        throw badMember(name, "must be true or false");
    return value.toBool();
}

Store::Role Members::role(const char* name, Store::Role otherwise)
{
    const auto text = given(name, kName);
    const auto role = text ? Store::roleOf(*text) : otherwise;
    if (!role || *role == Store::Role::None)
        throw badMember(name, "must be reader, writer or admin");
    return *role;
}

void Members::end() const
{
    for (const QString& name : m_object.keys())
        if (!m_known.contains(name))
            throw badMember(name.left(kName).toUtf8().constData(), "is not known here");
}

QString timeText(qint64 ms)
{
    // Not with QDateTime, which would take a tenth of the time of reading an item.
    constexpr qint64 kSecond = 1000;
    const std::time_t seconds = ms / kSecond;
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    const size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    std::snprintf(text.data() + length, text.size() - length, ".%03dZ", static_cast<int>(ms % kSecond));
    return QString::fromLatin1(text.data());
}

QJsonValue nameOrNull(Store::Role role)
{
    return role == Store::Role::None ? QJsonValue() : QJsonValue(Store::nameOf(role));
}

QJsonObject toJson(const Store::Workspace& workspace)
{
    return {{"id", workspace.id},
            {"name", workspace.name},
            {"role", Store::nameOf(workspace.role)},
            {"createdAt", timeText(workspace.createdAt)}};
}

QJsonObject toJson(const Store::Item& item)
{
    return {{"id", item.id},
            {"workspaceId", item.workspace},
            {"caption", item.caption},
            {"description", item.description},
            {"revision", item.revision},
            {"createdBy", item.createdBy},
            {"createdAt", timeText(item.createdAt)},
            {"changedAt", timeText(item.changedAt)},
            {"favourite", item.favourite}};
}

QJsonObject toJson(const Store::Attachment& attachment, const std::string& base)
{
    return {{"id", attachment.id},
            {"itemId", attachment.item},
            {"workspaceId", attachment.workspace},
            {"name", attachment.name},
            {"docType", attachment.docType},
            {"latestVersion", attachment.latest},
            {"uri", QString::fromStdString(base) + "/attachments/" + QString::number(attachment.id)},
            {"createdAt", timeText(attachment.createdAt)}};
}

QJsonObject toJson(const Store::Version& version, qint64 attachment, const std::string& base)
{
    return {
        {"number", version.number},
        {"label", version.label},
        {"author", version.author},
        {"createdAt", timeText(version.createdAt)},
        {"sha256", version.sha256},
        {"size", version.size},
        {"madeFrom", version.madeFrom},
        {"content", QString::fromStdString(base) +
                        QString("/attachments/%1/versions/%2/content").arg(attachment).arg(version.number)}};
}

QJsonObject toJson(const Store::Comment& comment)
{
    return {{"id", comment.id},
            {"author", comment.authorName},
            {"body", comment.body},
            {"createdAt", timeText(comment.createdAt)}};
}

QJsonObject toJson(const Store::Event& event)
{
    return {{"serial", event.serial},
            {"kind", event.kind},
            {"workspaceId", idOrNull(event.workspace)},
            {"itemId", idOrNull(event.item)},
            {"attachmentId", idOrNull(event.attachment)},
            {"version", idOrNull(event.version)},
            {"requestId", idOrNull(event.request)},
            {"account", event.account},
            {"at", timeText(event.at)}};
}

Http::Response answer(const QJsonObject& object, int status)
{
    Http::Response response;
    response.status = status;
    response.body = QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
    return response;
}

Http::Response created(const QJsonObject& object, const std::string& location)
{
    Http::Response response = answer(object, 201);
    response.headers.emplace_back("Location", location);
    return response;
}

Http::Response nothing()
{
    Http::Response response;
    response.status = 204;
    return response;
}

} // namespace Itemhub::Routes
