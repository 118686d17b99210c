#pragma once

#include "Server/DataModel/Selection/SelectionSet.h"

#include <functional>
#include <vector>

namespace Vu {

/// Whether a click with these mouse event modifiers adds to or removes from what is selected.
[[nodiscard]] bool clickAdds(unsigned modifiers);
/// Whether a click with these means the container of the clicked object.
[[nodiscard]] bool clickClimbs(unsigned modifiers);
[[nodiscard]] bool isSolid(const Vs::Selection& selection);

/// Which of the objects under the pointer a click takes.
class ClickChoice
{
public:
    using Object = Vs::StrongRef<Vs::Selection>;
    /// Nearest first.
    using Objects = std::vector<Object>;
    using Accepts = std::function<bool(const Object& object)>;

    /// `taken` is what was clicked before, `accepts` whether another object may be taken; both must live as
    /// long.
    ClickChoice(const Vs::SelectionSet& taken, const Accepts& accepts) : m_taken(taken), m_accepts(accepts) {}

    /// What holds the nearest of some objects: its solid, where that is among them and not taken yet, else
    /// the nearest component around it that isn't taken yet. Null if there is none.
    [[nodiscard]] Object holder(const Objects& objects) const;
    /// A click takes the component, and one more on it the part, the nearest object. Who adds goes on with
    /// what is selected already.
    [[nodiscard]] Object componentOrPart(const Objects& objects, bool adds) const;

private:
    Object solid(const Objects& objects) const;
    Object componentAround(const Vs::Selection& selection) const;

    const Vs::SelectionSet& m_taken;
    const Accepts& m_accepts;
};

} // namespace Vu
