#include "Server/Scene/AreaPicker.h"

#include "Server/Body/FinerMesh.h"
#include "Server/Body/MeshPoints.h"
#include "Server/Body/PartsMesh.h"
#include "Server/Scene/Private/PickSearch.h"
#include "Server/Scene/Private/ViewRay.h"
#include "Server/Scene/Private/ViewRegion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <utility>

namespace Vs::Scene {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;
using Rendra::Graphics::Node;
using Rendra::Graphics::Part;

namespace {

/// The number of rays along each side of the rectangle that tell what is visible in it; whatever they miss is
/// sampled at this many of its own points.
constexpr int kRays = 48;
constexpr size_t kPlacesAsked = 6;
/// A line is sampled this often on its way through the rectangle, and a short one less often, since its
/// samples are close together in pixels.
constexpr double kPlacesOnLine = 12, kLeastPlacesOnLine = 2, kBetweenPlaces = 8;

/// The points of a body or part, and whether they are within a region.
class Outline
{
public:
    Outline(const BodyMesh& mesh, const std::optional<PickedPart>& part) : m_mesh(mesh)
    {
        const auto all = [](size_t count) { return std::pair<size_t, size_t>(0, count); };
        if (!part) {
            m_triangles = all(mesh.triangles.size() / 3);
            m_points = all(mesh.edgePoints.size() / 3);
        } else if (part->part == Part::Face) {
            const BodyMesh::Face& face = mesh.faces[part->index];
            m_triangles = {face.firstTriangle, face.firstTriangle + face.triangleCount};
        } else if (part->part == Part::Edge) {
            m_points = {mesh.edgeStarts[part->index], mesh.edgeStarts[part->index + 1]};
        } else {
            m_vertex = part->index;
        }
    }

    size_t size() const
    {
        return 3 * (m_triangles.second - m_triangles.first) + m_points.second - m_points.first +
               m_vertex.has_value();
    }

    /// Whether `ask` accepts one of about that many points on surfaces: the middle of a triangle with two of
    /// its corners; or the vertex, three times. Lines are sampled differently (`linesWithin`): the ends of an
    /// edge say nothing about what is between them.
    template <class Ask>
    bool anyPlace(size_t places, Ask&& ask) const
    {
        using Place = std::array<GkPoint3d, 3>;
        const auto stepOf = [&](const auto& range) {
            return std::max<size_t>(1, (range.second - range.first) / places);
        };
        for (size_t i = m_triangles.first; i < m_triangles.second; i += stepOf(m_triangles)) {
            const GkPoint3d a = corner(3 * i), b = corner(3 * i + 1), c = corner(3 * i + 2);
            if (ask(Place{a + ((b - a) + (c - a)) * (1.0 / 3), b, c}))
                return true;
        }
        if (!m_vertex)
            return false;
        const GkPoint3d p = pointAt(m_mesh.vertexPoints, *m_vertex);
        return ask(Place{p, p, p});
    }

    using Line = std::pair<GkPoint3d, GkPoint3d>;
    /// Which parts of the edges lie within a region.
    std::vector<Line> linesWithin(const ViewRegion& region) const
    {
        std::vector<Line> lines;
        eachLine([&](GkPoint3d a, GkPoint3d b) {
            if (region.cutLine(a, b))
                lines.emplace_back(a, b);
            return false;
        });
        return lines;
    }

    bool isWithin(const ViewRegion& region) const
    {
        for (size_t i = 3 * m_triangles.first; i < 3 * m_triangles.second; ++i)
            if (!region.contains(corner(i)))
                return false;
        for (size_t i = m_points.first; i < m_points.second; ++i)
            if (!region.contains(pointAt(m_mesh.edgePoints, i)))
                return false;
        return size() > 0 && (!m_vertex || region.contains(pointAt(m_mesh.vertexPoints, *m_vertex)));
    }
    bool crosses(const ViewRegion& region) const
    {
        for (size_t i = 3 * m_triangles.first; i < 3 * m_triangles.second; i += 3)
            if (region.meetsTriangle(corner(i), corner(i + 1), corner(i + 2)))
                return true;
        if (eachLine([&](const GkPoint3d& a, const GkPoint3d& b) { return region.meetsLine(a, b); }))
            return true;
        return m_vertex && region.contains(pointAt(m_mesh.vertexPoints, *m_vertex));
    }

private:
    /// Called for the straight segments of the edges, in order, until one returns true.
    template <class Ask>
    bool eachLine(Ask&& ask) const
    {
        for (size_t i = m_points.first; i + 1 < m_points.second; ++i) {
            // The last point of an edge and the first of the next one are not joined.
            if (edgeOfSegment(m_mesh, uint32_t(i)) < 0)
                continue;
            if (ask(pointAt(m_mesh.edgePoints, i), pointAt(m_mesh.edgePoints, i + 1)))
                return true;
        }
        return false;
    }
    GkPoint3d corner(size_t index) const { return pointAt(m_mesh.positions, m_mesh.triangles[index]); }

    const BodyMesh& m_mesh;
    std::pair<size_t, size_t> m_triangles{0, 0}, m_points{0, 0}; ///< First and end.
    std::optional<uint32_t> m_vertex;
};

class AreaSearch
{
public:
    AreaSearch(const Node& root, const Projection& projection, const AreaWish& wish)
        : m_root(root), m_rays(root, projection), m_wish(wish)
    {
    }

    std::vector<PickedPoint> find()
    {
        const ViewRegion region(m_rays.projection(), m_wish.left, m_wish.bottom, m_wish.right, m_wish.top);
        visit(m_root, region, false);
        if (m_wish.visibleOnly && !m_found.empty()) {
            shootRays();
            std::erase_if(m_found, [&](const PickedPoint& found) { return !isSeen(found, region); });
        }
        return std::move(m_found);
    }

private:
    void visit(const Node& node, const ViewRegion& above, bool ghost)
    {
        if (!node.visible() || above.holds(node.boundingBox()) < 0)
            return;
        const ViewRegion region = above.within(node.transform());
        ghost = node.ghost().value_or(ghost);
        m_path.push_back(&node);
        if (const auto* group = cast<GroupNode>(&node))
            for (const auto& child : group->children())
                visit(*child, region, ghost);
        else if (const auto* body = cast<BodyNode>(&node); body && body->mesh() && !ghost)
            visitBody(m_wish.parts ? *partsMesh(shownMesh(body->mesh())) : *shownMesh(body->mesh()), region);
        m_path.pop_back();
    }

    void visitBody(const BodyMesh& mesh, const ViewRegion& region)
    {
        const int held = region.holds(mesh.bounds);
        if (held < 0)
            return;
        const auto ask = [&](const std::optional<PickedPart>& part) {
            const Outline outline(mesh, part);
            const bool in = held > 0          ? outline.size() > 0
                            : m_wish.crossing ? outline.crosses(region)
                                              : outline.isWithin(region);
            if (!in)
                return;
            m_found.push_back(pointOf(m_path));
            m_found.back().part = part;
        };
        if (m_wish.bodies)
            ask(std::nullopt);
        const std::pair<Part, size_t> counts[] = {
            {Part::Face, mesh.faces.size()},
            {Part::Edge, mesh.edgeStarts.empty() ? 0 : mesh.edgeStarts.size() - 1},
            {Part::Vertex, mesh.vertexPoints.size() / 3}};
        for (const auto& [part, count] : counts)
            for (uint32_t i = 0; (m_wish.parts & 1u << unsigned(part)) && i < count; ++i)
                ask(PickedPart{part, i});
    }

    static const BodyNode& bodyOf(const PickedPoint& found)
    {
        return *cast<BodyNode>(found.path.back().get());
    }

    void shootRays()
    {
        for (int i = 0; i < kRays * kRays; ++i) {
            const int row = i / kRays, column = i % kRays;
            const double x = (column + 0.5) / kRays, y = (row + 0.5) / kRays;
            const Probe ray = m_rays.at(m_wish.left + (m_wish.right - m_wish.left) * x,
                                        m_wish.bottom + (m_wish.top - m_wish.bottom) * y);
            const auto hit = nearestHit(m_root, ray, BoxTree::kNever);
            if (!hit)
                continue;
            const PickedPoint point = hit->point(ray);
            m_seen.insert({path(point), -1});
            if (point.part)
                m_seen.insert({path(point), point.part->index});
        }
    }

    using Path = std::vector<const Node*>;
    static Path path(const PickedPoint& point)
    {
        Path nodes;
        for (const auto& node : point.path)
            nodes.push_back(node.get());
        return nodes;
    }

    bool isSeen(const PickedPoint& found, const ViewRegion& region) const
    {
        if (!found.part || found.part->part == Part::Face) {
            const int64_t face = found.part ? int64_t(found.part->index) : -1;
            if (m_seen.contains({path(found), face}))
                return true;
        }
        const ViewRegion within = region.within(found.localToWorld);
        const auto& mesh = shownMesh(bodyOf(found).mesh());
        const Outline outline(found.part ? *partsMesh(mesh) : *mesh, found.part);
        return isAnySeen(outline.linesWithin(within), found.localToWorld) ||
               outline.anyPlace(kPlacesAsked, [&](const auto& local) {
                   return within.contains(local[0]) && !isEdgeOn(found.localToWorld, local) &&
                          !m_rays.isHidden(m_root, screen(found.localToWorld * local[0]));
               });
    }

    /// Samples all lines at even distances on the screen, strictly between their ends, because the ends are
    /// visible even where the line is hidden by its own body.
    bool isAnySeen(const std::vector<Outline::Line>& lines, const GkMatrix3d& toWorld) const
    {
        const auto length = [&](const Outline::Line& line) {
            const GkPoint3d a = screen(toWorld * line.first), b = screen(toWorld * line.second);
            return std::hypot(b.x - a.x, b.y - a.y);
        };
        double whole = 0;
        for (const Outline::Line& line : lines)
            whole += length(line);
        if (!(whole > 0))
            return false;
        const double count = std::ceil(std::clamp(whole / kBetweenPlaces, kLeastPlacesOnLine, kPlacesOnLine));
        double next = whole / count / 2;
        double before = 0;
        for (const Outline::Line& line : lines) {
            const double own = length(line);
            for (; next < before + own; next += whole / count) {
                const GkPoint3d place =
                    toWorld * (line.first + (line.second - line.first) * ((next - before) / own));
                if (!m_rays.isHidden(m_root, screen(place)))
                    return true;
            }
            before += own;
        }
        return false;
    }

    GkPoint3d screen(const GkPoint3d& world) const { return m_rays.projection().worldToScreen(world); }

    /// Whether only the edge of a surface is seen at a place, given by a point and two directions in the
    /// surface.
    bool isEdgeOn(const GkMatrix3d& toWorld, const std::array<GkPoint3d, 3>& local) const
    {
        constexpr double kAngle = 1e-3;
        const GkPoint3d place = toWorld * local[0];
        const GkVector3d normal =
            (toWorld * (local[1] - local[0])).crossProduct(toWorld * (local[2] - local[0]));
        const GkPoint3d screen = m_rays.projection().worldToScreen(place);
        const double length = normal.length();
        return length > 0 &&
               std::abs(normal.dotProduct(m_rays.at(screen.x, screen.y).direction)) < kAngle * length;
    }

    const Node& m_root;
    ViewRay m_rays;
    const AreaWish& m_wish;
    Path m_path;
    std::vector<PickedPoint> m_found;
    std::set<std::pair<Path, int64_t>> m_seen; ///< Bodies, and faces of them, that rays hit; -1 for the body.
};

} // namespace

std::vector<PickedPoint> pickArea(const Node& root, const Projection& projection, const AreaWish& wish)
{
    if (!(wish.left < wish.right) || !(wish.bottom < wish.top))
        return {};
    return AreaSearch(root, projection, wish).find();
}

} // namespace Vs::Scene
