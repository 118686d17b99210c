#include "Server/Scene/Camera.h"

#include <algorithm>
#include <atomic>
#include <cmath>

namespace Vs::Scene {

namespace {

/// Half a degree for each pixel: a drag over a third of a screen turns a model around.
constexpr double kRadiansPerPixel = 0.0087266462599716477;
/// What fit leaves free around the box, as a part of its size.
constexpr double kFitMargin = 0.06;
/// Beyond these sizes single-precision positions cannot be told apart on the screen.
constexpr double kSmallestExtent = 1e-9;
constexpr double kLargestExtent = 1e12;
/// A box that has no width in one direction still gets a rectangle.
constexpr double kThinnestPart = 1e-3;
constexpr double kDefaultExtent = 200.0;

/// A number that the camera can compute with: its square and a few of them added up are still finite.
bool isFinite(double value)
{
    return std::abs(value) <= 1e100;
}

bool isFinite(const GkVector3d& v)
{
    return isFinite(v.x) && isFinite(v.y) && isFinite(v.z);
}

GkPoint3d corner(const BBox& box, int index)
{
    return {index & 1 ? box.high().x : box.low().x, index & 2 ? box.high().y : box.low().y,
            index & 4 ? box.high().z : box.low().z};
}

/// Tells every state of a camera from any other, of whichever camera. A renderer makes cameras on its own
/// thread.
uint64_t newRevision()
{
    static std::atomic<uint64_t> last = 0;
    return ++last;
}

} // namespace

CameraEventSource* CameraEventSource::get()
{
    // Never destroyed: commands may still end while the process goes down.
    static auto* const source = new CameraEventSource;
    return source;
}

Camera::Camera() : m_extentsWidth(kDefaultExtent), m_extentsHeight(kDefaultExtent)
{
    const double distance = kDefaultExtent / s_normalPersLens;
    m_position = GkPoint3d() + GkVector3d(1, -1, 1).normal() * distance;
    m_clipNear = distance / 100;
    m_clipFar = distance * 10;
    m_revision = newRevision(); // Nobody can have waited for an event of it.
}

StrongRef<Camera> Camera::make()
{
    return makeStrong<Camera>();
}

void Camera::changed()
{
    m_revision = newRevision();
    CameraEvent event(this);
    CameraEventSource::get()->fireCameraChanged(&event);
}

void Camera::set(double& field, double value)
{
    if (!isFinite(value) || field == value)
        return;
    field = value;
    changed();
}

void Camera::position(const GkPoint3d& position)
{
    if (!isFinite(position.asVector()))
        return;
    m_position = position;
    changed();
}

void Camera::target(const GkPoint3d& target)
{
    if (!isFinite(target.asVector()))
        return;
    m_target = target;
    changed();
}

void Camera::up(const GkVector3d& up)
{
    if (!isFinite(up))
        return;
    m_up = up;
    changed();
}

void Camera::pivot(const GkPoint3d& pivot)
{
    if (isFinite(pivot.asVector()))
        m_pivot = pivot;
}

void Camera::clipNear(double distance)
{
    set(m_clipNear, distance);
}

void Camera::clipFar(double distance)
{
    set(m_clipFar, distance);
}

void Camera::extentsWidth(double width)
{
    set(m_extentsWidth, width);
}

void Camera::extentsHeight(double height)
{
    set(m_extentsHeight, height);
}

void Camera::projection(int projection)
{
    if (projection != kParallelProjection && projection != kPerspectiveProjection)
        return;
    if (projection == m_projection)
        return;
    m_projection = projection;
    changed();
}

// In a parallel projection the distance means nothing, so a perspective made from it gets the normal lens.
void Camera::toggleProjection(EProjection projection)
{
    if (projection == m_projection)
        return;
    if (projection == kPerspectiveProjection)
        m_position =
            m_target - direction() * (std::max(m_extentsWidth, m_extentsHeight) / double(s_normalPersLens));
    m_projection = projection;
    changed();
}

GkVector3d Camera::direction() const
{
    const GkVector3d along = m_target - m_position;
    return along.length() > 0 ? along.normal() : GkVector3d(0, 1, 0);
}

GkVector3d Camera::right() const
{
    const GkVector3d along = direction();
    const GkVector3d across = along.crossProduct(m_up.normal());
    return across.length() > 1e-9 ? across.normal() : along.perpVector();
}

GkVector3d Camera::screenUp() const
{
    return right().crossProduct(direction());
}

double Camera::perspectiveAngle() const
{
    const double away = distance();
    if (m_projection != kPerspectiveProjection || away <= 0)
        return 0;
    return 2 * std::atan(std::max(m_extentsWidth, m_extentsHeight) / 2 / away);
}

void Camera::perspectiveAngle(double radians)
{
    const double half = std::tan(radians / 2);
    if (m_projection != kPerspectiveProjection || !isFinite(half) || half <= 0)
        return;
    m_position = m_target - direction() * (std::max(m_extentsWidth, m_extentsHeight) / 2 / half);
    changed();
}

void Camera::turn(double radians, const GkVector3d& axis, const GkPoint3d& centre)
{
    if (!isFinite(radians) || !isFinite(axis) || axis.isZeroLength() || !isFinite(centre.asVector()))
        return;
    // The part of the up that shows, so that it stays at right angles however often the view is turned.
    const GkVector3d upward = screenUp();
    const GkMatrix3d rotation = GkMatrix3d::rotation(radians, axis, centre);
    m_position.transformBy(rotation);
    m_target.transformBy(rotation);
    m_up = rotation * upward;
}

void Camera::orbit(double dx, double dy)
{
    turn(-dx * kRadiansPerPixel, screenUp(), m_target);
    turn(dy * kRadiansPerPixel, right(), m_target);
    changed();
}

void Camera::orbitAroundPivot(double dx, double dy)
{
    turn(-dx * kRadiansPerPixel, screenUp(), m_pivot);
    turn(dy * kRadiansPerPixel, right(), m_pivot);
    changed();
}

void Camera::constrainedOrbit(double pixels, bool vertical, const GkVector3d& axis, const GkPoint3d& centre)
{
    turn(pixels * kRadiansPerPixel, vertical ? right() : axis, centre);
    changed();
}

void Camera::roll(double radians)
{
    roll(radians, m_target);
}

void Camera::roll(double radians, const GkPoint3d& centre)
{
    turn(radians, direction(), centre);
    changed();
}

void Camera::dolly(const GkVector3d& shift)
{
    if (!isFinite(shift))
        return;
    m_position = m_position + shift;
    m_target = m_target + shift;
    changed();
}

void Camera::zoom(double factor)
{
    if (!isFinite(factor) || factor <= 0)
        return;
    const double width = m_extentsWidth / factor, height = m_extentsHeight / factor;
    if (std::min(width, height) < kSmallestExtent || std::max(width, height) > kLargestExtent)
        return;
    m_extentsWidth = width;
    m_extentsHeight = height;
    if (m_projection == kPerspectiveProjection)
        m_position = m_target + (m_position - m_target) / factor;
    changed();
}

void Camera::fit(const BBox& box)
{
    if (box.isEmpty() || !isFinite(box.low().asVector()) || !isFinite(box.high().asVector()))
        return;
    if (box.diagonal() < kSmallestExtent) {
        dolly(box.centre() - m_target);
        return;
    }
    if (m_projection == kPerspectiveProjection)
        fitPerspective(box);
    else
        fitParallel(box);
    const double away = distance(), reach = box.diagonal() / 2;
    m_clipFar = away + reach * 1.1;
    m_clipNear = std::max(away - reach * 1.1, m_clipFar / 1000);
    changed();
}

void Camera::fitParallel(const BBox& box)
{
    const GkVector3d across = right(), upward = screenUp(), along = direction();
    const GkPoint3d centre = box.centre();
    double halfWidth = 0, halfHeight = 0;
    for (int i = 0; i < 8; ++i) {
        const GkVector3d from = corner(box, i) - centre;
        halfWidth = std::max(halfWidth, std::abs(from.dotProduct(across)));
        halfHeight = std::max(halfHeight, std::abs(from.dotProduct(upward)));
    }
    // A line that is seen end on has no width at all.
    const double larger = std::max({halfWidth, halfHeight, box.diagonal() * kThinnestPart});
    m_extentsWidth = 2 * (1 + kFitMargin) * std::max(halfWidth, larger * kThinnestPart);
    m_extentsHeight = 2 * (1 + kFitMargin) * std::max(halfHeight, larger * kThinnestPart);
    m_target = centre;
    // Far enough to stand before the box, so that a perspective made from this view sees all of it.
    m_position = centre - along * std::max(2 * larger * (1 + kFitMargin) / s_normalPersLens, box.diagonal());
}

// The eye moves back along the direction until the sides of the lens' pyramid touch the outermost corners; it
// stands where the touching corners on the left and on the right, and below and above, are equally far off
// the middle of the picture.
void Camera::fitPerspective(const BBox& box)
{
    const double away = distance();
    const double lens = away > 0 ? std::max(m_extentsWidth, m_extentsHeight) / away : s_normalPersLens;
    const double slope = std::clamp(lens, 1e-3, 10.0) / 2 / (1 + kFitMargin);
    const GkVector3d across = right(), upward = screenUp(), along = direction();
    const GkPoint3d centre = box.centre();

    GkVector3d local[8];
    double nearest = 1e300;
    double left = -1e300, rightSide = -1e300, below = -1e300, above = -1e300;
    for (int i = 0; i < 8; ++i) {
        const GkVector3d from = corner(box, i) - centre;
        const GkVector3d& p =
            local[i] = {from.dotProduct(across), from.dotProduct(upward), from.dotProduct(along)};
        nearest = std::min(nearest, p.z);
        rightSide = std::max(rightSide, p.x - slope * p.z);
        left = std::max(left, -p.x - slope * p.z);
        above = std::max(above, p.y - slope * p.z);
        below = std::max(below, -p.y - slope * p.z);
    }
    // A line that is seen end on has no width; the eye stands before its end all the same.
    const double depth = std::min(std::min(-(left + rightSide), -(below + above)) / 2 / slope,
                                  nearest - box.diagonal() * kThinnestPart / slope);
    // Off the middle by what the perspective makes of the nearer corners, at the depth where the eye stands.
    const auto middle = [&](double GkVector3d::*axis) {
        double at = 0;
        for (int step = 0; step < 4; ++step) {
            double low = 1e300, high = -1e300, lowDepth = 1, highDepth = 1;
            for (const GkVector3d& p : local) {
                const double ahead = p.z - depth;
                const double tangent = (p.*axis - at) / ahead;
                if (tangent < low) {
                    low = tangent;
                    lowDepth = ahead;
                }
                if (tangent > high) {
                    high = tangent;
                    highDepth = ahead;
                }
            }
            at += (low + high) / (1 / lowDepth + 1 / highDepth);
        }
        return at;
    };
    const double x = middle(&GkVector3d::x);
    const double y = middle(&GkVector3d::y);

    double tangentX = 0, tangentY = 0;
    for (const GkVector3d& p : local) {
        tangentX = std::max(tangentX, std::abs(p.x - x) / (p.z - depth));
        tangentY = std::max(tangentY, std::abs(p.y - y) / (p.z - depth));
    }
    if (std::max(tangentX, tangentY) < slope * kThinnestPart)
        tangentX = tangentY = slope;
    const double larger = std::max(tangentX, tangentY);
    m_target = centre + across * x + upward * y;
    m_position = m_target + along * depth;
    m_extentsWidth = -2 * depth * (1 + kFitMargin) * std::max(tangentX, larger * kThinnestPart);
    m_extentsHeight = -2 * depth * (1 + kFitMargin) * std::max(tangentY, larger * kThinnestPart);
    // The lens stays what it was: the larger direction touches the pyramid, up to rounding.
}

void Camera::look(const GkVector3d& direction, const GkVector3d& up)
{
    if (!isFinite(direction) || !isFinite(up) || direction.isZeroLength())
        return;
    m_position = m_target - direction.normal() * distance();
    m_up = up;
    changed();
}

GkMatrix3d Camera::viewMatrix() const
{
    const GkVector3d rows[3] = {right(), screenUp(), -direction()};
    GkMatrix3d matrix;
    for (int i = 0; i < 3; ++i) {
        matrix.entry[i][0] = rows[i].x;
        matrix.entry[i][1] = rows[i].y;
        matrix.entry[i][2] = rows[i].z;
        matrix.entry[i][3] = -rows[i].dotProduct(m_position.asVector());
    }
    return matrix;
}

void Camera::copyFrom(const Camera& other)
{
    m_position = other.m_position;
    m_target = other.m_target;
    m_up = other.m_up;
    m_clipNear = other.m_clipNear;
    m_clipFar = other.m_clipFar;
    m_extentsWidth = other.m_extentsWidth;
    m_extentsHeight = other.m_extentsHeight;
    m_projection = other.m_projection;
    changed();
}

} // namespace Vs::Scene
