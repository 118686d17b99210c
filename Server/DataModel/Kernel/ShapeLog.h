#pragma once

#include "Server/DataModel/Kernel/PartShape.h"
#include "Server/DataModel/Model/PartSuccessors.h"

#include <deque>
#include <memory>

namespace Vs::Kernel {

/// Which shapes became which other ones by changes of a model, and what became of their parts; so that those
/// who name a part of a body find it again after the change, an undo and a redo. It keeps the shapes, whose
/// revisions can't mean other ones therefore, and forgets the oldest changes.
class ShapeLog
{
public:
    /// `after` took the place of `before`. Without `successors` the parts are the same, in the same order.
    void note(const TopoDS_Shape& before, const TopoDS_Shape& after, const Successors& successors);
    /// What was noted since the last call belongs to a change that was committed, or taken back.
    void settle(bool committed);

    /// What became of the parts of the shape of one revision (revisionOf) in that of another, whether that
    /// came of it or it of that; null if no changes are known that lead there.
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

    std::deque<Change> m_changes; ///< The oldest first.
};

} // namespace Vs::Kernel
