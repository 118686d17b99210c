#include "Server/DataModel/Kernel/TriangleLimits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>
#include <xxhash.h>

namespace Vs::Kernel {

namespace {

constexpr size_t kMostTriangles = 2'000'000;
constexpr int kMostPasses = 60;
// As parts of the part's diagonal. Sides of a thousandth already make millions of triangles of a large face;
// a thin triangle needs shorter ones, but not many.
constexpr float kLeastEdgeLength = 1e-3f;
constexpr float kShortestSide = 5e-4f;
// No splitting makes all triangles of any outline rounder than this.
constexpr float kLeastRatio = 3;

using Triangle = std::array<uint32_t, 3>;
using Vector = std::array<float, 3>;

Vector cross(const Vector& a, const Vector& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

float dot(const Vector& a, const Vector& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

float length(const Vector& v)
{
    return std::sqrt(dot(v, v));
}

/// A mesh whose triangles are taken apart.
class Triangles
{
public:
    explicit Triangles(BodyMesh& mesh) : mesh(mesh) {}

    size_t count() const { return mesh.triangles.size() / 3; }

    Triangle triangle(size_t i) const
    {
        return {mesh.triangles[3 * i], mesh.triangles[3 * i + 1], mesh.triangles[3 * i + 2]};
    }

    Vector from(uint32_t a, uint32_t b) const
    {
        const float* p = &mesh.positions[size_t(a) * 3];
        const float* q = &mesh.positions[size_t(b) * 3];
        return {q[0] - p[0], q[1] - p[1], q[2] - p[2]};
    }

    float side(uint32_t a, uint32_t b) const { return length(from(a, b)); }

    /// Twice the area, along the normal.
    Vector area(uint32_t a, uint32_t b, uint32_t c) const { return cross(from(a, b), from(a, c)); }

    /// The side that begins with this corner is the longest.
    size_t longest(const Triangle& t) const
    {
        const float sides[] = {side(t[0], t[1]), side(t[1], t[2]), side(t[2], t[0])};
        return size_t(std::max_element(sides, sides + 3) - sides);
    }

    BodyMesh& mesh;
};

/// Splits sides in the middle, on both of the faces that meet in them.
class Splitter
{
public:
    explicit Splitter(Triangles& triangles) : m_all(triangles), m_mesh(triangles.mesh) {}

    void mark(uint32_t a, uint32_t b) { m_marked.insert(placesOf(a, b)); }
    bool anyMarked() const { return !m_marked.empty(); }

    /// Marks the longest side of each triangle that has a marked one: cuts through the longest side make no
    /// thinner triangles than there were.
    void spread()
    {
        for (bool grown = true; grown;) {
            grown = false;
            for (size_t i = 0; i < m_all.count(); ++i) {
                const Triangle t = m_all.triangle(i);
                bool any = false;
                for (size_t k = 0; k < 3; ++k)
                    any |= m_marked.contains(placesOf(t[k], t[(k + 1) % 3]));
                const size_t most = m_all.longest(t);
                if (any)
                    grown |= m_marked.insert(placesOf(t[most], t[(most + 1) % 3])).second;
            }
        }
    }

    /// Splits all marked sides; none is marked any more then.
    void split()
    {
        m_middles.clear();
        m_made.clear();
        for (BodyMesh::Face& face : m_mesh.faces) {
            const uint32_t begin = face.firstTriangle, end = begin + face.triangleCount;
            face.firstTriangle = uint32_t(m_made.size() / 3);
            for (uint32_t i = begin; i < end; ++i)
                cut(m_all.triangle(i));
            face.triangleCount = uint32_t(m_made.size() / 3) - face.firstTriangle;
        }
        m_mesh.triangles = m_made;
        m_marked.clear();
        m_mesh.edgePoints.clear();
        m_mesh.edgeStarts.assign(1, 0);
    }

private:
    /// A side by the places of its ends. Two faces that meet in it have vertices of their own there, at the
    /// same places; both must split it, or a gap would open.
    using Places = std::array<float, 6>;
    struct PlacesHash
    {
        size_t operator()(const Places& places) const { return XXH3_64bits(places.data(), sizeof places); }
    };

    Places placesOf(uint32_t a, uint32_t b) const
    {
        Vector p, q;
        for (size_t axis = 0; axis < 3; ++axis) {
            // Adding zero turns -0 into 0, which is the same place.
            p[axis] = m_mesh.positions[size_t(a) * 3 + axis] + 0.0f;
            q[axis] = m_mesh.positions[size_t(b) * 3 + axis] + 0.0f;
        }
        if (q < p)
            std::swap(p, q);
        return {p[0], p[1], p[2], q[0], q[1], q[2]};
    }

    uint32_t middle(uint32_t a, uint32_t b)
    {
        const uint64_t key = uint64_t(std::min(a, b)) << 32 | std::max(a, b);
        const auto [entry, fresh] = m_middles.try_emplace(key, uint32_t(m_mesh.positions.size() / 3));
        if (!fresh)
            return entry->second;
        // From the lower place to the higher, so that both faces of a side get the very same number.
        const Places places = placesOf(a, b);
        Vector normal;
        for (size_t axis = 0; axis < 3; ++axis) {
            m_mesh.positions.push_back((places[axis] + places[3 + axis]) / 2);
            normal[axis] = m_mesh.normals[size_t(a) * 3 + axis] + m_mesh.normals[size_t(b) * 3 + axis];
        }
        const float size = length(normal);
        for (size_t axis = 0; axis < 3; ++axis)
            m_mesh.normals.push_back(size > 0 ? normal[axis] / size : m_mesh.normals[size_t(a) * 3 + axis]);
        return entry->second;
    }

    // Through the longest of the marked sides first.
    void cut(const Triangle& t)
    {
        constexpr size_t kNone = 3;
        size_t most = kNone;
        float size = -1;
        for (size_t k = 0; k < 3; ++k)
            if (const float own = m_all.side(t[k], t[(k + 1) % 3]);
                own > size && m_marked.contains(placesOf(t[k], t[(k + 1) % 3]))) {
                most = k;
                size = own;
            }
        if (most == kNone) {
            m_made.insert(m_made.end(), t.begin(), t.end());
            return;
        }
        const uint32_t a = t[most], b = t[(most + 1) % 3], c = t[(most + 2) % 3];
        const uint32_t between = middle(a, b);
        cut({a, between, c});
        cut({between, b, c});
    }

    Triangles& m_all;
    BodyMesh& m_mesh;
    std::unordered_set<Places, PlacesHash> m_marked;
    std::unordered_map<uint64_t, uint32_t> m_middles;
    std::vector<uint32_t> m_made;
};

/// The sides within one face, with the two triangles that meet in each.
class FaceSides
{
public:
    FaceSides(Triangles& triangles, const BodyMesh::Face& face) : m_all(triangles)
    {
        for (uint32_t i = face.firstTriangle; i < face.firstTriangle + face.triangleCount; ++i) {
            const Triangle t = m_all.triangle(i);
            for (size_t k = 0; k < 3; ++k) {
                Neighbours& pair = m_sides[key(t[k], t[(k + 1) % 3])];
                pair.first = pair.count == 0 ? i : pair.first;
                pair.second = i;
                ++pair.count;
            }
        }
    }

    /// Whether the side lies within a plane, so that its place may change without the surface changing.
    bool isFlat(uint32_t a, uint32_t b) const
    {
        const auto found = m_sides.find(key(a, b));
        return found != m_sides.end() && isFlat(found->second);
    }

    /// The triangle on the other side, if the side lies within a plane.
    std::optional<uint32_t> beyond(uint32_t triangle, uint32_t a, uint32_t b) const
    {
        const auto found = m_sides.find(key(a, b));
        if (found == m_sides.end() || !isFlat(found->second))
            return std::nullopt;
        return found->second.first == triangle ? found->second.second : found->second.first;
    }

    /// Replaces, where four corners lie in a plane, one diagonal by the other if that makes rounder
    /// triangles.
    void flip()
    {
        std::vector<uint64_t> waiting;
        for (const auto& [side, pair] : m_sides)
            waiting.push_back(side);
        // The order must not depend on how the table keeps them.
        std::sort(waiting.begin(), waiting.end());
        // Among numbers that are rounded, the exchange might never end.
        for (size_t left = waiting.size() * 10; left > 0 && !waiting.empty(); --left) {
            const uint64_t side = waiting.back();
            waiting.pop_back();
            if (const auto corners = flip(side))
                for (size_t k = 0; k < 4; ++k)
                    waiting.push_back(key((*corners)[k], (*corners)[(k + 1) % 4]));
        }
    }

private:
    struct Neighbours
    {
        uint32_t first = 0, second = 0;
        int count = 0;
    };

    static uint64_t key(uint32_t a, uint32_t b) { return uint64_t(std::min(a, b)) << 32 | std::max(a, b); }

    bool isFlat(const Neighbours& pair) const
    {
        constexpr float kFlatCosine = 1 - 1e-5f;
        if (pair.count != 2)
            return false;
        const Triangle s = m_all.triangle(pair.first), t = m_all.triangle(pair.second);
        const Vector m = m_all.area(s[0], s[1], s[2]), n = m_all.area(t[0], t[1], t[2]);
        return dot(m, n) > kFlatCosine * length(m) * length(n);
    }

    // The four corners around the side if it was replaced.
    std::optional<std::array<uint32_t, 4>> flip(uint64_t side)
    {
        constexpr float kEnough = 1e-3f;
        const auto found = m_sides.find(side);
        if (found == m_sides.end() || !isFlat(found->second))
            return std::nullopt;
        const Neighbours pair = found->second;
        Triangle s = m_all.triangle(pair.first), t = m_all.triangle(pair.second);
        while (key(s[0], s[1]) != side)
            std::rotate(s.begin(), s.begin() + 1, s.end());
        while (key(t[0], t[1]) != side)
            std::rotate(t.begin(), t.begin() + 1, t.end());
        const uint32_t a = s[0], b = s[1], c = s[2], d = t[2];
        if (t[0] != b || m_sides.contains(key(c, d)))
            return std::nullopt;
        // The angles opposite to the side are more than half a turn together.
        const auto cotangent = [&](uint32_t at) {
            const Vector p = m_all.from(at, a), q = m_all.from(at, b);
            return dot(p, q) / length(cross(p, q));
        };
        const Vector normal = m_all.area(a, b, c), one = m_all.area(a, d, c), other = m_all.area(d, b, c);
        if (!(cotangent(c) + cotangent(d) < -kEnough) || dot(normal, one) <= 0 || dot(normal, other) <= 0)
            return std::nullopt;
        std::copy_n(std::array{a, d, c}.begin(), 3, m_all.mesh.triangles.begin() + 3 * long(pair.first));
        std::copy_n(std::array{d, b, c}.begin(), 3, m_all.mesh.triangles.begin() + 3 * long(pair.second));
        m_sides.erase(found);
        m_sides[key(c, d)] = pair;
        move(key(b, c), pair.first, pair.second);
        move(key(a, d), pair.second, pair.first);
        return std::array{a, d, b, c};
    }

    void move(uint64_t side, uint32_t from, uint32_t to)
    {
        Neighbours& pair = m_sides[side];
        (pair.first == from ? pair.first : pair.second) = to;
        if (pair.count == 1)
            pair.first = pair.second = to;
    }

    Triangles& m_all;
    std::unordered_map<uint64_t, Neighbours> m_sides;
};

void limitLength(BodyMesh& mesh, float most)
{
    Triangles all(mesh);
    Splitter splitter(all);
    for (int pass = 0; pass < kMostPasses && all.count() < kMostTriangles; ++pass) {
        for (size_t i = 0; i < all.count(); ++i) {
            const Triangle t = all.triangle(i);
            for (size_t k = 0; k < 3; ++k)
                if (all.side(t[k], t[(k + 1) % 3]) > most)
                    splitter.mark(t[k], t[(k + 1) % 3]);
        }
        if (!splitter.anyMarked())
            return;
        splitter.spread();
        splitter.split();
    }
}

bool isTooThin(const Triangles& all, const Triangle& t, float ratio)
{
    constexpr float kNoArea = 1e-5f; // three corners on a line
    const size_t most = all.longest(t);
    const float longest = all.side(t[most], t[(most + 1) % 3]);
    const float height = length(all.area(t[0], t[1], t[2])) / longest;
    return longest > ratio * height && height > kNoArea * longest;
}

// The side to split for a triangle that is too thin. Usually the longest; but where that lies within a plane,
// and the triangle beyond it has a longer one, the middle of that one is farther from everything else, and
// better triangles can be made with it.
std::array<uint32_t, 2> sideToSplit(const Triangles& all, const FaceSides& sides, uint32_t thin)
{
    constexpr float kNearly = 0.9f;
    constexpr int kFarthest = 100;
    const Triangle first = all.triangle(thin);
    const size_t most = all.longest(first);
    const float longest = all.side(first[most], first[(most + 1) % 3]);
    // A point on a side that is fixed is of use on both of its faces, and no diagonal will do in its place.
    for (size_t k = 0; k < 3; ++k)
        if (const uint32_t a = first[k], b = first[(k + 1) % 3];
            all.side(a, b) > kNearly * longest && !sides.isFlat(a, b))
            return {a, b};
    uint32_t at = thin;
    for (int step = 0; step < kFarthest; ++step) {
        const Triangle t = all.triangle(at);
        const size_t own = all.longest(t);
        const uint32_t a = t[own], b = t[(own + 1) % 3];
        const std::optional<uint32_t> next = sides.beyond(at, a, b);
        if (!next)
            return {a, b};
        const Triangle n = all.triangle(*next);
        const size_t other = all.longest(n);
        if (all.side(n[other], n[(other + 1) % 3]) <= all.side(a, b))
            return {a, b};
        at = *next;
    }
    return {first[most], first[(most + 1) % 3]};
}

void limitRatio(BodyMesh& mesh, float ratio, float shortest)
{
    Triangles all(mesh);
    Splitter splitter(all);
    for (int pass = 0; pass < kMostPasses && all.count() < kMostTriangles; ++pass) {
        for (const BodyMesh::Face& face : mesh.faces) {
            FaceSides sides(all, face);
            sides.flip();
            for (uint32_t i = face.firstTriangle; i < face.firstTriangle + face.triangleCount; ++i) {
                if (!isTooThin(all, all.triangle(i), ratio))
                    continue;
                const auto [a, b] = sideToSplit(all, sides, i);
                if (all.side(a, b) > 2 * shortest)
                    splitter.mark(a, b);
            }
        }
        if (!splitter.anyMarked())
            return;
        splitter.split();
    }
}

} // namespace

void limitTriangles(BodyMesh& mesh, const TranslatorRefinement& refinement)
{
    constexpr TranslatorRefinement kUsual;
    const auto diagonal = float(mesh.bounds.low().distanceTo(mesh.bounds.high()));
    if (mesh.triangles.empty())
        return;
    if (refinement.maximumEdgeLength < kUsual.maximumEdgeLength)
        limitLength(mesh, std::max(refinement.maximumEdgeLength / 100, kLeastEdgeLength) * diagonal);
    if (refinement.maximumAspectRatio < kUsual.maximumAspectRatio)
        limitRatio(mesh, std::max(refinement.maximumAspectRatio, kLeastRatio), kShortestSide * diagonal);
}

} // namespace Vs::Kernel
