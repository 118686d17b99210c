#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/ItemhubSignIn.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

/// Starting and ending the session; see ItemhubUtilities. Functions that return a bool or an optional
/// return false or nothing if the user cancelled. Main thread only.
namespace Vs::Itemhub::SignIn {

/// The service that an address names, without secrets: "?customer=" is split off. Throws ItemhubException
/// if it isn't an address, or one where secrets could be intercepted.
[[nodiscard]] Access accessTo(const std::string& uri);

/// With `mayBeAway`, an unreachable service isn't a failure, and the account is the last run's.
bool with(const Access& access, bool keep, bool mayBeAway = false);
[[nodiscard]] std::optional<Access> byPassword(const std::string& address, const std::string& customer,
                                               const std::string& account, const std::string& password);
[[nodiscard]] std::optional<Access> byBrowser(const std::string& address, const std::string& customer,
                                              const std::function<bool(const std::string&)>& open);
bool toOwnService();
/// Restarts the program's own service if the session uses it and it has ended.
void reviveOwnService();
[[nodiscard]] bool canResume();
bool resume();
void to(std::shared_ptr<ItemStore> store, const std::string& name);
void out();

/// For a request that may be repeated.
[[nodiscard]] std::string newKey();

} // namespace Vs::Itemhub::SignIn
