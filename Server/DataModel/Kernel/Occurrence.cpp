#include "Server/DataModel/Kernel/Occurrence.h"

#include "Server/DataModel/Kernel/PartShape.h"
#include "Server/DataModel/Kernel/XdeEdit.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <XCAFDoc_ShapeTool.hxx>

#include <unordered_set>

namespace Vs::Kernel {

namespace {

TDF_Label shownBy(const TDF_Label& label)
{
    TDF_Label shown;
    return XCAFDoc_ShapeTool::GetReferredShape(label, shown) ? shown : label;
}

bool standsInOneOf(const std::string& id, const std::unordered_set<std::string>& others)
{
    for (size_t slash = id.find('/'); slash != std::string::npos; slash = id.find('/', slash + 1))
        if (others.contains(id.substr(0, slash)))
            return true;
    return false;
}

} // namespace

Occurrence::Occurrence(const Handle(TDocStd_Document) & document, const std::string& id) : m_id(id)
{
    for (size_t end = 0; end != std::string::npos;) {
        end = id.find('/', end + 1);
        if (!m_label.IsNull()) {
            m_parentPlace.Multiply(XCAFDoc_ShapeTool::GetLocation(m_label).Transformation());
            m_parent = shownBy(m_label);
        }
        m_label = occurrenceLabel(document, id.substr(0, end));
    }
}

TDF_Label Occurrence::shown() const
{
    return shownBy(m_label);
}

gp_Trsf Occurrence::place() const
{
    gp_Trsf place = m_parentPlace;
    if (XCAFDoc_ShapeTool::IsReference(m_label))
        place.Multiply(XCAFDoc_ShapeTool::GetLocation(m_label).Transformation());
    if (const TDF_Label part = shown(); !XCAFDoc_ShapeTool::IsAssembly(part))
        place.Multiply(XCAFDoc_ShapeTool::GetShape(part).Location().Transformation());
    return place;
}

TopLoc_Location Occurrence::moved(const gp_Trsf& motion) const
{
    const gp_Trsf own = XCAFDoc_ShapeTool::GetLocation(m_label).Transformation();
    return TopLoc_Location(m_parentPlace.Inverted() * motion * m_parentPlace * own);
}

bool Occurrence::isRootAssembly() const
{
    return XCAFDoc_ShapeTool::IsAssembly(m_label);
}

std::vector<Occurrence> topmostOccurrences(const Handle(TDocStd_Document) & document,
                                           const std::vector<std::string>& components)
{
    const std::unordered_set<std::string> chosen(components.begin(), components.end());
    std::unordered_set<std::string> labels;
    std::vector<Occurrence> occurrences;
    for (const std::string& id : components)
        if (!standsInOneOf(id, chosen) && labels.insert(id.substr(id.rfind('/') + 1)).second)
            occurrences.emplace_back(document, id);
    return occurrences;
}

void detachPart(const Handle(TDocStd_Document) & document, const TDF_Label& label)
{
    if (XCAFDoc_ShapeTool::IsReference(label))
        return;
    const TDF_Label part = clonePart(document, label, bodyShape(label),
                                     [](const TopoDS_Shape& same) { return std::vector{same}; });
    const std::wstring name = nameOf(label);
    const TopLoc_Location place = XCAFDoc_ShapeTool::GetShape(label).Location();
    label.ForgetAllAttributes(true);
    makeReference(label, part, place);
    renameOccurrence(label, name);
}

} // namespace Vs::Kernel
