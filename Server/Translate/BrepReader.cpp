#include "Server/Translate/BrepReader.h"

#include "Server/Translate/MappedFile.h"

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <Standard_Failure.hxx>
#include <TDataStd_Name.hxx>
#include <TopoDS_Shape.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <istream>

namespace Vs::Translate {

Reading readBrep(const std::string& path, Reporter& reporter)
{
    Reading reading;
    reading.model = std::make_unique<Kernel::XdeModel>();
    reporter.stage("reading the file", 0.0, 0.6);
    TopoDS_Shape shape;
    const MappedFile file(path);
    ReportingBuffer buffer(file.bytes(), reporter);
    std::istream stream(&buffer);
    try {
        BRepTools::Read(shape, stream, BRep_Builder());
    } catch (const Standard_Failure& failure) {
        throw Unreadable(std::string("isn't a valid BREP file: ") + failure.GetMessageString());
    }
    // The kernel reads on past the end with whatever the numbers happen to be, and may well produce a shape.
    if (shape.IsNull() || stream.fail())
        throw Unreadable("isn't a valid BREP file: it ends before its shape is complete");
    const TDF_Label label =
        XCAFDoc_DocumentTool::ShapeTool(reading.model->document()->Main())->AddShape(shape, false, false);
    TDataStd_Name::Set(label, TCollection_ExtendedString(stemOf(path).c_str(), true));
    return reading;
}

} // namespace Vs::Translate
