#include "Services/Itemhub/Access/PageSession.h"

#include <QStringList>

namespace Itemhub::Access {

namespace {

/// Over https, browsers let nobody else set a cookie with such a name, not even another host of the same
/// domain.
constexpr const char* kSafeName = "__Host-itemhub";
constexpr const char* kPlainName = "itemhub";

bool isSafe(const std::string& base)
{
    return base.starts_with("https:");
}

std::string cookie(const std::string& value, const std::string& base)
{
    return std::string(isSafe(base) ? kSafeName : kPlainName) + '=' + value +
           "; Path=/; HttpOnly; SameSite=Strict" + (isSafe(base) ? "; Secure" : "");
}

/// The value of the cookie by its safe name, otherwise by its plain one.
std::optional<QString> valueOf(const Http::Request& request, const char* safeName, const char* plainName)
{
    std::optional<QString> found;
    for (const QString& entry : QString::fromStdString(request.header("Cookie")).split(';')) {
        const QString name = entry.section('=', 0, 0).trimmed(), value = entry.section('=', 1).trimmed();
        if (name == QLatin1String(safeName))
            return value;
        if (name == QLatin1String(plainName))
            found = value;
    }
    return found;
}

constexpr const char* kSafeVisit = "__Host-itemhub-visit";
constexpr const char* kPlainVisit = "itemhub-visit";

} // namespace

std::optional<QString> pageToken(const Http::Request& request)
{
    return valueOf(request, kSafeName, kPlainName);
}

std::string visitCookie(const QString& state, const std::string& base)
{
    return std::string(isSafe(base) ? kSafeVisit : kPlainVisit) + '=' + state.toStdString() +
           "; Path=/; HttpOnly; SameSite=Lax; Max-Age=600" + (isSafe(base) ? "; Secure" : "");
}

QString visitOf(const Http::Request& request)
{
    return valueOf(request, kSafeVisit, kPlainVisit).value_or(QString());
}

std::string pageCookie(const QString& token, const std::string& base)
{
    return cookie(token.toStdString(), base);
}

std::string endedPageCookie(const std::string& base)
{
    return cookie({}, base) + "; Max-Age=0";
}

QString pageProof(const MasterKey& key, const QString& selector)
{
    return key.derived("page", selector);
}

void requireOwnPage(const Http::Request& request)
{
    // Typed addresses and links from other programs don't come from any page.
    const std::string from = request.header("Sec-Fetch-Site");
    if (!from.empty() && from != "same-origin" && from != "none")
        throw Http::Problem(403, "other_site", "The request was made by another site's page.");
}

} // namespace Itemhub::Access
