#include "Server/Body/Private/MeshRegions.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <utility>

namespace Vs {

namespace {

/// Of the mesh's size: what lies so near to a plane is in it, and what truly is a plane is nearer by far.
constexpr double kOnPlane = 1e-5, kTrulyOnPlane = 2.5e-6;
constexpr double kAlongPlaneCosine = 0.99985; // 1 degree
/// How far the normals of a true plane are off its own, squared and averaged over its area, in radians.
constexpr double kTruePlane = 1e-6;
/// A flat part that goes over into a bent one smoothly is larger than the strips of that: so many times the
/// largest and so many times all that meet it. Parts of the bent one itself aren't.
constexpr double kLargerThanOne = 4, kLargerThanAll = 2;
/// A plane is known the better the more of it is.
constexpr int kRounds = 4;

/// Triangles that lie in one plane.
struct Patch
{
    double area = 0;
    bool plane = false;          ///< Not merely a piece of a bent surface.
    bool thin = true;            ///< Nothing but thin triangles.
    double largest = 0, all = 0; ///< Areas of those that go over into it smoothly.
    size_t meeting = 0;          ///< How many sides of such meet it.
};

/// Divides the surface into patches, the largest triangles first.
class Patches
{
public:
    explicit Patches(const MeshSides& sides)
        : of(sides.triangles(), MeshSides::kNone), m_sides(sides), m_seen(sides.triangles(), 0)
    {
        std::vector<double> areas(sides.triangles());
        for (size_t t = 0; t < areas.size(); ++t)
            areas[t] = sides.isThin(t) ? 0 : sides.area(t).length();
        std::vector<uint32_t> order(areas.size());
        std::iota(order.begin(), order.end(), 0u);
        std::stable_sort(order.begin(), order.end(),
                         [&](uint32_t a, uint32_t b) { return areas[a] > areas[b]; });
        for (const uint32_t seed : order)
            if (of[seed] == MeshSides::kNone)
                grow(seed);
        compare();
    }

    std::vector<uint32_t> of; ///< By triangle.
    std::vector<Patch> all;

private:
    struct Plane
    {
        GkPoint3d origin;
        GkVector3d normal;
        double off(const GkPoint3d& p) const { return std::abs((p - origin).dotProduct(normal)); }
    };

    void grow(uint32_t seed)
    {
        Plane plane{m_sides.place(m_sides.node(seed, 0)), m_sides.area(seed).normal()};
        collect(seed, plane);
        for (int round = 1; round < kRounds && m_found.size() > 1; ++round) {
            const size_t before = m_found.size();
            plane = planeThrough();
            collect(seed, plane);
            if (m_found.size() == before)
                break;
        }
        for (const uint32_t t : m_found)
            of[t] = uint32_t(all.size());
        all.push_back(patchIn(plane));
    }

    /// What is joined to the seed within the plane.
    void collect(uint32_t seed, const Plane& plane)
    {
        m_found.assign(1, seed);
        m_seen[seed] = ++m_round;
        for (size_t i = 0; i < m_found.size(); ++i)
            for (size_t k = 0; k < 3; ++k) {
                const uint32_t next = m_sides.neighbour(m_found[i], k);
                if (next == MeshSides::kNone || m_seen[next] == m_round || of[next] != MeshSides::kNone ||
                    m_sides.isSharp(m_found[i], k) || !isIn(next, plane))
                    continue;
                m_seen[next] = m_round;
                m_found.push_back(next);
            }
    }

    bool isIn(uint32_t t, const Plane& plane) const
    {
        for (size_t k = 0; k < 3; ++k)
            if (plane.off(m_sides.place(m_sides.node(t, k))) > kOnPlane * m_sides.size())
                return false;
        return m_sides.isThin(t) ||
               std::abs(m_sides.area(t).normal().dotProduct(plane.normal)) > kAlongPlaneCosine;
    }

    Plane planeThrough() const
    {
        GkVector3d normal, moment;
        double sum = 0;
        const GkVector3d along = m_sides.area(m_found.front());
        for (const uint32_t t : m_found) {
            const GkVector3d area = m_sides.area(t);
            // Triangles of a careless file may look to the other side.
            normal = normal + area * (area.dotProduct(along) < 0 ? -1.0 : 1.0);
            for (size_t k = 0; k < 3; ++k)
                moment = moment + m_sides.place(m_sides.node(t, k)).asVector() * (area.length() / 3);
            sum += area.length();
        }
        return {GkPoint3d() + moment / sum, normal.normal()};
    }

    Patch patchIn(const Plane& plane) const
    {
        Patch patch;
        double off = 0, bent = 0;
        for (const uint32_t t : m_found) {
            for (size_t k = 0; k < 3; ++k)
                off = std::max(off, plane.off(m_sides.place(m_sides.node(t, k))));
            if (m_sides.isThin(t))
                continue;
            const GkVector3d area = m_sides.area(t);
            patch.thin = false;
            patch.area += area.length();
            bent += area.length() * area.normal().crossProduct(plane.normal).lengthSqrd();
        }
        patch.plane = off <= kTrulyOnPlane * m_sides.size() && bent <= kTruePlane * patch.area;
        return patch;
    }

    void compare()
    {
        std::vector<std::pair<uint32_t, uint32_t>> pairs;
        for (size_t t = 0; t < of.size(); ++t)
            for (size_t k = 0; k < 3; ++k) {
                const uint32_t next = m_sides.neighbour(t, k);
                if (next == MeshSides::kNone || m_sides.isSharp(t, k) || of[next] == of[t] ||
                    all[of[next]].thin)
                    continue;
                Patch& patch = all[of[t]];
                patch.largest = std::max(patch.largest, all[of[next]].area);
                ++patch.meeting;
                pairs.emplace_back(of[t], of[next]);
            }
        std::sort(pairs.begin(), pairs.end());
        pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
        for (const auto& [ours, other] : pairs)
            all[ours].all += all[other].area;
    }

    const MeshSides& m_sides;
    std::vector<uint32_t> m_found, m_seen;
    uint32_t m_round = 0;
};

/// Joins patches into regions.
class Joined
{
public:
    explicit Joined(size_t count) : m_root(count), m_members(count, 1)
    {
        std::iota(m_root.begin(), m_root.end(), 0u);
    }

    uint32_t root(uint32_t patch)
    {
        while (m_root[patch] != patch)
            patch = m_root[patch] = m_root[m_root[patch]];
        return patch;
    }
    void join(uint32_t a, uint32_t b)
    {
        a = root(a), b = root(b);
        if (a == b)
            return;
        if (m_members[a] < m_members[b])
            std::swap(a, b);
        m_root[b] = a;
        m_members[a] += m_members[b];
    }
    uint32_t members(uint32_t patch) { return m_members[root(patch)]; }

private:
    std::vector<uint32_t> m_root, m_members;
};

bool isFlatPart(const Patch& patch)
{
    return patch.plane && (patch.meeting == 0 || (patch.area >= kLargerThanOne * patch.largest &&
                                                  patch.area >= kLargerThanAll * patch.all));
}

/// By triangle, the patch that it goes with: a thin one with a neighbour, or one of a neighbour's, or, where
/// it hangs on nothing, with the triangle before it.
std::vector<uint32_t> holders(const MeshSides& sides, const Patches& patches)
{
    constexpr int kRounds = 4;
    std::vector<uint32_t> patch = patches.of;
    const auto isThin = [&](size_t t) { return patches.all[patch[t]].thin; };
    for (int round = 0; round < kRounds; ++round)
        for (size_t t = 0; t < patch.size(); ++t)
            for (size_t k = 0; isThin(t) && k < 3; ++k)
                if (const uint32_t next = sides.neighbour(t, k); next != MeshSides::kNone)
                    patch[t] = patch[next];
    for (size_t t = 1; t < patch.size(); ++t)
        if (isThin(t))
            patch[t] = patch[t - 1];
    return patch;
}

} // namespace

MeshRegions::MeshRegions(const MeshSides& sides) : ofTriangle(sides.triangles())
{
    const Patches patches(sides);
    Joined joined(patches.all.size());
    for (size_t t = 0; t < sides.triangles(); ++t)
        for (size_t k = 0; k < 3; ++k) {
            const uint32_t next = sides.neighbour(t, k);
            if (next == MeshSides::kNone || sides.isSharp(t, k))
                continue;
            const uint32_t ours = patches.of[t], other = patches.of[next];
            const auto isBent = [&](uint32_t patch) {
                return !patches.all[patch].thin && !isFlatPart(patches.all[patch]);
            };
            if (isBent(ours) && isBent(other))
                joined.join(ours, other);
        }
    // Two planes that meet at a small angle are no bent surface.
    constexpr uint32_t kFewest = 3;
    const std::vector<uint32_t> holding = holders(sides, patches);
    std::map<uint32_t, uint32_t> numbers;
    for (uint32_t t = 0; t < ofTriangle.size(); ++t) {
        const uint32_t patch = holding[t];
        const bool alone = patches.all[patch].plane && joined.members(patch) < kFewest;
        const uint32_t key = alone ? patch : uint32_t(patches.all.size()) + joined.root(patch);
        const auto [found, isNew] = numbers.try_emplace(key, count);
        count += isNew;
        ofTriangle[t] = found->second;
    }
}

} // namespace Vs
