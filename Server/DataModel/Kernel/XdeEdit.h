#pragma once

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>
#include <TopLoc_Location.hxx>

#include <functional>
#include <string>
#include <vector>

namespace Vs::Kernel {

/// The label of a component (Component::id). Throws std::runtime_error if it is gone.
TDF_Label occurrenceLabel(const Handle(TDocStd_Document) & document, const std::string& component);

/// Makes a label that has no shape yet an occurrence of a part or assembly.
void makeReference(const TDF_Label& label, const TDF_Label& shown, const TopLoc_Location& place);

/// A new, empty label at the top of the tree. Skips numbers under which something removed is kept so that it
/// can be restored.
TDF_Label newRootLabel(const Handle(TDocStd_Document) & document);

/// Sets the displayed name of what the label holds.
void renameOccurrence(const TDF_Label& label, const std::wstring& name);

/// Shows or hides what the label holds.
void showOccurrence(const TDF_Label& label, bool visible);

/// Removes what the label holds, and the shapes that nothing refers to any more. The shapes of the assemblies
/// that held it are left stale.
void removeOccurrence(const TDF_Label& label);

/// Yields the labels of components (Component::id) one after the other, to be removed at once. Those that are
/// gone, or went together with another one, are skipped.
void eachToRemove(const Handle(TDocStd_Document) & document, std::vector<std::string> components,
                  const std::function<void(const TDF_Label&)>& remove);

/// Removes components this way.
void removeOccurrences(const Handle(TDocStd_Document) & document, const std::vector<std::string>& components);

} // namespace Vs::Kernel
