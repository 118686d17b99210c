#pragma once

#include <Standard_GUID.hxx>
#include <TCollection_ExtendedString.hxx>
#include <TDF_LabelMap.hxx>
#include <TopLoc_Location.hxx>

#include <deque>
#include <optional>

namespace Vs::Kernel {

/// That a label refers to another one: as an occurrence to what it shows, or to its colour.
struct LabelLink
{
    TDF_Label to; ///< Null if it refers to none.
    /// The one behind it among all that refer to the same, which keep their order when changes are taken
    /// back: the kernel's own changes rely on that. Null for the last.
    TDF_Label next;

    bool operator==(const LabelLink& other) const { return to == other.to && next == other.next; }
};

/// What a part or an occurrence has on its own label in small attributes: how it is called, whether it is
/// shown, where it lies, what it shows in which colour, and whether it was removed.
struct LabelState
{
    std::optional<TCollection_ExtendedString> name;
    bool namedByUser = false;
    bool hidden = false;
    bool removed = false;
    std::optional<TopLoc_Location> place;
    LabelLink shown, surfaceColour, colour;

    static LabelState of(const TDF_Label& label);
    /// Gives a label these attributes, and takes those from it that aren't among them.
    void putOn(const TDF_Label& label) const;
    bool operator==(const LabelState& other) const;
};

/// Whether a label has nothing but what LabelState knows, so that its state can be another label's as well.
bool isPlain(const TDF_Label& label);

/// A link to `to` in front of all others.
LabelLink linkInFront(const TDF_Label& to, const Standard_GUID& kind);

/// What a change did to one label.
struct LabelDifference
{
    TDF_Label label;
    LabelState before, after;
};

/// In the order in which they were made. Of thousands none is moved when one more comes.
using LabelDifferences = std::deque<LabelDifference>;

/// Watches the labels that a change is going to touch.
class LabelLog
{
public:
    /// Before the label's state is changed; the first call counts, and one more where nothing stood on it.
    void note(const TDF_Label& label);
    /// What has become another since, and forgets the rest.
    LabelDifferences take();

private:
    TDF_LabelMap m_known; ///< But for those on which nothing stood.
    LabelDifferences m_noted;
};

/// Whether what stands on the label was removed, though it still is in the document to be brought back.
bool isRemoved(const TDF_Label& label);
void markRemoved(const TDF_Label& label, bool removed = true);

/// Labels beside it that are made later get other numbers while something stands on it; the kernel's own
/// changes, when they are taken back, count the same way.
void keepNumber(const TDF_Label& label);

/// Takes from a label what was put on it since nothing stood there, so that its number is free again.
void clearLabel(const TDF_Label& label);

} // namespace Vs::Kernel
