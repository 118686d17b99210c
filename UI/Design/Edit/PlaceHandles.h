#pragma once

#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Base/Session/Manipulator.h"

#include <functional>
#include <optional>

namespace Vu {
class GraphicsView;
}

namespace Vu::Design {

/// The handles with which the user drags the values of an editing command. They exist while the command is
/// active and knows their position.
class PlaceHandles
{
public:
    using Listener = Manipulator::Listener;

    PlaceHandles(std::vector<ManipulatorHandle> handles, Listener listener)
        : m_handles(std::move(handles)), m_listener(std::move(listener))
    {
    }

    /// Shows them at the point, along the model's axes, or transformed by the rigid motion; removes them
    /// without a point, or without a view.
    void show(GraphicsView* view, const std::optional<GkPoint3d>& point);
    void show(GraphicsView* view, const std::optional<GkMatrix3d>& frame);
    void hide() { m_manipulator.reset(); }

    /// Gives an input a value as if it were typed; with `done`, as if it were entered.
    static void drive(RealValueCommandInput& input, double value, bool done);

private:
    std::vector<ManipulatorHandle> m_handles;
    Listener m_listener;
    std::optional<Manipulator> m_manipulator;
};

/// Three lengths along the handles' axes, changed by dragging an arrow or a square.
class DraggedShift
{
public:
    void drive(RealValueCommandInput* const (&shift)[3], const Manipulator::Drag& drag);

private:
    double m_from[3] = {}; ///< The values when the drag began.
    bool m_dragging = false;
};

} // namespace Vu::Design
