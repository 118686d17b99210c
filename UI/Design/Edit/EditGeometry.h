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

/// "About", and a point with it: where the axis of a turn stands.
class CentreInputs
{
public:
    /// What is chosen at first. Whoever turns things in place can choose the middle of what is selected.
    enum class First { Middle, Origin };
    void make(EditInputs& inputs, First first);
    /// After a change: shows the point's inputs where they count.
    void refresh();
    /// In the asset's coordinates.
    GkPoint3d centre(const Vs::Asset& asset, const std::vector<std::string>& components) const;

private:
    ListCommandInput* m_about = nullptr;
    RealValueCommandInput* m_point[3] = {};
};

/// The box around what the components show, in the asset's coordinates.
BBox boundsOf(const Vs::Asset& asset, const std::vector<std::string>& components);

} // namespace Vu::Design
