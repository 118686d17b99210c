#include "Server/Skyvault/Client/SignIn/Keyring.h"

#include "Server/Network/Keyring.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace Vs::Cloud {

namespace {

std::string textOf(const DriveCredentials& credentials)
{
    const bool isBearer = credentials.kind == DriveCredentials::Kind::Bearer;
    QJsonObject object{{"kind", isBearer ? "bearer" : "password"},
                       {"user", QString::fromStdString(credentials.user)},
                       {"secret", QString::fromStdString(credentials.secret)}};
    if (isBearer) {
        object["refreshToken"] = QString::fromStdString(credentials.refreshToken);
        object["tokenAddress"] = QString::fromStdString(credentials.tokenAddress);
        object["client"] = QString::fromStdString(credentials.client);
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

bool read(const std::string& text, DriveCredentials& credentials)
{
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
    const auto value = [&](const char* name) {
        return object.value(QLatin1String(name)).toString().toStdString();
    };
    if (value("secret").empty())
        return false;
    credentials.kind =
        value("kind") == "bearer" ? DriveCredentials::Kind::Bearer : DriveCredentials::Kind::Password;
    credentials.user = value("user");
    credentials.secret = value("secret");
    credentials.refreshToken = value("refreshToken");
    credentials.tokenAddress = value("tokenAddress");
    credentials.client = value("client");
    return true;
}

} // namespace

DriveResult keepInKeyring(const std::string& key, const DriveCredentials& credentials)
{
    return Network::keepInKeyring(key, textOf(credentials));
}

DriveResult keptInKeyring(const std::string& key, DriveCredentials& credentials)
{
    std::string text;
    DriveResult result = Network::keptInKeyring(key, text);
    if (result.isOk() && !read(text, credentials))
        return {CloudErrorState::NotFound, "What the keyring has for this drive is not a credential"};
    return result;
}

DriveResult forgetInKeyring(const std::string& key)
{
    return Network::forgetInKeyring(key);
}

} // namespace Vs::Cloud
