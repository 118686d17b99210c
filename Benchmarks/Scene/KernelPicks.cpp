#include "Benchmarks/Scene/KernelPicks.h"

#include <Bnd_Box.hxx>
#include <Geom_Curve.hxx>
#include <Graphic3d_Camera.hxx>
#include <Poly_Triangulation.hxx>
#include <Select3D_SensitiveCurve.hxx>
#include <Select3D_SensitiveTriangulation.hxx>
#include <SelectMgr_EntityOwner.hxx>
#include <SelectMgr_SelectableObject.hxx>
#include <SelectMgr_Selection.hxx>
#include <SelectMgr_SelectionManager.hxx>
#include <SelectMgr_ViewerSelector.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <gp_Trsf.hxx>

#include <vector>

namespace BenchScene {

namespace {

/// What the parts of one mesh share.
struct Shape
{
    std::vector<Handle(Poly_Triangulation)> faces;
    std::vector<std::vector<gp_Pnt>> edges;
    Bnd_Box box;
};

Handle(Poly_Triangulation) triangulationOf(const Vs::BodyMesh& mesh, const Vs::BodyMesh::Face& face)
{
    const int count = int(face.triangleCount);
    Handle(Poly_Triangulation) result = new Poly_Triangulation(3 * count, count, false);
    for (int i = 0; i < 3 * count; ++i) {
        const float* p =
            &mesh.positions[3 * size_t(mesh.triangles[3 * size_t(face.firstTriangle) + size_t(i)])];
        result->SetNode(i + 1, gp_Pnt(p[0], p[1], p[2]));
    }
    for (int i = 0; i < count; ++i)
        result->SetTriangle(i + 1, Poly_Triangle(3 * i + 1, 3 * i + 2, 3 * i + 3));
    return result;
}

Shape shapeOf(const Vs::BodyMesh& mesh)
{
    Shape shape;
    for (const GkPoint3d& corner : {mesh.bounds.low(), mesh.bounds.high()})
        shape.box.Add(gp_Pnt(corner.x, corner.y, corner.z));
    std::vector<Vs::BodyMesh::Face> faces = mesh.faces;
    if (faces.empty())
        faces.push_back({0, uint32_t(mesh.triangles.size() / 3), -1});
    for (const Vs::BodyMesh::Face& face : faces)
        if (face.triangleCount > 0)
            shape.faces.push_back(triangulationOf(mesh, face));
    for (size_t edge = 0; edge + 1 < mesh.edgeStarts.size(); ++edge) {
        std::vector<gp_Pnt> points;
        for (size_t i = mesh.edgeStarts[edge]; i < mesh.edgeStarts[edge + 1]; ++i)
            points.emplace_back(mesh.edgePoints[3 * i], mesh.edgePoints[3 * i + 1],
                                mesh.edgePoints[3 * i + 2]);
        if (points.size() > 1)
            shape.edges.push_back(std::move(points));
    }
    return shape;
}

class PartObject : public SelectMgr_SelectableObject
{
public:
    explicit PartObject(const Shape& shape) : m_shape(shape) {}
    void BoundingBox(Bnd_Box& box) override { box = m_shape.box.Transformed(Transformation()); }

private:
    void Compute(const Handle(PrsMgr_PresentationManager) &, const Handle(Prs3d_Presentation) &,
                 const Standard_Integer) override
    {
    }
    void ComputeSelection(const Handle(SelectMgr_Selection) & selection, const Standard_Integer) override
    {
        constexpr int kFacePriority = 4, kEdgePriority = 6;
        for (const Handle(Poly_Triangulation) & face : m_shape.faces)
            selection->Add(new Select3D_SensitiveTriangulation(new SelectMgr_EntityOwner(this, kFacePriority),
                                                               face, TopLoc_Location(), true));
        for (const std::vector<gp_Pnt>& edge : m_shape.edges) {
            TColgp_Array1OfPnt points(1, int(edge.size()));
            for (size_t i = 0; i < edge.size(); ++i)
                points(int(i) + 1) = edge[i];
            selection->Add(
                new Select3D_SensitiveCurve(new SelectMgr_EntityOwner(this, kEdgePriority), points));
        }
    }

    const Shape& m_shape;
};

/// A selector without a window.
class Selector : public SelectMgr_ViewerSelector
{
public:
    Selector(const Handle(Graphic3d_Camera) & camera, int width, int height, int tolerance)
        : m_camera(camera), m_width(width), m_height(height), m_tolerance(tolerance)
    {
        SetPixelTolerance(tolerance);
    }
    bool pick(double x, double y)
    {
        mySelectingVolumeMgr.InitPointSelectingVolume(gp_Pnt2d(x, y));
        mySelectingVolumeMgr.SetCamera(m_camera);
        mySelectingVolumeMgr.SetWindowSize(m_width, m_height);
        mySelectingVolumeMgr.SetPixelTolerance(m_tolerance);
        mySelectingVolumeMgr.BuildSelectingVolume();
        TraverseSensitives();
        return NbPicked() > 0;
    }

private:
    Handle(Graphic3d_Camera) m_camera;
    int m_width, m_height, m_tolerance;
};

gp_Trsf placement(const GkMatrix3d& m)
{
    gp_Trsf trsf;
    trsf.SetValues(m.entry[0][0], m.entry[0][1], m.entry[0][2], m.entry[0][3], m.entry[1][0], m.entry[1][1],
                   m.entry[1][2], m.entry[1][3], m.entry[2][0], m.entry[2][1], m.entry[2][2], m.entry[2][3]);
    return trsf;
}

Handle(Graphic3d_Camera) kernelCamera(const Vs::Scene::Camera& camera, const Vs::Scene::Projection& view)
{
    const auto pointOf = [](const GkPoint3d& p) { return gp_Pnt(p.x, p.y, p.z); };
    Handle(Graphic3d_Camera) result = new Graphic3d_Camera;
    result->SetProjectionType(Graphic3d_Camera::Projection_Orthographic);
    result->SetEyeAndCenter(pointOf(camera.position()), pointOf(camera.target()));
    result->SetUp(gp_Dir(camera.up().x, camera.up().y, camera.up().z));
    result->SetAspect(view.width() / view.height());
    result->SetScale(2 * view.halfHeight());
    result->SetZRange(view.clipNear(), view.clipFar());
    return result;
}

} // namespace

struct KernelPicks::Data
{
    std::vector<Shape> shapes;
    Handle(Selector) selector;
    Handle(SelectMgr_SelectionManager) manager;
    double height = 0;
};

KernelPicks::KernelPicks(const Scene& scene, const Vs::Scene::Camera& camera,
                         const Vs::Scene::Projection& view, double tolerance)
    : m_data(std::make_unique<Data>())
{
    for (const auto& mesh : scene.meshes)
        m_data->shapes.push_back(mesh ? shapeOf(*mesh) : Shape());
    m_data->height = view.height();
    m_data->selector =
        new Selector(kernelCamera(camera, view), int(view.width()), int(view.height()), int(tolerance));
    m_data->manager = new SelectMgr_SelectionManager(m_data->selector);
    for (const Part& part : scene.parts) {
        Handle(PartObject) object = new PartObject(m_data->shapes[size_t(part.mesh)]);
        object->SetLocalTransformation(placement(part.placement));
        m_data->manager->Load(object, 0);
        m_data->manager->Activate(object, 0);
    }
}

KernelPicks::~KernelPicks() = default;

bool KernelPicks::pick(double x, double y)
{
    return m_data->selector->pick(x, m_data->height - y);
}

} // namespace BenchScene
