#pragma once

#include "Server/DataModel/DocumentEvents.h"
#include "UI/Commands/Itemhub/ItemhubCommands.h"

namespace Vu::Commands {

class ItemhubAuthenticateWithTokenCmd;

/// Signs in with a token obtained elsewhere: by a web page of the service, or a script. Recordings contain
/// none of the secrets, only the names under which they must be supplied.
class ItemhubAuthenticateWithTokenCmdDef
    : public ItemhubDefinition<ItemhubAuthenticateWithTokenCmdDef, ItemhubAuthenticateWithTokenCmd,
                               Vs::DocumentEventSite>
{
public:
    static const CommandRow kRow;

    /// "ItemhubTenantUri", "ItemhubTenant".
    static const Vs::UniqueString* tenantUri();
    static const Vs::UniqueString* tenant();
    /// "OAuthToken", "OAuthTokenSecret", "OAuthSessionHandle", "ConsumerKey", "ConsumerSecret".
    static const Vs::UniqueString* token();
    static const Vs::UniqueString* tokenSecret();
    static const Vs::UniqueString* sessionHandle();
    static const Vs::UniqueString* consumerKey();
    static const Vs::UniqueString* consumerSecret();
};

class ItemhubAuthenticateWithTokenCmd : public TimedCommand<ItemhubAuthenticateWithTokenCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
