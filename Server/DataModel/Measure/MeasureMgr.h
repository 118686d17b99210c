#pragma once

#include "Server/DataModel/Measure/MeasureTypes.h"
#include "Server/DataModel/Selection/Selection.h"

#include <memory>
#include <utility>
#include <vector>

namespace Vs {

class SelectionFilter;
class Status;

/// What can be selected for measuring: bits of a mask.
enum class ESelectionType : unsigned { Vertex = 1, Edge = 2, Component = 4, Face = 8, Body = 16 };

/// Measures objects of a model, at the places where they occur. Exact where the geometry kernel has a closed
/// form, otherwise to a relative error of 1e-6; what is measured of a shape alone is computed once for all
/// its occurrences. Main thread only.
///
/// - Length: an edge. Radius: a circle, a cylinder, a sphere, the tube of a torus. Area: a face, a body, a
///   component. Volume: a body or a component that is closed, summed over its solids. Loop length: the edges
///   around the outside of a face.
/// - Position: a vertex; the centre of a circle or a sphere; the middle of another edge; the centre of
///   mass of another face, a body or a component.
/// - Distance: any two, the shortest. The deltas are its components along the axes, from first to second.
/// - Angle of two: straight edges, flat faces, circles by their planes, cylinders and cones by their axes.
///   Edges with a common end and faces with a common edge up to 180°, all others up to 90°, and parallel ones
///   have none. Angle of three: at the position of the second, between the positions of the others.
class MeasureMgr
{
public:
    static MeasureMgr* get();

    /// Creates the filters, unless they exist already.
    void initialize();

    /// The mask of what can be selected for measuring, of ESelectionType; initially everything.
    unsigned selectionTypes() const { return m_selectionTypes; }
    void selectionTypes(unsigned mask) { m_selectionTypes = mask; }
    /// The filters of one type, which live as long as the manager; none before `initialize`.
    [[nodiscard]] std::vector<const SelectionFilter*> filters(ESelectionType type) const;

    /// Returns false, and leaves the result alone, if there is no value. `status`, if given, then gets one
    /// error that says what can't be measured, and why.
    [[nodiscard]] bool measure(const StrongRef<LogicalSelection>& selection, EMeasureType type,
                               MeasureResult& result, Status* status = nullptr) const;
    [[nodiscard]] bool measure(const StrongRef<LogicalSelection>& first,
                               const StrongRef<LogicalSelection>& second, EMeasureType type,
                               MeasureResult& result, Status* status = nullptr) const;
    [[nodiscard]] bool measure(const StrongRef<LogicalSelection>& first,
                               const StrongRef<LogicalSelection>& second,
                               const StrongRef<LogicalSelection>& third, EMeasureType type,
                               MeasureResult& result, Status* status = nullptr) const;

    /// The user-visible name of the object: the component's name, with its form for a part, such as "Cylinder
    /// of rod". Loads the kernel for a part. Empty if the object is gone.
    [[nodiscard]] std::wstring nameOf(const LogicalSelection& selection) const;

    /// The edges along which the loop length of a face is measured; none if it has no loop.
    [[nodiscard]] std::vector<StrongRef<LogicalSelection>>
    getLoopSelections(const StrongRef<LogicalSelection>& selection) const;

private:
    MeasureMgr() = default;

    unsigned m_selectionTypes = 31;
    std::vector<std::pair<ESelectionType, std::unique_ptr<SelectionFilter>>> m_filters;
};

} // namespace Vs
