#include "Server/Translate/Shares/SmoothEdges.h"

#include <Interface_Static.hxx>
#include <ShapeFix.hxx>
#include <TDF_LabelSequence.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

namespace Vs::Translate::Shares {

namespace {

constexpr const char* kAngle = "read.encoderegularity.angle";
// The kernel's default; the parameter itself is 0 while others do its work.
constexpr double kSmooth = 0.01; // radians

} // namespace

void markSmoothEdges(const TopoDS_Shape& shape)
{
    ShapeFix::EncodeRegularity(shape, kSmooth);
}

WithoutSmoothEdges::WithoutSmoothEdges()
{
    Interface_Static::SetRVal(kAngle, 0);
}

WithoutSmoothEdges::~WithoutSmoothEdges()
{
    Interface_Static::SetRVal(kAngle, kSmooth);
}

void markSmoothEdges(const Handle(TDocStd_Document) & document,
                     const std::function<bool(const TopoDS_Shape&)>& isMarked)
{
    TDF_LabelSequence labels;
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->GetShapes(labels);
    for (const TDF_Label& label : labels)
        if (XCAFDoc_ShapeTool::IsSimpleShape(label))
            if (const TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(label); !isMarked(shape))
                markSmoothEdges(shape);
}

} // namespace Vs::Translate::Shares
