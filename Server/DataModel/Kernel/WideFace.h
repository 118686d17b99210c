#pragma once

#include "Server/DataModel/Kernel/PieceTree.h"
#include "Server/DataModel/Kernel/ShortestDistance.h"

#include <TopoDS_Face.hxx>
#include <gp_Pln.hxx>

#include <functional>
#include <memory>

class BRepTopAdaptor_FClass2d;

namespace Vs::Kernel {

/// A flat face with so many edges that the kernel's search, which visits all of them for each query, takes
/// too long: a circuit board under its components, with a hole for each lead. Its edges are kept in a
/// bounding volume hierarchy, and the nearest point inside it is found from the height above its plane.
class WideFace
{
public:
    /// Whether a piece is one.
    static bool is(const Piece& piece);
    /// For such a piece, to which it keeps a reference.
    explicit WideFace(const Piece& piece);
    ~WideFace();
    WideFace(const WideFace&) = delete;
    WideFace& operator=(const WideFace&) = delete;

    using Take = std::function<void(const ShortestDistance&)>;
    /// Reports whatever of a face, edge or vertex is nearer than `bound`, which may shrink meanwhile; the
    /// first point is on the wide face. False if only the kernel's search can tell.
    [[nodiscard]] bool search(const Piece& other, const double& bound, const Take& take) const;
    /// The same for another wide face.
    void search(const WideFace& other, const double& bound, const Take& take) const;

private:
    static bool canTell(const TopoDS_Shape& other);
    bool searchPlane(const Piece& other, const double& bound, const Take& take) const;
    void searchEdges(const PieceTree& others, const double& bound, const Take& take) const;
    void searchWithin(const TopoDS_Shape& other, const double& bound, const Take& take) const;
    bool holds(const gp_Pnt& place) const;

    TopoDS_Face m_face;
    gp_Pln m_plane;
    PieceTree m_edges, m_triangles;
    double m_deflection; ///< Of the triangles.
    mutable std::unique_ptr<BRepTopAdaptor_FClass2d> m_classifier;
};

} // namespace Vs::Kernel
