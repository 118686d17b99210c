#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"
#include "Server/DataModel/Kernel/MadeShape.h"

#include <string>
#include <vector>

namespace Vs::Kernel {

/// Combines solids, all in the coordinates of the target. Throws EditError about `name`.
MadeShape combined(CombineEdit::Kind kind, const TopoDS_Shape& target, const std::vector<TopoDS_Shape>& tools,
                   const std::wstring& name);

} // namespace Vs::Kernel
