#include "UI/Design/Edit/EditGeometry.h"

#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "UI/Design/Localized.h"

namespace Vu::Design {
namespace {

void addBounds(const Vs::Component& component, const GkMatrix3d& place, BBox& bounds)
{
    if (component.body)
        if (const auto mesh = component.body->mesh())
            bounds.add(mesh->bounds.transformed(place));
    for (const auto& child : component.children)
        addBounds(*child, place * child->placement, bounds);
}

} // namespace

SelectionCommandInput* componentsInput(EditInputs& inputs)
{
    return inputs.things(L"Components", localized("EditComponents", "Components"),
                         {Vs::ESelectionType::Component});
}

ListCommandInput* axisInput(EditInputs& inputs)
{
    return inputs.list(L"Axis", localized("EditAxis", "Axis"), {{L"Z", L"Z"}, {L"X", L"X"}, {L"Y", L"Y"}});
}

GkVector3d axisOf(const ListCommandInput& axis)
{
    const std::wstring name = axis.valueAsString();
    return name == L"X" ? GkVector3d(1, 0, 0) : name == L"Y" ? GkVector3d(0, 1, 0) : GkVector3d(0, 0, 1);
}

void CentreInputs::make(EditInputs& inputs, First first)
{
    const EditInputs::Item middle{L"Middle", localized("EditAboutMiddle", "Middle of selection")};
    const EditInputs::Item origin{L"Origin", localized("EditAboutOrigin", "Origin")};
    const EditInputs::Item point{L"Point", localized("EditAboutPoint", "Point")};
    const std::wstring title = localized("EditAbout", "About");
    m_about = first == First::Middle ? inputs.list(L"About", title, {middle, origin, point})
                                     : inputs.list(L"About", title, {origin, point});
    m_point[0] = inputs.length(L"X", localized("EditPointX", "X"), 0);
    m_point[1] = inputs.length(L"Y", localized("EditPointY", "Y"), 0);
    m_point[2] = inputs.length(L"Z", localized("EditPointZ", "Z"), 0);
    for (RealValueCommandInput* coordinate : m_point)
        coordinate->hiddenWhileDisabled(true);
    refresh();
}

void CentreInputs::refresh()
{
    for (RealValueCommandInput* coordinate : m_point)
        coordinate->enabled(m_about->valueAsString() == L"Point");
}

GkPoint3d CentreInputs::centre(const Vs::Asset& asset, const std::vector<std::string>& components) const
{
    const std::wstring about = m_about->valueAsString();
    if (about == L"Middle")
        return boundsOf(asset, components).centre();
    if (about == L"Point")
        return {m_point[0]->value(), m_point[1]->value(), m_point[2]->value()};
    return {};
}

BBox boundsOf(const Vs::Asset& asset, const std::vector<std::string>& components)
{
    BBox bounds;
    for (const std::string& id : components) {
        const Vs::Component* component = asset.findComponent(id);
        const auto place = Vs::placementOf(Vs::ObjectPath{.component = id}, asset);
        if (component && place)
            addBounds(*component, *place, bounds);
    }
    return bounds;
}

} // namespace Vu::Design
