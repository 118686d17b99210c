#pragma once

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>
#include <TopLoc_Location.hxx>

#include <functional>
#include <string>
#include <vector>

namespace Vs::Kernel {

/// The label on which a component (Component::id) stands. Throws std::runtime_error if it is gone.
TDF_Label occurrenceLabel(const Handle(TDocStd_Document) & document, const std::string& component);

/// Makes a label that has no shape yet an occurrence of a part or assembly.
void makeReference(const TDF_Label& label, const TDF_Label& shown, const TopLoc_Location& place);

/// A new label at the top of the tree, without anything on it. Numbers under which something removed waits
/// to be brought back are passed over.
TDF_Label newRootLabel(const Handle(TDocStd_Document) & document);

/// Gives what stands on the label a name by which it is shown.
void renameOccurrence(const TDF_Label& label, const std::wstring& name);

/// Shows or hides what stands on the label.
void showOccurrence(const TDF_Label& label, bool visible);

/// Removes what stands on the label, and the shapes that nothing refers to any more. The shapes of the
/// assemblies that held it are left stale.
void removeOccurrence(const TDF_Label& label);

/// Gives the labels of components (Component::id) one after the other, to be removed at once. Those that are
/// gone, or have gone with another one, are passed over.
void eachToRemove(const Handle(TDocStd_Document) & document, std::vector<std::string> components,
                  const std::function<void(const TDF_Label&)>& remove);

/// Removes components that way.
void removeOccurrences(const Handle(TDocStd_Document) & document, const std::vector<std::string>& components);

} // namespace Vs::Kernel
