#include "Server/Base/Strings.h"
#include "Server/DataModel/Kernel/XdeTree.h"
#include "Server/Translate/Readers.h"

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Geom_Surface.hxx>
#include <IGESCAFControl_Writer.hxx>
#include <IGESControl_Controller.hxx>
#include <Interface_Static.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

namespace Vs::Translate {

namespace {

void writeStep(Kernel::XdeModel& model, const std::string& path, Reporter& reporter)
{
    STEPCAFControl_Controller::Init();
    Interface_Static::SetCVal("write.step.schema", "AP214IS");
    STEPCAFControl_Writer writer;
    writer.SetColorMode(true);
    writer.SetNameMode(true);
    const Handle(KernelProgress) progress = new KernelProgress(reporter);
    if (!writer.Transfer(model.document(), STEPControl_AsIs, nullptr, progress->Start()))
        throw Unreadable("can't be expressed as STEP");
    reporter.stage("writing the file", 0.7, 1.0);
    if (writer.Write(path.c_str()) != IFSelect_RetDone)
        throw Unreadable("can't be written");
}

void writeIges(Kernel::XdeModel& model, const std::string& path, Reporter& reporter)
{
    IGESControl_Controller::Init();
    IGESCAFControl_Writer writer;
    writer.SetColorMode(true);
    writer.SetNameMode(true);
    const Handle(KernelProgress) progress = new KernelProgress(reporter);
    if (!writer.Transfer(model.document(), progress->Start()))
        throw Unreadable("can't be expressed as IGES");
    reporter.stage("writing the file", 0.7, 1.0);
    if (!writer.Write(path.c_str()))
        throw Unreadable("can't be written");
}

void writeBrep(Kernel::XdeModel& model, const std::string& path)
{
    TDF_LabelSequence roots;
    XCAFDoc_DocumentTool::ShapeTool(model.document()->Main())->GetFreeShapes(roots);
    BRep_Builder builder;
    TopoDS_Compound all;
    builder.MakeCompound(all);
    for (const TDF_Label& root : roots)
        builder.Add(all, XCAFDoc_ShapeTool::GetShape(root));
    const TopoDS_Shape shape = roots.Length() == 1 ? XCAFDoc_ShapeTool::GetShape(roots.First()) : all;
    if (!BRepTools::Write(shape, path.c_str(), false, false, TopTools_FormatVersion_CURRENT))
        throw Unreadable("can't be written");
}

// Throws if a face has triangles but no surface: the exact formats have no place for such, and the kernel
// dies of it.
void refuseMeshes(Kernel::XdeModel& model)
{
    const Kernel::XdeTree tree = Kernel::readXdeTree(model.document());
    for (size_t i = 0; i < tree.shapes.size(); ++i)
        for (TopExp_Explorer faces(tree.shapes[i], TopAbs_FACE); faces.More(); faces.Next())
            if (BRep_Tool::Surface(TopoDS::Face(faces.Current())).IsNull())
                throw Unreadable("can't be written: the part \"" + Strings::narrow(tree.tree.bodies[i].name) +
                                 "\" consists of triangles, which only a mesh format can hold");
}

} // namespace

void writeFile(Exchange::Format format, Kernel::XdeModel& model, const std::string& path, Reporter& reporter)
{
    refuseMeshes(model);
    reporter.stage("preparing the file", 0.1, 0.7);
    switch (format) {
    case Exchange::Format::Step:
        return writeStep(model, path, reporter);
    case Exchange::Format::Iges:
        return writeIges(model, path, reporter);
    case Exchange::Format::Brep:
        return writeBrep(model, path);
    default:
        throw Unreadable("is of a format that can't be written");
    }
}

} // namespace Vs::Translate
