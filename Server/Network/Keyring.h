#pragma once

#include "Server/Network/Result.h"

#include <chrono>
#include <string>

namespace Vs::Network {

/// Secrets in the desktop's keyring, under keys of this program. A user who has to unlock it gets two minutes
/// for that. CacheFailed if no keyring is running, if it refuses, and, without waiting again, as long as it
/// hasn't answered an earlier request. Any thread.
[[nodiscard]] Result keepInKeyring(const std::string& key, const std::string& text);
/// NotFound if it has none.
[[nodiscard]] Result keptInKeyring(const std::string& key, std::string& text);
/// Success even if it had none.
[[nodiscard]] Result forgetInKeyring(const std::string& key);

/// Replaces the two minutes.
void keyringPatience(std::chrono::seconds time);

} // namespace Vs::Network
