#include "Server/DataModel/Kernel/WideFace.h"

#include "Server/DataModel/Kernel/KernelDistance.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepClass_FaceClassifier.hxx>
#include <BRepTopAdaptor_FClass2d.hxx>
#include <BRep_Tool.hxx>
#include <ElSLib.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <gp_Elips.hxx>
#include <gp_Sphere.hxx>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace Vs::Kernel {

namespace {

/// With fewer edges the kernel's search is just as quick.
constexpr int kManyEdges = 48;
constexpr double kFar = std::numeric_limits<double>::max();

bool isRound(const BRepAdaptor_Curve& curve)
{
    return curve.GetType() == GeomAbs_Circle || curve.GetType() == GeomAbs_Ellipse;
}

/// Each once.
std::vector<TopoDS_Shape> partsOf(const TopoDS_Shape& shape, TopAbs_ShapeEnum kind)
{
    TopTools_IndexedMapOfShape map;
    TopExp::MapShapes(shape, kind, map);
    std::vector<TopoDS_Shape> parts;
    for (int i = 1; i <= map.Extent(); ++i)
        parts.push_back(map(i));
    return parts;
}

std::vector<Piece> edgePieces(const TopoDS_Face& face)
{
    std::vector<Piece> pieces;
    for (const TopoDS_Shape& edge : partsOf(face, TopAbs_EDGE)) {
        Piece piece{edge, {}, {}, {}};
        BRepBndLib::Add(edge, piece.box);
        if (!piece.box.IsVoid())
            pieces.push_back(std::move(piece));
    }
    return pieces;
}

/// A circle or an ellipse as its height over a plane goes with the parameter: middle + cosine and sine parts.
struct Wave
{
    Wave(const BRepAdaptor_Curve& curve, const gp_Pln& plane)
    {
        const gp_Dir normal = plane.Axis().Direction();
        const bool circle = curve.GetType() == GeomAbs_Circle;
        const gp_Ax2 axes = circle ? curve.Circle().Position() : curve.Ellipse().Position();
        middle = gp_Vec(plane.Location(), axes.Location()).Dot(gp_Vec(normal));
        cosine = (circle ? curve.Circle().Radius() : curve.Ellipse().MajorRadius()) *
                 axes.XDirection().Dot(normal);
        sine = (circle ? curve.Circle().Radius() : curve.Ellipse().MinorRadius()) *
               axes.YDirection().Dot(normal);
    }

    /// Where it is highest, lowest, or in the plane.
    std::vector<double> places() const
    {
        const double swing = std::hypot(cosine, sine), phase = std::atan2(sine, cosine);
        std::vector<double> found{phase, phase + std::numbers::pi};
        if (swing > std::abs(middle))
            for (const double way : {std::acos(-middle / swing), -std::acos(-middle / swing)})
                found.push_back(phase + way);
        return found;
    }

    double middle, cosine, sine;
};

/// The points of an edge, besides its ends, that can be the nearest of it to the inside of a plane.
std::vector<gp_Pnt> nearestOf(const BRepAdaptor_Curve& curve, const gp_Pln& plane)
{
    std::vector<gp_Pnt> points;
    const double first = curve.FirstParameter(), last = curve.LastParameter();
    if (isRound(curve)) {
        constexpr double kRound = 2 * std::numbers::pi;
        for (const double place : Wave(curve, plane).places())
            if (const double at = place + std::ceil((first - place) / kRound) * kRound; at <= last)
                points.push_back(curve.Value(at));
    } else if (curve.GetType() == GeomAbs_Line) {
        const gp_Vec normal(plane.Axis().Direction());
        const gp_Lin line = curve.Line();
        const double slope = normal.Dot(gp_Vec(line.Direction()));
        const double at = slope != 0 ? normal.Dot(gp_Vec(line.Location(), plane.Location())) / slope : first;
        if (at > first && at < last)
            points.push_back(curve.Value(at));
    }
    return points;
}

/// The same of the inside of a face that is part of a sphere: where that is highest or lowest over the plane,
/// or, if it passes through the plane, a point of the circle there, which lies within the face as a whole
/// unless an edge crosses it.
std::vector<gp_Pnt> nearestOf(const TopoDS_Face& face, const gp_Pln& plane)
{
    const BRepAdaptor_Surface surface(face, false);
    if (surface.GetType() != GeomAbs_Sphere)
        return {};
    const gp_Sphere sphere = surface.Sphere();
    const gp_Vec normal(plane.Axis().Direction());
    const double height = gp_Vec(plane.Location(), sphere.Location()).Dot(normal), radius = sphere.Radius();
    std::vector<gp_Pnt> points{sphere.Location().Translated(normal * radius),
                               sphere.Location().Translated(normal * -radius)};
    if (std::abs(height) < radius) {
        const double aside = std::sqrt((radius - height) * (radius + height));
        points = {sphere.Location().Translated(normal * -height + gp_Vec(plane.XAxis().Direction()) * aside)};
    }
    std::erase_if(points, [&](const gp_Pnt& point) {
        double u, v;
        ElSLib::Parameters(sphere, point, u, v);
        const TopAbs_State state =
            BRepClass_FaceClassifier(face, gp_Pnt2d(u, v), BRep_Tool::Tolerance(face)).State();
        return state != TopAbs_IN && state != TopAbs_ON;
    });
    return points;
}

} // namespace

bool WideFace::is(const Piece& piece)
{
    if (piece.shape.IsNull() || piece.shape.ShapeType() != TopAbs_FACE)
        return false;
    const TopoDS_Face& face = TopoDS::Face(piece.shape);
    if (BRepAdaptor_Surface(face, false).GetType() != GeomAbs_Plane)
        return false;
    int count = 0;
    for (TopExp_Explorer edge(face, TopAbs_EDGE); edge.More() && count <= kManyEdges; edge.Next())
        ++count;
    return count > kManyEdges;
}

/// Whether all that the distance depends on can be told: of flat faces, cylinders, cones and spheres between
/// lines, circles and ellipses, and of such edges and vertices.
bool WideFace::canTell(const TopoDS_Shape& other)
{
    for (TopExp_Explorer each(other, TopAbs_FACE); each.More(); each.Next()) {
        const GeomAbs_SurfaceType type = BRepAdaptor_Surface(TopoDS::Face(each.Current()), false).GetType();
        if (type != GeomAbs_Plane && type != GeomAbs_Cylinder && type != GeomAbs_Cone &&
            type != GeomAbs_Sphere)
            return false;
    }
    for (TopExp_Explorer each(other, TopAbs_EDGE); each.More(); each.Next()) {
        const TopoDS_Edge& edge = TopoDS::Edge(each.Current());
        if (BRep_Tool::Degenerated(edge))
            continue;
        if (!BRep_Tool::IsGeometric(edge))
            return false;
        const BRepAdaptor_Curve curve(edge);
        if (!isRound(curve) && curve.GetType() != GeomAbs_Line)
            return false;
    }
    return true;
}

WideFace::~WideFace() = default;

WideFace::WideFace(const Piece& piece)
    : m_face(TopoDS::Face(piece.shape)),
      m_plane(BRepAdaptor_Surface(m_face, false).Plane()),
      m_edges(edgePieces(m_face)),
      m_triangles(trianglesOf(piece)),
      m_deflection(deflectionOf(piece))
{
}

bool WideFace::search(const Piece& other, const double& bound, const Take& take) const
{
    if (!canTell(other.shape))
        return searchPlane(other, bound, take);
    searchEdges(PieceTree({other}), bound, take);
    searchWithin(other.shape, bound, take);
    return true;
}

// The face isn't nearer than its plane, of which a part is taken that all nearest points lie in.
bool WideFace::searchPlane(const Piece& other, const double& bound, const Take& take) const
{
    double low[2] = {kFar, kFar}, high[2] = {-kFar, -kFar};
    const gp_Pnt corners[2] = {other.box.CornerMin(), other.box.CornerMax()};
    for (int i = 0; i < 8; ++i) {
        const gp_Pnt corner(corners[i & 1].X(), corners[i >> 1 & 1].Y(), corners[i >> 2].Z());
        double place[2];
        ElSLib::Parameters(m_plane, corner, place[0], place[1]);
        for (int axis = 0; axis < 2; ++axis) {
            low[axis] = std::min(low[axis], place[axis] - 1);
            high[axis] = std::max(high[axis], place[axis] + 1);
        }
    }
    const TopoDS_Face part = BRepBuilderAPI_MakeFace(m_plane, low[0], high[0], low[1], high[1]);
    const auto found = kernelDistance(part, other.shape);
    if (!found)
        return false;
    if (found->value >= bound)
        return true;
    if (!holds(found->first))
        return false;
    take(*found);
    return true;
}

void WideFace::search(const WideFace& other, const double& bound, const Take& take) const
{
    searchEdges(other.m_edges, bound, take);
    searchWithin(other.m_face, bound, take);
    other.searchWithin(m_face, bound, [&](const ShortestDistance& found) {
        take({found.value, found.second, found.first});
    });
}

void WideFace::searchEdges(const PieceTree& others, const double& bound, const Take& take) const
{
    m_edges.nearestPairs(others, bound, [&](double, const Piece& edge, const Piece& other) {
        if (const auto found = kernelDistance(edge.shape, other.shape))
            take(*found);
    });
}

// Where the way to the nearest point of the other thing stands on the inside of the face, it stands at right
// angles to it, and the height over the plane is smallest there: at a vertex, at an edge, along a whole
// line of the other thing that leads to an edge, or within a sphere. What leads out of the inside first is
// found at the edges of the face.
void WideFace::searchWithin(const TopoDS_Shape& other, const double& bound, const Take& take) const
{
    const gp_Vec normal(m_plane.Axis().Direction());
    const auto offer = [&](const gp_Pnt& point) {
        const double height = gp_Vec(m_plane.Location(), point).Dot(normal);
        const gp_Pnt foot = point.Translated(normal * -height);
        if (std::abs(height) < bound && holds(foot))
            take({std::abs(height), foot, point});
    };
    for (const TopoDS_Shape& vertex : partsOf(other, TopAbs_VERTEX))
        offer(BRep_Tool::Pnt(TopoDS::Vertex(vertex)));
    for (const TopoDS_Shape& edge : partsOf(other, TopAbs_EDGE))
        if (!BRep_Tool::Degenerated(TopoDS::Edge(edge)))
            for (const gp_Pnt& point : nearestOf(BRepAdaptor_Curve(TopoDS::Edge(edge)), m_plane))
                offer(point);
    for (const TopoDS_Shape& face : partsOf(other, TopAbs_FACE))
        for (const gp_Pnt& point : nearestOf(TopoDS::Face(face), m_plane))
            offer(point);
}

/// Of a place in the plane.
bool WideFace::holds(const gp_Pnt& place) const
{
    if (!m_triangles.isEmpty()) {
        Piece point;
        point.triangle = {place.XYZ(), place.XYZ(), place.XYZ()};
        point.box.Add(place);
        double least = std::numeric_limits<double>::max();
        m_triangles.nearestPairs(PieceTree({point}), least, [&](double, const Piece& triangle, const Piece&) {
            least = std::min(least, distanceOf(triangle.triangle, point.triangle).value);
        });
        if (least > m_deflection)
            return false;
    }
    double u, v;
    ElSLib::Parameters(m_plane, place, u, v);
    // What it finds out about the edges serves all places.
    if (!m_classifier)
        m_classifier = std::make_unique<BRepTopAdaptor_FClass2d>(m_face, BRep_Tool::Tolerance(m_face));
    const TopAbs_State state = m_classifier->Perform(gp_Pnt2d(u, v), false);
    return state == TopAbs_IN || state == TopAbs_ON;
}

} // namespace Vs::Kernel
