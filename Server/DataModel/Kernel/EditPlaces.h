#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"
#include "Server/DataModel/Kernel/Occurrence.h"

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Vs::Kernel {

// Kinds of ModelEdit. Each `apply` returns the ids of the components that it added, and throws
// std::runtime_error or Standard_Failure.

std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const MoveEdit& edit);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const CopyEdit& edit);
std::vector<std::string> apply(const Handle(TDocStd_Document) & document, const MirrorEdit& edit);

/// Moves components from the top of the tree into an assembly, where they keep their place in the model's
/// coordinates. Returns their new ids. Throws EditError if the assembly is within one of them.
std::vector<std::string> nest(const Handle(TDocStd_Document) & document,
                              const std::vector<std::string>& components, const Occurrence& assembly);

/// Makes copies that each need one new label with nothing but a LabelState, and returns their ids; returns
/// nothing, and makes none, if they would need more. `note` is called for each label before it gets its
/// state.
std::optional<std::vector<std::string>> copiedAlone(const Handle(TDocStd_Document) & document,
                                                    const CopyEdit& edit,
                                                    const std::function<void(const TDF_Label&)>& note);

/// The labels of which a move changes only the placement; nothing if it changes more.
std::optional<std::vector<TDF_Label>> movedAlone(const Handle(TDocStd_Document) & document,
                                                 const MoveEdit& edit);

} // namespace Vs::Kernel
