#include "Server/DataModel/Kernel/FinerFaces.h"

#include "Server/DataModel/Kernel/BodyMesher.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Geom2d_Curve.hxx>
#include <Message_ProgressScope.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Vs::Kernel {

namespace {

using Polygon = Handle(Poly_PolygonOnTriangulation);
using Triangulation = Handle(Poly_Triangulation);

double distanceToLine(const gp_Pnt& point, const gp_Pnt& a, const gp_Pnt& b)
{
    const gp_Vec along(a, b), to(a, point);
    const double length = along.Magnitude();
    return length > 0 ? along.Crossed(to).Magnitude() / length : to.Magnitude();
}

/// The curves of a shape's edges. An edge is split as one, for all of the faces that meet in it.
class EdgeCurves
{
public:
    struct Edge
    {
        BRepAdaptor_Curve curve;
        std::vector<double> parameters; ///< Of the polygon's points.
        bool isUsable = false;          ///< All of its faces have the same polygon.
    };

    explicit EdgeCurves(const TopoDS_Shape& shape)
    {
        TopExp::MapShapes(shape, TopAbs_EDGE, m_map);
        m_edges.resize(size_t(m_map.Extent()));
        for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next())
            addFace(TopoDS::Face(faces.Current()));
    }

    const Edge& of(const TopoDS_Edge& edge) const { return m_edges[size_t(m_map.FindIndex(edge)) - 1]; }

private:
    void addFace(const TopoDS_Face& face)
    {
        TopLoc_Location location;
        const Triangulation& triangles = BRep_Tool::Triangulation(face, location);
        const bool isSplit = !triangles.IsNull() && triangles->HasUVNodes();
        for (TopExp_Explorer edges(face, TopAbs_EDGE); edges.More(); edges.Next()) {
            const TopoDS_Edge& edge = TopoDS::Edge(edges.Current());
            Edge& known = m_edges[size_t(m_map.FindIndex(edge)) - 1];
            const Polygon polygon =
                isSplit ? BRep_Tool::PolygonOnTriangulation(edge, triangles, location) : Polygon();
            if (known.parameters.empty())
                known.isUsable = begin(edge, polygon, known);
            else
                known.isUsable = known.isUsable && isSame(polygon, known);
        }
    }

    static bool begin(const TopoDS_Edge& edge, const Polygon& polygon, Edge& known)
    {
        known.parameters = {0}; // looked at
        if (polygon.IsNull() || !polygon->HasParameters() || polygon->NbNodes() < 2 ||
            BRep_Tool::Degenerated(edge) || !BRep_Tool::IsGeometric(edge) || !BRep_Tool::SameParameter(edge))
            return false;
        known.curve.Initialize(edge);
        known.parameters.clear();
        for (int i = 1; i <= polygon->NbNodes(); ++i)
            known.parameters.push_back(polygon->Parameter(i));
        return true;
    }

    static bool isSame(const Polygon& polygon, const Edge& known)
    {
        if (polygon.IsNull() || !polygon->HasParameters() ||
            size_t(polygon->NbNodes()) != known.parameters.size())
            return false;
        const double slack = 1e-6 * std::abs(known.parameters.back() - known.parameters.front());
        for (int i = 1; i <= polygon->NbNodes(); ++i)
            if (std::abs(polygon->Parameter(i) - known.parameters[size_t(i) - 1]) > slack)
                return false;
        return true;
    }

    TopTools_IndexedMapOfShape m_map;
    std::vector<Edge> m_edges;
};

/// The triangles of one face while they are split.
class FaceTriangles
{
public:
    FaceTriangles(const TopoDS_Face& face, const EdgeCurves& edges, double deviation)
        : m_face(TopoDS::Face(face.Oriented(TopAbs_FORWARD))), m_deviation(deviation)
    {
        const Triangulation& triangles = BRep_Tool::Triangulation(m_face, m_location);
        if (triangles.IsNull() || !triangles->HasUVNodes() || BRep_Tool::Surface(m_face).IsNull())
            return;
        m_surface.Initialize(m_face, false);
        for (int i = 1; i <= triangles->NbNodes(); ++i) {
            m_points.push_back(triangles->Node(i).Transformed(m_location.Transformation()));
            m_places.push_back(triangles->UVNode(i));
        }
        for (int i = 1; i <= triangles->NbTriangles(); ++i) {
            int a, b, c;
            triangles->Triangle(i).Get(a, b, c);
            m_triangles.push_back({a - 1, b - 1, c - 1});
        }
        for (TopExp_Explorer all(m_face, TopAbs_EDGE); all.More(); all.Next()) {
            addBorder(TopoDS::Edge(all.Current()), edges, triangles);
            if (BRep_Tool::Degenerated(TopoDS::Edge(all.Current())))
                addTip(TopoDS::Edge(all.Current()));
        }
    }

    /// Splits each side that is too far from the surface once. False if there was none.
    bool split()
    {
        m_middles.clear();
        const size_t before = m_points.size();
        std::vector<Triangle> parts;
        for (const Triangle& triangle : m_triangles)
            splitTriangle(triangle, parts);
        m_triangles = std::move(parts);
        return m_points.size() > before;
    }

    void store() const
    {
        if (m_triangles.empty())
            return;
        const Triangulation made =
            new Poly_Triangulation(int(m_points.size()), int(m_triangles.size()), true);
        const gp_Trsf back = m_location.Transformation().Inverted();
        for (size_t i = 0; i < m_points.size(); ++i) {
            made->SetNode(int(i) + 1, m_points[i].Transformed(back));
            made->SetUVNode(int(i) + 1, m_places[i]);
        }
        for (size_t i = 0; i < m_triangles.size(); ++i)
            made->SetTriangle(int(i) + 1, Poly_Triangle(m_triangles[i][0] + 1, m_triangles[i][1] + 1,
                                                        m_triangles[i][2] + 1));
        const BRep_Builder builder;
        builder.UpdateFace(m_face, made);
        for (size_t i = 0; i < m_borders.size(); ++i) {
            const Border& border = m_borders[i];
            const auto other = std::find_if(m_borders.begin(), m_borders.end(), [&](const Border& each) {
                return &each != &border && each.edge.IsSame(border.edge);
            });
            if (other == m_borders.end())
                builder.UpdateEdge(border.edge, polygonOf(border), made, m_location);
            else if (&*other > &border) // a seam
                builder.UpdateEdge(border.edge, polygonOf(border), polygonOf(*other), made, m_location);
        }
    }

private:
    using Triangle = std::array<int, 3>;

    /// A use of an edge by the face.
    struct Border
    {
        TopoDS_Edge edge;
        const EdgeCurves::Edge* curve;
        Handle(Geom2d_Curve) onSurface;
        std::vector<std::pair<double, int>> nodes; ///< By their parameters.
    };
    /// A side of a triangle that is part of a border: the parameters at its ends, that of the lower node
    /// first.
    struct BorderSide
    {
        size_t border;
        double low, high;
    };

    static uint64_t keyOf(int a, int b) { return uint64_t(std::min(a, b)) << 32 | uint64_t(std::max(a, b)); }

    void addBorder(const TopoDS_Edge& edge, const EdgeCurves& edges, const Triangulation& triangles)
    {
        const Polygon polygon = BRep_Tool::PolygonOnTriangulation(edge, triangles, m_location);
        if (polygon.IsNull())
            return;
        Border border{edge, &edges.of(edge), nullptr, {}};
        double first, last;
        border.onSurface = BRep_Tool::CurveOnSurface(edge, m_face, first, last);
        const bool isUsable = border.curve->isUsable && !border.onSurface.IsNull();
        for (int i = 1; i <= polygon->NbNodes(); ++i) {
            // Of an edge that isn't split, the order alone matters.
            border.nodes.emplace_back(isUsable ? border.curve->parameters[size_t(i) - 1] : i,
                                      polygon->Node(i) - 1);
            if (i == 1)
                continue;
            const auto &from = border.nodes[size_t(i) - 2], &to = border.nodes[size_t(i) - 1];
            BorderSide side{isUsable ? m_borders.size() : kFixed, from.first, to.first};
            if (from.second > to.second)
                std::swap(side.low, side.high);
            m_sides[keyOf(from.second, to.second)] = side;
        }
        if (isUsable)
            takeSideOfSeam(border);
        m_borders.push_back(std::move(border));
    }

    // A seam has two curves, one for either side; which of its polygons belongs to which can't be told from
    // the edge's orientation alone.
    void takeSideOfSeam(Border& border) const
    {
        double first, last;
        const Handle(Geom2d_Curve) other =
            BRep_Tool::CurveOnSurface(TopoDS::Edge(border.edge.Reversed()), m_face, first, last);
        const auto& [parameter, node] = border.nodes[border.nodes.size() / 2];
        const gp_Pnt2d& place = m_places[size_t(node)];
        if (!other.IsNull() && place.SquareDistance(other->Value(parameter)) <
                                   place.SquareDistance(border.onSurface->Value(parameter)))
            border.onSurface = other;
    }

    // At the tip of a cone or a pole, one of the parameters says nothing: any value of it is the same point.
    void addTip(const TopoDS_Edge& edge)
    {
        double first, last;
        const Handle(Geom2d_Curve) curve = BRep_Tool::CurveOnSurface(edge, m_face, first, last);
        const TopoDS_Vertex vertex = TopExp::FirstVertex(edge);
        if (curve.IsNull() || vertex.IsNull())
            return;
        const gp_Vec2d along(curve->Value(first), curve->Value(last));
        const int idle = std::abs(along.X()) > std::abs(along.Y()) ? 1 : 2;
        for (size_t i = 0; i < m_points.size(); ++i)
            if (m_points[i].Distance(BRep_Tool::Pnt(vertex)) <= BRep_Tool::Tolerance(vertex))
                m_tips[int(i)] = idle;
    }

    /// A node's place on the surface as seen from another one.
    gp_Pnt2d placeFrom(int node, int other) const
    {
        gp_Pnt2d place = m_places[size_t(node)];
        if (const auto tip = m_tips.find(node); tip != m_tips.end() && !m_tips.contains(other))
            place.SetCoord(tip->second, m_places[size_t(other)].Coord(tip->second));
        return place;
    }

    int addPoint(const gp_Pnt& point, const gp_Pnt2d& place)
    {
        m_points.push_back(point);
        m_places.push_back(place);
        return int(m_points.size()) - 1;
    }

    /// The point that halves a side; -1 if it isn't split.
    int middleOf(int a, int b)
    {
        const auto [found, isNew] = m_middles.try_emplace(keyOf(a, b), -1);
        if (!isNew)
            return found->second;
        const auto side = m_sides.find(keyOf(a, b));
        if (side != m_sides.end())
            return found->second = middleOnBorder(std::min(a, b), std::max(a, b), side->second);
        if (m_surface.GetType() == GeomAbs_Plane)
            return -1;
        const gp_Pnt2d place((placeFrom(a, b).XY() + placeFrom(b, a).XY()) / 2);
        const gp_Pnt point = m_surface.Value(place.X(), place.Y());
        if (isClose(point, a, b))
            return -1;
        return found->second = addPoint(point, place);
    }

    int middleOnBorder(int a, int b, const BorderSide& side)
    {
        if (side.border == kFixed)
            return -1;
        Border& border = m_borders[side.border];
        const double parameter = (side.low + side.high) / 2;
        const gp_Pnt point = border.curve->curve.Value(parameter);
        if (isClose(point, a, b))
            return -1;
        const int middle = addPoint(point, border.onSurface->Value(parameter));
        border.nodes.emplace_back(parameter, middle);
        // It has the highest number of all.
        const BorderSide first{side.border, side.low, parameter}, second{side.border, side.high, parameter};
        m_sides[keyOf(a, middle)] = first;
        m_sides[keyOf(b, middle)] = second;
        return middle;
    }

    bool isClose(const gp_Pnt& point, int a, int b) const
    {
        return !(distanceToLine(point, m_points[size_t(a)], m_points[size_t(b)]) > m_deviation);
    }

    double squaredLength(int a, int b) const
    {
        return m_points[size_t(a)].SquareDistance(m_points[size_t(b)]);
    }

    void splitTriangle(const Triangle& t, std::vector<Triangle>& parts)
    {
        const int middles[3] = {middleOf(t[0], t[1]), middleOf(t[1], t[2]), middleOf(t[2], t[0])};
        const auto count = std::count_if(middles, middles + 3, [](int middle) { return middle >= 0; });
        if (count == 0) {
            parts.push_back(t);
            return;
        }
        if (count == 3) {
            parts.push_back({t[0], middles[0], middles[2]});
            parts.push_back({middles[0], t[1], middles[1]});
            parts.push_back({middles[2], middles[1], t[2]});
            parts.push_back({middles[0], middles[1], middles[2]});
            return;
        }
        // Turned so that the first side is split, and of two the second one as well.
        int turn = 0;
        while (middles[turn] < 0 || (count == 2 && middles[(turn + 1) % 3] < 0))
            ++turn;
        const int a = t[size_t(turn)], b = t[size_t((turn + 1) % 3)], c = t[size_t((turn + 2) % 3)];
        const int ab = middles[turn], bc = middles[(turn + 1) % 3];
        if (count == 1) {
            parts.push_back({a, ab, c});
            parts.push_back({ab, b, c});
            return;
        }
        parts.push_back({ab, b, bc});
        if (squaredLength(a, bc) < squaredLength(ab, c)) {
            parts.push_back({a, ab, bc});
            parts.push_back({a, bc, c});
        } else {
            parts.push_back({a, ab, c});
            parts.push_back({ab, bc, c});
        }
    }

    static Polygon polygonOf(const Border& border)
    {
        std::vector<std::pair<double, int>> nodes = border.nodes;
        const bool falls = nodes.size() > 1 && nodes[1].first < nodes[0].first;
        std::stable_sort(nodes.begin(), nodes.end(), [&](const auto& a, const auto& b) {
            return falls ? a.first > b.first : a.first < b.first;
        });
        const Polygon polygon = new Poly_PolygonOnTriangulation(int(nodes.size()), true);
        for (size_t i = 0; i < nodes.size(); ++i) {
            polygon->SetNode(int(i) + 1, nodes[i].second + 1);
            polygon->SetParameter(int(i) + 1, nodes[i].first);
        }
        return polygon;
    }

    static constexpr size_t kFixed = ~size_t(0);

    TopoDS_Face m_face;
    TopLoc_Location m_location;
    BRepAdaptor_Surface m_surface;
    double m_deviation;
    std::vector<gp_Pnt> m_points;
    std::vector<gp_Pnt2d> m_places;
    std::vector<Triangle> m_triangles;
    std::vector<Border> m_borders;
    std::unordered_map<uint64_t, BorderSide> m_sides;
    std::unordered_map<uint64_t, int> m_middles;
    std::unordered_map<int, int> m_tips; ///< Nodes with the number of the parameter that says nothing there.
};

} // namespace

void splitTriangles(const TopoDS_Shape& shape, double deviation, int rounds,
                    const Message_ProgressRange& progress)
{
    const EdgeCurves edges(shape);
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    Message_ProgressScope scope(progress, nullptr, faces.Extent());
    // An edge's curve is kept as it was, so each face may be done by itself.
    for (int i = 1; i <= faces.Extent() && scope.More(); ++i, scope.Next()) {
        FaceTriangles triangles(TopoDS::Face(faces(i)), edges, deviation);
        for (int round = 0; round < rounds && triangles.split(); ++round) {
        }
        triangles.store();
    }
}

std::shared_ptr<const BodyMesh> finerMesh(const LooseBody& body, double deviation, int rounds,
                                          const Message_ProgressRange& progress)
{
    Message_ProgressScope scope(progress, nullptr, 2);
    meshShape(body.shape, {}, scope.Next(), MeshThreads::Own);
    if (scope.More())
        splitTriangles(body.shape, deviation, rounds, scope.Next());
    return scope.More() ? std::make_shared<const BodyMesh>(extractMesh(body.shape, body.colours)) : nullptr;
}

} // namespace Vs::Kernel
