#pragma once

#include "Server/DataModel/Kernel/XdeModel.h"

namespace Vs::Translate {

/// Puts one part that has all others' shapes and colours, in their places, in place of the model's tree.
void combineParts(Kernel::XdeModel& model, const std::string& name);

/// Takes all that stands in a model's tree out of it, for whoever builds another one of what was read of it.
void takeTreeApart(Kernel::XdeModel& model);

} // namespace Vs::Translate
