#pragma once

#include <boost/uuid/uuid.hpp>

namespace Vs {
class UniqueString;
}

namespace Vu {
class CommandContext;
}

namespace Vu::Commands {

/// Carries the identifier of what a command has made through a transcript: a recording finds it among the
/// arguments, under `key`; when it is played, the recorded identifier comes to stand for `made`.
void transcribeUuid(CommandContext& context, const Vs::UniqueString* key, const boost::uuids::uuid& made);

} // namespace Vu::Commands
