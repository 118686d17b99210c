#include "Services/Itemhub/Config/Config.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>
#include <map>
#include <stdexcept>

namespace Itemhub {

namespace {

using Setter = std::function<bool(Config&, const QJsonValue&)>;

template <class Part>
Setter text(Part part)
{
    return [part](Config& config, const QJsonValue& value) {
        part(config) = value.toString();
        return value.isString();
    };
}

template <class Part>
Setter plainText(Part part)
{
    return [part](Config& config, const QJsonValue& value) {
        part(config) = value.toString().toStdString();
        return value.isString();
    };
}

template <class Part>
Setter number(Part part)
{
    return [part](Config& config, const QJsonValue& value) {
        auto& target = part(config);
        target = static_cast<std::remove_reference_t<decltype(target)>>(value.toDouble());
        return value.isDouble() && value.toDouble() >= 0;
    };
}

/// The settings of a configuration file.
const std::map<QString, Setter>& settings()
{
    static const std::map<QString, Setter> all{
        {"database.driver",
         [](Config& config, const QJsonValue& value) {
             config.database.driver = value.toString();
             return config.database.driver == "sqlite" || config.database.driver == "postgresql";
         }},
        {"database.name", text([](Config& c) -> QString& { return c.database.name; })},
        {"database.host", text([](Config& c) -> QString& { return c.database.host; })},
        {"database.user", text([](Config& c) -> QString& { return c.database.user; })},
        {"database.password", text([](Config& c) -> QString& { return c.database.password; })},
        {"database.port", number([](Config& c) -> int& { return c.database.port; })},
        {"database.readReplicas",
         [](Config& config, const QJsonValue& value) {
             config.database.readReplicas = value.toBool();
             return value.isBool();
         }},
        {"database.connections",
         [](Config& config, const QJsonValue& value) {
             config.database.connections = value.toInt();
             return value.toInt() >= 2;
         }},
        {"database.patienceMs", number([](Config& c) -> int& { return c.database.patienceMs; })},
        {"blobs", text([](Config& c) -> QString& { return c.blobs; })},
        {"objects.address", plainText([](Config& c) -> std::string& { return c.objects.address; })},
        {"objects.bucket", plainText([](Config& c) -> std::string& { return c.objects.bucket; })},
        {"objects.region", plainText([](Config& c) -> std::string& { return c.objects.region; })},
        {"objects.keyId", plainText([](Config& c) -> std::string& { return c.objects.keyId; })},
        {"objects.secret", plainText([](Config& c) -> std::string& { return c.objects.secret; })},
        {"objects.nearBytes", number([](Config& c) -> uint64_t& { return c.objects.nearBytes; })},
        {"uploads", text([](Config& c) -> QString& { return c.uploads; })},
        {"keyFile", text([](Config& c) -> QString& { return c.keyFile; })},
        {"server.address", text([](Config& c) -> QString& { return c.address; })},
        {"server.port", number([](Config& c) -> int& { return c.port; })},
        {"server.url", text([](Config& c) -> QString& { return c.url; })},
        {"server.behindProxy",
         [](Config& config, const QJsonValue& value) {
             config.behindProxy = value.toBool();
             return value.isBool();
         }},
        {"limits.requestsPerSecond", number([](Config& c) -> double& { return c.requestsPerSecond; })},
        {"limits.connections", number([](Config& c) -> int& { return c.connections; })},
        {"limits.largestUpload", number([](Config& c) -> qint64& { return c.largestUpload; })},
        {"limits.announcedUploads", number([](Config& c) -> qint64& { return c.announcedUploads; })},
        {"limits.uploadHours", number([](Config& c) -> qint64& { return c.uploadHours; })},
        {"signIn.issuer", text([](Config& c) -> QString& { return c.provider.issuer; })},
        {"signIn.clientId", text([](Config& c) -> QString& { return c.provider.clientId; })},
        {"signIn.clientSecret", text([](Config& c) -> QString& { return c.provider.clientSecret; })},
        {"signIn.title", text([](Config& c) -> QString& { return c.provider.title; })},
        {"keep.eventDays", number([](Config& c) -> qint64& { return c.eventDays; })},
        {"keep.auditDays", number([](Config& c) -> qint64& { return c.auditDays; })},
    };
    return all;
}

void readInto(Config& config, const QJsonObject& object, const QString& prefix)
{
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        const QString name = prefix + entry.key();
        const auto setter = settings().find(name);
        if (setter != settings().end()) {
            if (!setter->second(config, entry.value()))
                throw std::runtime_error("\"" + name.toStdString() + "\" has a value that it cannot have");
        } else if (entry.value().isObject()) {
            readInto(config, entry.value().toObject(), name + '.');
        } else {
            throw std::runtime_error("there is no setting \"" + name.toStdString() + '"');
        }
    }
}

} // namespace

Config readConfig(const QString& file)
{
    const auto refuse = [&file](const std::string& why) {
        throw std::runtime_error("The configuration " + file.toStdString() + " cannot be used: " + why + '.');
    };
    QFile stored(file);
    if (!stored.open(QIODevice::ReadOnly))
        refuse(stored.errorString().toStdString());
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(stored.readAll(), &error);
    if (!document.isObject())
        refuse(error.errorString().toStdString() + " at byte " + std::to_string(error.offset));
    Config config;
    try {
        readInto(config, document.object(), {});
    } catch (const std::runtime_error& fault) {
        refuse(fault.what());
    }
    for (const auto& [name, value] :
         {std::pair("database.name", &config.database.name), std::pair("blobs", &config.blobs)})
        if (value->isEmpty())
            refuse(std::string("\"") + name + "\" is missing");
    while (config.objects.address.ends_with('/'))
        config.objects.address.pop_back();
    if (!config.objects.address.empty() && config.objects.bucket.empty())
        refuse("\"objects.bucket\" is missing");
    if (config.uploads.isEmpty())
        config.uploads = config.blobs + "/uploads";
    if (config.keyFile.isEmpty())
        config.keyFile = QFileInfo(config.blobs).path() + "/service.key";
    while (config.url.endsWith('/'))
        config.url.chop(1);
    return config;
}

Config localConfig(const QString& folder)
{
    if (!QDir().mkpath(folder))
        throw std::runtime_error("The folder " + folder.toStdString() + " cannot be made.");
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    Config config;
    const QString path = QDir(folder).absolutePath();
    config.database.name = path + "/items.sqlite";
    config.blobs = path + "/blobs";
    config.uploads = path + "/uploads";
    config.keyFile = path + "/service.key";
    config.port = 0;
    config.requestsPerSecond = 0;
    return config;
}

} // namespace Itemhub
