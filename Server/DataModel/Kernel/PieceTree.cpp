#include "Server/DataModel/Kernel/PieceTree.h"

#include <queue>

#include <BRepAdaptor_Curve.hxx>
#include <BRepBndLib.hxx>
#include <BRep_Tool.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>

#include <algorithm>
#include <utility>

namespace Vs::Kernel {

namespace {

void addTriangles(const Handle(Poly_Triangulation) & mesh, const gp_Trsf& place, std::vector<Piece>& pieces)
{
    for (int i = 1; i <= mesh->NbTriangles(); ++i) {
        int corners[3];
        mesh->Triangle(i).Get(corners[0], corners[1], corners[2]);
        Piece piece;
        for (size_t k = 0; k < 3; ++k) {
            const gp_Pnt corner = mesh->Node(corners[k]).Transformed(place);
            piece.triangle[k] = corner.XYZ();
            piece.box.Add(corner);
        }
        pieces.push_back(std::move(piece));
    }
}

void addFace(const TopoDS_Face& face, std::vector<Piece>& pieces)
{
    TopLoc_Location location;
    const Handle(Poly_Triangulation) mesh = BRep_Tool::Triangulation(face, location);
    const gp_Trsf place = location.Transformation();
    if (BRep_Tool::Surface(face).IsNull()) {
        if (!mesh.IsNull())
            addTriangles(mesh, place, pieces);
        return;
    }
    Piece piece{face, {}, {}, {}};
    BRepBndLib::Add(face, piece.box);
    for (int i = 1; !mesh.IsNull() && i <= mesh->NbNodes(); ++i)
        piece.points.push_back(mesh->Node(i).Transformed(place));
    if (piece.points.empty())
        for (TopExp_Explorer each(face, TopAbs_VERTEX); each.More(); each.Next())
            piece.points.push_back(BRep_Tool::Pnt(TopoDS::Vertex(each.Current())));
    if (!piece.box.IsVoid())
        pieces.push_back(std::move(piece));
}

void addSegments(const TopoDS_Edge& polyline, std::vector<Piece>& pieces)
{
    const Handle(Geom_BSplineCurve) curve = BRepAdaptor_Curve(polyline).BSpline();
    const TColgp_Array1OfPnt& corners = curve->Poles();
    for (int i = corners.Lower(); i < corners.Upper(); ++i) {
        Piece piece;
        piece.triangle = {corners(i).XYZ(), corners(i + 1).XYZ(), corners(i + 1).XYZ()};
        piece.box.Add(corners(i));
        piece.box.Add(corners(i + 1));
        pieces.push_back(std::move(piece));
    }
}

gp_Pnt middleOf(const Bnd_Box& box)
{
    return gp_Pnt((box.CornerMin().XYZ() + box.CornerMax().XYZ()) / 2);
}

/// Along which the box is longest, from 1.
int longest(const Bnd_Box& box)
{
    const gp_XYZ size = box.CornerMax().XYZ() - box.CornerMin().XYZ();
    return size.X() >= size.Y() && size.X() >= size.Z() ? 1 : size.Y() >= size.Z() ? 2 : 3;
}

} // namespace

bool isPolyline(const TopoDS_Shape& shape)
{
    if (shape.ShapeType() != TopAbs_EDGE || !BRep_Tool::IsGeometric(TopoDS::Edge(shape)))
        return false;
    const BRepAdaptor_Curve curve(TopoDS::Edge(shape));
    // All of it: its ends are those of the edge.
    return curve.GetType() == GeomAbs_BSplineCurve && curve.BSpline()->Degree() == 1 &&
           curve.BSpline()->FirstParameter() >= curve.FirstParameter() &&
           curve.BSpline()->LastParameter() <= curve.LastParameter();
}

std::vector<Piece> piecesOf(const TopoDS_Shape& shape)
{
    std::vector<Piece> pieces;
    for (TopExp_Explorer face(shape, TopAbs_FACE); face.More(); face.Next())
        addFace(TopoDS::Face(face.Current()), pieces);
    const auto addFree = [&](TopAbs_ShapeEnum kind, TopAbs_ShapeEnum above) {
        for (TopExp_Explorer each(shape, kind, above); each.More(); each.Next()) {
            if (isPolyline(each.Current())) {
                addSegments(TopoDS::Edge(each.Current()), pieces);
                continue;
            }
            Piece piece{each.Current(), {}, {}, {}};
            BRepBndLib::Add(piece.shape, piece.box);
            for (TopExp_Explorer end(piece.shape, TopAbs_VERTEX); end.More(); end.Next())
                piece.points.push_back(BRep_Tool::Pnt(TopoDS::Vertex(end.Current())));
            if (!piece.box.IsVoid())
                pieces.push_back(std::move(piece));
        }
    };
    addFree(TopAbs_EDGE, TopAbs_FACE);
    addFree(TopAbs_VERTEX, TopAbs_EDGE);
    return pieces;
}

std::vector<Piece> trianglesOf(const Piece& piece)
{
    std::vector<Piece> triangles;
    if (piece.shape.IsNull()) {
        triangles.push_back(piece);
    } else if (piece.shape.ShapeType() == TopAbs_FACE) {
        TopLoc_Location location;
        const Handle(Poly_Triangulation) mesh = BRep_Tool::Triangulation(TopoDS::Face(piece.shape), location);
        if (!mesh.IsNull())
            addTriangles(mesh, location.Transformation(), triangles);
    }
    return triangles;
}

double deflectionOf(const Piece& piece)
{
    if (piece.shape.IsNull() || piece.shape.ShapeType() != TopAbs_FACE)
        return 0;
    const TopoDS_Face& face = TopoDS::Face(piece.shape);
    TopLoc_Location location;
    const Handle(Poly_Triangulation) mesh = BRep_Tool::Triangulation(face, location);
    return mesh.IsNull() ? 0 : mesh->Deflection() + BRep_Tool::Tolerance(face);
}

PieceTree::PieceTree(std::vector<Piece> pieces) : m_pieces(std::move(pieces))
{
    if (m_pieces.empty())
        return;
    m_nodes.reserve(2 * m_pieces.size());
    build(0, m_pieces.size());
}

int PieceTree::build(size_t first, size_t last)
{
    const int index = static_cast<int>(m_nodes.size());
    m_nodes.push_back({{}, first, last});
    Bnd_Box box;
    for (size_t i = first; i < last; ++i)
        box.Add(m_pieces[i].box);
    if (last - first > 1) {
        const auto at = [this](size_t place) {
            return m_pieces.begin() + static_cast<std::ptrdiff_t>(place);
        };
        const size_t middle = (first + last) / 2;
        const int axis = longest(box);
        std::nth_element(at(first), at(middle), at(last), [axis](const Piece& a, const Piece& b) {
            return middleOf(a.box).Coord(axis) < middleOf(b.box).Coord(axis);
        });
        const int left = build(first, middle), right = build(middle, last);
        m_nodes[static_cast<size_t>(index)].left = left;
        m_nodes[static_cast<size_t>(index)].right = right;
    }
    m_nodes[static_cast<size_t>(index)].box = box;
    return index;
}

void PieceTree::nearestPairs(const PieceTree& other, const double& bound,
                             const std::function<void(double, const Piece&, const Piece&)>& visit) const
{
    struct Pair
    {
        double least;
        int ours, others;
        bool operator<(const Pair& second) const { return least > second.least; }
    };
    if (isEmpty() || other.isEmpty())
        return;
    std::priority_queue<Pair> waiting;
    const auto add = [&](int ours, int others) {
        const double least = m_nodes[size_t(ours)].box.Distance(other.m_nodes[size_t(others)].box);
        if (least <= bound)
            waiting.push({least, ours, others});
    };
    for (add(0, 0); !waiting.empty() && waiting.top().least <= bound;) {
        const Pair pair = waiting.top();
        waiting.pop();
        const Node& ours = m_nodes[size_t(pair.ours)];
        const Node& others = other.m_nodes[size_t(pair.others)];
        if (ours.left < 0 && others.left < 0) {
            visit(pair.least, m_pieces[ours.first], other.m_pieces[others.first]);
        } else if (others.left < 0 ||
                   (ours.left >= 0 && ours.last - ours.first >= others.last - others.first)) {
            add(ours.left, pair.others);
            add(ours.right, pair.others);
        } else {
            add(pair.ours, others.left);
            add(pair.ours, others.right);
        }
    }
}

} // namespace Vs::Kernel
