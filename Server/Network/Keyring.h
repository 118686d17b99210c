#pragma once

#include "Server/Network/Result.h"

#include <chrono>
#include <string>

namespace Vs::Network {

/// Secrets in the desktop's keyring, by a key that is this program's own. A person who has to unlock it gets
/// two minutes for that. CacheFailed where none runs, where it refuses, and, without waiting again, as long
/// as it owes an answer to an earlier request. Any thread.
[[nodiscard]] Result keepInKeyring(const std::string& key, const std::string& text);
/// NotFound if it has none.
[[nodiscard]] Result keptInKeyring(const std::string& key, std::string& text);
/// Success, too, if it had none.
[[nodiscard]] Result forgetInKeyring(const std::string& key);

/// Another time than two minutes.
void keyringPatience(std::chrono::seconds time);

} // namespace Vs::Network
