#pragma once

#include "Server/DataModel/Kernel/XdeModel.h"

namespace Vs::Translate {

/// Replaces the model's tree with one part that has the shapes and colours of all others, in their places.
void combineParts(Kernel::XdeModel& model, const std::string& name);

/// Removes everything from a model's tree, for callers that build another one from what was read from it.
void takeTreeApart(Kernel::XdeModel& model);

} // namespace Vs::Translate
