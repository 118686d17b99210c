#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"
#include "Server/DataModel/Kernel/MadeShapes.h"
#include "Server/DataModel/Kernel/ShapeLog.h"

#include <TDocStd_Document.hxx>

#include <string>
#include <vector>

namespace Vs::Kernel {

// Kinds of ModelEdit. Each `apply` returns the ids of the components that it added, and throws
// std::runtime_error or Standard_Failure. `known` is what was made of this
// document's shapes lately; `log` is told which shapes took the places of which.

std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const CombineEdit& edit,
                               MadeShapes& known, ShapeLog& log);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const NestEdit& edit,
                               MadeShapes& known, ShapeLog& log);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const BlendEdit& edit,
                               MadeShapes& known, ShapeLog& log);

} // namespace Vs::Kernel
