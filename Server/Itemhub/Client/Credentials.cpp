#include "Server/Itemhub/Client/Credentials.h"

#include "Server/Itemhub/WebServices.h"
#include "Server/Network/Keyring.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace Vs::Itemhub {
namespace {

namespace Web = Corvane::Itemstore::WebServices;

struct Named
{
    const char* name;
    std::string Access::*text;
};

constexpr Named kTexts[] = {{"address", &Access::address},
                            {"customer", &Access::customer},
                            {"token", &Access::token},
                            {"tokenSecret", &Access::tokenSecret},
                            {"sessionHandle", &Access::sessionHandle},
                            {"consumerKey", &Access::consumerKey},
                            {"consumerSecret", &Access::consumerSecret},
                            {"refreshToken", &Access::refreshToken},
                            {"tokenAddress", &Access::tokenAddress},
                            {"client", &Access::client}};

constexpr std::pair<const char*, Access::Kind> kKinds[] = {
    {"bearer", Access::Kind::Bearer}, {"signed", Access::Kind::Signed}, {"renewed", Access::Kind::Renewed}};

std::string textOf(const Access& access)
{
    QJsonObject object{{"grantedId", qint64(access.grantedId)}};
    for (const auto& [name, text] : kTexts)
        object[QLatin1String(name)] = QString::fromStdString(access.*text);
    for (const auto& [name, kind] : kKinds)
        if (kind == access.kind)
            object["kind"] = QLatin1String(name);
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

std::optional<Access> accessOf(const std::string& text)
{
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
    Access access;
    for (const auto& [name, member] : kTexts)
        access.*member = object[QLatin1String(name)].toString().toStdString();
    for (const auto& [name, kind] : kKinds)
        if (object["kind"] == QLatin1String(name))
            access.kind = kind;
    access.grantedId = object["grantedId"].toInteger();
    if (access.address.empty() || access.token.empty())
        return std::nullopt;
    return access;
}

void check(const Network::Result& result)
{
    if (!result.isOk())
        throw Web::ItemhubException(Web::ItemhubException::Kind::Local, result.detail);
}

} // namespace

void keepInKeyring(const std::string& key, const Access& access)
{
    check(Network::keepInKeyring(key, textOf(access)));
}

std::optional<Access> keptInKeyring(const std::string& key)
{
    std::string text;
    const Network::Result result = Network::keptInKeyring(key, text);
    if (result.state == CloudErrorState::NotFound)
        return std::nullopt;
    check(result);
    return accessOf(text);
}

void forgetInKeyring(const std::string& key)
{
    check(Network::forgetInKeyring(key));
}

} // namespace Vs::Itemhub
