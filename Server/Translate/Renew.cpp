#include "Server/Translate/Renew.h"

#include "Server/DataModel/Kernel/Mesher.h"
#include "Server/DataModel/Kernel/XdeTree.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Server/Translate/MappedFile.h"
#include "Server/Translate/Reading.h"

#include <BRep_Tool.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>

#include <sstream>

namespace Vs::Translate {

namespace {

void checkTriangles(const Poly_Triangulation& triangulation)
{
    const int nodes = triangulation.NbNodes();
    for (int i = 1; i <= triangulation.NbTriangles(); ++i) {
        int a, b, c;
        triangulation.Triangle(i).Get(a, b, c);
        for (const int node : {a, b, c})
            if (node < 1 || node > nodes)
                throw Unreadable("its triangles are of points that aren't there");
    }
}

// The kernel passes on the indices of points as they are in the file, and code that looks a point up trusts
// them.
void checkTriangles(const TopoDS_Face& face)
{
    TopLoc_Location location;
    const Handle(Poly_Triangulation)& triangulation = BRep_Tool::Triangulation(face, location);
    if (triangulation.IsNull())
        return;
    checkTriangles(*triangulation);
    for (TopExp_Explorer edges(face, TopAbs_EDGE); edges.More(); edges.Next()) {
        const Handle(Poly_PolygonOnTriangulation)& line =
            BRep_Tool::PolygonOnTriangulation(TopoDS::Edge(edges.Current()), triangulation, location);
        for (int i = 1; !line.IsNull() && i <= line->NbNodes(); ++i)
            if (line->Node(i) < 1 || line->Node(i) > triangulation->NbNodes())
                throw Unreadable("its edges are of points that aren't there");
    }
}

// Does here first what the program does with each part of a model that is opened.
void look(const Kernel::XdeTree& tree, Reporter& reporter)
{
    for (size_t i = 0; i < tree.shapes.size(); ++i) {
        reporter.progress(double(i) / double(tree.shapes.size()));
        if (tree.shapes[i].IsNull())
            continue;
        for (TopExp_Explorer faces(tree.shapes[i], TopAbs_FACE); faces.More(); faces.Next())
            checkTriangles(TopoDS::Face(faces.Current()));
        Kernel::extractMesh(tree.shapes[i], tree.colours[i]);
    }
}

} // namespace

void renewData(const std::string& path, const std::string& modelPath, Reporter& reporter)
{
    reporter.stage("reading the model", 0.0, 0.5);
    const MappedFile file(path);
    Kernel::XdeModel model(file.bytes());
    reporter.stage("looking at the parts", 0.5, 0.8);
    look(Kernel::readXdeTree(model.document()), reporter);
    reporter.stage("storing the model", 0.8, 1.0);
    ModelFileWriter writer(modelPath);
    writer.writeIndex({}, {});
    std::ostringstream exact;
    model.write(exact);
    writer.addKernelData(exact.view());
    writer.finish();
}

} // namespace Vs::Translate
