#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"
#include "Server/DataModel/Kernel/MadeShapes.h"
#include "Server/DataModel/Kernel/ShapeLog.h"

#include <TDocStd_Document.hxx>

#include <string>
#include <vector>

namespace Vs::Kernel {

// Kinds of ModelEdit. Each `apply` returns the ids of the components that it added, and throws
// std::runtime_error or Standard_Failure. `known` holds what was recently made from this document's shapes;
// `log` records which shapes replaced which.

std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const CombineEdit& edit,
                               MadeShapes& known, ShapeLog& log);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const NestEdit& edit,
                               MadeShapes& known, ShapeLog& log);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const BlendEdit& edit,
                               MadeShapes& known, ShapeLog& log);

} // namespace Vs::Kernel
