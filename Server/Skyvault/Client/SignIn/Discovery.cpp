#include "Server/Skyvault/Client/SignIn/Discovery.h"

#include "Server/Skyvault/Client/Dav/MultiStatus.h"
#include "Server/Skyvault/Client/Http/Failure.h"
#include "Server/Skyvault/Client/Http/Http.h"

namespace Vs::Cloud {

QUrl addressTyped(const std::string& typed)
{
    const QString text = QString::fromStdString(typed).trimmed();
    if (text.isEmpty())
        return {};
    QUrl url(text.contains(QLatin1String("://")) ? text : "https://" + text, QUrl::TolerantMode);
    if (!text.contains(QLatin1String("://"))) {
        QUrl plain = url;
        plain.setScheme(QStringLiteral("http"));
        if (isProtected(plain))
            url = plain;
    }
    return url.isValid() && !url.host().isEmpty() ? url : QUrl();
}

DriveResult discover(const std::string& typed, DriveOffer& offer)
{
    const QUrl url = addressTyped(typed);
    const std::string action = "Looking for a drive at \"" + typed + "\"";
    if (url.isEmpty())
        return failed(CloudErrorState::BadName, action, "this is no address");
    Http http({});
    const Address address(url);
    const Answer answer = http.ask({.method = "PROPFIND",
                                    .url = address.of("/"),
                                    .headers = {{"Depth", "0"}},
                                    .body = propertiesWanted()});
    if (answer.status != 207 && answer.status != 401)
        return resultOf(answer, action);
    offer.address = address.root().toString().toStdString();
    offer.password = true;
    return {};
}

} // namespace Vs::Cloud
