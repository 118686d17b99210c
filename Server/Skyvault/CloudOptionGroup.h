#pragma once

#include "Server/Base/OptionGroup.h"

namespace Vs {

/// What the user wants of the cloud drive. No secret stands here.
class CloudOptionGroup : public Implements<CloudOptionGroup, OptionGroup>
{
public:
    static CloudOptionGroup* get();

    Option<bool> cloudDisabled{*this, "cloudDisabled", false};
    /// The drive's address, of the last sign-in that went well; empty before.
    Option<std::wstring> server{*this, "server", L""};
    Option<std::wstring> user{*this, "user", L""};
    /// Whether the keyring has the user's credentials for the drive.
    Option<bool> kept{*this, "kept", false};

private:
    CloudOptionGroup() : Implements("Cloud") {}
};

} // namespace Vs
