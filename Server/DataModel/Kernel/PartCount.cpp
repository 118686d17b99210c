#include "Server/DataModel/Kernel/PartCount.h"

#include <TopExp_Explorer.hxx>

namespace Vs::Kernel {

size_t countOf(const TopoDS_Shape& shape, TopAbs_ShapeEnum kind)
{
    size_t count = 0;
    for (TopExp_Explorer each(shape, kind); each.More(); each.Next())
        ++count;
    return count;
}

} // namespace Vs::Kernel
