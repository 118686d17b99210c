#pragma once

#include "Server/Network/Result.h"

#include <string>

namespace Vs::Network {

/// Secrets in the desktop's keyring, by a key that is this program's own. A person who has to unlock it gets
/// two minutes for that. CacheFailed where none runs, or where it refuses. Any thread.
[[nodiscard]] Result keepInKeyring(const std::string& key, const std::string& text);
/// NotFound if it has none.
[[nodiscard]] Result keptInKeyring(const std::string& key, std::string& text);
/// Success, too, if it had none.
[[nodiscard]] Result forgetInKeyring(const std::string& key);

} // namespace Vs::Network
