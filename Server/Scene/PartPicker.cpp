#include "Server/Body/MeshPoints.h"
#include "Server/Scene/Private/MeshTree.h"
#include "Server/Scene/Private/PickSearch.h"
#include "Server/Scene/Private/ViewRay.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <tuple>
#include <utility>

namespace Vs::Scene {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::Node;
using Rendra::Graphics::Part;

namespace {

/// A body must be this many times the tolerance across for its edges to be distinguished from it.
constexpr double kTellApart = 3;
/// A curved edge less than this many times the tolerance across, the rim of a small hole for one, would be
/// hidden by its own ends, wherever one points.
constexpr double kSmallEdge = 2;
/// Of things this close together, in pixels, the one nearer to the viewer is meant.
constexpr double kAsNear = 1.5;
/// How many of a kind are returned, and how many are tested for being hidden.
constexpr size_t kMostAnswers = 8, kMostAsked = 64;

/// A vertex, or a point on an edge, near the requested place.
struct Candidate
{
    size_t body; ///< In Parts::m_bodies.
    PickedPart part;
    double pixels; ///< From the requested place.
    GkPoint3d screen;
    GkPoint3d local;
    bool isSmall = false; ///< A small curved edge, which comes before vertices.
};

/// Finds vertices and edges around a place of the screen.
class Parts
{
public:
    Parts(const Node& root, const Projection& projection, double x, double y, const PickWish& wish)
        : m_root(root), m_projection(projection), m_rays(root, projection), m_wish(wish), m_x(x), m_y(y)
    {
    }

    Probe rayAt(double x, double y) const { return m_rays.at(x, y); }

    /// `surface` is what the ray through the place itself hits.
    std::vector<PickedPoint> find(const std::optional<SurfaceHit>& surface)
    {
        gather(surface);
        std::vector<PickedPoint> answers;
        answer(Part::Edge, true, answers);
        answer(Part::Vertex, false, answers);
        answer(Part::Edge, false, answers);
        return answers;
    }

private:
    /// Beyond this depth everything around the place is hidden, as far as rays around it can tell.
    double deepestSurface(const std::optional<SurfaceHit>& surface) const
    {
        constexpr int kRays = 8;
        if (!surface)
            return BoxTree::kNever;
        double deepest = m_rays.depthOf(rayAt(m_x, m_y), surface->along);
        for (int i = 0; i < kRays; ++i) {
            const double angle = 2 * std::numbers::pi * i / kRays;
            const Probe ray =
                rayAt(m_x + m_wish.tolerance * std::cos(angle), m_y + m_wish.tolerance * std::sin(angle));
            const auto hit = nearestHit(m_root, ray, BoxTree::kNever);
            if (!hit)
                return BoxTree::kNever;
            deepest = std::max(deepest, m_rays.depthOf(ray, hit->along));
        }
        return deepest + m_rays.slackAt(deepest);
    }

    void gather(const std::optional<SurfaceHit>& surface)
    {
        Probe cone = rayAt(m_x, m_y);
        const double room = m_wish.tolerance * m_projection.pixelSize(1);
        (m_projection.perspective() ? cone.widening : cone.radius) = room;
        double limit = BoxTree::kNever;
        bool limited = !m_wish.visibleOnly;
        BodySearch search(
            limit, [&](const BodyNode& body, const Probe& local, const std::vector<const Node*>& path) {
                const auto parts = searchedParts(body);
                if (!parts || (parts->edgePoints.empty() && parts->vertexPoints.empty()))
                    return;
                // Determined for the first body that has anything to find.
                if (!std::exchange(limited, true)) {
                    m_deepest = deepestSurface(surface);
                    if (m_deepest != BoxTree::kNever)
                        limit = m_rays.alongOf(cone, m_deepest) * (1 + m_projection.pixelSize(1)) + room;
                }
                gather(parts, local, path, limit);
            });
        search.search(m_root, cone);
    }

    void gather(const std::shared_ptr<const BodyMesh>& parts, const Probe& cone,
                const std::vector<const Node*>& path, double limit)
    {
        const BodyMesh& mesh = *parts;
        const MeshTree* tree = MeshTree::of(parts);
        if (!tree && !MeshTree::isSmall(mesh))
            return;
        m_toCamera = m_projection.view();
        for (const Node* node : path)
            m_toCamera = m_toCamera * node->transform();
        if (pixelsOf(mesh) < kTellApart * m_wish.tolerance)
            return;
        const size_t before = m_candidates.size();
        m_small.clear();
        const auto each = [&](const BoxTree* boxes, size_t count, auto&& ask) {
            if (boxes)
                boxes->search(
                    limit, [&](const BoxTree::Box& box) { return cone.enter(box); }, ask);
            else
                for (uint32_t i = 0; i < count; ++i)
                    ask(i);
        };
        if (m_wish.vertices)
            each(tree ? &tree->vertices() : nullptr, mesh.vertexPoints.size() / 3,
                 [&](uint32_t vertex) { askVertex(mesh, vertex); });
        if (m_wish.edges)
            each(tree ? &tree->segments() : nullptr, mesh.edgePoints.size() / 3,
                 [&](uint32_t point) { askSegment(mesh, point); });
        if (m_candidates.size() > before)
            m_bodies.push_back(path);
    }

    double pixelsOf(const BodyMesh& mesh) const
    {
        const double size = mesh.bounds.diagonal() * (m_toCamera * GkVector3d(1, 0, 0)).length();
        const double depth = -(m_toCamera * mesh.bounds.centre()).z - size / 2;
        return m_projection.perspective() && depth <= 0 ? BoxTree::kNever
                                                        : size / m_projection.pixelSize(depth);
    }

    bool isAhead(const GkPoint3d& camera) const { return !m_projection.perspective() || camera.z < 0; }

    /// Whether it is near enough.
    bool add(PickedPart part, const GkPoint3d& screen, const GkPoint3d& local)
    {
        const double pixels = std::hypot(screen.x - m_x, screen.y - m_y);
        const bool isNear = pixels <= m_wish.tolerance && screen.z <= m_deepest;
        if (isNear)
            m_candidates.push_back({m_bodies.size(), part, pixels, screen, local});
        return isNear;
    }

    bool isSmall(const BodyMesh& mesh, uint32_t edge)
    {
        const auto [known, isNew] = m_small.try_emplace(edge, false);
        if (!isNew)
            return known->second;
        const uint32_t first = mesh.edgeStarts[edge], end = mesh.edgeStarts[edge + 1];
        if (end - first <= 2)
            return false;
        double left = BoxTree::kNever, right = -left, bottom = left, top = right;
        for (uint32_t point = first; point < end; ++point) {
            const GkPoint3d camera = m_toCamera * pointAt(mesh.edgePoints, point);
            if (!isAhead(camera))
                return false;
            const GkPoint3d screen = m_projection.cameraToScreen(camera);
            left = std::min(left, screen.x);
            right = std::max(right, screen.x);
            bottom = std::min(bottom, screen.y);
            top = std::max(top, screen.y);
            if (std::max(right - left, top - bottom) > kSmallEdge * m_wish.tolerance)
                return false;
        }
        return known->second = true;
    }

    void askVertex(const BodyMesh& mesh, uint32_t vertex)
    {
        const GkPoint3d local = pointAt(mesh.vertexPoints, vertex);
        const GkPoint3d camera = m_toCamera * local;
        if (isAhead(camera))
            add({Part::Vertex, vertex}, m_projection.cameraToScreen(camera), local);
    }

    void askSegment(const BodyMesh& mesh, uint32_t point)
    {
        const int64_t edge = edgeOfSegment(mesh, point);
        if (edge < 0)
            return;
        GkPoint3d ends[2] = {pointAt(mesh.edgePoints, point), pointAt(mesh.edgePoints, point + 1)};
        GkPoint3d camera[2] = {m_toCamera * ends[0], m_toCamera * ends[1]};
        if (!isAhead(camera[0]) && !isAhead(camera[1]))
            return;
        for (int i = 0; i < 2; ++i)
            if (!isAhead(camera[i])) { // cut off what is behind the viewer
                const double part = camera[1 - i].z / (camera[1 - i].z - camera[i].z) * (1 - 1e-6);
                ends[i] = ends[1 - i] + (ends[i] - ends[1 - i]) * part;
                camera[i] = m_toCamera * ends[i];
            }
        const GkPoint3d a = m_projection.cameraToScreen(camera[0]);
        const GkPoint3d b = m_projection.cameraToScreen(camera[1]);
        const double dx = b.x - a.x, dy = b.y - a.y, squared = dx * dx + dy * dy;
        double part = squared > 0 ? std::clamp(((m_x - a.x) * dx + (m_y - a.y) * dy) / squared, 0.0, 1.0) : 0;
        // The midpoint on the screen is nearer to the viewer than the midpoint in space.
        if (m_projection.perspective())
            part = part * a.z / (b.z + part * (a.z - b.z));
        const GkPoint3d local = ends[0] + (ends[1] - ends[0]) * part;
        if (add({Part::Edge, uint32_t(edge)}, m_projection.cameraToScreen(m_toCamera * local), local))
            m_candidates.back().isSmall = m_wish.vertices && isSmall(mesh, uint32_t(edge));
    }

    void answer(Part part, bool small, std::vector<PickedPoint>& answers) const
    {
        std::vector<const Candidate*> sorted;
        for (const Candidate& candidate : m_candidates)
            if (candidate.part.part == part && candidate.isSmall == small)
                sorted.push_back(&candidate);
        const auto rank = [](const Candidate* c) {
            return std::tuple(std::floor(c->pixels / kAsNear), c->screen.z, c->pixels);
        };
        std::sort(sorted.begin(), sorted.end(),
                  [&](const Candidate* a, const Candidate* b) { return rank(a) < rank(b); });
        std::vector<std::pair<size_t, uint32_t>> taken;
        size_t asked = 0;
        for (const Candidate* candidate : sorted) {
            const std::pair key(candidate->body, candidate->part.index);
            if (std::find(taken.begin(), taken.end(), key) != taken.end())
                continue;
            if (taken.size() == kMostAnswers || (m_wish.visibleOnly && ++asked > kMostAsked))
                return;
            if (m_wish.visibleOnly && m_rays.isHidden(m_root, candidate->screen))
                continue;
            taken.push_back(key);
            answers.push_back(pointOf(m_bodies[candidate->body]));
            answers.back().part = candidate->part;
            answers.back().localPoint = candidate->local;
            answers.back().along = candidate->screen.z;
        }
    }

    const Node& m_root;
    const Projection& m_projection;
    ViewRay m_rays;
    const PickWish& m_wish;
    double m_x, m_y;
    double m_deepest = BoxTree::kNever;
    GkMatrix3d m_toCamera; ///< Of the body that is being searched.
    std::vector<std::vector<const Node*>> m_bodies;
    std::vector<Candidate> m_candidates;
    std::map<uint32_t, bool> m_small; ///< Which edges of the body that is being searched are.
};

} // namespace

std::vector<PickedPoint> pickAt(const Node& root, const Projection& projection, double x, double y,
                                const PickWish& wish)
{
    Parts parts(root, projection, x, y, wish);
    const Probe ray = parts.rayAt(x, y);
    std::vector<PickedPoint> picked;
    if (!(ray.direction.lengthSqrd() > 0) || !std::isfinite(ray.start.x + ray.start.y + ray.start.z))
        return picked;
    const auto surface = nearestHit(root, ray, BoxTree::kNever);
    if (wish.vertices || wish.edges)
        picked = parts.find(surface);
    if (wish.visibleOnly && surface)
        picked.push_back(surface->point(ray));
    else if (!wish.visibleOnly)
        for (PickedPoint& point : pickAll(root, ray.start, ray.direction))
            picked.push_back(std::move(point));
    return picked;
}

} // namespace Vs::Scene
