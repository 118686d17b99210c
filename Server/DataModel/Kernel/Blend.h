#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"
#include "Server/DataModel/Kernel/MadeShape.h"

#include <string>
#include <vector>

namespace Vs::Kernel {

/// Fillets or chamfers edges of a body. Throws EditError about `name`.
MadeShape blended(BlendEdit::Kind kind, const TopoDS_Shape& body, const std::vector<TopoDS_Shape>& edges,
                  double size, const std::wstring& name);

} // namespace Vs::Kernel
