#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>

#include <optional>
#include <string>
#include <vector>

namespace Vs::Kernel {

// Kinds of ModelEdit. Each `apply` returns the ids of the components that it added, and throws
// std::runtime_error or Standard_Failure.

std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const MoveEdit& edit);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const CopyEdit& edit);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const MirrorEdit& edit);

/// The labels of which a move changes nothing but the place; nothing if it changes more.
std::optional<std::vector<TDF_Label>> movedAlone(const Handle(TDocStd_Document) & document,
                                                 const MoveEdit& edit);

} // namespace Vs::Kernel
