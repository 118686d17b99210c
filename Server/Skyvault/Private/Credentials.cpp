#include "Server/Skyvault/Private/Credentials.h"

#include "Server/Base/Exception.h"
#include "Server/Base/JsonFile.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Base/SecretFile.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace Vs::Cloud {
namespace {

/// Each trait with its name in the file. The server's own capabilities are requested at each sign-in instead.
constexpr std::pair<const char*, Trait DriveTraits::*> kTraits[] = {
    {"locks", &DriveTraits::locks},
    {"refusesExisting", &DriveTraits::refusesExisting},
    {"refusesStale", &DriveTraits::refusesStale},
    {"weakEtags", &DriveTraits::weakEtags},
    {"keepsOldOnBreak", &DriveTraits::keepsOldOnBreak},
    {"movesOntoExisting", &DriveTraits::movesOntoExisting},
    {"etagAfterPut", &DriveTraits::etagAfterPut},
    {"etagFromPropfind", &DriveTraits::etagFromPropfind},
    {"etagsDifferInOneTick", &DriveTraits::etagsDifferInOneTick},
    {"properties", &DriveTraits::properties},
};
constexpr QLatin1String kTick("etagTick"); // In milliseconds.

using Seconds = std::chrono::seconds;

} // namespace

std::optional<Access> accessOfTokenFile()
{
    const std::optional<SecretFile::Content> found = SecretFile::named("QUILLET_CLOUD_TOKEN_FILE");
    if (!found)
        return std::nullopt;
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(found->text)).object();
    const auto text = [&](const char* name) {
        return object.value(QLatin1String(name)).toString().toStdString();
    };
    Access access{text("address"), {DriveCredentials::Kind::Password, text("user"), text("secret"), {}}};
    if (text("kind") == "bearer")
        access.credentials.kind = DriveCredentials::Kind::Bearer;
    if (access.address.empty() || access.credentials.secret.empty())
        throw Exception(found->file +
                        " is not a JSON object with the texts \"address\", \"user\" and \"secret\"");
    return access;
}

std::optional<DriveTraits> keptTraits(const boost::filesystem::path& file)
try {
    const std::optional<QJsonObject> object = JsonFile::read(file);
    if (!object)
        return std::nullopt;
    DriveTraits traits;
    traits.server = object->value(QLatin1String("server")).toString().toStdString();
    for (const auto& [name, trait] : kTraits) {
        if (const QJsonValue value = object->value(QLatin1String(name)); value.isBool())
            traits.*trait = value.toBool();
    }
    if (object->contains(kTick))
        traits.etagTick = std::chrono::milliseconds(object->value(kTick).toInteger());
    else
        traits.etagsDifferInOneTick = {};
    traits.probed =
        std::chrono::system_clock::time_point(Seconds(object->value(QLatin1String("probed")).toInteger()));
    return traits;
} catch (const Exception&) {
    return std::nullopt;
}

void keepTraits(const boost::filesystem::path& file, const DriveTraits& traits)
try {
    QJsonObject object{{QLatin1String("server"), QString::fromStdString(traits.server)}};
    for (const auto& [name, trait] : kTraits) {
        if ((traits.*trait).isKnown())
            object.insert(QLatin1String(name), bool(traits.*trait));
    }
    object.insert(kTick, qint64(traits.etagTick.count()));
    object.insert(QLatin1String("probed"),
                  qint64(std::chrono::duration_cast<Seconds>(traits.probed.time_since_epoch()).count()));
    OwnFiles::makeFolder(file.parent_path());
    JsonFile::write(file, object, JsonFile::Readers::OwnerOnly);
} catch (const Exception&) {
    // The next sign-in asks the server again.
}

} // namespace Vs::Cloud
