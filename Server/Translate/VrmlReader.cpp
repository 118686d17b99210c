#include "Server/Translate/VrmlReader.h"

#include "Server/Translate/Beside.h"
#include "Server/Translate/MeshParts.h"
#include "Server/Translate/VrmlFiles.h"

#include <Quantity_ColorRGBA.hxx>

#include <BRepBuilderAPI_GTransform.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Geom_Surface.hxx>
#include <Poly_Triangulation.hxx>
#include <TDataStd_Name.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>
#include <VrmlData_Appearance.hxx>
#include <VrmlData_Box.hxx>
#include <VrmlData_Cone.hxx>
#include <VrmlData_Cylinder.hxx>
#include <VrmlData_Group.hxx>
#include <VrmlData_Material.hxx>
#include <VrmlData_Scene.hxx>
#include <VrmlData_ShapeNode.hxx>
#include <VrmlData_Sphere.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <gp.hxx>
#include <gp_GTrsf.hxx>

#include <map>
#include <numbers>
#include <utility>

namespace Vs::Translate {

namespace {

constexpr double kMillimetresInMetre = 1000;

/// Depth of inlined files. Each level costs several calls on the stack, and no real file has so many.
constexpr int kMostFilesAround = 200;

// The kernel returns the simple solids as shells whose faces don't agree on what is outside; they are
// rebuilt.
TopoDS_Shape shapeOf(const Handle(VrmlData_Geometry) & geometry)
{
    const auto standing = [](double height) { return gp_Ax2(gp_Pnt(0, -height / 2, 0), gp::DY()); };
    if (const auto box = Handle(VrmlData_Box)::DownCast(geometry); !box.IsNull()) {
        const gp_XYZ& size = box->Size();
        return BRepPrimAPI_MakeBox(gp_Pnt(size / -2), size.X(), size.Y(), size.Z()).Shape();
    }
    if (const auto sphere = Handle(VrmlData_Sphere)::DownCast(geometry); !sphere.IsNull())
        return BRepPrimAPI_MakeSphere(sphere->Radius()).Shape();
    if (const auto cylinder = Handle(VrmlData_Cylinder)::DownCast(geometry); !cylinder.IsNull())
        return BRepPrimAPI_MakeCylinder(standing(cylinder->Height()), cylinder->Radius(), cylinder->Height())
            .Shape();
    if (const auto cone = Handle(VrmlData_Cone)::DownCast(geometry); !cone.IsNull())
        return BRepPrimAPI_MakeCone(standing(cone->Height()), cone->BottomRadius(), 0, cone->Height())
            .Shape();
    TopoDS_Shape shape;
    shape.TShape(geometry->TShape());
    return shape;
}

bool isOfTriangles(const TopoDS_Shape& shape)
{
    const TopExp_Explorer faces(shape, TopAbs_FACE);
    TopLoc_Location location;
    return faces.More() && BRep_Tool::Surface(TopoDS::Face(faces.Current()), location).IsNull();
}

// Which side of a triangle is the outside follows from the order of its corners, which mirroring reverses.
Handle(Poly_Triangulation) stretched(const Poly_Triangulation& mesh, const gp_GTrsf& motion)
{
    Handle(Poly_Triangulation) image =
        new Poly_Triangulation(mesh.NbNodes(), mesh.NbTriangles(), false, mesh.HasNormals());
    const gp_Mat ofNormals = motion.VectorialPart().Inverted().Transposed();
    const bool mirrors = motion.VectorialPart().Determinant() < 0;
    for (int i = 1; i <= mesh.NbNodes(); ++i) {
        gp_XYZ place = mesh.Node(i).XYZ();
        motion.Transforms(place);
        image->SetNode(i, place);
        if (!mesh.HasNormals())
            continue;
        const gp_XYZ normal = mesh.Normal(i).XYZ() * ofNormals;
        image->SetNormal(i, normal.Modulus() > gp::Resolution() ? gp_Dir(normal) : mesh.Normal(i));
    }
    for (int i = 1; i <= mesh.NbTriangles(); ++i) {
        int a, b, c;
        mesh.Triangle(i).Get(a, b, c);
        if (mirrors)
            std::swap(b, c);
        image->SetTriangle(i, Poly_Triangle(a, b, c));
    }
    return image;
}

TopoDS_Shape stretched(const TopoDS_Shape& shape, const gp_GTrsf& motion)
{
    if (!isOfTriangles(shape))
        return BRepBuilderAPI_GTransform(shape, motion, true).Shape();
    const BRep_Builder builder;
    TopoDS_Compound all;
    builder.MakeCompound(all);
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& mesh =
            BRep_Tool::Triangulation(TopoDS::Face(faces.Current()), location);
        if (mesh.IsNull())
            continue;
        TopoDS_Face face;
        builder.MakeFace(face);
        builder.UpdateFace(face, stretched(*mesh, motion.Multiplied(affine(location.Transformation()))));
        face.Orientation(faces.Current().Orientation());
        builder.Add(all, face);
    }
    return all;
}

/// Builds an assembly tree from the nodes of a scene. A node that is used several times becomes one product
/// with several occurrences. Anything with a non-uniform scale, which no placement can express, gets separate
/// parts instead.
class SceneBuilder
{
public:
    SceneBuilder(const Handle(TDocStd_Document) & document, const VrmlFiles& files)
        : m_files(files),
          m_file(&files.first()),
          m_shapes(XCAFDoc_DocumentTool::ShapeTool(document->Main())),
          m_colours(XCAFDoc_DocumentTool::ColorTool(document->Main()))
    {
    }

    void build(const std::string& name)
    {
        const std::vector<Placed> parts = visitScene(0, nullptr);
        if (parts.empty())
            return;
        // The format has y up, we have z up.
        gp_Trsf upright;
        upright.SetRotation(gp::OX(), std::numbers::pi / 2);
        addAssembly(parts, upright, name);
        m_shapes->UpdateAssemblies();
    }

private:
    struct Placed
    {
        TDF_Label product;
        gp_Trsf motion;
        std::string name;
        uint64_t parts = 1;
    };
    struct Group
    {
        TDF_Label product;
        uint64_t parts;
    };

    TDF_Label addAssembly(const std::vector<Placed>& parts, const gp_Trsf& motion, const std::string& name)
    {
        const TDF_Label assembly = m_shapes->NewShape();
        giveName(assembly, name);
        for (const Placed& part : parts)
            giveName(m_shapes->AddComponent(assembly, part.product, TopLoc_Location(motion * part.motion)),
                     part.name);
        return assembly;
    }

    /// The nodes of the file.
    std::vector<Placed> visitScene(int depth, const gp_GTrsf* above)
    {
        std::vector<Placed> parts;
        for (VrmlData_Scene::Iterator each(m_file->scene.GetIterator()); each.More(); each.Next())
            if (const Placed part = visit(each.Value(), depth, above); !part.product.IsNull())
                parts.push_back(part);
        return parts;
    }

    Placed visitInlined(const VrmlFile& file, const std::string& name, int depth, const gp_GTrsf* above)
    {
        const auto known = m_groups.find(&file);
        if (known != m_groups.end() && !above)
            return {known->second.product, gp_Trsf(), name, known->second.parts};
        if (++m_filesAround > kMostFilesAround)
            throw Unreadable("takes in files within files on more than " + std::to_string(kMostFilesAround) +
                             " levels");
        const VrmlFile* outer = std::exchange(m_file, &file);
        std::vector<Placed> parts = visitScene(depth + 1, above);
        m_file = outer;
        --m_filesAround;
        return around(std::move(parts), gp_Trsf(), name, above ? nullptr : &file);
    }

    /// `above` leads out of everything around the node, if something there is stretched; otherwise null.
    Placed visit(const Handle(VrmlData_Node) & node, int depth, const gp_GTrsf* above)
    {
        if (node.IsNull())
            return {};
        checkLimits(size_t(depth), 1);
        const std::string name = node->Name() ? node->Name() : "";
        if (const auto shape = Handle(VrmlData_ShapeNode)::DownCast(node); !shape.IsNull())
            return {above ? newPart(shape, name, above) : part(shape, name), gp_Trsf(), name};
        const auto group = Handle(VrmlData_Group)::DownCast(node);
        if (group.IsNull())
            return {};
        const VrmlMark* mark = m_file->marks.marked(group->GetTransform().ScaleFactor());
        if (mark && !mark->urls.empty())
            return visitInlined(m_files.inlined(*mark), name, depth, above);
        if (mark || above) {
            const gp_GTrsf motion =
                (above ? *above : affine(gp_Trsf()))
                    .Multiplied(mark ? inMillimetres(mark->motion) : affine(group->GetTransform()));
            return around(children(group, depth, &motion), gp_Trsf(), name, nullptr);
        }
        const auto known = m_groups.find(node.get());
        if (known != m_groups.end())
            return {known->second.product, group->GetTransform(), name, known->second.parts};
        return around(children(group, depth, nullptr), group->GetTransform(), name, node.get());
    }

    std::vector<Placed> children(const Handle(VrmlData_Group) & group, int depth, const gp_GTrsf* above)
    {
        std::vector<Placed> parts;
        for (VrmlData_Group::Iterator each(group->NodeIterator()); each.More(); each.Next())
            if (const Placed child = visit(each.Value(), depth + 1, above); !child.product.IsNull())
                parts.push_back(child);
        return parts;
    }

    /// What a group makes of its parts; cached under the group if it isn't null.
    Placed around(std::vector<Placed> parts, const gp_Trsf& motion, const std::string& name,
                  const void* group)
    {
        if (parts.empty())
            return {};
        // A transform around a single thing only places it.
        if (parts.size() == 1) {
            if (!name.empty())
                parts.front().name = name;
            giveName(parts.front().product, parts.front().name);
            return {parts.front().product, motion * parts.front().motion, parts.front().name,
                    parts.front().parts};
        }
        uint64_t all = 0;
        for (const Placed& part : parts)
            all += part.parts;
        checkLimits(1, all);
        const TDF_Label assembly = addAssembly(parts, gp_Trsf(), name);
        if (group)
            m_groups[group] = {assembly, all};
        return {assembly, motion, name, all};
    }

    static gp_GTrsf inMillimetres(gp_GTrsf motion)
    {
        motion.SetTranslationPart(motion.TranslationPart() * kMillimetresInMetre);
        return motion;
    }

    TDF_Label part(const Handle(VrmlData_ShapeNode) & node, const std::string& name)
    {
        TDF_Label& known = m_parts[{node->Geometry().get(), node->Appearance().get()}];
        if (known.IsNull())
            known = newPart(node, name, nullptr);
        return known;
    }

    TDF_Label newPart(const Handle(VrmlData_ShapeNode) & node, const std::string& name,
                      const gp_GTrsf* motion)
    {
        TopoDS_Shape shape = node->Geometry().IsNull() ? TopoDS_Shape() : shapeOf(node->Geometry());
        if (shape.IsNull() || !TopExp_Explorer(shape, TopAbs_FACE).More())
            return {};
        if (motion)
            shape = stretched(shape, *motion);
        const TDF_Label made = m_shapes->AddShape(shape, false, false);
        giveName(made, name);
        if (!node->Appearance().IsNull() && !node->Appearance()->Material().IsNull()) {
            const Handle(VrmlData_Material)& material = node->Appearance()->Material();
            m_colours->SetColor(
                made, Quantity_ColorRGBA(material->DiffuseColor(), float(1 - material->Transparency())),
                XCAFDoc_ColorSurf);
        }
        return made;
    }

    void giveName(const TDF_Label& label, const std::string& name)
    {
        if (!name.empty())
            TDataStd_Name::Set(label, TCollection_ExtendedString(name.c_str(), true));
    }

    const VrmlFiles& m_files;
    const VrmlFile* m_file; ///< The one whose nodes are being visited.
    int m_filesAround = 0;  ///< Those that inline that one.
    Handle(XCAFDoc_ShapeTool) m_shapes;
    Handle(XCAFDoc_ColorTool) m_colours;
    std::map<std::pair<const void*, const void*>, TDF_Label> m_parts; ///< By geometry and appearance.
    std::map<const void*, Group> m_groups; ///< By their nodes, or the files that they inline.
};

} // namespace

Reading readVrml(const std::string& path, Reporter& reporter)
{
    Reading reading;
    reading.model = std::make_unique<Kernel::XdeModel>();
    reporter.stage("reading the file", 0.0, 0.6);
    const VrmlFiles files(path, reporter);
    for (const std::string& other : files.refused())
        reading.warnings.push_back(refusalOf(other) + ", which was not read");
    reporter.stage("making the parts", 0.6, 0.95);
    SceneBuilder(reading.model->document(), files).build(stemOf(path));
    reading.ifEmpty =
        files.refused().empty() ? "holds no triangles or solids" : refusalOf(files.refused().front());
    takeMeshes(reading, reporter);
    return reading;
}

} // namespace Vs::Translate
