#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// How the dashboard drives the program: the page requests a command by name, with named arguments. An event
// notifies the account's programs, and one of them takes the request. A program that isn't running is started
// by a link with a ticket for the same request. What the program then does is up to it.

[[nodiscard]] Http::Response askProgram(Call& call);
[[nodiscard]] Http::Response tellRequest(Call& call);
/// For the program, by the number in the event.
[[nodiscard]] Http::Response takeRequest(Call& call);
/// For the program, by the ticket of a link.
[[nodiscard]] Http::Response redeemTicket(Call& call);
/// For the program that took it: reports the outcome.
[[nodiscard]] Http::Response answerRequest(Call& call);

} // namespace Itemhub::Routes
