#pragma once

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>

#include <string>

namespace Vs::Kernel {

/// The label on which a component (Component::id) stands. Throws std::runtime_error if it is gone.
TDF_Label occurrenceLabel(const Handle(TDocStd_Document) & document, const std::string& component);

/// Gives what stands on the label a name by which it is shown.
void renameOccurrence(const TDF_Label& label, const std::wstring& name);

} // namespace Vs::Kernel
