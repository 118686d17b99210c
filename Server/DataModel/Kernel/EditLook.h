#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"

#include <TDocStd_Document.hxx>

#include <string>
#include <vector>

namespace Vs::Kernel {

// Kinds of ModelEdit. Each `apply` returns the ids of the components that it added, and throws
// std::runtime_error or Standard_Failure.

std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const ColourEdit& edit);

} // namespace Vs::Kernel
