#include "Server/DataModel/Kernel/XdeEdit.h"

#include "Server/DataModel/Kernel/LabelIndex.h"
#include "Server/DataModel/Kernel/LabelState.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <TDF_LabelSequence.hxx>
#include <TDF_TagSource.hxx>
#include <TDataStd_TreeNode.hxx>
#include <TDataStd_UAttribute.hxx>
#include <XCAFDoc.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_Location.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace Vs::Kernel {

namespace {

bool isThere(const TDF_Label& label)
{
    return !label.IsNull() && XCAFDoc_ShapeTool::IsShape(label) && !isRemoved(label);
}

/// Whether all labels are still there from the root to the component.
bool isWhole(const Handle(TDocStd_Document) & document, const std::string& component)
{
    std::istringstream entries(component);
    for (std::string entry; std::getline(entries, entry, '/');)
        if (!isThere(labelOf(document, entry)))
            return false;
    return true;
}

} // namespace

TDF_Label occurrenceLabel(const Handle(TDocStd_Document) & document, const std::string& component)
{
    const TDF_Label label = labelOf(document, component.substr(component.rfind('/') + 1));
    if (!isThere(label))
        throw std::runtime_error("the component isn't in the model any more");
    return label;
}

// The document's own way to do this works for assemblies only.
void makeReference(const TDF_Label& label, const TDF_Label& shown, const TopLoc_Location& place)
{
    XCAFDoc_Location::Set(label, place);
    const Handle(TDataStd_TreeNode) all = TDataStd_TreeNode::Set(shown, XCAFDoc::ShapeRefGUID());
    const Handle(TDataStd_TreeNode) one = TDataStd_TreeNode::Set(label, XCAFDoc::ShapeRefGUID());
    one->Remove();
    all->Append(one);
}

TDF_Label newRootLabel(const Handle(TDocStd_Document) & document)
{
    const TDF_Label shapes = XCAFDoc_DocumentTool::ShapesLabel(document->Main());
    TDF_Label label = TDF_TagSource::NewChild(shapes);
    while (isRemoved(label))
        label = TDF_TagSource::NewChild(shapes);
    return label;
}

void renameOccurrence(const TDF_Label& label, const std::wstring& name)
{
    setName(label, name);
    if (isMadeUp(name))
        TDataStd_UAttribute::Set(label, namedByUser());
}

void showOccurrence(const TDF_Label& label, bool visible)
{
    const Handle(XCAFDoc_ColorTool) colours = XCAFDoc_DocumentTool::ColorTool(label);
    colours->SetVisibility(label, visible);
    // A file may have hidden the part itself.
    TDF_Label part;
    if (visible && XCAFDoc_ShapeTool::GetReferredShape(label, part) && !isShown(part))
        colours->SetVisibility(part, true);
}

void removeOccurrence(const TDF_Label& label)
{
    TDF_Label part;
    TDF_LabelSequence inside;
    if (!XCAFDoc_ShapeTool::GetReferredShape(label, part))
        XCAFDoc_ShapeTool::GetComponents(label, inside);
    for (const TDF_Label& each : inside)
        removeOccurrence(each);
    label.ForgetAllAttributes(true);
    // A part that nothing refers to any more would appear by itself.
    if (!part.IsNull() && XCAFDoc_ShapeTool::IsFree(part))
        removeOccurrence(part);
}

// Assemblies go before what is in them: that is passed over then, though it may stand in others as well.
void eachToRemove(const Handle(TDocStd_Document) & document, std::vector<std::string> components,
                  const std::function<void(const TDF_Label&)>& remove)
{
    const auto depth = [](const std::string& id) { return std::count(id.begin(), id.end(), '/'); };
    std::stable_sort(components.begin(), components.end(),
                     [&](const auto& a, const auto& b) { return depth(a) < depth(b); });
    for (const std::string& component : components)
        if (isWhole(document, component))
            remove(occurrenceLabel(document, component));
}

void removeOccurrences(const Handle(TDocStd_Document) & document, const std::vector<std::string>& components)
{
    eachToRemove(document, components, removeOccurrence);
}

} // namespace Vs::Kernel
