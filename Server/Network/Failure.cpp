#include "Server/Network/Failure.h"

#include <QString>

namespace Vs::Network {

namespace {

constexpr qsizetype kLongestReason = 80;

CloudErrorState stateOf(int status)
{
    switch (status) {
    case 401:
        return CloudErrorState::Unauthorized;
    case 403:
    case 405: // The method works elsewhere on this drive, so it is refused here.
        return CloudErrorState::Forbidden;
    case 404:
    case 410:
        return CloudErrorState::NotFound;
    case 409:
        return CloudErrorState::NoFolders;
    case 412:
        return CloudErrorState::Changed;
    case 413:
    case 507:
        return CloudErrorState::DriveFull;
    case 414:
    case 422:
        return CloudErrorState::BadName;
    case 415:
    case 501:
        return CloudErrorState::Unsupported;
    case 423:
        return CloudErrorState::Locked;
    case 429:
        return CloudErrorState::TooManyRequests;
    default:
        break;
    }
    if (status >= 300 && status < 400)
        return CloudErrorState::Redirected;
    return status >= 500 ? CloudErrorState::ServerError : CloudErrorState::BadAnswer;
}

/// The server's reason phrase for the status, without anything that doesn't belong in a message.
std::string reasonOf(const QByteArray& given)
{
    QString text = QString::fromUtf8(given).left(kLongestReason);
    text.removeIf([](QChar c) { return !c.isPrint(); });
    return text.toStdString();
}

} // namespace

Result failed(CloudErrorState state, const std::string& action, const std::string& why)
{
    return {state, action + " failed" + (why.empty() ? "" : ": ") + why};
}

Result resultOf(const Answer& answer, const std::string& action)
{
    if (answer.isOk())
        return {};
    if (answer.status == 0)
        return failed(answer.failure.state, action, answer.failure.detail);
    std::string why = "the server answered " + std::to_string(answer.status);
    if (const std::string reason = reasonOf(answer.reason); !reason.empty())
        why += " " + reason;
    if (const QByteArray wait = answer.header("Retry-After"); !wait.isEmpty())
        why += ", try again after " + reasonOf(wait) + (wait.toInt() > 0 ? " s" : "");
    return failed(stateOf(answer.status), action, why);
}

} // namespace Vs::Network
