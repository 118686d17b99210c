#include "UI/Design/Edit/PlaceCmds.h"

#include "UI/Base/Command/Info.h"
#include "UI/Design/Edit/EditGeometry.h"
#include "UI/Design/Localized.h"
#include "UI/Design/Resources.h"

namespace Vu::Design {

// clang-format off
constinit const EditRow MoveCmd::kRow = {
    .key = L"MoveCommand", .title = "Move", .tooltip = "Move components along the axes", .icon = &Resources::Move};

constinit const EditRow CopyCmd::kRow = {
    .key = L"CopyCommand", .title = "Copy", .tooltip = "Put one more of each component beside it", .icon = &Resources::Copy};

constinit const EditRow RotateCmd::kRow = {
    .key = L"RotateCommand", .title = "Rotate", .tooltip = "Turn components about an axis", .icon = &Resources::Rotate};
// clang-format on

void MoveCmd::onMakeInputs(EditInputs& inputs)
{
    m_components = componentsInput(inputs);
    m_dx = inputs.length(L"Dx", localized("EditDx", "Along X"), 0);
    m_dy = inputs.length(L"Dy", localized("EditDy", "Along Y"), 0);
    m_dz = inputs.length(L"Dz", localized("EditDz", "Along Z"), 0);
}

GkMatrix3d MoveCmd::motion() const
{
    return GkMatrix3d::translation({m_dx->value(), m_dy->value(), m_dz->value()});
}

Vs::ModelEdit MoveCmd::onMakeEdit(const Vs::Asset&)
{
    return Vs::MoveEdit{componentsOf(*m_components), motion()};
}

Vs::ModelEdit CopyCmd::onMakeEdit(const Vs::Asset&)
{
    return Vs::CopyEdit{componentsOf(*m_components), {motion()}};
}

void RotateCmd::onMakeInputs(EditInputs& inputs)
{
    m_components = componentsInput(inputs);
    m_axis = axisInput(inputs);
    m_angle = inputs.angle(L"Angle", localized("EditAngle", "Angle"), 0);
    m_about = inputs.list(L"About", localized("EditAbout", "About"),
                          {{L"Middle", localized("EditAboutMiddle", "Middle of selection")},
                           {L"Origin", localized("EditAboutOrigin", "Origin")},
                           {L"Point", localized("EditAboutPoint", "Point")}});
    m_point[0] = inputs.length(L"X", localized("EditPointX", "X"), 0);
    m_point[1] = inputs.length(L"Y", localized("EditPointY", "Y"), 0);
    m_point[2] = inputs.length(L"Z", localized("EditPointZ", "Z"), 0);
    for (RealValueCommandInput* coordinate : m_point) {
        coordinate->hiddenWhileDisabled(true);
        coordinate->disable();
    }
}

void RotateCmd::onInputChanged()
{
    for (RealValueCommandInput* coordinate : m_point)
        coordinate->enabled(m_about->valueAsString() == L"Point");
}

GkPoint3d RotateCmd::centre(const Vs::Asset& asset) const
{
    const std::wstring about = m_about->valueAsString();
    if (about == L"Middle")
        return boundsOf(asset, componentsOf(*m_components)).centre();
    if (about == L"Point")
        return {m_point[0]->value(), m_point[1]->value(), m_point[2]->value()};
    return {};
}

Vs::ModelEdit RotateCmd::onMakeEdit(const Vs::Asset& asset)
{
    return Vs::MoveEdit{componentsOf(*m_components),
                        GkMatrix3d::rotation(m_angle->value(), axisOf(*m_axis), centre(asset))};
}

} // namespace Vu::Design
