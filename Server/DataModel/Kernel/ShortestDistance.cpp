#include "Server/DataModel/Kernel/ShortestDistance.h"

#include "Server/DataModel/Kernel/KernelDistance.h"
#include "Server/DataModel/Kernel/PartCount.h"
#include "Server/DataModel/Kernel/PieceTree.h"
#include "Server/DataModel/Kernel/Reach.h"
#include "Server/DataModel/Kernel/WideFace.h"

#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepClass3d_SolidClassifier.hxx>
#include <BRep_Tool.hxx>
#include <Precision.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <vector>

namespace Vs::Kernel {

namespace {

/// This few pairs of faces are measured faster than sorted.
constexpr size_t kFewPairs = 64;

bool hasBareTriangles(const TopoDS_Shape& shape)
{
    for (TopExp_Explorer face(shape, TopAbs_FACE); face.More(); face.Next())
        if (BRep_Tool::Surface(TopoDS::Face(face.Current())).IsNull())
            return true;
    return false;
}

/// Where one lies in a solid of the other as a whole, a point that both have.
std::optional<gp_Pnt> pointWithin(const TopoDS_Shape& shape, const TopoDS_Shape& solids)
{
    // One point tells of a connected whole: what passes through the boundary is found at the faces.
    std::vector<gp_Pnt> corners;
    constexpr std::pair<TopAbs_ShapeEnum, TopAbs_ShapeEnum> kWholes[] = {{TopAbs_SHELL, TopAbs_SHAPE},
                                                                         {TopAbs_FACE, TopAbs_SHELL},
                                                                         {TopAbs_EDGE, TopAbs_FACE},
                                                                         {TopAbs_VERTEX, TopAbs_EDGE}};
    for (const auto& [kind, above] : kWholes)
        for (TopExp_Explorer whole(shape, kind, above); whole.More(); whole.Next())
            if (const TopExp_Explorer corner(whole.Current(), TopAbs_VERTEX); corner.More())
                corners.push_back(BRep_Tool::Pnt(TopoDS::Vertex(corner.Current())));
    for (TopExp_Explorer solid(solids, TopAbs_SOLID); solid.More(); solid.Next()) {
        Bnd_Box box;
        BRepBndLib::Add(solid.Current(), box);
        std::optional<BRepClass3d_SolidClassifier> classifier;
        for (const gp_Pnt& corner : corners) {
            if (box.IsOut(corner))
                continue;
            if (!classifier)
                classifier.emplace(solid.Current());
            classifier->Perform(corner, Precision::Confusion());
            if (classifier->State() == TopAbs_IN)
                return corner;
        }
    }
    return std::nullopt;
}

/// As the kernel measures it; null for a triangle of three corners without an area, whose neighbours have its
/// sides.
TopoDS_Shape shapeOf(const Piece& piece)
{
    if (!piece.shape.IsNull())
        return piece.shape;
    const auto& [a, b, c] = piece.triangle;
    if (b.IsEqual(c, 0)) {
        BRepBuilderAPI_MakeEdge side{gp_Pnt(a), gp_Pnt(b)};
        return side.IsDone() ? side.Shape() : TopoDS_Shape();
    }
    BRepBuilderAPI_MakePolygon sides(gp_Pnt(a), gp_Pnt(b), gp_Pnt(c), true);
    if (!sides.IsDone())
        return {};
    BRepBuilderAPI_MakeFace face(sides.Wire(), true);
    return face.IsDone() ? face.Shape() : TopoDS_Shape();
}

/// Finds the nearest pair of two trees. Each pair that is examined narrows down the rest.
class Search
{
public:
    void visit(double least, const Piece& first, const Piece& second)
    {
        if (first.shape.IsNull() && second.shape.IsNull()) {
            const TriangleDistance found = distanceOf(first.triangle, second.triangle);
            take({found.value, gp_Pnt(found.first), gp_Pnt(found.second)});
            return;
        }
        boundByPoints(first, second);
        m_pairs.push_back({least, &first, &second});
    }
    const double& bound() const { return m_bound; }

    std::optional<ShortestDistance> result()
    {
        // A box is a poor bound of a wide face that is full of holes; its mesh is a good one.
        std::erase_if(m_pairs, [this](Pair& pair) {
            if (pair.least <= m_bound)
                pair.least = std::max(pair.least, leastByMeshes(*pair.first, *pair.second));
            return pair.least > m_bound;
        });
        // Wide faces last: what was found by then leaves little of them to examine.
        for (Pair& pair : m_pairs)
            pair.wide = wide(*pair.first) || wide(*pair.second);
        std::sort(m_pairs.begin(), m_pairs.end(), [](const Pair& a, const Pair& b) {
            return std::pair(a.wide, a.least) < std::pair(b.wide, b.least);
        });
        for (const Pair& pair : m_pairs)
            if (pair.least <= m_bound && !(m_best && m_best->value == 0))
                measure(*pair.first, *pair.second);
        return m_best;
    }

private:
    /// Null for a face that isn't wide.
    const WideFace* wide(const Piece& piece)
    {
        const auto known = m_wide.find(&piece);
        if (known != m_wide.end())
            return known->second.get();
        return m_wide.emplace(&piece, WideFace::is(piece) ? std::make_unique<WideFace>(piece) : nullptr)
            .first->second.get();
    }

    void measure(const Piece& firstPiece, const Piece& secondPiece)
    {
        const TopoDS_Shape first = shapeOf(firstPiece), second = shapeOf(secondPiece);
        if (first.IsNull() || second.IsNull())
            return;
        if (m_best && isNoNearer(first, second))
            return;
        const WideFace *one = wide(firstPiece), *other = wide(secondPiece);
        const auto takeAsIs = [this](const ShortestDistance& found) { take(found); };
        const auto takeTurned = [this](const ShortestDistance& found) {
            take({found.value, found.second, found.first});
        };
        bool isKnown = false;
        if (one && other) {
            one->search(*other, m_bound, takeAsIs);
            isKnown = true;
        } else if (one) {
            isKnown = one->search({second, {}, secondPiece.box, {}}, m_bound, takeAsIs);
        } else if (other) {
            isKnown = other->search({first, {}, firstPiece.box, {}}, m_bound, takeTurned);
        }
        if (!isKnown)
            if (const auto found = kernelDistance(first, second))
                take(*found);
    }

    /// Than what is there: as with all leads in their holes, or the rows of leads of two parts that face each
    /// other, where all pairs are as near as the first.
    bool isNoNearer(const TopoDS_Shape& first, const TopoDS_Shape& second) const
    {
        constexpr double kSame = 1e-9, kSameShare = 1e-6;
        const double enough = m_best->value - std::min(kSameShare * m_best->value, Precision::Confusion());
        if (leastBySurfaces(first, second) >= m_best->value - kSame)
            return true;
        if (!(m_best->value > gp::Resolution()))
            return false;
        const gp_Dir way(gp_Vec(m_best->first, m_best->second));
        return -reachAlong(second, way.Reversed()) - reachAlong(first, way) >= enough;
    }

    /// Two pieces, and a lower bound of their distance.
    struct Pair
    {
        double least;
        const Piece *first, *second;
        bool wide = false;
    };

    void take(const ShortestDistance& found)
    {
        if (m_best && found.value >= m_best->value)
            return;
        m_best = found;
        m_bound = std::min(m_bound, found.value);
    }

    /// The triangles of a face, and how far they may be from it.
    struct Mesh
    {
        PieceTree triangles;
        double deflection;
    };
    const Mesh& meshOf(const Piece& piece)
    {
        const auto known = m_meshes.find(&piece);
        if (known != m_meshes.end())
            return known->second;
        return m_meshes.emplace(&piece, Mesh{PieceTree(trianglesOf(piece)), deflectionOf(piece)})
            .first->second;
    }

    /// 0 where there is a piece without a mesh.
    double leastByMeshes(const Piece& first, const Piece& second)
    {
        const Mesh &ours = meshOf(first), &others = meshOf(second);
        if (ours.triangles.isEmpty() || others.triangles.isEmpty())
            return 0;
        double least = std::numeric_limits<double>::max();
        ours.triangles.nearestPairs(others.triangles, least, [&](double, const Piece& a, const Piece& b) {
            least = std::min(least, distanceOf(a.triangle, b.triangle).value);
        });
        return least - ours.deflection - others.deflection;
    }

    static std::vector<gp_Pnt> pointsOf(const Piece& piece)
    {
        return piece.shape.IsNull() ? std::vector<gp_Pnt>(piece.triangle.begin(), piece.triangle.end())
                                    : piece.points;
    }

    void boundByPoints(const Piece& first, const Piece& second)
    {
        // Points of a mesh lie near the shape, within tolerances that files choose.
        constexpr double kSlack = 1e-3;
        constexpr size_t kMost = 20'000'000;
        if (m_compared > kMost)
            return;
        const std::vector<gp_Pnt> ours = pointsOf(first), others = pointsOf(second);
        m_compared += ours.size() * others.size();
        double square = std::numeric_limits<double>::max();
        for (const gp_Pnt& a : ours)
            for (const gp_Pnt& b : others)
                square = std::min(square, a.SquareDistance(b));
        m_bound = std::min(m_bound, std::sqrt(square) + kSlack);
    }

    std::vector<Pair> m_pairs; ///< That the kernel measures in the end.
    std::map<const Piece*, Mesh> m_meshes;
    std::map<const Piece*, std::unique_ptr<WideFace>> m_wide;
    std::optional<ShortestDistance> m_best;
    double m_bound = std::numeric_limits<double>::max();
    size_t m_compared = 0;
};

} // namespace

bool mayTakeLong(const TopoDS_Shape& first, const TopoDS_Shape& second)
{
    return countOf(first, TopAbs_FACE) * countOf(second, TopAbs_FACE) > kFewPairs ||
           hasBareTriangles(first) || hasBareTriangles(second);
}

std::optional<ShortestDistance> shortestDistance(const TopoDS_Shape& first, const TopoDS_Shape& second)
{
    if (!mayTakeLong(first, second) && !isPolyline(first) && !isPolyline(second))
        return kernelDistance(first, second);
    for (const bool isSecond : {false, true})
        if (const auto point = isSecond ? pointWithin(second, first) : pointWithin(first, second))
            return ShortestDistance{0, *point, *point};
    const PieceTree ours(piecesOf(first)), others(piecesOf(second));
    Search search;
    ours.nearestPairs(others, search.bound(),
                      [&](double least, const Piece& a, const Piece& b) { search.visit(least, a, b); });
    return search.result();
}

} // namespace Vs::Kernel
