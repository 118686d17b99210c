#include "Server/DataModel/Kernel/PartShape.h"

#include "Server/DataModel/Kernel/XdeEdit.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <BRep_Builder.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Iterator.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_Editor.hxx>
#include <XCAFDoc_ShapeTool.hxx>

namespace Vs::Kernel {

namespace {

using Document = Handle(TDocStd_Document);

TDF_LabelSequence subShapeLabels(const TDF_Label& part)
{
    TDF_LabelSequence labels;
    XCAFDoc_ShapeTool::GetSubShapes(part, labels);
    return labels;
}

/// Makes labels on `to` for the successors of what stands on the labels of another part. Gives those labels
/// that have found themselves again.
TDF_LabelMap handOn(const Document& document, const TDF_LabelSequence& labels, const TopLoc_Location& own,
                    const TDF_Label& to, const TopLoc_Location& place, const Successors& successors)
{
    const Handle(XCAFDoc_ShapeTool) tool = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    TopTools_IndexedMapOfShape parts;
    TopExp::MapShapes(XCAFDoc_ShapeTool::GetShape(to), parts);
    TDF_LabelMap kept;
    for (const TDF_Label& label : labels) {
        const TopoDS_Shape old = XCAFDoc_ShapeTool::GetShape(label);
        for (const TopoDS_Shape& each : successors(old.Moved(own.Inverted()))) {
            TDF_Label added;
            if (!parts.Contains(each.Moved(place)))
                continue;
            if (tool->AddSubShape(to, each.Moved(place), added))
                XCAFDoc_Editor::CloneMetaData(label, added, nullptr);
            else if (!added.IsNull())
                kept.Add(added);
        }
    }
    return kept;
}

} // namespace

void replaceShape(const Document& document, const TDF_Label& part, const TopoDS_Shape& shape,
                  const Successors& successors)
{
    const TopLoc_Location own = XCAFDoc_ShapeTool::GetShape(part).Location();
    const TDF_LabelSequence labels = subShapeLabels(part);
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->SetShape(part, shape.Moved(own));
    const TDF_LabelMap kept = handOn(document, labels, own, part, own, successors);
    for (const TDF_Label& label : labels)
        if (!kept.Contains(label))
            label.ForgetAllAttributes(true);
}

TDF_Label clonePart(const Document& document, const TDF_Label& part, const TopoDS_Shape& shape,
                    const Successors& successors)
{
    const TDF_Label clone = newRootLabel(document);
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->SetShape(clone, shape);
    XCAFDoc_Editor::CloneMetaData(part, clone, nullptr);
    setName(clone, nameOf(part));
    handOn(document, subShapeLabels(part), XCAFDoc_ShapeTool::GetShape(part).Location(), clone, {},
           successors);
    return clone;
}

TopoDS_Shape renewed(const TopoDS_Shape& shape)
{
    TopoDS_Shape copy = shape.EmptyCopied();
    BRep_Builder builder;
    for (TopoDS_Iterator parts(shape, false, false); parts.More(); parts.Next())
        builder.Add(copy, parts.Value());
    copy.Closed(shape.Closed());
    return copy;
}

} // namespace Vs::Kernel
