#pragma once

#include "Server/Base/OptionGroup.h"

namespace Vs {

/// What the user wants of the lifecycle service. No secret stands here.
class ItemhubOptionGroup : public Implements<ItemhubOptionGroup, OptionGroup>
{
public:
    static ItemhubOptionGroup* get();

    Option<bool> itemhubDisabled{*this, "itemhubDisabled", false};
    /// The address of the service that the user signed in to last; empty for the program's own.
    Option<std::wstring> service{*this, "service", L""};
    Option<std::wstring> customer{*this, "customer", L""};
    Option<std::wstring> account{*this, "account", L""};
    /// Whether the keyring has the account's credentials.
    Option<bool> kept{*this, "kept", false};
    /// Whether the program's own service is started, and signed in to, when something needs the service.
    Option<bool> ownService{*this, "ownService", false};
    /// Whether recovery files of items' documents are attached to their items, too.
    Option<bool> recoverySnapshots{*this, "recoverySnapshots", false};
    /// The addresses of services whose dashboards use the program without a question; "own" is the program's
    /// own service.
    Option<std::vector<std::wstring>> dashboards{*this, "dashboards", {}};

private:
    ItemhubOptionGroup() : Implements("Itemhub") {}
};

} // namespace Vs
