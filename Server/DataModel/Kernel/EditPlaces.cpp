#include "Server/DataModel/Kernel/Edits.h"
#include "Server/DataModel/Kernel/Occurrence.h"
#include "Server/DataModel/Kernel/XdeEdit.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <TDF_LabelSequence.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_Editor.hxx>
#include <XCAFDoc_Location.hxx>
#include <XCAFDoc_ShapeTool.hxx>

namespace Vs::Kernel {

namespace {

using Document = Handle(TDocStd_Document);

TDF_LabelSequence componentsOf(const TDF_Label& assembly)
{
    TDF_LabelSequence components;
    XCAFDoc_ShapeTool::GetComponents(assembly, components);
    return components;
}

void copyLook(const TDF_Label& from, const TDF_Label& to)
{
    XCAFDoc_Editor::CloneMetaData(from, to, nullptr);
    renameOccurrence(to, nameOf(from));
}

TDF_Label addOccurrence(const Document& document, const TDF_Label& assembly, const TDF_Label& original,
                        const TDF_Label& shown, const TopLoc_Location& place)
{
    TDF_Label added;
    if (assembly.IsNull()) {
        added = newRootLabel(document);
        makeReference(added, shown, place);
    } else {
        added = XCAFDoc_DocumentTool::ShapeTool(document->Main())->AddComponent(assembly, shown, place);
    }
    copyLook(original, added);
    return added;
}

// What stands at the top by itself has no place; its parts have. So the copy is an assembly of the same
// parts, and the ids of all that is inside the original stay.
TDF_Label copyRootAssembly(const Document& document, const TDF_Label& assembly, const gp_Trsf& motion)
{
    const TDF_Label added = XCAFDoc_DocumentTool::ShapeTool(document->Main())->NewShape();
    for (const TDF_Label& component : componentsOf(assembly)) {
        TDF_Label shown;
        XCAFDoc_ShapeTool::GetReferredShape(component, shown);
        addOccurrence(document, added, component, shown,
                      TopLoc_Location(motion) * XCAFDoc_ShapeTool::GetLocation(component));
    }
    copyLook(assembly, added);
    return added;
}

} // namespace

std::vector<std::string> apply(const Document& document, const MoveEdit& edit)
{
    const gp_Trsf motion = toMotion(edit.motion);
    for (const Occurrence& occurrence : topmostOccurrences(document, edit.components)) {
        if (occurrence.isRootAssembly()) {
            for (const TDF_Label& component : componentsOf(occurrence.label()))
                XCAFDoc_Location::Set(component,
                                      TopLoc_Location(motion) * XCAFDoc_ShapeTool::GetLocation(component));
            continue;
        }
        detachPart(document, occurrence.label());
        XCAFDoc_Location::Set(occurrence.label(), occurrence.moved(motion));
    }
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->UpdateAssemblies();
    return {};
}

std::vector<std::string> apply(const Document& document, const CopyEdit& edit)
{
    std::vector<std::string> added;
    for (const Occurrence& occurrence : topmostOccurrences(document, edit.components)) {
        const bool isRootAssembly = occurrence.isRootAssembly();
        if (!isRootAssembly)
            detachPart(document, occurrence.label());
        for (const GkMatrix3d& each : edit.motions) {
            const gp_Trsf motion = toMotion(each);
            const TDF_Label copy = isRootAssembly
                                       ? copyRootAssembly(document, occurrence.label(), motion)
                                       : addOccurrence(document, occurrence.parent(), occurrence.label(),
                                                       occurrence.shown(), occurrence.moved(motion));
            const std::string& id = occurrence.id();
            const size_t slash = id.rfind('/');
            added.push_back((slash == std::string::npos ? "" : id.substr(0, slash + 1)) + entryOf(copy));
        }
    }
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->UpdateAssemblies();
    return added;
}

} // namespace Vs::Kernel
