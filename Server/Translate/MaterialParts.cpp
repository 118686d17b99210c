#include "Server/Translate/MaterialParts.h"

#include "Server/DataModel/Kernel/LabelMap.h"
#include "Server/DataModel/Kernel/XdeEdit.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <TDF_ChildIterator.hxx>
#include <TDF_LabelSequence.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_Editor.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_VisMaterialTool.hxx>

#include <algorithm>
#include <vector>

namespace Vs::Translate {

namespace {

/// One part with the occurrences that show it in one material.
struct Shown
{
    TDF_Label part, material;
    std::vector<TDF_Label> occurrences;
};

TDF_Label materialOn(const TDF_Label& label)
{
    TDF_Label material;
    XCAFDoc_VisMaterialTool::GetShapeMaterial(label, material);
    return material;
}

std::vector<Shown> shownParts(const TDF_Label& shapes)
{
    std::vector<Shown> all;
    Kernel::LabelMap<std::vector<size_t>> ofPart;
    for (TDF_ChildIterator each(shapes, true); each.More(); each.Next()) {
        TDF_Label part;
        if (!XCAFDoc_ShapeTool::GetReferredShape(each.Value(), part) || XCAFDoc_ShapeTool::IsAssembly(part))
            continue;
        TDF_Label material = materialOn(each.Value());
        if (material.IsNull())
            material = materialOn(part);
        std::vector<size_t>* known = ofPart.ChangeSeek(part);
        if (!known)
            known = ofPart.Bound(part, {});
        const auto found =
            std::ranges::find_if(*known, [&](size_t index) { return all[index].material == material; });
        if (found == known->end()) {
            known->push_back(all.size());
            all.push_back({part, material, {each.Value()}});
        } else {
            all[*found].occurrences.push_back(each.Value());
        }
    }
    // The part itself stays with those that have its material, or else with the first.
    std::ranges::stable_partition(
        all, [](const Shown& shown) { return materialOn(shown.part) == shown.material; });
    return all;
}

/// Another part of the same triangles, with the looks of their faces.
TDF_Label likeThat(const Handle(TDocStd_Document) & document, const TDF_Label& part)
{
    const Handle(XCAFDoc_ShapeTool) tool = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    const TDF_Label made = Kernel::newRootLabel(document);
    tool->SetShape(made, XCAFDoc_ShapeTool::GetShape(part));
    XCAFDoc_Editor::CloneMetaData(part, made, nullptr);
    Kernel::setName(made, Kernel::nameOf(part));
    TDF_LabelSequence faces;
    XCAFDoc_ShapeTool::GetSubShapes(part, faces);
    for (const TDF_Label& face : faces) {
        TDF_Label added;
        if (tool->AddSubShape(made, XCAFDoc_ShapeTool::GetShape(face), added))
            XCAFDoc_Editor::CloneMetaData(face, added, nullptr);
    }
    return made;
}

} // namespace

void separateMaterials(const Handle(TDocStd_Document) & document)
{
    const Handle(XCAFDoc_VisMaterialTool) tool = XCAFDoc_DocumentTool::VisMaterialTool(document->Main());
    Kernel::LabelMap<bool> taken;
    for (const Shown& shown : shownParts(XCAFDoc_DocumentTool::ShapesLabel(document->Main()))) {
        TDF_Label part = shown.part;
        if (taken.Seek(part)) {
            part = likeThat(document, shown.part);
            for (const TDF_Label& each : shown.occurrences)
                Kernel::makeReference(each, part, XCAFDoc_ShapeTool::GetLocation(each));
        }
        taken.Bind(shown.part, true);
        if (materialOn(part) == shown.material)
            continue;
        if (shown.material.IsNull())
            tool->UnSetShapeMaterial(part);
        else
            tool->SetShapeMaterial(part, shown.material);
    }
}

} // namespace Vs::Translate
