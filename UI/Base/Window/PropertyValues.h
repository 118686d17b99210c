#pragma once

#include "Server/DataModel/Measure/MeasuredParts.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace Vs {
class Asset;
class SelectionMgr;
} // namespace Vs

namespace Vu {

/// A value of several things: none of them has it, all have the same, or they differ.
template <class Value>
class CommonValue
{
public:
    void add(const Value& value)
    {
        if (!m_value)
            m_value = value;
        else
            m_differs = m_differs || *m_value != value;
    }
    bool isKnown() const { return m_value.has_value(); }
    bool differs() const { return m_differs; }
    /// Only if it is known and doesn't differ.
    const Value& value() const { return *m_value; }

private:
    std::optional<Value> m_value;
    bool m_differs = false;
};

/// What is known of the selected things at once, from the tree of components and the meshes that show. What
/// takes long is only prepared (`parts`).
struct PropertyValues
{
    enum Kind { Assembly, Part, Body, Solid, Face, Edge, Vertex, kKinds };

    std::array<size_t, kKinds> counts{};
    size_t all() const;
    bool areComponents() const { return all() > 0 && all() == counts[Assembly] + counts[Part]; }
    /// Whether all can be given a colour: components, bodies, solids and faces.
    bool haveColour() const { return all() > 0 && counts[Edge] + counts[Vertex] == 0; }

    CommonValue<std::wstring> name;                ///< Of the components, or those that the parts belong to.
    CommonValue<std::optional<Vs::Colour>> colour; ///< Of their own; null for none.
    size_t partsWithin = 0;                        ///< Parts in the selected assemblies.
    bool isRoot = false;                           ///< The model as a whole is among them.
    /// Where the components' own origins lie in the asset, by axis; of vertices, where they are. In mm.
    std::array<CommonValue<double>, 3> place;
    /// Of the box around whole things, along the axes of the one part that is selected, of the model for
    /// several.
    std::optional<GkVector3d> size;
    bool isSizeExact = true; ///< False where round faces are shown by triangles.
    /// What can be measured together; empty where whole things are selected beside faces or edges.
    std::vector<Vs::PartToMeasure> parts;
};

[[nodiscard]] PropertyValues valuesOf(Vs::SelectionMgr& manager, const Vs::Asset& asset);

} // namespace Vu
