#pragma once

#include "Server/Itemhub/ItemStore.h"

#include <cstdint>
#include <string>

namespace Vu {
class CommandContext;
}

/// What a page of the lifecycle service in the browser may have the program do: six commands, each with the
/// arguments that it may be given, and what these may be. Whatever else a page asks for is refused.
namespace Vu::Commands::DashboardCommands {

using Request = Vs::Itemhub::DashboardRequest;

/// Why a request is refused, for the person; empty if it may be asked for.
/// @param service the address of the service whose page asks, with a slash at the end; empty for the
/// program's own
[[nodiscard]] std::wstring refusal(const Request& request, const std::string& service);

/// Whether refusal says something. Any thread.
[[nodiscard]] bool isRefused(const Request& request, const std::string& service);

/// Gives a request that isn't refused as the arguments of its command.
void fill(const Request& request, CommandContext& context);

/// The item that a request is about; 0 if none.
[[nodiscard]] std::int64_t itemOf(const Request& request);
/// The address of the attachment that a request is about; empty if none.
[[nodiscard]] std::string attachmentOf(const Request& request);
/// Whether it concerns the shown document, which then must be the item's.
[[nodiscard]] bool isAboutShown(const Request& request);

/// The question whether a page may have its wish.
/// @param who the service, as a person knows it
/// @param what the name of what the request is about
[[nodiscard]] std::wstring question(const Request& request, const std::wstring& who,
                                    const std::wstring& what);

} // namespace Vu::Commands::DashboardCommands
