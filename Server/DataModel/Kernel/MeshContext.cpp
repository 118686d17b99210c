#include "Server/DataModel/Kernel/MeshContext.h"

#include <BRepMesh_Context.hxx>
#include <BRepMesh_DelabellaMeshAlgoFactory.hxx>
#include <BRepMesh_FaceDiscret.hxx>
#include <BRepMesh_MeshAlgoFactory.hxx>
#include <BRep_Tool.hxx>
#include <IMeshData_Edge.hxx>
#include <IMeshData_Face.hxx>
#include <IMeshData_PCurve.hxx>
#include <IMeshData_Wire.hxx>
#include <Poly_Triangulation.hxx>
#include <Precision.hxx>

#include <cmath>
#include <utility>

namespace Vs::Kernel {

namespace {

// How much of its outline a face's triangles may miss, as a fraction: more than the rounding of sums.
constexpr double kTolerance = 1e-9;

double doubledArea(const gp_Pnt2d& a, const gp_Pnt2d& b, const gp_Pnt2d& c)
{
    return gp_Vec2d(a, b).Crossed(gp_Vec2d(a, c));
}

// Of greater numbers the kernel's own sums are none any more.
bool isNumber(double value)
{
    return std::isfinite(value) && !Precision::IsInfinite(value);
}

// The polygons' that the triangles have to fill; holes count against what lies around them. 0 if there are
// none, or damaged ones.
double outlineArea(const IMeshData::IFaceHandle& face)
{
    gp_Pnt2d origin;
    bool first = true;
    double area = 0;
    for (int i = 0; i < face->WiresNb(); ++i) {
        const IMeshData::IWireHandle& wire = face->GetWire(i);
        for (int k = 0; k < wire->EdgesNb(); ++k) {
            const IMeshData::IPCurveHandle& line =
                wire->GetEdge(k)->GetPCurve(face.get(), wire->GetEdgeOrientation(k));
            for (int n = 0; n < line->ParametersNb(); ++n)
                if (!isNumber(line->GetPoint(n).X()) || !isNumber(line->GetPoint(n).Y()))
                    return 0;
            if (line->ParametersNb() < 1)
                return 0;
            if (std::exchange(first, false))
                origin = line->GetPoint(0);
            double swept = 0;
            for (int n = 1; n < line->ParametersNb(); ++n)
                swept += doubledArea(origin, line->GetPoint(n - 1), line->GetPoint(n));
            area += line->IsForward() ? swept : -swept;
        }
    }
    return std::abs(area) / 2;
}

double trianglesArea(const Poly_Triangulation& mesh)
{
    double area = 0;
    for (int i = 1; i <= mesh.NbTriangles(); ++i) {
        int a, b, c;
        mesh.Triangle(i).Get(a, b, c);
        area += std::abs(doubledArea(mesh.UVNode(a), mesh.UVNode(b), mesh.UVNode(c)));
    }
    return area / 2;
}

bool isFilled(const IMeshData::IFaceHandle& face, double whole)
{
    TopLoc_Location location;
    const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face->GetFace(), location);
    if (mesh.IsNull() || !mesh->HasUVNodes())
        return false;
    return std::abs(trianglesArea(*mesh) - whole) <= kTolerance * whole;
}

// Takes the quick algorithm's triangles if they fill the outline, and the sure one's otherwise: where points
// lie closer together than the kernel can tell apart, the quick one leaves some out. Where there is nothing
// to fill, or the points are no numbers, it would break down.
class PlaneMesh : public IMeshTools_MeshAlgo
{
public:
    PlaneMesh(const Handle(IMeshTools_MeshAlgo) & quick, const Handle(IMeshTools_MeshAlgo) & sure)
        : m_quick(quick), m_sure(sure)
    {
    }
    void Perform(const IMeshData::IFaceHandle& face, const IMeshTools_Parameters& parameters,
                 const Message_ProgressRange& range) override
    {
        if (!range.More())
            return;
        if (const double whole = outlineArea(face); whole > 0) {
            const int status = face->GetStatusMask();
            m_quick->Perform(face, parameters, {});
            if (isFilled(face, whole))
                return;
            face->UnsetStatus(static_cast<IMeshData_Status>(face->GetStatusMask() & ~status));
        }
        m_sure->Perform(face, parameters, range);
    }

private:
    Handle(IMeshTools_MeshAlgo) m_quick, m_sure;
};

class WatchedMesh : public IMeshTools_MeshAlgo
{
public:
    WatchedMesh(const Handle(IMeshTools_MeshAlgo) & usual, const FaceWatch& watch)
        : m_usual(usual), m_watch(watch)
    {
    }
    void Perform(const IMeshData::IFaceHandle& face, const IMeshTools_Parameters& parameters,
                 const Message_ProgressRange& range) override
    {
        m_watch(face->GetFace());
        m_usual->Perform(face, parameters, range);
    }

private:
    Handle(IMeshTools_MeshAlgo) m_usual;
    const FaceWatch& m_watch;
};

class Algorithms : public BRepMesh_MeshAlgoFactory
{
public:
    explicit Algorithms(FaceWatch watch) : m_watch(std::move(watch)) {}

    Handle(IMeshTools_MeshAlgo)
        GetAlgo(const GeomAbs_SurfaceType surface, const IMeshTools_Parameters& parameters) const override
    {
        Handle(IMeshTools_MeshAlgo) usual = BRepMesh_MeshAlgoFactory::GetAlgo(surface, parameters);
        if (surface == GeomAbs_Plane)
            usual = new PlaneMesh(m_quick.GetAlgo(surface, parameters), usual);
        if (m_watch && !usual.IsNull())
            return new WatchedMesh(usual, m_watch);
        return usual;
    }

private:
    BRepMesh_DelabellaMeshAlgoFactory m_quick;
    FaceWatch m_watch;
};

} // namespace

Handle(IMeshTools_Context) meshContext(FaceWatch watch)
{
    Handle(IMeshTools_Context) context = new BRepMesh_Context;
    context->SetFaceDiscret(new BRepMesh_FaceDiscret(new Algorithms(std::move(watch))));
    return context;
}

} // namespace Vs::Kernel
