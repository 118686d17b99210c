#include "UI/Commands/Itemhub/ItemhubAuthenticateWithTokenCmd.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptSecrets.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

using Def = ItemhubAuthenticateWithTokenCmdDef;

// clang-format off
constinit const CommandRow ItemhubAuthenticateWithTokenCmdDef::kRow = {
    .key = L"ItemhubAuthenticateWithTokenCommand", .title = "Itemdesk Authenticate", .icon = &Resources::CloudSave,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .arguments = {L"ItemhubTenantUri", L"ItemhubTenant", L"OAuthToken", L"OAuthTokenSecret", L"OAuthSessionHandle", L"ConsumerKey", L"ConsumerSecret"}};
// clang-format on

namespace {

Vs::Metrics::TimeMetric* const theMetric = timeMetric("ItemhubAuthenticateWithToken");

const Vs::UniqueString* named(const char* name)
{
    return Vs::UniqueString::find(name, true);
}

struct Secret
{
    const Vs::UniqueString* (*argument)();
    const wchar_t* parameter; ///< For which it stands in a recording.
};

constexpr Secret kSecrets[] = {{&Def::token, L"ITEMHUB_TOKEN"},
                               {&Def::tokenSecret, L"ITEMHUB_TOKEN_SECRET"},
                               {&Def::sessionHandle, L"ITEMHUB_SESSION_HANDLE"},
                               {&Def::consumerKey, L"ITEMHUB_CONSUMER_KEY"},
                               {&Def::consumerSecret, L"ITEMHUB_CONSUMER_SECRET"}};

std::wstring addressOf(std::wstring uri, const std::wstring& tenant)
{
    if (!uri.ends_with(L'/'))
        uri += L'/';
    return tenant.empty() ? uri : uri + L"?customer=" + tenant;
}

} // namespace

const Vs::UniqueString* Def::tenantUri()
{
    static const Vs::UniqueString* const name = named("ItemhubTenantUri");
    return name;
}

const Vs::UniqueString* Def::tenant()
{
    static const Vs::UniqueString* const name = named("ItemhubTenant");
    return name;
}

const Vs::UniqueString* Def::token()
{
    static const Vs::UniqueString* const name = named("OAuthToken");
    return name;
}

const Vs::UniqueString* Def::tokenSecret()
{
    static const Vs::UniqueString* const name = named("OAuthTokenSecret");
    return name;
}

const Vs::UniqueString* Def::sessionHandle()
{
    static const Vs::UniqueString* const name = named("OAuthSessionHandle");
    return name;
}

const Vs::UniqueString* Def::consumerKey()
{
    static const Vs::UniqueString* const name = named("ConsumerKey");
    return name;
}

const Vs::UniqueString* Def::consumerSecret()
{
    static const Vs::UniqueString* const name = named("ConsumerSecret");
    return name;
}

Vs::Metrics::TimeMetric* ItemhubAuthenticateWithTokenCmd::metric()
{
    return theMetric;
}

void ItemhubAuthenticateWithTokenCmd::onExecute(Vs::Status&)
{
    const auto given = [this](const Vs::UniqueString* name) {
        return commandContext()->argumentAsString(name);
    };
    for (const Secret& secret : kSecrets)
        Vs::TranscriptSecrets::keep(secret.parameter, given(secret.argument()));
    const std::wstring tenant = given(Def::tenant());
    // Whether it went well shows in the session, and in the event of a sign-in.
    static_cast<void>(Vs::ItemhubUtilities::get()->authenticateWithToken(
        Vs::Strings::narrow(addressOf(given(Def::tenantUri()), tenant)), tenant, given(Def::token()),
        given(Def::tokenSecret()), given(Def::sessionHandle()), given(Def::consumerKey()),
        given(Def::consumerSecret())));
}

} // namespace Vu::Commands
