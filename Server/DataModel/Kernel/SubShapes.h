#pragma once

#include "Server/DataModel/Selection/ObjectPath.h"

#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_ListOfShape.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>

#include <cstdint>
#include <vector>

namespace Vs::Kernel {

/// A visible edge, and the faces that it bounds.
struct VisibleEdge
{
    TopoDS_Edge edge;
    TopTools_ListOfShape faces;
};

/// The edges of a shape in the order used for numbering everywhere. A seam, where a face meets itself, and a
/// degenerate edge, which is only a point, don't count, since nobody would see them.
std::vector<VisibleEdge> visibleEdges(const TopoDS_Shape& shape);

/// The solids, faces, edges and vertices of a shape by their numbers (ObjectPath::index). Made once and kept,
/// as numbering them takes longer than most measurements.
class SubShapes
{
public:
    explicit SubShapes(const TopoDS_Shape& shape);

    const TopoDS_Shape& shape() const { return m_shape; }
    /// Null if there is none with that number.
    TopoDS_Shape part(ObjectPath::Leaf leaf, uint32_t index) const;
    /// For each face the solid that it belongs to, or ModelKernel::kNoSolid.
    std::vector<uint32_t> solidsOfFaces() const;
    /// How many there are.
    uint32_t count(ObjectPath::Leaf leaf) const;
    /// The edges that bound a face, also from within, and the vertices that bound an edge, by their numbers.
    std::vector<uint32_t> edgesOf(uint32_t face) const;
    std::vector<uint32_t> verticesOf(uint32_t edge) const;
    /// The edges around the outside of a face, by their numbers.
    std::vector<uint32_t> loop(const TopoDS_Face& face) const;

private:
    TopoDS_Shape m_shape;
    std::vector<TopoDS_Shape> m_solids, m_faces;
    TopTools_IndexedMapOfShape m_edges, m_vertices;
    std::vector<std::vector<uint32_t>> m_loops; ///< For faces made of triangles, which have no wires.
};

} // namespace Vs::Kernel
