#pragma once

#include "Server/Itemhub/ItemhubSignIn.h"

#include <optional>
#include <string>

namespace Vs::Itemhub {

/// Credentials in the desktop's keyring; see ItemTransport.
void keepInKeyring(const std::string& key, const Access& access);
[[nodiscard]] std::optional<Access> keptInKeyring(const std::string& key);
void forgetInKeyring(const std::string& key);

} // namespace Vs::Itemhub
