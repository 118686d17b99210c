#pragma once

#include "Server/Translate/Salvage/Instances.h"

namespace Vs::Translate::Salvage {

/// Looks at a statement by itself: whether its parameters are of the kinds and numbers that its entities
/// have, and fit each other. Fills in roles, entity and links. False if they don't.
[[nodiscard]] bool checkStatement(const StepStatement& statement, Instance& instance);

} // namespace Vs::Translate::Salvage
