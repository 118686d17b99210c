#pragma once

#include "Server/Geometry/BBox.h"
#include "Server/Geometry/GkVector3d.h"
#include "UI/Design/Edit/EditInputs.h"

namespace Vu::Design {

// What several of the editing commands ask for.

/// "Components": one or more.
SelectionCommandInput* componentsInput(EditInputs& inputs);
/// "Axis": X, Y or Z; Z at first.
ListCommandInput* axisInput(EditInputs& inputs);
/// Of length one.
GkVector3d axisOf(const ListCommandInput& axis);

/// The box around what the components show, in the asset's coordinates.
BBox boundsOf(const Vs::Asset& asset, const std::vector<std::string>& components);

} // namespace Vu::Design
