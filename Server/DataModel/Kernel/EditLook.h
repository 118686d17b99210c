#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"
#include "Server/DataModel/Kernel/ShapeLog.h"

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>

#include <functional>
#include <string>
#include <vector>

namespace Vs::Kernel {

// Kinds of ModelEdit. Each `apply` returns the ids of the components that it added, and throws
// std::runtime_error or Standard_Failure. `log` records which shapes replaced which.

std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const ColourEdit& edit,
                               ShapeLog& log);

/// Paints components only, which changes nothing but their LabelState; returns false, and does nothing, if
/// more would change. `note` is called for each label beforehand.
bool paintedAlone(const Handle(TDocStd_Document) & document, const ColourEdit& edit,
                  const std::function<void(const TDF_Label&)>& note);

} // namespace Vs::Kernel
