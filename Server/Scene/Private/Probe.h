#pragma once

#include "Server/Geometry/GkMatrix3d.h"
#include "Server/Scene/Private/BoxTree.h"

#include <algorithm>

namespace Vs::Scene {

/// A ray with the space around it that still counts as near: a tube, or a cone for what a perspective sees at
/// the same distance in pixels. The direction keeps its length through all transformations, so that places
/// along the ray can be compared wherever they were found.
struct Probe
{
    GkPoint3d start;
    GkVector3d direction;
    /// The radius at the start, and how much it grows per length of the direction; both in such lengths.
    double radius = 0, widening = 0;

    Probe transformed(const GkMatrix3d& matrix) const
    {
        return {matrix * start, matrix * direction, radius, widening};
    }

    /// Where it enters the box; BoxTree::kNever if the box lies before its start or beside it.
    double enter(const BoxTree::Box& box) const { return enter(box.low, box.high); }
    double enter(const BBox& box) const
    {
        const double low[3] = {box.low().x, box.low().y, box.low().z};
        const double high[3] = {box.high().x, box.high().y, box.high().z};
        return enter(low, high);
    }

private:
    template <class Number>
    double enter(const Number (&low)[3], const Number (&high)[3]) const
    {
        const double from[3] = {start.x, start.y, start.z};
        const double along[3] = {direction.x, direction.y, direction.z};
        double room = 0;
        if (radius > 0 || widening > 0) {
            double farthest = 0;
            for (int axis = 0; axis < 3; ++axis)
                farthest +=
                    std::max(along[axis] * (low[axis] - from[axis]), along[axis] * (high[axis] - from[axis]));
            const double squared = direction.lengthSqrd();
            room = (radius + widening * std::max(0.0, farthest / squared)) * std::sqrt(squared);
        }
        double first = 0, last = BoxTree::kNever;
        for (int axis = 0; axis < 3; ++axis) {
            const double near = low[axis] - room - from[axis], far = high[axis] + room - from[axis];
            if (along[axis] == 0) {
                if (near > 0 || far < 0)
                    return BoxTree::kNever;
                continue;
            }
            const double a = near / along[axis], b = far / along[axis];
            first = std::max(first, std::min(a, b));
            last = std::min(last, std::max(a, b));
        }
        // A flat box has no depth, and rounding may reverse the remaining interval.
        constexpr double kRounding = 1e-12;
        return first <= last * (1 + kRounding) + kRounding ? first : BoxTree::kNever;
    }
};

} // namespace Vs::Scene
