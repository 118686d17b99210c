#pragma once

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>

#include <string>
#include <vector>

namespace Vs::Kernel {

/// The label on which a component (Component::id) stands. Throws std::runtime_error if it is gone.
TDF_Label occurrenceLabel(const Handle(TDocStd_Document) & document, const std::string& component);

/// Gives what stands on the label a name by which it is shown.
void renameOccurrence(const TDF_Label& label, const std::wstring& name);

/// Shows or hides what stands on the label.
void showOccurrence(const TDF_Label& label, bool visible);

/// Removes components (Component::id), and the shapes that nothing refers to any more. Those that are gone,
/// or go with another one, are passed over. The shapes of the assemblies that held them are left stale.
void removeOccurrences(const Handle(TDocStd_Document) & document, std::vector<std::string> components);

} // namespace Vs::Kernel
