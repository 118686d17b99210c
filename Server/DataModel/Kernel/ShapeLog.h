#pragma once

#include "Server/DataModel/Kernel/PartShape.h"
#include "Server/DataModel/Model/PartSuccessors.h"

#include <deque>
#include <memory>

namespace Vs::Kernel {

/// Which shapes became which others through changes of a model, and what became of their parts; so that
/// whoever holds a part of a body finds it again after the change, an undo and a redo. It keeps the shapes
/// alive, so that their revisions can't come to mean others, and forgets the oldest changes.
class ShapeLog
{
public:
    /// `after` replaced `before`. Without `successors` the parts are the same, in the same order.
    void note(const TopoDS_Shape& before, const TopoDS_Shape& after, const Successors& successors);
    /// What was logged since the last call belongs to a change that was committed, or undone.
    void settle(bool committed);

    /// What the parts of the shape of one revision (revisionOf) became in that of another, whichever of the
    /// two came first; null if no known changes connect them.
    std::shared_ptr<const PartSuccessors> between(uint64_t before, uint64_t after);

private:
    struct Change
    {
        TopoDS_Shape before, after;
        Successors successors; ///< Null once `parts` are known.
        std::shared_ptr<const PartSuccessors> parts;
        bool settled = false;
    };
    static constexpr size_t kMost = 128;

    static const PartSuccessors& partsOf(Change& change);

    std::deque<Change> m_changes; ///< Oldest first.
};

} // namespace Vs::Kernel
