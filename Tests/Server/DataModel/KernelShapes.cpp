#include "Tests/Server/DataModel/KernelShapes.h"

#include <BRepAlgoAPI_Cut.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepBuilderAPI_NurbsConvert.hxx>
#include <BRepExtrema_DistShapeShape.hxx>
#include <BRepFilletAPI_MakeFillet.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <GeomConvert.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_Line.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_ListOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Shell.hxx>
#include <TopoDS_Solid.hxx>
#include <TopoDS_Wire.hxx>
#include <gp_Elips.hxx>
#include <gp_Pln.hxx>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <initializer_list>
#include <numbers>

namespace KernelShapes {

namespace {

void write(const TopoDS_Shape& shape, const std::string& path)
{
    ASSERT_TRUE(BRepTools::Write(shape, path.c_str()));
}

TopoDS_Shape together(std::initializer_list<TopoDS_Shape> shapes)
{
    TopoDS_Compound compound;
    const BRep_Builder builder;
    builder.MakeCompound(compound);
    for (const TopoDS_Shape& shape : shapes)
        builder.Add(compound, shape);
    return compound;
}

gp_Trsf motionOf(const GkMatrix3d& place)
{
    gp_Trsf motion;
    const auto& e = place.entry;
    motion.SetValues(e[0][0], e[0][1], e[0][2], e[0][3], e[1][0], e[1][1], e[1][2], e[1][3], e[2][0], e[2][1],
                     e[2][2], e[2][3]);
    return motion;
}

TopoDS_Shape straightSpline(const gp_Dir& direction)
{
    const Handle(Geom_TrimmedCurve) line =
        new Geom_TrimmedCurve(new Geom_Line(gp::Origin(), direction), 0, 8);
    return BRepBuilderAPI_MakeEdge(GeomConvert::CurveToBSplineCurve(line)).Edge();
}

} // namespace

void writeCone(const std::string& path)
{
    write(BRepPrimAPI_MakeCone(gp_Ax2(gp_Pnt(1, 2, 3), gp_Dir(0, 3, 4)), 6, 2, 10).Solid(), path);
}

void writeHexagon(const std::string& path)
{
    BRepBuilderAPI_MakePolygon outline;
    for (int i = 0; i < 6; ++i)
        outline.Add(
            gp_Pnt(10 * std::cos(i * std::numbers::pi / 3), 10 * std::sin(i * std::numbers::pi / 3), 0));
    outline.Close();
    write(BRepPrimAPI_MakePrism(BRepBuilderAPI_MakeFace(outline.Wire()).Face(), gp_Vec(0, 0, 5)).Shape(),
          path);
}

void writeHollowTorus(const std::string& path)
{
    write(BRepAlgoAPI_Cut(BRepPrimAPI_MakeTorus(10, 4).Solid(), BRepPrimAPI_MakeTorus(10, 3).Solid()).Shape(),
          path);
}

void writeRoundSplines(const std::string& path)
{
    const TopoDS_Shape exact =
        together({BRepPrimAPI_MakeSphere(5).Solid(), BRepPrimAPI_MakeTorus(30, 3).Solid(),
                  BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(50, 0, 0), gp::DZ()), 4, 10).Solid(),
                  BRepPrimAPI_MakeCone(gp_Ax2(gp_Pnt(100, 0, 0), gp::DX()), 6, 2, 10).Solid()});
    write(BRepBuilderAPI_NurbsConvert(exact, true).Shape(), path);
}

void writeExtrudedEllipses(const std::string& path)
{
    const auto extruded = [](double x) {
        const gp_Elips ellipse(gp_Ax2(gp_Pnt(x, 0, 0), gp::DZ()), 5, 2);
        const TopoDS_Wire wire = BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(ellipse)).Wire();
        return BRepPrimAPI_MakePrism(BRepBuilderAPI_MakeFace(gp_Pln(), wire).Face(), gp_Vec(0, 0, 20))
            .Shape();
    };
    write(together({extruded(0), BRepBuilderAPI_NurbsConvert(extruded(20), true).Shape()}), path);
}

void writePlanes(const std::string& path)
{
    const auto plane = [](double z) {
        return BRepBuilderAPI_MakeFace(gp_Pln(gp_Pnt(0, 0, z), gp::DZ()), -10, 10, -10, 10).Face();
    };
    write(together({plane(0), plane(10)}), path);
}

void writePerforatedPlane(const std::string& path)
{
    const gp_Ax3 axes(gp_Pnt(100, 200, 300), gp_Dir(1, 2, 3));
    gp_Trsf place;
    place.SetTransformation(axes, gp::XOY());
    const auto rectangle = [&](double x, double y, double width, double height) {
        return BRepBuilderAPI_MakePolygon(gp_Pnt(x, y, 0).Transformed(place),
                                          gp_Pnt(x, y + height, 0).Transformed(place),
                                          gp_Pnt(x + width, y + height, 0).Transformed(place),
                                          gp_Pnt(x + width, y, 0).Transformed(place), true)
            .Wire();
    };
    BRepBuilderAPI_MakeFace face(gp_Pln(axes), TopoDS::Wire(rectangle(0, 0, 40, 20).Reversed()));
    for (int i = 0; i < 40; ++i)
        for (int k = 0; k < 20; ++k) {
            const double side = 0.1 + 0.8 * (i * 20 + k) / 799;
            face.Add(rectangle(i + (1 - side) / 2, k + (1 - side) / 2, side, side));
        }
    write(face.Face(), path);
}

void writeEdges(const std::string& path)
{
    write(together({BRepBuilderAPI_MakeEdge(gp::Origin(), gp_Pnt(5, 0, 0)).Edge(),
                    BRepBuilderAPI_MakeEdge(gp::Origin(), gp_Pnt(0, 5, 0)).Edge(), straightSpline(gp::DX()),
                    straightSpline(gp_Dir(1, 1, 0)),
                    BRepBuilderAPI_MakeFace(gp_Pln(gp_Pnt(0, 0, -10), gp::DZ()), 0, 5, 0, 5).Face()}),
          path);
}

void writeOpenSolid(const std::string& path)
{
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(10, 10, 10).Solid();
    TopoDS_Shell shell;
    TopoDS_Solid solid;
    const BRep_Builder builder;
    builder.MakeShell(shell);
    int faces = 0;
    for (TopExp_Explorer each(box, TopAbs_FACE); each.More(); each.Next())
        if (++faces < 6)
            builder.Add(shell, each.Current());
    builder.MakeSolid(solid);
    builder.Add(solid, shell);
    write(solid, path);
}

void writeSeveralSolids(const std::string& path)
{
    write(together({BRepPrimAPI_MakeBox(10, 10, 10).Solid(),
                    BRepPrimAPI_MakeCone(gp_Ax2(gp_Pnt(30, 0, 0), gp::DZ()), 6, 2, 10).Solid()}),
          path);
}

void writeMixed(const std::string& path)
{
    const Handle(Poly_Triangulation) mesh = new Poly_Triangulation(4, 2, false);
    for (int i = 0; i < 4; ++i)
        mesh->SetNode(i + 1, gp_Pnt(20 + 5 * (i % 2), 5 * (i / 2), 1));
    mesh->SetTriangle(1, Poly_Triangle(1, 2, 4));
    mesh->SetTriangle(2, Poly_Triangle(1, 4, 3));
    TopoDS_Face face;
    BRep_Builder().MakeFace(face, mesh);
    write(together({BRepPrimAPI_MakeBox(10, 10, 10).Solid(), face}), path);
}

void writeDegenerate(const std::string& path)
{
    TopoDS_Edge edge;
    const BRep_Builder builder;
    builder.MakeEdge(edge, new Geom_Line(gp::Origin(), gp::DX()), 1e-7);
    builder.Range(edge, 0, 1e-8);
    write(together({BRepBuilderAPI_MakeFace(gp_Pln(gp::XOY()), 0, 10, 0, 10).Face(), edge}), path);
}

double writeRoundedPair(const std::string& path, const GkMatrix3d& place, bool asSplines)
{
    TopoDS_Shape plate = BRepPrimAPI_MakeBox(20, 12, 4).Shape();
    for (const double x : {5, 14})
        plate = BRepAlgoAPI_Cut(plate, BRepPrimAPI_MakeCylinder(gp_Ax2({x, 6, -1}, gp::DZ()), 2, 6).Shape());
    const TopoDS_Shape drilled = TopExp_Explorer(plate, TopAbs_SOLID).Current();
    BRepFilletAPI_MakeFillet rounding(drilled);
    for (TopExp_Explorer edge(drilled, TopAbs_EDGE); edge.More(); edge.Next())
        rounding.Add(0.8, TopoDS::Edge(edge.Current()));
    TopoDS_Shape rounded = TopExp_Explorer(rounding.Shape(), TopAbs_SOLID).Current();
    if (asSplines)
        rounded = BRepBuilderAPI_NurbsConvert(rounded, true).Shape();
    const TopoDS_Shape moved = rounded.Moved(motionOf(place));
    write(together({rounded, moved}), path);
    return BRepExtrema_DistShapeShape(rounded, moved).Value();
}

std::vector<double> distancesFromPlate(const std::vector<Hole>& holes, const std::vector<Placed>& others)
{
    TopTools_ListOfShape plate, drills;
    plate.Append(BRepPrimAPI_MakeBox(100, 100, 4).Shape());
    for (const Hole& hole : holes)
        drills.Append(
            BRepPrimAPI_MakeCylinder(gp_Ax2({hole.x, hole.y, -3}, gp::DZ()), hole.radius, 10).Shape());
    BRepAlgoAPI_Cut cut;
    cut.SetArguments(plate);
    cut.SetTools(drills);
    cut.Build();
    // What is inside a solid has distance zero from it; for a compound the kernel doesn't know that.
    const TopoDS_Shape drilled = TopExp_Explorer(cut.Shape(), TopAbs_SOLID).Current();
    std::vector<double> distances;
    for (const auto& [kind, sizes, place] : others) {
        // The kernel's search sometimes misses the nearest point of a sphere, but never that of its centre.
        const bool isSphere = kind == Placed::Kind::Sphere;
        const TopoDS_Shape shape = isSphere ? BRepBuilderAPI_MakeVertex(gp::Origin()).Shape()
                                   : kind == Placed::Kind::Box
                                       ? BRepPrimAPI_MakeBox(sizes[0], sizes[1], sizes[2]).Shape()
                                       : BRepPrimAPI_MakeCylinder(sizes[0], sizes[1]).Shape();
        const double distance = BRepExtrema_DistShapeShape(drilled, shape.Moved(motionOf(place))).Value();
        distances.push_back(isSphere ? std::max(distance - sizes[0], 0.0) : distance);
    }
    return distances;
}

} // namespace KernelShapes
