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

/// A value of several things: none has it, all have the same, or they differ.
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

/// What is known about the selection at once, from the component tree and the displayed meshes. Slow
/// properties are only prepared (`parts`).
struct PropertyValues
{
    enum Kind { Assembly, Part, Body, Solid, Face, Edge, Vertex, kKinds };

    std::array<size_t, kKinds> counts{};
    size_t all() const;
    bool areComponents() const { return all() > 0 && all() == counts[Assembly] + counts[Part]; }
    /// Whether all of them can have a colour: components, bodies, solids and faces.
    bool haveColour() const { return all() > 0 && counts[Edge] + counts[Vertex] == 0; }

    CommonValue<std::wstring> name; ///< Of the components, or of those that the parts belong to.
    CommonValue<std::optional<Vs::Colour>> colour; ///< Of their own; null for none.
    size_t partsWithin = 0;                        ///< Parts in the selected assemblies.
    bool isRoot = false;                           ///< The model as a whole is among them.
    /// The position of the components' own origins in the asset, by axis; for vertices, their position. In
    /// mm.
    std::array<CommonValue<double>, 3> place;
    /// Of the bounding box of whole things, along the axes of the part if just one is selected, of the model
    /// for several.
    std::optional<GkVector3d> size;
    bool isSizeExact = true; ///< False where round faces are shown by triangles.
    /// What can be measured together; empty if whole things are selected along with faces or edges.
    std::vector<Vs::PartToMeasure> parts;
};

[[nodiscard]] PropertyValues valuesOf(Vs::SelectionMgr& manager, const Vs::Asset& asset);

} // namespace Vu
