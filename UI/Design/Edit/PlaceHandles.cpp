#include "UI/Design/Edit/PlaceHandles.h"

#include "UI/Base/Session/AssetGraphicsView.h"

namespace Vu::Design {

void PlaceHandles::show(GraphicsView* view, const std::optional<GkPoint3d>& point)
{
    auto* shown = Vs::cast<AssetGraphicsView>(view);
    if (!shown || !point) {
        hide();
        return;
    }
    if (!m_manipulator)
        m_manipulator.emplace(*shown, m_handles, m_listener);
    m_manipulator->frame(GkMatrix3d::translation(point->asVector()));
}

void PlaceHandles::drive(RealValueCommandInput& input, double value, bool done)
{
    using EKind = CommandInputValueChangeEvent::EKind;
    input.typed(Vs::Units::toExactText(value, input.inputUnits()), done ? EKind::Entered : EKind::Typing);
}

} // namespace Vu::Design
