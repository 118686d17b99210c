#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// How the dashboard drives the program: the page asks for a command by its name, with arguments by theirs. An
// event tells the account's programs, and one of them takes it. A program that isn't there is started by a
// link with a ticket that takes the same request. What the program then does is its own affair.

[[nodiscard]] Http::Response askProgram(Call& call);
[[nodiscard]] Http::Response tellRequest(Call& call);
/// For the program, by the number that the event had.
[[nodiscard]] Http::Response takeRequest(Call& call);
/// For the program, by the ticket of a link.
[[nodiscard]] Http::Response redeemTicket(Call& call);
/// For the program that took it: what came of it.
[[nodiscard]] Http::Response answerRequest(Call& call);

} // namespace Itemhub::Routes
