#include "UI/Design/Edit/PlaceHandles.h"

#include "UI/Base/Session/AssetGraphicsView.h"

namespace Vu::Design {

void PlaceHandles::show(GraphicsView* view, const std::optional<GkPoint3d>& point)
{
    show(view, point ? std::optional(GkMatrix3d::translation(point->asVector())) : std::nullopt);
}

void PlaceHandles::show(GraphicsView* view, const std::optional<GkMatrix3d>& frame)
{
    auto* shown = Vs::cast<AssetGraphicsView>(view);
    if (!shown || !frame) {
        hide();
        return;
    }
    if (!m_manipulator)
        m_manipulator.emplace(*shown, m_handles, m_listener);
    m_manipulator->frame(*frame);
}

void PlaceHandles::drive(RealValueCommandInput& input, double value, bool done)
{
    using EKind = CommandInputValueChangeEvent::EKind;
    input.typed(Vs::Units::toExactText(value, input.inputUnits()), done ? EKind::Entered : EKind::Typing);
}

void DraggedShift::drive(RealValueCommandInput* const (&shift)[3], const Manipulator::Drag& drag)
{
    const double moved[] = {drag.shift.x, drag.shift.y, drag.shift.z};
    const bool plane = drag.handle.kind == ManipulatorHandle::Kind::Plane;
    for (int axis = 0; axis < 3 && !m_dragging; ++axis)
        m_from[axis] = shift[axis]->value();
    m_dragging = !drag.done;
    // The drag is entered with the last of the values that it changes.
    const int last = plane && drag.handle.axis == 2 ? 1 : plane ? 2 : drag.handle.axis;
    for (int axis = 0; axis < 3; ++axis)
        if ((axis == drag.handle.axis) != plane)
            PlaceHandles::drive(*shift[axis], m_from[axis] + moved[axis], drag.done && axis == last);
}

} // namespace Vu::Design
