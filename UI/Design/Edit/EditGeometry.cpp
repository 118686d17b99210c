#include "UI/Design/Edit/EditGeometry.h"

#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
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
                         Vs::ESelectionType::Component);
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

BBox boundsOf(const Vs::Asset& asset, const std::vector<std::string>& components)
{
    BBox bounds;
    for (const std::string& id : components) {
        const Vs::Component* component = asset.findComponent(id);
        const auto place = Vs::ObjectPath{.component = id}.placement(asset);
        if (component && place)
            addBounds(*component, *place, bounds);
    }
    return bounds;
}

} // namespace Vu::Design
