#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"
#include "Server/DataModel/Kernel/MadeShapes.h"

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>

#include <optional>
#include <vector>

namespace Vs::Kernel {

// The kinds of ModelEdit. Each returns the ids of the components that it added, and throws
// std::runtime_error or Standard_Failure. `known` is what was made of this document's shapes lately.

std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const MoveEdit& edit);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const CopyEdit& edit);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const MirrorEdit& edit);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const CombineEdit& edit,
                               MadeShapes& known);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const BlendEdit& edit,
                               MadeShapes& known);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const ColourEdit& edit);

/// The labels of which a move changes nothing but the place; nothing if it changes more.
std::optional<std::vector<TDF_Label>> movedAlone(const Handle(TDocStd_Document) & document,
                                                 const MoveEdit& edit);

} // namespace Vs::Kernel
