#include "Server/DataModel/Kernel/TouchedLabels.h"

#include "Server/DataModel/Kernel/XdeTree.h"

#include <TDF_AttributeDelta.hxx>
#include <TDF_TagSource.hxx>
#include <TNaming_NamedShape.hxx>
#include <XCAFDoc.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

namespace Vs::Kernel {

namespace {

// Root, main label, section of shapes, part, occurrence in an assembly or piece of a part.
constexpr int kSection = 2, kPart = 3, kOccurrence = 4;

TDF_Label ancestor(TDF_Label label, int depth)
{
    for (int above = label.Depth() - depth; above > 0; --above)
        label = label.Father();
    return label;
}

} // namespace

void TouchedLabels::add(const Handle(TDF_Delta) & delta)
{
    for (const Handle(TDF_AttributeDelta) & each : delta->AttributeDeltas())
        add(each->Label(), each->ID());
}

void TouchedLabels::add(const TDF_Label& label, const Standard_GUID& attribute)
{
    if (label.Depth() < kPart || attribute == TDF_TagSource::GetID())
        return;
    if (m_shapes.IsNull())
        m_shapes = XCAFDoc_DocumentTool::ShapesLabel(label);
    if (ancestor(label, kSection) != m_shapes)
        return;
    const TDF_Label part = ancestor(label, kPart);
    // The shape of an assembly follows from what is in it.
    if (attribute == TNaming_NamedShape::GetID() && XCAFDoc_ShapeTool::IsAssembly(part) &&
        label.Depth() == kPart)
        return;
    // All occurrences of a part hang together: the neighbours of one that comes or goes don't change.
    const bool content = attribute != XCAFDoc::ShapeRefGUID();
    if (label.Depth() == kPart) {
        add(label, content);
        return;
    }
    const TDF_Label occurrence = ancestor(label, kOccurrence);
    add(occurrence, content);
    if (!XCAFDoc_ShapeTool::IsComponent(occurrence))
        add(part, content);
}

void TouchedLabels::add(const TDF_Label& label, bool content)
{
    if (bool* const known = m_places.ChangeSeek(label))
        *known |= content;
    else
        m_places.Bind(label, content);
}

std::vector<TouchedPlace> TouchedLabels::take()
{
    // A map that is emptied keeps its size: after thousands, every later one would be walked over.
    decltype(m_places) places;
    places.Exchange(m_places);
    std::vector<TouchedPlace> touched;
    for (decltype(m_places)::Iterator each(places); each.More(); each.Next())
        touched.push_back({entryOf(each.Key()), each.Value()});
    return touched;
}

} // namespace Vs::Kernel
