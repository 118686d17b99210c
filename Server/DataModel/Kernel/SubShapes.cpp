#include "Server/DataModel/Kernel/SubShapes.h"

#include <BRep_Tool.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedDataMapOfShapeListOfShape.hxx>
#include <TopoDS.hxx>

namespace Vs::Kernel {

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

} // namespace Vs::Kernel
