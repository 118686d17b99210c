#pragma once

#include "Server/Base/OptionGroup.h"

namespace Vs {

/// The user's preferences for the lifecycle service. Contains no secrets.
class ItemhubOptionGroup : public Implements<ItemhubOptionGroup, OptionGroup>
{
public:
    static ItemhubOptionGroup* get();

    Option<bool> itemhubDisabled{*this, "itemhubDisabled", false};
    /// The address of the service last signed in to; empty for the program's own.
    Option<std::wstring> service{*this, "service", L""};
    Option<std::wstring> customer{*this, "customer", L""};
    Option<std::wstring> account{*this, "account", L""};
    /// Whether the keyring holds the account's credentials.
    Option<bool> kept{*this, "kept", false};
    /// Whether to start and sign in to the program's own service when something needs the service.
    Option<bool> ownService{*this, "ownService", false};
    /// Whether recovery files of items' documents are also attached to their items.
    Option<bool> recoverySnapshots{*this, "recoverySnapshots", false};
    /// The addresses of services whose dashboards may use the program without confirmation; "own" is the
    /// program's own service.
    Option<std::vector<std::wstring>> dashboards{*this, "dashboards", {}};

private:
    ItemhubOptionGroup() : Implements("Itemhub") {}
};

} // namespace Vs
