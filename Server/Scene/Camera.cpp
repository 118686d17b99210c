#include "Server/Scene/Camera.h"

#include "Server/Scene/Private/CameraFit.h"

#include <algorithm>
#include <atomic>
#include <cmath>

namespace Vs::Scene {

namespace {

/// Half a degree for each pixel: a drag over a third of a screen turns a model around.
constexpr double kRadiansPerPixel = 0.0087266462599716477;
constexpr double kRightAngle = 1.5707963267948966;
/// For a direction of length one: too small to show at all.
constexpr double kNoPart = 1e-9;
/// Beyond these sizes single-precision positions are indistinguishable on the screen.
constexpr double kSmallestExtent = 1e-9;
constexpr double kLargestExtent = 1e12;
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

/// Distinguishes every state of a camera from any other state of any camera. A renderer makes cameras on its
/// own thread.
uint64_t newRevision()
{
    static std::atomic<uint64_t> last = 0;
    return ++last;
}

} // namespace

CameraEventSource* CameraEventSource::get()
{
    // Never destroyed: commands may still end while the process shuts down.
    static auto* const source = new CameraEventSource;
    return source;
}

Camera::Camera() : m_extentsWidth(kDefaultExtent), m_extentsHeight(kDefaultExtent)
{
    const double distance = kDefaultExtent / s_normalPersLens;
    m_position = GkPoint3d() + GkVector3d(1, -1, 1).normal() * distance;
    m_clipNear = distance / 100;
    m_clipFar = distance * 10;
    m_revision = newRevision(); // Nobody can have waited for an event from it.
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
    return across.length() > 1e-9 ? across.normal() : -along.perpVector();
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
    // The visible part of the up vector, so that it stays perpendicular however often the view is turned.
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
    const double radians = pixels * kRadiansPerPixel;
    turn(vertical ? withinPoles(radians, axis) : radians, vertical ? right() : axis, centre);
    changed();
}

void Camera::upright(const GkVector3d& up)
{
    if (isFinite(up))
        m_upright = up.normal();
}

// The part of a turn about `right` that keeps the screen's present up direction up.
double Camera::withinPoles(double radians, const GkVector3d& axis) const
{
    const auto partAcross = [&](const GkVector3d& v) {
        return std::hypot(screenUp().dotProduct(v), direction().dotProduct(v));
    };
    const bool known = partAcross(m_upright) > kNoPart && screenUp().dotProduct(m_upright) > -kNoPart;
    const GkVector3d up = known ? m_upright : axis.normal();
    if (partAcross(up) <= kNoPart)
        return radians;
    const double shown = screenUp().dotProduct(up);
    const double sense = shown < -kNoPart ? -1 : 1;
    // What is visible of it after the turn is the cosine of both angles together. At a pole, where nothing is
    // visible, turning back is allowed and turning over is not.
    const double angle = std::atan2(sense * direction().dotProduct(up), std::max(sense * shown, 0.0));
    return std::clamp(radians, -kRightAngle - angle, kRightAngle - angle);
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

void Camera::slideTarget(double depth)
{
    const double away = distance();
    if (!isFinite(depth) || away <= 0)
        return;
    const GkVector3d along = direction();
    if (m_projection == kParallelProjection) {
        dolly(along * (depth - away));
        return;
    }
    const double part = depth / away;
    const double width = m_extentsWidth * part, height = m_extentsHeight * part;
    if (part <= 0 || std::min(width, height) < kSmallestExtent || std::max(width, height) > kLargestExtent)
        return;
    m_target = m_position + along * depth;
    m_extentsWidth = width;
    m_extentsHeight = height;
    changed();
}

void Camera::fit(const BBox& box)
{
    if (box.isEmpty() || !isFinite(box.low().asVector()) || !isFinite(box.high().asVector()))
        return;
    m_pivotEnabled = false;
    if (box.diagonal() < kSmallestExtent) {
        dolly(box.centre() - m_target);
        m_fitRevision = m_revision;
        return;
    }
    const std::shared_ptr<const CameraSubject> subject = m_subject.lock();
    const double lens = distance() > 0 ? std::max(m_extentsWidth, m_extentsHeight) / distance() : 0;
    const Fitted fitted = CameraFit({.across = right(),
                                     .upward = screenUp(),
                                     .along = direction(),
                                     .perspective = m_projection == kPerspectiveProjection,
                                     .lens = lens},
                                    box, subject.get())
                              .find();
    m_position = fitted.target - direction() * fitted.distance;
    m_target = fitted.target;
    m_extentsWidth = fitted.width;
    m_extentsHeight = fitted.height;
    const double away = distance(), reach = box.diagonal() / 2;
    m_clipFar = away + reach * 1.1;
    m_clipNear = std::max(away - reach * 1.1, m_clipFar / 1000);
    changed();
    m_fitRevision = m_revision;
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
