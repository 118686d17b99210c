#include "Server/Skyvault/Client/SignIn/LoginFlow.h"

#include "Server/Skyvault/Client/Dav/Address.h"
#include "Server/Skyvault/Client/Networking.h"

#include <chrono>
#include <thread>

namespace Vs::Cloud {

namespace {

constexpr std::chrono::minutes kPatience{20};
constexpr std::chrono::milliseconds kTick{100};
constexpr int kTicksBetween = 10;

} // namespace

DriveResult signInByLoginFlow(const QUrl& server, const std::function<bool(const std::string&)>& open,
                              DriveCredentials& credentials, const DriveWatch& watch)
{
    const std::string action = "Signing in at " + hostOf(server);
    Http http({});
    QUrl start = server;
    start.setPath(server.path() + "/index.php/login/v2");
    const Answer begun = postForm(http, start, {}, watch);
    if (!begun.isOk())
        return resultOf(begun, action);
    const QJsonObject flow = objectOf(begun), poll = flow["poll"].toObject();
    const QUrl login(flow["login"].toString()), endpoint(poll["endpoint"].toString());
    const QString token = poll["token"].toString();
    if (token.isEmpty() || !isSameOrigin(login, server) || !isSameOrigin(endpoint, server))
        return failed(CloudErrorState::BadAnswer, action, "the server names no login page of its own");
    if (!open(login.toString(QUrl::FullyEncoded).toStdString()))
        return failed(CloudErrorState::LoginFailed, action, "no browser could be opened");
    QUrlQuery form;
    form.addQueryItem("token", QString::fromLatin1(QUrl::toPercentEncoding(token)));
    const auto end = std::chrono::steady_clock::now() + kPatience;
    for (int tick = 1; std::chrono::steady_clock::now() < end; ++tick) {
        if (watch.progress && !watch.progress(0, 0))
            return {CloudErrorState::Cancelled, {}};
        std::this_thread::sleep_for(kTick);
        if (tick % kTicksBetween != 0)
            continue;
        const Answer answer = postForm(http, endpoint, form, watch);
        // 404 until the user has finished; a network that is down for a while comes back.
        if (answer.status == 404 || answer.isLost())
            continue;
        const QJsonObject found = objectOf(answer);
        if (!answer.isOk())
            return resultOf(answer, action);
        credentials = {.kind = DriveCredentials::Kind::Password,
                       .user = found["loginName"].toString().toStdString(),
                       .secret = found["appPassword"].toString().toStdString()};
        if (credentials.user.empty() || credentials.secret.empty())
            return failed(CloudErrorState::BadAnswer, action, "the server gave no password");
        return {};
    }
    return failed(CloudErrorState::LoginFailed, action, "nobody signed in within 20 minutes");
}

} // namespace Vs::Cloud
