#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Itemhub::Http {

/// What another server answered.
struct Reply
{
    int status = 0;
    std::string body;
};

/// Asks another server; a certificate that nobody vouches for is refused, nor is another address followed.
/// What is longer than 256 KiB is cut off.
/// @throws std::runtime_error that names the address, if there is no answer within ten seconds
[[nodiscard]] Reply get(const std::string& url, const std::string& bearer = {});
/// Sends a form, as the user with that password.
[[nodiscard]] Reply post(const std::string& url, const std::vector<std::pair<std::string, std::string>>& form,
                         const std::string& user, const std::string& password);

} // namespace Itemhub::Http
