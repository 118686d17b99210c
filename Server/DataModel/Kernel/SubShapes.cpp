#include "Server/DataModel/Kernel/SubShapes.h"

#include "Server/DataModel/Kernel/TriangleParts.h"
#include "Server/DataModel/Model/ModelKernel.h"

#include <BRepTools.hxx>
#include <BRep_Tool.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedDataMapOfShapeListOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_Wire.hxx>

namespace Vs::Kernel {

namespace {

/// In the order of an explorer of faces. `next` is the number of the next solid.
void numberFaces(const TopoDS_Shape& shape, uint32_t solid, uint32_t& next, std::vector<uint32_t>& solids)
{
    if (shape.ShapeType() == TopAbs_FACE) {
        solids.push_back(solid);
        return;
    }
    if (shape.ShapeType() == TopAbs_SOLID)
        solid = next++;
    for (TopoDS_Iterator parts(shape); parts.More(); parts.Next())
        if (parts.Value().ShapeType() <= TopAbs_FACE)
            numberFaces(parts.Value(), solid, next, solids);
}

/// The numbers of the shapes of one kind that a shape is bounded by, each once.
std::vector<uint32_t> numbersIn(const TopoDS_Shape& shape, TopAbs_ShapeEnum kind,
                                const TopTools_IndexedMapOfShape& numbered)
{
    std::vector<uint32_t> numbers;
    TopTools_IndexedMapOfShape parts;
    TopExp::MapShapes(shape, kind, parts);
    for (int i = 1; i <= parts.Extent(); ++i)
        if (const int number = numbered.FindIndex(parts(i)); number > 0)
            numbers.push_back(uint32_t(number - 1));
    return numbers;
}

} // namespace

std::vector<VisibleEdge> visibleEdges(const TopoDS_Shape& shape)
{
    TopTools_IndexedDataMapOfShapeListOfShape facesOfEdge;
    TopExp::MapShapesAndAncestors(shape, TopAbs_EDGE, TopAbs_FACE, facesOfEdge);
    std::vector<VisibleEdge> result;
    for (int i = 1; i <= facesOfEdge.Extent(); ++i) {
        const TopoDS_Edge& edge = TopoDS::Edge(facesOfEdge.FindKey(i));
        const TopTools_ListOfShape& faces = facesOfEdge(i);
        if (BRep_Tool::Degenerated(edge) ||
            (!faces.IsEmpty() && BRep_Tool::IsClosed(edge, TopoDS::Face(faces.First()))))
            continue;
        result.push_back({edge, faces});
    }
    return result;
}

SubShapes::SubShapes(const TopoDS_Shape& shape) : m_shape(shape)
{
    for (TopExp_Explorer solids(shape, TopAbs_SOLID); solids.More(); solids.Next())
        m_solids.push_back(solids.Current());
    if (isOfTriangles(shape)) {
        const TriangleParts parts(shape);
        m_faces = parts.faces;
        m_loops = parts.loops;
        for (const TopoDS_Shape& edge : parts.edges)
            m_edges.Add(edge);
        for (const TopoDS_Shape& vertex : parts.vertices)
            m_vertices.Add(vertex);
        return;
    }
    // A face that two solids share is met twice, as in the mesh.
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next())
        m_faces.push_back(faces.Current());
    for (const VisibleEdge& visible : visibleEdges(shape))
        m_edges.Add(visible.edge);
    TopExp::MapShapes(shape, TopAbs_VERTEX, m_vertices);
}

TopoDS_Shape SubShapes::part(ObjectPath::Leaf leaf, uint32_t index) const
{
    if (leaf == ObjectPath::Leaf::Body)
        return m_shape;
    if (leaf == ObjectPath::Leaf::Solid)
        return index < m_solids.size() ? m_solids[index] : TopoDS_Shape();
    if (leaf == ObjectPath::Leaf::Face)
        return index < m_faces.size() ? m_faces[index] : TopoDS_Shape();
    const TopTools_IndexedMapOfShape& map = leaf == ObjectPath::Leaf::Edge ? m_edges : m_vertices;
    return int64_t(index) < map.Extent() ? map(int(index) + 1) : TopoDS_Shape();
}

std::vector<uint32_t> SubShapes::solidsOfFaces() const
{
    std::vector<uint32_t> solids;
    uint32_t last = 0;
    numberFaces(m_shape, ModelKernel::kNoSolid, last, solids);
    return solids;
}

uint32_t SubShapes::count(ObjectPath::Leaf leaf) const
{
    switch (leaf) {
    case ObjectPath::Leaf::Solid:
        return static_cast<uint32_t>(m_solids.size());
    case ObjectPath::Leaf::Face:
        return static_cast<uint32_t>(m_faces.size());
    case ObjectPath::Leaf::Edge:
        return static_cast<uint32_t>(m_edges.Extent());
    case ObjectPath::Leaf::Vertex:
        return static_cast<uint32_t>(m_vertices.Extent());
    default:
        return 1;
    }
}

std::vector<uint32_t> SubShapes::edgesOf(uint32_t face) const
{
    return face < m_loops.size() ? m_loops[face] : numbersIn(m_faces.at(face), TopAbs_EDGE, m_edges);
}

std::vector<uint32_t> SubShapes::verticesOf(uint32_t edge) const
{
    return numbersIn(m_edges(int(edge) + 1), TopAbs_VERTEX, m_vertices);
}

std::vector<uint32_t> SubShapes::loop(const TopoDS_Face& face) const
{
    for (size_t i = 0; i < m_loops.size(); ++i)
        if (m_faces[i].IsSame(face))
            return m_loops[i];
    std::vector<uint32_t> numbers;
    const TopoDS_Wire wire = BRepTools::OuterWire(face);
    if (wire.IsNull())
        return numbers;
    for (TopExp_Explorer edges(wire, TopAbs_EDGE); edges.More(); edges.Next())
        if (const int number = m_edges.FindIndex(edges.Current()); number > 0)
            numbers.push_back(uint32_t(number - 1));
    return numbers;
}

} // namespace Vs::Kernel
