#pragma once

/// A place in a plane.
class GkPoint2d
{
public:
    constexpr GkPoint2d() = default;
    constexpr GkPoint2d(double x, double y) : x(x), y(y) {}

    double x = 0, y = 0;

    static const GkPoint2d kOrigin;
};

inline constexpr GkPoint2d GkPoint2d::kOrigin{};
