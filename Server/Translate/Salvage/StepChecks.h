#pragma once

#include "Server/Translate/Salvage/Instances.h"

namespace Vs::Translate::Salvage {

/// Checks a statement by itself: whether its parameters have the kinds and numbers that its entities require,
/// and fit together. Fills in roles, entity and links. False if they don't.
[[nodiscard]] bool checkStatement(const StepStatement& statement, Instance& instance);

} // namespace Vs::Translate::Salvage
