#include "Server/Scene/Private/CameraFit.h"

#include <algorithm>
#include <cmath>

namespace Vs::Scene {

namespace {

/// The margin left around the content, as a fraction of its size.
constexpr double kMargin = 0.06;
/// Content without width in one direction still gets a rectangle.
constexpr double kThinnestPart = 1e-3;
/// A fraction of the content's size that nobody sees.
constexpr double kExactness = 1e-4;
/// Each round knows the content, and its shape in the picture, better than the one before.
constexpr int kRounds = 12;
constexpr double kEndless = 1e300;

/// The extent of something along one axis.
struct Range
{
    double low = kEndless, high = -kEndless;
    void add(double value)
    {
        low = std::min(low, value);
        high = std::max(high, value);
    }
    double middle() const { return (low + high) / 2; }
    double half() const { return (high - low) / 2; }
};

GkPoint3d corner(const BBox& box, int index)
{
    return {index & 1 ? box.high().x : box.low().x, index & 2 ? box.high().y : box.low().y,
            index & 4 ? box.high().z : box.low().z};
}

} // namespace

CameraFit::CameraFit(const Look& look, const BBox& box, const CameraSubject* subject)
    : m_look(look),
      m_box(box),
      m_subject(subject),
      m_centre(box.centre()),
      m_lens(std::clamp(look.lens > 0 ? look.lens : double(Camera::s_normalPersLens), 1e-3, 10.0))
{
    const double slope = look.perspective ? m_lens / 2 : 0;
    for (const GkVector3d& side :
         {look.across, -look.across, look.upward, -look.upward, look.along, -look.along}) {
        GkVector3d point;
        m_cornersAlone = m_cornersAlone || !ask(side - look.along * slope, point);
        m_points.push_back(point);
    }
    if (!m_cornersAlone)
        return;
    m_points.clear();
    for (int i = 0; i < 8; ++i) {
        const GkVector3d from = corner(box, i) - m_centre;
        m_points.emplace_back(from.dotProduct(look.across), from.dotProduct(look.upward),
                              from.dotProduct(look.along));
    }
}

bool CameraFit::ask(const GkVector3d& direction, GkVector3d& found) const
{
    GkPoint3d point;
    if (!m_subject || !m_subject->outermost(m_box, direction, point))
        return false;
    const GkVector3d from = point - m_centre;
    found = {from.dotProduct(m_look.across), from.dotProduct(m_look.upward), from.dotProduct(m_look.along)};
    return true;
}

Fitted CameraFit::find()
{
    Frame frame;
    Fitted fitted = framed(frame);
    for (int round = 0; round < kRounds; ++round) {
        const Frame wanted = frameFor(fitted);
        const bool more = protrudes(fitted);
        const bool settled = std::abs(wanted.scale - frame.scale) < kExactness * frame.scale &&
                             (wanted.offset - frame.offset).length() < kExactness;
        if (!more && settled)
            break;
        frame = wanted;
        fitted = framed(frame);
    }
    return fitted;
}

Fitted CameraFit::framed(const Frame& frame) const
{
    return m_look.perspective ? perspective(frame) : parallel(frame);
}

Fitted CameraFit::parallel(const Frame& frame) const
{
    Range x, y;
    for (const GkVector3d& p : m_points) {
        x.add(p.x);
        y.add(p.y);
    }
    // A line seen end on has no width at all.
    const double larger = std::max({x.half(), y.half(), m_box.diagonal() * kThinnestPart});
    const double whole = 2 * (1 + kMargin) * frame.scale;
    Fitted fitted;
    fitted.width = whole * std::max(x.half(), larger * kThinnestPart);
    fitted.height = whole * std::max(y.half(), larger * kThinnestPart);
    const double extent = std::max(fitted.width, fitted.height);
    fitted.target = m_centre + m_look.across * (x.middle() - frame.offset.x * extent) +
                    m_look.upward * (y.middle() - frame.offset.y * extent);
    // Far enough in front of the box that a perspective made from this view sees all of it.
    fitted.distance = std::max(extent / double(Camera::s_normalPersLens), m_box.diagonal());
    return fitted;
}

// Off the middle by the amount that perspective enlarges the nearer points, at the depth of the eye.
double CameraFit::middle(double GkVector3d::*axis, double depth, double aim) const
{
    double at = 0;
    for (int step = 0; step < 4; ++step) {
        double low = kEndless, high = -kEndless, lowDepth = 1, highDepth = 1;
        for (const GkVector3d& p : m_points) {
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
        at += (low + high - 2 * aim) / (1 / lowDepth + 1 / highDepth);
    }
    return at;
}

// The eye moves back along the direction until the sides of the view frustum touch the outermost points;
// there the touching points on the left and right, and at the bottom and top, are equally far from where the
// middle of the content should be.
Fitted CameraFit::perspective(const Frame& frame) const
{
    const double slope = m_lens / 2 / (1 + kMargin) / frame.scale;
    const double aimX = frame.offset.x * m_lens, aimY = frame.offset.y * m_lens;
    double nearest = kEndless, left = -kEndless, right = -kEndless, below = -kEndless, above = -kEndless;
    for (const GkVector3d& p : m_points) {
        nearest = std::min(nearest, p.z);
        right = std::max(right, p.x - (slope + aimX) * p.z);
        left = std::max(left, -p.x - (slope - aimX) * p.z);
        above = std::max(above, p.y - (slope + aimY) * p.z);
        below = std::max(below, -p.y - (slope - aimY) * p.z);
    }
    // A line seen end on has no width; the eye is in front of its end nevertheless.
    const double depth = std::min(std::min(-(left + right), -(below + above)) / 2 / slope,
                                  nearest - m_box.diagonal() * kThinnestPart / slope);
    const double x = middle(&GkVector3d::x, depth, aimX), y = middle(&GkVector3d::y, depth, aimY);
    Range tangentX, tangentY;
    for (const GkVector3d& p : m_points) {
        tangentX.add((p.x - x) / (p.z - depth));
        tangentY.add((p.y - y) / (p.z - depth));
    }
    double halfX = tangentX.half(), halfY = tangentY.half();
    if (std::max(halfX, halfY) < slope * kThinnestPart)
        halfX = halfY = slope;
    const double larger = std::max(halfX, halfY) * kThinnestPart;
    const double whole = -2 * depth * (1 + kMargin) * frame.scale;
    // The lens stays the same: the larger direction touches the frustum, up to rounding.
    return {m_centre + m_look.across * x + m_look.upward * y, -depth, whole * std::max(halfX, larger),
            whole * std::max(halfY, larger)};
}

CameraFit::Frame CameraFit::frameFor(const Fitted& fitted) const
{
    Frame frame;
    const double larger = std::max(fitted.width, fitted.height);
    const CameraSubject::Room room =
        m_subject ? m_subject->roomFor(fitted.width / fitted.height) : CameraSubject::Room();
    if (!(room.width > 0) || !(room.height > 0) || !(room.right > room.left) || !(room.top > room.bottom))
        return frame;
    const auto pixel = [&](double width, double height) {
        return std::max(fitted.width / width, fitted.height / height) / larger;
    };
    const double whole = pixel(room.width, room.height);
    frame.scale = pixel(room.right - room.left, room.top - room.bottom) / whole;
    frame.offset = GkVector3d(room.left + room.right, room.bottom + room.top, 0) * (whole / 2);
    return frame;
}

/// Probes the sides of the picture for content beyond what is known so far, and learns it.
bool CameraFit::protrudes(const Fitted& fitted)
{
    if (m_cornersAlone || !m_look.perspective)
        return false;
    const GkVector3d from = fitted.target - m_look.along * fitted.distance - m_centre;
    const GkVector3d eye(from.dotProduct(m_look.across), from.dotProduct(m_look.upward),
                         from.dotProduct(m_look.along));
    Range x, y;
    for (const GkVector3d& p : m_points) {
        x.add((p.x - eye.x) / (p.z - eye.z));
        y.add((p.y - eye.y) / (p.z - eye.z));
    }
    bool learnt = false;
    const auto look = [&](const GkVector3d& side, double GkVector3d::*axis, double sense, double tangent) {
        GkVector3d p;
        if (!ask(side * sense - m_look.along * (sense * tangent), p))
            return;
        const double beyond = sense * (p.*axis - eye.*axis - tangent * (p.z - eye.z));
        if (beyond < kExactness * m_box.diagonal())
            return;
        m_points.push_back(p);
        learnt = true;
    };
    look(m_look.across, &GkVector3d::x, 1, x.high);
    look(m_look.across, &GkVector3d::x, -1, x.low);
    look(m_look.upward, &GkVector3d::y, 1, y.high);
    look(m_look.upward, &GkVector3d::y, -1, y.low);
    return learnt;
}

} // namespace Vs::Scene
