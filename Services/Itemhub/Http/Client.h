#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Itemhub::Http {

/// Another server's response.
struct Reply
{
    int status = 0;
    std::string body;
};

/// Sends a request to another server; rejects untrusted certificates and doesn't follow redirects. Responses
/// are cut off at 256 KiB.
/// @throws std::runtime_error that names the address if there is no response within ten seconds
[[nodiscard]] Reply get(const std::string& url, const std::string& bearer = {});
/// Posts a form, authenticated as the user with that password.
[[nodiscard]] Reply post(const std::string& url, const std::vector<std::pair<std::string, std::string>>& form,
                         const std::string& user, const std::string& password);

} // namespace Itemhub::Http
