#include "Server/DataModel/Kernel/HiddenLines.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepBndLib.hxx>
#include <BRepLib.hxx>
#include <Bnd_Box.hxx>
#include <GCPnts_QuasiUniformDeflection.hxx>
#include <HLRAlgo_Projector.hxx>
#include <HLRBRep_Algo.hxx>
#include <HLRBRep_HLRToShape.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>

#include <algorithm>
#include <cmath>

namespace Vs::Kernel {

namespace {

constexpr double kDeflection = 1.0 / 2000;

void addLines(TopoDS_Shape edges, bool hidden, bool smooth, double deflection, LineDrawing& drawing)
{
    if (edges.IsNull())
        return;
    // They come as curves in the plane of the picture.
    BRepLib::BuildCurves3d(edges);
    for (TopExp_Explorer explorer(edges, TopAbs_EDGE); explorer.More(); explorer.Next()) {
        const BRepAdaptor_Curve curve(TopoDS::Edge(explorer.Current()));
        const GCPnts_QuasiUniformDeflection points(curve, deflection);
        if (!points.IsDone() || points.NbPoints() < 2)
            continue;
        LineDrawing::Line line{hidden, smooth, {}};
        for (int i = 1; i <= points.NbPoints(); ++i)
            line.points.emplace_back(points.Value(i).X(), points.Value(i).Y());
        drawing.lines.push_back(std::move(line));
    }
}

double sizeOf(const std::vector<TopoDS_Shape>& shapes)
{
    Bnd_Box box;
    for (const TopoDS_Shape& shape : shapes)
        BRepBndLib::Add(shape, box);
    return box.IsVoid() ? 1.0 : std::max(1e-6, std::sqrt(box.SquareExtent()));
}

} // namespace

LineDrawing hiddenLines(const std::vector<TopoDS_Shape>& shapes, const GkVector3d& direction,
                        const GkVector3d& up, bool hidden)
{
    const Handle(HLRBRep_Algo) algorithm = new HLRBRep_Algo;
    for (const TopoDS_Shape& shape : shapes)
        algorithm->Add(shape);
    const GkVector3d right = direction.crossProduct(up).normal();
    algorithm->Projector(HLRAlgo_Projector(gp_Ax2(
        gp::Origin(), gp_Dir(-direction.x, -direction.y, -direction.z), gp_Dir(right.x, right.y, right.z))));
    algorithm->Update();
    algorithm->Hide();
    HLRBRep_HLRToShape found(algorithm);
    const double deflection = sizeOf(shapes) * kDeflection;
    LineDrawing drawing;
    addLines(found.VCompound(), false, false, deflection, drawing);
    addLines(found.OutLineVCompound(), false, false, deflection, drawing);
    addLines(found.Rg1LineVCompound(), false, true, deflection, drawing);
    if (hidden) {
        addLines(found.HCompound(), true, false, deflection, drawing);
        addLines(found.OutLineHCompound(), true, false, deflection, drawing);
    }
    return drawing;
}

} // namespace Vs::Kernel
