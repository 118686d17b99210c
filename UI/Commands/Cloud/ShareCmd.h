#pragma once

#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Skyvault/CloudEvents.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <string>

namespace Vu::Commands {

class ShareCmd;

/// The account: "Sign In", or the name of who is signed in to the cloud drive, or else to the lifecycle
/// service. Always applicable.
class ShareCmdDef : public CommandRowDefinition<ShareCmdDef, ShareCmd, CommandDefinition, Vs::CloudEventSite,
                                                Vs::ItemhubEventSite>
{
public:
    static const CommandRow kRow;

    ShareCmdDef();

    /// Who is signed in; empty for nobody.
    void user(const std::wstring& name);

    void cloudSessionChanged(Vs::CloudEvent* event) override;
    void sessionChanged(Vs::ItemhubEvent* event) override;

private:
    Vs::Subscriptions m_subscriptions;
};

/// Offers what there is to sign in to, or, to somebody who is signed in, the drive's page and the way out.
class ShareCmd : public Vs::Implements<ShareCmd, SimpleCommand>
{
public:
    ShareCmd(ShareCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
