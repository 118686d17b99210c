#include "UI/Base/Session/ManipulatorHandles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace Vu {
namespace {

using Kind = ManipulatorHandle::Kind;
using Vs::Scene::Projection;

constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kShaft = 0.012, kTip = 0.045, kTipLength = 0.18;
/// Where the squares of the planes lie, and how large the rings are.
constexpr double kSquareFrom = 0.26, kSquareTo = 0.48;
constexpr double kRing = 0.78;
constexpr int kSides = 12, kRingSteps = 72;
/// The smallest sine of the angle to the viewing direction at which a drag is still meaningful.
constexpr double kFlat = 0.12;

/// One point of a line that has a thickness.
struct Bead
{
    GkPoint3d at;
    double radius;
};

void put(std::vector<float>& to, const GkVector3d& v)
{
    to.insert(to.end(), {float(v.x), float(v.y), float(v.z)});
}

GkVector3d axisOf(int axis)
{
    return {axis == 0 ? 1.0 : 0.0, axis == 1 ? 1.0 : 0.0, axis == 2 ? 1.0 : 0.0};
}

/// A surface around the beads. The normals are those of a tube, which will do for a tip as well.
std::shared_ptr<const Vs::BodyMesh> skin(const std::vector<Bead>& beads)
{
    auto mesh = std::make_shared<Vs::BodyMesh>();
    const size_t count = beads.size();
    const bool closed = beads.front().at.distanceTo(beads.back().at) < 1e-9;
    for (size_t i = 0; i < count; ++i) {
        const GkPoint3d& before = beads[i > 0 ? i - 1 : closed ? count - 2 : 0].at;
        const GkPoint3d& behind = beads[i + 1 < count ? i + 1 : closed ? 1 : count - 1].at;
        const GkVector3d along = (behind - before).normal();
        const GkVector3d across = along.perpVector().normal(), upward = along.crossProduct(across);
        for (int side = 0; side < kSides; ++side) {
            const double angle = kTurn * side / kSides;
            const GkVector3d out = across * std::cos(angle) + upward * std::sin(angle);
            const GkPoint3d point = beads[i].at + out * beads[i].radius;
            put(mesh->positions, point.asVector());
            put(mesh->normals, out);
            mesh->bounds.add(point);
        }
    }
    for (uint32_t i = 0; i + 1 < count; ++i)
        for (uint32_t side = 0; side < kSides; ++side) {
            const uint32_t next = (side + 1) % kSides, a = i * kSides, b = a + kSides;
            mesh->triangles.insert(mesh->triangles.end(),
                                   {a + side, a + next, b + next, a + side, b + next, b + side});
        }
    mesh->faces.push_back({0, static_cast<uint32_t>(mesh->triangles.size() / 3), -1});
    mesh->edgeStarts = {0};
    return mesh;
}

std::vector<GkPoint3d> ringPoints(int axis)
{
    const GkVector3d across = axisOf((axis + 1) % 3), upward = axisOf((axis + 2) % 3);
    std::vector<GkPoint3d> points;
    for (int i = 0; i <= kRingSteps; ++i) {
        const double angle = kTurn * i / kRingSteps;
        points.push_back(GkPoint3d::kOrigin + (across * std::cos(angle) + upward * std::sin(angle)) * kRing);
    }
    return points;
}

std::array<GkPoint3d, 4> squarePoints(int axis)
{
    const GkVector3d u = axisOf((axis + 1) % 3), v = axisOf((axis + 2) % 3);
    const auto at = [&](double a, double b) { return GkPoint3d::kOrigin + u * a + v * b; };
    return {at(kSquareFrom, kSquareFrom), at(kSquareTo, kSquareFrom), at(kSquareTo, kSquareTo),
            at(kSquareFrom, kSquareTo)};
}

/// Seen from both sides.
std::shared_ptr<const Vs::BodyMesh> squareMesh(int axis)
{
    auto mesh = std::make_shared<Vs::BodyMesh>();
    for (const double side : {1.0, -1.0})
        for (const GkPoint3d& point : squarePoints(axis)) {
            put(mesh->positions, point.asVector());
            put(mesh->normals, axisOf(axis) * side);
            mesh->bounds.add(point);
        }
    mesh->triangles = {0, 1, 2, 0, 2, 3, 4, 6, 5, 4, 7, 6};
    mesh->faces.push_back({0, 4, -1});
    mesh->edgeStarts = {0};
    return mesh;
}

double distanceToSegment(const GkPoint3d& from, const GkPoint3d& to, double x, double y)
{
    const double dx = to.x - from.x, dy = to.y - from.y, square = dx * dx + dy * dy;
    const double along =
        square > 0 ? std::clamp(((x - from.x) * dx + (y - from.y) * dy) / square, 0.0, 1.0) : 0.0;
    return std::hypot(x - from.x - along * dx, y - from.y - along * dy);
}

double distanceToLine(const std::vector<GkPoint3d>& points, const GkMatrix3d& frame,
                      const Projection& projection, double x, double y)
{
    double least = std::numeric_limits<double>::max();
    for (size_t i = 0; i + 1 < points.size(); ++i)
        least = std::min(least, distanceToSegment(projection.worldToScreen(frame * points[i]),
                                                  projection.worldToScreen(frame * points[i + 1]), x, y));
    return least;
}

bool isInside(const std::array<GkPoint3d, 4>& corners, double x, double y)
{
    int left = 0;
    for (size_t i = 0; i < corners.size(); ++i) {
        const GkPoint3d &a = corners[i], &b = corners[(i + 1) % corners.size()];
        left += (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x) > 0;
    }
    return left == 0 || left == 4;
}

} // namespace

GkVector3d ManipulatorHandle::direction() const
{
    return axisOf(axis);
}

std::shared_ptr<const Vs::BodyMesh> meshOf(const ManipulatorHandle& handle)
{
    if (handle.kind == Kind::Plane)
        return squareMesh(handle.axis);
    std::vector<Bead> beads;
    if (handle.kind == Kind::Turn) {
        for (const GkPoint3d& point : ringPoints(handle.axis))
            beads.push_back({point, kShaft});
        return skin(beads);
    }
    const auto at = [&](double along) { return GkPoint3d::kOrigin + handle.direction() * along; };
    return skin({{at(0.06), 0},
                 {at(0.061), kShaft},
                 {at(1 - kTipLength), kShaft},
                 {at(1 - kTipLength + 0.001), kTip},
                 {at(1), 0}});
}

Vs::Colour colourOf(const ManipulatorHandle& handle, bool pointed)
{
    constexpr Vs::Colour kAxes[] = {
        {0.75f, 0.05f, 0.04f, 1}, {0.08f, 0.45f, 0.06f, 1}, {0.05f, 0.16f, 0.75f, 1}};
    constexpr Vs::Colour kPointed{1.0f, 0.62f, 0.02f, 1};
    return pointed ? kPointed : kAxes[handle.axis];
}

std::optional<double> distanceTo(const ManipulatorHandle& handle, const GkMatrix3d& frame,
                                 const Projection& projection, double x, double y)
{
    const GkPoint3d middle = projection.worldToScreen(frame * GkPoint3d::kOrigin);
    const GkVector3d view = projection.rayDirection(middle.x, middle.y);
    const double towards = std::abs(view.dotProduct((frame * handle.direction()).normal()));
    const double turned =
        handle.kind == Kind::Along ? std::sqrt(std::max(0.0, 1 - towards * towards)) : towards;
    if (turned < kFlat)
        return std::nullopt;
    if (handle.kind == Kind::Along)
        return distanceToLine({GkPoint3d::kOrigin + handle.direction() * kSquareFrom / 2,
                               GkPoint3d::kOrigin + handle.direction()},
                              frame, projection, x, y);
    if (handle.kind == Kind::Turn)
        return distanceToLine(ringPoints(handle.axis), frame, projection, x, y);
    std::array<GkPoint3d, 4> corners = squarePoints(handle.axis);
    for (GkPoint3d& corner : corners)
        corner = projection.worldToScreen(frame * corner);
    return isInside(corners, x, y) ? 0.0 : std::numeric_limits<double>::max();
}

std::optional<GkVector3d> placeOn(const ManipulatorHandle& handle, const GkMatrix3d& frame,
                                  const Projection& projection, double x, double y)
{
    const GkMatrix3d toFrame = frame.inverse();
    const GkPoint3d start = toFrame * projection.rayStart(x, y);
    const GkVector3d ray = (toFrame * projection.rayDirection(x, y)).normal();
    const GkVector3d axis = handle.direction();
    const double along = ray.dotProduct(axis);
    const GkVector3d from = start.asVector();
    if (handle.kind == Kind::Along) {
        // The point of the axis that is nearest to the ray.
        const double square = 1 - along * along;
        if (square < 1e-9)
            return std::nullopt;
        return axis * ((from.dotProduct(axis) - from.dotProduct(ray) * along) / square);
    }
    if (std::abs(along) < 1e-9)
        return std::nullopt;
    const GkVector3d place = from - ray * (from.dotProduct(axis) / along);
    if (handle.kind == Kind::Plane)
        return place;
    const GkVector3d u = axisOf((handle.axis + 1) % 3), v = axisOf((handle.axis + 2) % 3);
    return GkVector3d(std::atan2(place.dotProduct(v), place.dotProduct(u)), 0, 0);
}

} // namespace Vu
