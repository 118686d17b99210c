#pragma once

#include "Server/DataModel/Model/ModelKernel.h"

#include <TopoDS_Shape.hxx>

#include <list>
#include <vector>

namespace Vs::Kernel {

/// What the last measurements of pairs gave, so that none is made twice. Bodies are compared by the shapes
/// they had; these are kept, so that no other shape gets the address of one.
class MeasuredPairs
{
public:
    struct Pair
    {
        std::vector<MeasuredShape> first, second;
        EMeasureType type;
        std::vector<TopoDS_Shape> bodies; ///< Of all shapes, in their order.
        ShapeAnswer answer;
    };

    /// Null if the pair isn't known; valid until the next call.
    [[nodiscard]] const ShapeAnswer* find(const std::vector<MeasuredShape>& first,
                                          const std::vector<MeasuredShape>& second, EMeasureType type,
                                          const std::vector<TopoDS_Shape>& bodies);
    /// Forgets the pair that nobody has asked about for longest, once there are many.
    void add(Pair pair);

private:
    std::list<Pair> m_pairs; ///< Most recent first.
};

} // namespace Vs::Kernel
