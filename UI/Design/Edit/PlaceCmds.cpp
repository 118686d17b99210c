#include "UI/Design/Edit/PlaceCmds.h"

#include "UI/Design/Localized.h"
#include "UI/Design/Resources.h"

namespace Vu::Design {
namespace {

/// Of the box around them; nothing if they show nothing.
std::optional<GkPoint3d> middleOf(const Vs::Asset& asset, const SelectionCommandInput& components)
{
    const BBox bounds = boundsOf(asset, componentsOf(components));
    return bounds.isEmpty() ? std::nullopt : std::optional(bounds.centre());
}

} // namespace

// clang-format off
constinit const EditRow MoveCmd::kRow = {
    .key = L"MoveCommand", .title = "Move", .icon = &Resources::Move, .tooltip = "Move components along the axes"};

constinit const EditRow CopyCmd::kRow = {
    .key = L"CopyCommand", .title = "Copy", .icon = &Resources::Copy, .tooltip = "Put a copy of each component beside it"};

constinit const EditRow RotateCmd::kRow = {
    .key = L"RotateCommand", .title = "Rotate", .icon = &Resources::Rotate, .tooltip = "Turn components about an axis"};
// clang-format on

using Kind = ManipulatorHandle::Kind;

MoveCmd::MoveCmd(CommandDefinition* definition, CommandContext* context)
    : Implements(definition, context),
      m_handles(Manipulator::handlesOf({Kind::Along, Kind::Plane}),
                [this](const Manipulator::Drag& each) { drag(each); })
{
}

void MoveCmd::onMakeInputs(EditInputs& inputs)
{
    m_components = componentsInput(inputs);
    m_shift[0] = inputs.length(L"Dx", localized("EditDx", "Along X"), 0);
    m_shift[1] = inputs.length(L"Dy", localized("EditDy", "Along Y"), 0);
    m_shift[2] = inputs.length(L"Dz", localized("EditDz", "Along Z"), 0);
}

GkMatrix3d MoveCmd::motion() const
{
    return GkMatrix3d::translation({m_shift[0]->value(), m_shift[1]->value(), m_shift[2]->value()});
}

Vs::ModelEdit MoveCmd::onMakeEdit(const Vs::Asset& asset)
{
    m_middle = middleOf(asset, *m_components);
    return Vs::MoveEdit{componentsOf(*m_components), motion()};
}

void MoveCmd::onShown()
{
    const bool any = m_middle && !m_components->selectionSet().empty();
    m_handles.show(graphicsView(), any ? std::optional(motion() * *m_middle) : std::optional<GkPoint3d>());
}

void MoveCmd::drag(const Manipulator::Drag& drag)
{
    const CommandInUse inUse(this);
    m_dragged.drive(m_shift, drag);
}

Vs::ModelEdit CopyCmd::onMakeEdit(const Vs::Asset& asset)
{
    MoveCmd::onMakeEdit(asset);
    return Vs::CopyEdit{componentsOf(*m_components), {motion()}};
}

RotateCmd::RotateCmd(CommandDefinition* definition, CommandContext* context)
    : Implements(definition, context),
      m_handles(Manipulator::handlesOf({Kind::Turn}), [this](const Manipulator::Drag& each) { drag(each); })
{
}

void RotateCmd::onMakeInputs(EditInputs& inputs)
{
    m_components = componentsInput(inputs);
    m_axis = axisInput(inputs);
    m_angle = inputs.angle(L"Angle", localized("EditAngle", "Angle"), 0);
    m_about.make(inputs, CentreInputs::First::Middle);
}

Vs::ModelEdit RotateCmd::onMakeEdit(const Vs::Asset& asset)
{
    const std::vector<std::string> components = componentsOf(*m_components);
    m_centre = m_about.centre(asset, components);
    return Vs::MoveEdit{components, GkMatrix3d::rotation(m_angle->value(), axisOf(*m_axis), *m_centre)};
}

void RotateCmd::onShown()
{
    m_handles.show(graphicsView(),
                   m_components->selectionSet().empty() ? std::optional<GkPoint3d>() : m_centre);
}

void RotateCmd::drag(const Manipulator::Drag& drag)
{
    static constexpr const wchar_t* kAxes[] = {L"X", L"Y", L"Z"};
    const std::wstring axis = kAxes[drag.handle.axis];
    const CommandInUse inUse(this);
    if (!m_dragging) {
        m_from = m_axis->valueAsString() == axis ? m_angle->value() : 0;
        if (m_axis->valueAsString() != axis)
            m_axis->typed(axis, CommandInputValueChangeEvent::EKind::Typing);
    }
    m_dragging = !drag.done;
    PlaceHandles::drive(*m_angle, m_from + drag.angle, drag.done);
}

} // namespace Vu::Design
