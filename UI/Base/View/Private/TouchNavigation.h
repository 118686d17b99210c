#pragma once

#include "Server/Base/Point2.h"

namespace Vu {

class GraphicsView;

/// What fingers on a trackpad, or a hand on a six-axis controller, do to the camera of a view: the camera
/// operations of the mouse's tools, in steps. A view without a model stays as it is.
class TouchNavigation
{
public:
    explicit TouchNavigation(GraphicsView* view) : m_view(view) {}

    /// Moves what lies in the plane of the target along, by logical pixels; `dy` downwards.
    void pan(double dx, double dy);
    /// Scales by the factor, and keeps what lies at `place` of the canvas there.
    void zoom(const Vs::Point2& place, double factor);
    /// Turns the picture clockwise.
    void roll(double radians);

    /// The deflections of a six-axis controller for one step: to the right, upwards and towards the viewer,
    /// and the turns about these axes. At its limits a device gives about 350.
    struct Motion
    {
        int right = 0, up = 0, near = 0;
        int turnRight = 0, turnUp = 0, turnNear = 0;
    };
    void move(const Motion& motion);

private:
    GraphicsView* m_view;
};

} // namespace Vu
