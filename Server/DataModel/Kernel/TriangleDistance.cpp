#include "Server/DataModel/Kernel/TriangleDistance.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace Vs::Kernel {

namespace {

class Nearest
{
public:
    void offer(const gp_XYZ& first, const gp_XYZ& second)
    {
        const double square = (first - second).SquareModulus();
        if (square < m_square) {
            m_square = square;
            m_first = first;
            m_second = second;
        }
    }
    TriangleDistance result() const { return {std::sqrt(m_square), m_first, m_second}; }

private:
    double m_square = std::numeric_limits<double>::max();
    gp_XYZ m_first, m_second;
};

double share(double value)
{
    return std::clamp(value, 0.0, 1.0);
}

/// The nearest points of the segments from p along d and from q along e.
void offerSegments(const gp_XYZ& p, const gp_XYZ& d, const gp_XYZ& q, const gp_XYZ& e, Nearest& nearest)
{
    const gp_XYZ r = p - q;
    const double a = d * d, b = d * e, c = d * r, f = e * e, g = e * r;
    const double determinant = a * f - b * b;
    // For parallel ones, the ends decide.
    double s = determinant > 1e-14 * a * f ? share((b * g - c * f) / determinant) : 0;
    const double t = f > 0 ? share((b * s + g) / f) : 0;
    s = a > 0 ? share((b * t - c) / a) : 0;
    nearest.offer(p + d * s, q + e * t);
}

/// Where the line from p along d meets the plane within the triangle, as a share of d.
std::optional<double> crossing(const gp_XYZ& p, const gp_XYZ& d, const Triangle& triangle)
{
    const gp_XYZ u = triangle[1] - triangle[0], v = triangle[2] - triangle[0], normal = u ^ v;
    const double slope = normal * d;
    if (slope == 0)
        return std::nullopt;
    const double along = normal * (triangle[0] - p) / slope;
    const gp_XYZ w = p + d * along - triangle[0];
    const double square = normal * normal;
    const double first = ((w ^ v) * normal) / square, second = ((u ^ w) * normal) / square;
    return first >= 0 && second >= 0 && first + second <= 1 ? std::optional(along) : std::nullopt;
}

/// A corner of one over the inside of the other, and a side of one through the other.
void offerInside(const Triangle& corners, const Triangle& plane, bool swapped, Nearest& nearest)
{
    const auto offer = [&](const gp_XYZ& a, const gp_XYZ& b) {
        swapped ? nearest.offer(b, a) : nearest.offer(a, b);
    };
    const gp_XYZ normal = (plane[1] - plane[0]) ^ (plane[2] - plane[0]);
    for (size_t i = 0; i < 3; ++i) {
        if (const auto foot = crossing(corners[i], normal, plane))
            offer(corners[i], corners[i] + normal * *foot);
        const gp_XYZ side = corners[(i + 1) % 3] - corners[i];
        if (const auto through = crossing(corners[i], side, plane); through && *through >= 0 && *through <= 1)
            offer(corners[i] + side * *through, corners[i] + side * *through);
    }
}

} // namespace

TriangleDistance distanceOf(const Triangle& first, const Triangle& second)
{
    Nearest nearest;
    for (size_t i = 0; i < 3; ++i)
        for (size_t k = 0; k < 3; ++k)
            offerSegments(first[i], first[(i + 1) % 3] - first[i], second[k], second[(k + 1) % 3] - second[k],
                          nearest);
    offerInside(first, second, false, nearest);
    offerInside(second, first, true, nearest);
    return nearest.result();
}

} // namespace Vs::Kernel
