#include "UI/Base/View/OrbiconCube.h"

#include "Server/Base/Require.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/Picker.h"
#include "Server/Scene/StrokeFont.h"
#include "UI/Base/Command/Private/Localized.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace Vu {
namespace {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;
using Vs::Scene::NodeChange;

/// Half the length of a face between its bevels.
constexpr double kFace = 0.74;
/// Of a face, the part of the width that its name may take, and the most of its height.
constexpr double kLabelWidth = 1.24, kLabelHeight = 0.4;
/// How far a name stands before its face, so that it isn't lost in it.
constexpr double kLabelLift = 0.012;

// Light enough for dark letters, dark enough to stand before a light background.
constexpr Vs::Colour kFaceColour{0.80f, 0.83f, 0.87f, 1};
constexpr Vs::Colour kBevelColour{0.60f, 0.65f, 0.72f, 1};
constexpr Vs::Colour kPointedColour{0.13f, 0.47f, 0.90f, 1};
constexpr Vs::Colour kLabelColour{0.015f, 0.02f, 0.035f, 1};

std::vector<GkVector3d> makeDirections()
{
    std::vector<GkVector3d> directions;
    for (int x = -1; x <= 1; ++x)
        for (int y = -1; y <= 1; ++y)
            for (int z = -1; z <= 1; ++z)
                if (x != 0 || y != 0 || z != 0)
                    directions.emplace_back(x, y, z);
    return directions;
}

bool isFace(const GkVector3d& direction)
{
    return direction.length() < 1.1;
}

/// The corners of a zone, in order: all points with a 1 in one of the zone's directions and kFace in the
/// others'.
std::vector<GkVector3d> cornersOf(const GkVector3d& zone)
{
    const double parts[3] = {zone.x, zone.y, zone.z};
    std::vector<GkVector3d> corners;
    for (int out = 0; out < 3; ++out) {
        if (parts[out] == 0)
            continue;
        // Where the zone has no side, both ends belong to it.
        for (int ends = 0; ends < 4; ++ends) {
            double corner[3];
            bool counted = true;
            for (int axis = 0, bit = 1; axis < 3; ++axis) {
                if (axis == out) {
                    corner[axis] = parts[axis];
                    continue;
                }
                const bool upper = (ends & bit) != 0;
                bit <<= 1;
                if (parts[axis] != 0)
                    counted = counted && !upper;
                corner[axis] = kFace * (parts[axis] != 0 ? parts[axis] : upper ? 1 : -1);
            }
            if (counted)
                corners.emplace_back(corner[0], corner[1], corner[2]);
        }
    }
    GkVector3d centre;
    for (const GkVector3d& corner : corners)
        centre = centre + corner / double(corners.size());
    const GkVector3d normal = zone.normal();
    const GkVector3d across = normal.perpVector().normal(), upward = normal.crossProduct(across);
    std::ranges::sort(corners, {}, [&](const GkVector3d& corner) {
        const GkVector3d from = corner - centre;
        return std::atan2(from.dotProduct(upward), from.dotProduct(across));
    });
    return corners;
}

std::shared_ptr<const Vs::BodyMesh> meshOf(const GkVector3d& zone)
{
    auto mesh = std::make_shared<Vs::BodyMesh>();
    const std::vector<GkVector3d> corners = cornersOf(zone);
    const GkVector3d normal = zone.normal();
    const auto put = [](std::vector<float>& to, const GkVector3d& v) {
        to.insert(to.end(), {float(v.x), float(v.y), float(v.z)});
    };
    for (const GkVector3d& corner : corners) {
        put(mesh->positions, corner);
        put(mesh->normals, normal);
        mesh->bounds.add(GkPoint3d(corner.x, corner.y, corner.z));
    }
    const auto count = static_cast<uint32_t>(corners.size());
    for (uint32_t i = 2; i < count; ++i)
        mesh->triangles.insert(mesh->triangles.end(), {0, i - 1, i});
    mesh->faces.push_back({0, count - 2, -1});
    for (uint32_t i = 0; i <= count; ++i)
        put(mesh->edgePoints, corners[i % count]);
    mesh->edgeStarts = {0, count + 1};
    return mesh;
}

struct Side
{
    GkVector3d direction;
    GkVector3d upward; ///< Where the tops of the letters are.
    std::wstring name;
};

std::array<Side, 6> sides()
{
    return {{
        {{0, 0, 1}, {0, 1, 0}, localized("OrbiconTop", "TOP")},
        {{0, 0, -1}, {0, -1, 0}, localized("OrbiconBottom", "BOTTOM")},
        {{0, -1, 0}, {0, 0, 1}, localized("OrbiconFront", "FRONT")},
        {{0, 1, 0}, {0, 0, 1}, localized("OrbiconBack", "BACK")},
        {{1, 0, 0}, {0, 0, 1}, localized("OrbiconRight", "RIGHT")},
        {{-1, 0, 0}, {0, 0, 1}, localized("OrbiconLeft", "LEFT")},
    }};
}

} // namespace

OrbiconCube::OrbiconCube(GroupNode* parent) : m_node(GroupNode::make("Orbicon"))
{
    Vs::require(parent != nullptr, "the cube hangs below a node");
    for (size_t zone = 0; zone < kZones; ++zone) {
        m_zones.push_back(BodyNode::make(meshOf(direction(zone)), {}));
        NodeChange(m_node.get()).add(m_zones.back());
        paint(zone);
    }
    for (const Side& side : sides())
        addLabel(side.direction, side.upward, side.name);
    NodeChange(parent).add(m_node);
}

const GkVector3d& OrbiconCube::direction(size_t zone)
{
    static const std::vector<GkVector3d> directions = makeDirections();
    return directions.at(zone);
}

void OrbiconCube::addLabel(const GkVector3d& side, const GkVector3d& upward, const std::wstring& text)
{
    const double width = Vs::Scene::StrokeFont::width(text);
    if (width <= 0)
        return;
    const double height = std::min(kLabelHeight, kLabelWidth / width);
    const GkVector3d across = upward.crossProduct(side);
    const GkVector3d start = side * (1 + kLabelLift) - across * (width * height / 2) - upward * (height / 2);
    auto label = NodeChange::createLODGeometryNode(m_node.get(), true);
    NodeChange change(label.get());
    change.colorEffect(kLabelColour);
    for (const Vs::Scene::StrokeFont::Polyline& line : Vs::Scene::StrokeFont::lines(text)) {
        std::vector<GkPoint3d> points;
        for (const GkPoint2d& point : line)
            points.push_back(GkPoint3d::kOrigin + start + across * (point.x * height) +
                             upward * (point.y * height));
        change.polyline(std::move(points));
    }
}

void OrbiconCube::orientation(const GkVector3d& up, const GkVector3d& front)
{
    Vs::require(std::abs(up.dotProduct(front)) < 1e-6 && std::abs(up.length() - 1) < 1e-6 &&
                    std::abs(front.length() - 1) < 1e-6,
                "up and front have the length one and are at right angles");
    const GkVector3d columns[3] = {up.crossProduct(front), -front, up};
    GkMatrix3d turn;
    for (int i = 0; i < 3; ++i) {
        turn.entry[0][i] = columns[i].x;
        turn.entry[1][i] = columns[i].y;
        turn.entry[2][i] = columns[i].z;
    }
    NodeChange(m_node.get()).transform(turn);
}

std::optional<size_t> OrbiconCube::zoneAt(const GkPoint3d& start, const GkVector3d& along) const
{
    const auto picked = Vs::Scene::pick(*m_node, start, along);
    if (!picked || picked->path.empty())
        return std::nullopt;
    const auto found = std::ranges::find_if(
        m_zones, [&](const auto& zone) { return zone.get() == picked->path.back().get(); });
    if (found == m_zones.end())
        return std::nullopt;
    return size_t(found - m_zones.begin());
}

void OrbiconCube::highlight(std::optional<size_t> zone)
{
    Vs::require(!zone || *zone < kZones, "a zone that stands out is one of the cube's");
    const std::optional<size_t> before = std::exchange(m_highlighted, zone);
    if (before)
        paint(*before);
    if (zone)
        paint(*zone);
}

void OrbiconCube::paint(size_t zone)
{
    const Vs::Colour& own = isFace(direction(zone)) ? kFaceColour : kBevelColour;
    NodeChange(m_zones[zone].get()).bodyColour(zone == m_highlighted ? kPointedColour : own);
}

} // namespace Vu
