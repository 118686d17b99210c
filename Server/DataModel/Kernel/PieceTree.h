#pragma once

#include "Server/DataModel/Kernel/TriangleDistance.h"

#include <Bnd_Box.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Pnt.hxx>

#include <functional>
#include <optional>
#include <vector>

namespace Vs::Kernel {

/// A piece that a shape's distance is computed from: a face, an edge or a vertex that belongs to none, or,
/// where a face has no surface, one of its triangles. The straight segments of a polyline count as degenerate
/// triangles.
struct Piece
{
    TopoDS_Shape shape; ///< Null for a triangle.
    Triangle triangle;
    Bnd_Box box;
    std::vector<gp_Pnt> points; ///< On it, within its tolerance.
};

std::vector<Piece> piecesOf(const TopoDS_Shape& shape);

/// Whether a shape is an edge of straight pieces (a spline of degree 1).
bool isPolyline(const TopoDS_Shape& shape);

/// The triangles of a face's mesh, or the one that the piece is; none for other pieces.
std::vector<Piece> trianglesOf(const Piece& piece);
/// How far these may be from the face, including its tolerance.
double deflectionOf(const Piece& piece);

/// The pieces of a shape in a bounding volume hierarchy.
class PieceTree
{
public:
    explicit PieceTree(std::vector<Piece> pieces);

    bool isEmpty() const { return m_pieces.empty(); }
    /// Calls `visit(least, ours, others)` for pairs of pieces, nearest boxes first, where `least` is the
    /// distance between the boxes, as long as it isn't larger than the current value of `bound`.
    void nearestPairs(const PieceTree& other, const double& bound,
                      const std::function<void(double, const Piece&, const Piece&)>& visit) const;

private:
    struct Node
    {
        Bnd_Box box;
        size_t first, last;        ///< Of its pieces.
        int left = -1, right = -1; ///< Below; -1 for a leaf, which has one piece.
    };
    int build(size_t first, size_t last);

    std::vector<Piece> m_pieces;
    std::vector<Node> m_nodes;
};

} // namespace Vs::Kernel
