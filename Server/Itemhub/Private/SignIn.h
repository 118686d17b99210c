#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/ItemhubSignIn.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

/// Beginning and ending the session; see ItemhubUtilities. What answers with a bool or an optional does with
/// false or nothing if the person cancelled. Main thread only.
namespace Vs::Itemhub::SignIn {

/// The service that an address names, without secrets: "?customer=" is taken apart from it. Throws
/// ItemhubException if it is no address, or one where secrets could be listened to.
[[nodiscard]] Access accessTo(const std::string& uri);

/// With `mayBeAway`, a service that can't be reached is no failure, and the account is the one of the last
/// run.
bool with(const Access& access, bool keep, bool mayBeAway = false);
[[nodiscard]] std::optional<Access> byPassword(const std::string& address, const std::string& customer,
                                               const std::string& account, const std::string& password);
[[nodiscard]] std::optional<Access> byBrowser(const std::string& address, const std::string& customer,
                                              const std::function<bool(const std::string&)>& open);
bool toOwnService();
/// If the session is with the program's own service, and that has ended, starts it again.
void reviveOwnService();
[[nodiscard]] bool canResume();
bool resume();
void to(std::shared_ptr<ItemStore> store, const std::string& name);
void out();

/// For a request that may be repeated.
[[nodiscard]] std::string newKey();

} // namespace Vs::Itemhub::SignIn
