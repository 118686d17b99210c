#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"
#include "Server/DataModel/Kernel/PartShape.h"

#include <vector>

namespace Vs::Kernel {

/// A shape that an operation of the kernel made, and what became in it of the shapes that went in.
struct MadeShape
{
    TopoDS_Shape shape;
    Successors successors;
};

/// The space that the solids enclose, to about a thousandth, in mm³.
double roughVolume(const TopoDS_Shape& shape);

/// All solids of a shape as one: the solid itself, or a compound of several. Null if there is none.
TopoDS_Shape solidsOf(const TopoDS_Shape& shape);

/// Combines solids, all in the coordinates of the target. Throws EditError about `name`.
MadeShape combined(CombineEdit::Kind kind, const TopoDS_Shape& target, const std::vector<TopoDS_Shape>& tools,
                   const std::wstring& name);

/// Rounds edges of a body or cuts them off. Throws EditError about `name`.
MadeShape blended(BlendEdit::Kind kind, const TopoDS_Shape& body, const std::vector<TopoDS_Shape>& edges,
                  double size, const std::wstring& name);

} // namespace Vs::Kernel
