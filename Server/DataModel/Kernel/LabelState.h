#pragma once

#include <Standard_GUID.hxx>
#include <TCollection_ExtendedString.hxx>
#include <TDF_LabelMap.hxx>
#include <TopLoc_Location.hxx>

#include <deque>
#include <optional>

namespace Vs::Kernel {

/// A reference from a label to another one: from an occurrence to what it shows, or to its colour.
struct LabelLink
{
    TDF_Label to; ///< Null if it refers to nothing.
    /// The next among all that refer to the same label. Their order survives when changes are undone: the
    /// kernel's own changes rely on it. Null for the last.
    TDF_Label next;

    bool operator==(const LabelLink& other) const { return to == other.to && next == other.next; }
};

/// What a part or an occurrence has on its own label in small attributes: its name, whether it is visible,
/// its placement, what it shows in which colour, and whether it was removed.
struct LabelState
{
    std::optional<TCollection_ExtendedString> name;
    bool namedByUser = false;
    bool hidden = false;
    bool removed = false;
    std::optional<TopLoc_Location> place;
    LabelLink shown, surfaceColour, colour;

    static LabelState of(const TDF_Label& label);
    /// Sets these attributes on a label, and removes those that aren't among them.
    void putOn(const TDF_Label& label) const;
    bool operator==(const LabelState& other) const;
};

/// Whether a label has nothing beyond what LabelState covers, so that its state can be copied to another
/// label.
bool isPlain(const TDF_Label& label);

/// A link to `to`, in front of all others.
LabelLink linkInFront(const TDF_Label& to, const Standard_GUID& kind);

/// What a change did to one label.
struct LabelDifference
{
    TDF_Label label;
    LabelState before, after;
};

/// In order of creation. Adding one never moves the thousands before it.
using LabelDifferences = std::deque<LabelDifference>;

/// Watches the labels that a change is about to touch.
class LabelLog
{
public:
    /// Called before the label's state is changed; the first call counts, and one more where the label was
    /// empty.
    void note(const TDF_Label& label);
    /// What has changed since; forgets the rest.
    LabelDifferences take();

private:
    TDF_LabelMap m_known; ///< Except for those that were empty.
    LabelDifferences m_noted;
};

/// Whether what the label holds was removed, though it is still in the document so that it can be restored.
bool isRemoved(const TDF_Label& label);
void markRemoved(const TDF_Label& label, bool removed = true);

/// While the label holds something, siblings made later get other numbers; the kernel's own changes count the
/// same way when they are undone.
void keepNumber(const TDF_Label& label);

/// Removes what was put on the label since it was empty, so that its number is free again.
void clearLabel(const TDF_Label& label);

} // namespace Vs::Kernel
