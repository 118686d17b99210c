#include "Server/Scene/CameraParameters.h"

#include "Server/Scene/Camera.h"

#include <cmath>

namespace Vs::Scene {

namespace {

double between(double from, double to, double part)
{
    // Geometrically where possible, so that a zoom looks even.
    if (from > 0 && to > 0)
        return from * std::pow(to / from, part);
    return from + (to - from) * part;
}

} // namespace

CameraParameters::CameraParameters(const Camera& camera)
    : position(camera.position()),
      target(camera.target()),
      up(camera.up()),
      clipNear(camera.clipNear()),
      clipFar(camera.clipFar()),
      extentsWidth(camera.extentsWidth()),
      extentsHeight(camera.extentsHeight()),
      projection(camera.projection())
{
}

void CameraParameters::applyTo(Camera& camera) const
{
    camera.position(position);
    camera.target(target);
    camera.up(up);
    camera.clipNear(clipNear);
    camera.clipFar(clipFar);
    camera.extentsWidth(extentsWidth);
    camera.extentsHeight(extentsHeight);
    camera.projection(projection);
}

CameraParameters CameraParameters::towards(const CameraParameters& other, double part) const
{
    if (!(part > 0))
        return *this;
    if (part >= 1)
        return other;

    Camera from, to;
    applyTo(from);
    other.applyTo(to);
    const GkVector3d before[3] = {from.right(), from.screenUp(), -from.direction()};
    const GkVector3d after[3] = {to.right(), to.screenUp(), -to.direction()};
    // The rotation that takes one frame into the other, as a matrix and then as axis and angle.
    double m[3][3] = {};
    const auto component = [](const GkVector3d& v, int i) { return i == 0 ? v.x : i == 1 ? v.y : v.z; };
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            for (int k = 0; k < 3; ++k)
                m[i][j] += component(after[k], i) * component(before[k], j);
    GkVector3d axis(m[2][1] - m[1][2], m[0][2] - m[2][0], m[1][0] - m[0][1]);
    const double angle = std::atan2(axis.length(), m[0][0] + m[1][1] + m[2][2] - 1);
    if (axis.length() < 1e-9 && angle > 1) {
        // Half a turn: each column of m + 1 lies along the axis, and the longest is the most precise.
        axis = {};
        for (int j = 0; j < 3; ++j) {
            const GkVector3d column(m[0][j] + (j == 0), m[1][j] + (j == 1), m[2][j] + (j == 2));
            if (column.length() > axis.length())
                axis = column;
        }
    }

    CameraParameters result = other;
    result.target = target + (other.target - target) * part;
    result.up = before[1];
    GkVector3d back = before[2];
    if (!axis.isZeroLength()) {
        const GkMatrix3d rotation = GkMatrix3d::rotation(angle * part, axis);
        result.up = rotation * before[1];
        back = rotation * before[2];
    }
    result.position = result.target + back * between(from.distance(), to.distance(), part);
    result.extentsWidth = between(extentsWidth, other.extentsWidth, part);
    result.extentsHeight = between(extentsHeight, other.extentsHeight, part);
    result.clipNear = between(clipNear, other.clipNear, part);
    result.clipFar = between(clipFar, other.clipFar, part);
    return result;
}

bool CameraParameters::isEqualTo(const CameraParameters& other) const
{
    return position.isEqualTo(other.position) && target.isEqualTo(other.target) && up.isEqualTo(other.up) &&
           clipNear == other.clipNear && clipFar == other.clipFar && extentsWidth == other.extentsWidth &&
           extentsHeight == other.extentsHeight && projection == other.projection;
}

} // namespace Vs::Scene
