#include "Server/Translate/LabelledStepWriter.h"

#include <TDF_LabelMap.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_WorkSession.hxx>

namespace Vs::Translate {

namespace {

constexpr int kLabelsAtOnce = 4096;

TDF_LabelSequence componentsOf(const TDF_Label& assembly, bool deep)
{
    TDF_LabelSequence components;
    if (XCAFDoc_ShapeTool::IsAssembly(assembly))
        XCAFDoc_ShapeTool::GetComponents(assembly, components, deep);
    return components;
}

// Everything that has names and colours to write, parts before what is made of them.
TDF_LabelSequence describedLabels(const TDF_LabelSequence& shapes)
{
    TDF_LabelSequence labels;
    TDF_LabelMap seen;
    const auto add = [&](const TDF_Label& label) {
        if (seen.Add(label))
            labels.Append(label);
    };
    for (const TDF_Label& shape : shapes) {
        TDF_Label part;
        if (XCAFDoc_ShapeTool::GetReferredShape(shape, part)) {
            if (seen.Contains(part))
                part.Nullify();
            else
                add(part);
        } else {
            part = shape;
        }
        if (!part.IsNull())
            for (const TDF_Label& component : componentsOf(part, true))
                if (TDF_Label inner; XCAFDoc_ShapeTool::GetReferredShape(component, inner))
                    add(inner);
        add(shape);
    }
    return labels;
}

} // namespace

bool LabelledStepWriter::transferDocument(const Handle(TDocStd_Document) & document,
                                          const Message_ProgressRange& range)
{
    TDF_LabelSequence shapes;
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->GetFreeShapes(shapes);
    // First only the shapes, without any attributes.
    setNothingBesides();
    if (!Transfer(shapes, STEPControl_AsIs, nullptr, range))
        return false;
    const Handle(XSControl_WorkSession) session = Writer().WS();
    const TDF_LabelSequence labels = describedLabels(shapes);
    WriteNames(session, labels);
    writeColoursInPieces(labels);
    // Nothing is transferred twice, but now the colours are added to the file.
    TDF_LabelSequence done;
    done.Append(shapes.First());
    if (!Transfer(done))
        return false;
    WriteLayers(session, labels);
    WriteSHUOs(session, labels);
    WriteDGTs(session, labels);
    WriteMaterials(session, labels);
    session->ComputeGraph(Standard_True);
    return true;
}

void LabelledStepWriter::setNothingBesides()
{
    SetNameMode(false);
    SetColorMode(false);
    SetLayerMode(false);
    SetSHUOMode(false);
    SetDimTolMode(false);
    SetMaterialMode(false);
    // No document has the areas and volumes that this would search for.
    SetPropsMode(false);
}

void LabelledStepWriter::writeColoursInPieces(const TDF_LabelSequence& labels)
{
    TDF_LabelSequence piece;
    const auto write = [&] {
        WriteColors(Writer().WS(), piece);
        piece.Clear();
    };
    const auto add = [&](const TDF_Label& label) {
        piece.Append(label);
        if (piece.Length() == kLabelsAtOnce)
            write();
    };
    for (const TDF_Label& label : labels) {
        // The kernel colours all components of an assembly at once.
        const TDF_LabelSequence components = componentsOf(label, false);
        if (components.Length() <= kLabelsAtOnce) {
            add(label);
            continue;
        }
        write();
        for (const TDF_Label& component : components)
            add(component);
        write();
    }
    write();
}

} // namespace Vs::Translate
