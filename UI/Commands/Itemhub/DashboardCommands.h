#pragma once

#include "Server/Itemhub/ItemStore.h"

#include <cstdint>
#include <string>

namespace Vu {
class CommandContext;
}

/// What a page of the lifecycle service in the browser may have the program do: six commands, each with its
/// permitted arguments and their values. Everything else is refused.
namespace Vu::Commands::DashboardCommands {

using Request = Vs::Itemhub::DashboardRequest;

/// Why a request is refused, for the user; empty if it is permitted.
/// @param service the address of the service whose page asks, with a slash at the end; empty for the
/// program's own
[[nodiscard]] std::wstring refusal(const Request& request, const std::string& service);

/// Whether `refusal` gives a reason. Any thread.
[[nodiscard]] bool isRefused(const Request& request, const std::string& service);

/// Returns a permitted request as the arguments of its command.
void fill(const Request& request, CommandContext& context);

/// The item that a request concerns; 0 if none.
[[nodiscard]] std::int64_t itemOf(const Request& request);
/// The address of the attachment that a request concerns; empty if none.
[[nodiscard]] std::string attachmentOf(const Request& request);
/// Whether it concerns the shown document, which must then belong to the item.
[[nodiscard]] bool isAboutShown(const Request& request);

/// The question whether to grant a page's request.
/// @param who the service, as the user knows it
/// @param what the name of what the request concerns
[[nodiscard]] std::wstring question(const Request& request, const std::wstring& who,
                                    const std::wstring& what);

} // namespace Vu::Commands::DashboardCommands
