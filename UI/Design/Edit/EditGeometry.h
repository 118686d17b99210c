#pragma once

#include "Server/Geometry/BBox.h"
#include "Server/Geometry/GkVector3d.h"
#include "UI/Design/Edit/EditInputs.h"

namespace Vu::Design {

// Inputs shared by several of the editing commands.

/// "Components": one or more.
SelectionCommandInput* componentsInput(EditInputs& inputs);
/// "Axis": X, Y or Z; Z initially.
ListCommandInput* axisInput(EditInputs& inputs);
/// Of length one.
GkVector3d axisOf(const ListCommandInput& axis);

/// "About", and a point for it: where the axis of a rotation is.
class CentreInputs
{
public:
    /// The initial choice. Commands that rotate things in place can choose the middle of the selection.
    enum class First { Middle, Origin };
    void make(EditInputs& inputs, First first);
    /// After a change: shows the point's inputs if they apply.
    void refresh();
    /// In the asset's coordinates.
    GkPoint3d centre(const Vs::Asset& asset, const std::vector<std::string>& components) const;

private:
    ListCommandInput* m_about = nullptr;
    RealValueCommandInput* m_point[3] = {};
};

/// The bounding box of what the components show, in the asset's coordinates.
BBox boundsOf(const Vs::Asset& asset, const std::vector<std::string>& components);

} // namespace Vu::Design
