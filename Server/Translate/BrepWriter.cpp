#include "Server/Translate/BrepWriter.h"

#include "Server/Translate/Reading.h"

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

namespace Vs::Translate {

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

} // namespace Vs::Translate
