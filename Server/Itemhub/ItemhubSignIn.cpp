#include "Server/Itemhub/ItemhubSignIn.h"

#include "Server/Base/Exception.h"
#include "Server/Base/SecretFile.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace Vs::Itemhub {

std::optional<Access> accessOfTokenFile()
{
    const std::optional<SecretFile::Content> found = SecretFile::named("QUILLET_ITEMHUB_TOKEN_FILE");
    if (!found)
        return std::nullopt;
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(found->text)).object();
    const auto text = [&](const char* name) {
        return object.value(QLatin1String(name)).toString().toStdString();
    };
    Access access;
    access.address = text("address");
    access.customer = text("customer");
    access.token = text("token");
    access.tokenSecret = text("tokenSecret");
    access.sessionHandle = text("sessionHandle");
    access.consumerKey = text("consumerKey");
    access.consumerSecret = text("consumerSecret");
    access.kind = access.consumerKey.empty() ? Access::Kind::Bearer : Access::Kind::Signed;
    if (access.address.empty() || access.token.empty())
        throw Exception(found->file + " is not a JSON object with the texts \"address\" and \"token\"");
    return access;
}

} // namespace Vs::Itemhub
