#pragma once

#include "Server/Base/OptionGroup.h"

namespace Vs {

/// The user's preferences for the cloud drive. Contains no secrets.
class CloudOptionGroup : public Implements<CloudOptionGroup, OptionGroup>
{
public:
    static CloudOptionGroup* get();

    Option<bool> cloudDisabled{*this, "cloudDisabled", false};
    /// The drive's address at the last successful sign-in; empty before that.
    Option<std::wstring> server{*this, "server", L""};
    Option<std::wstring> user{*this, "user", L""};
    /// Whether the keyring holds the user's credentials for the drive.
    Option<bool> kept{*this, "kept", false};

private:
    CloudOptionGroup() : Implements("Cloud") {}
};

} // namespace Vs
