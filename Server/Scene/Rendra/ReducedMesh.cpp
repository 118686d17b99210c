#include "Server/Scene/Rendra/ReducedMesh.h"

#include "Server/Geometry/GkVector3d.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

namespace Rendra {

namespace {

constexpr uint32_t kNone = UINT32_MAX;
/// What is left when so few vertices go at a time isn't worth another pass.
constexpr size_t kLeastPart = 50;
constexpr int kMostPasses = 40;

/// The mean squared distance from some planes, by their areas.
struct Quadric
{
    double xx = 0, xy = 0, xz = 0, yy = 0, yz = 0, zz = 0, x = 0, y = 0, z = 0, one = 0, weight = 0;

    void add(const GkVector3d& n, double d, double by)
    {
        xx += by * n.x * n.x;
        xy += by * n.x * n.y;
        xz += by * n.x * n.z;
        yy += by * n.y * n.y;
        yz += by * n.y * n.z;
        zz += by * n.z * n.z;
        x += by * n.x * d;
        y += by * n.y * d;
        z += by * n.z * d;
        one += by * d * d;
        weight += by;
    }
    void add(const Quadric& q)
    {
        xx += q.xx, xy += q.xy, xz += q.xz, yy += q.yy, yz += q.yz, zz += q.zz;
        x += q.x, y += q.y, z += q.z, one += q.one, weight += q.weight;
    }
    double at(const GkVector3d& p) const
    {
        const double sum = xx * p.x * p.x + yy * p.y * p.y + zz * p.z * p.z +
                           2 * (xy * p.x * p.y + xz * p.x * p.z + yz * p.y * p.z) +
                           2 * (x * p.x + y * p.y + z * p.z) + one;
        return std::max(sum, 0.0) / std::max(weight, 1e-300);
    }
};

/// A corner is a place, and a vertex that tells the normal there.
struct Triangle
{
    std::array<uint32_t, 3> places, vertices;
    uint32_t face;
};

class Reduction
{
public:
    Reduction(const Vs::BodyMesh& mesh, double deviation)
        : m_mesh(mesh), m_most(deviation * deviation), m_bulge(deviation)
    {
        findPlaces();
        takeTriangles();
        weigh();
    }

    std::shared_ptr<const Vs::BodyMesh> reduce()
    {
        for (int pass = 0; pass < kMostPasses; ++pass) {
            findNeighbours();
            const size_t before = m_triangles.size();
            if (before - collapse() < before / kLeastPart + 1)
                break;
        }
        return m_triangles.size() * 3 >= m_mesh.triangles.size() / 3 * 2 ? nullptr : result();
    }

private:
    struct Step
    {
        double error;
        uint32_t from, to;
    };

    void findPlaces()
    {
        std::map<std::array<float, 3>, uint32_t> numbers;
        const size_t count = m_mesh.positions.size() / 3;
        m_placeOf.resize(count);
        for (size_t i = 0; i < count; ++i) {
            const float* p = &m_mesh.positions[3 * i];
            const auto [found, isNew] = numbers.try_emplace({p[0], p[1], p[2]}, uint32_t(m_places.size()));
            if (isNew)
                m_places.emplace_back(p[0], p[1], p[2]);
            m_placeOf[i] = found->second;
        }
    }

    void takeTriangles()
    {
        for (size_t face = 0; face < m_mesh.faces.size(); ++face) {
            const Vs::BodyMesh::Face& source = m_mesh.faces[face];
            const size_t end =
                std::min(m_mesh.triangles.size(), (size_t(source.firstTriangle) + source.triangleCount) * 3);
            for (size_t i = size_t(source.firstTriangle) * 3; i + 2 < end; i += 3) {
                Triangle triangle{{}, {}, uint32_t(face)};
                for (size_t corner = 0; corner < 3; ++corner) {
                    triangle.vertices[corner] = m_mesh.triangles[i + corner];
                    triangle.places[corner] = m_placeOf[m_mesh.triangles[i + corner]];
                }
                const auto& p = triangle.places;
                if (p[0] != p[1] && p[1] != p[2] && p[2] != p[0])
                    m_triangles.push_back(triangle);
            }
        }
    }

    GkVector3d normalOf(const std::array<uint32_t, 3>& p) const
    {
        return (m_places[p[1]] - m_places[p[0]]).crossProduct(m_places[p[2]] - m_places[p[0]]);
    }

    /// Of each place, the planes around it, and those that stand on the borders of faces there.
    void weigh()
    {
        findNeighbours();
        m_quadrics.resize(m_places.size());
        for (const Triangle& triangle : m_triangles) {
            const GkVector3d normal = normalOf(triangle.places);
            const double area = normal.length();
            if (!(area > 0))
                continue;
            const GkVector3d n = normal * (1 / area);
            for (size_t i = 0; i < 3; ++i) {
                const uint32_t a = triangle.places[i], b = triangle.places[(i + 1) % 3];
                m_quadrics[a].add(n, -n.dotProduct(m_places[a]), area);
                if (facesBeside(a, b, triangle.face) == 1)
                    continue;
                const GkVector3d along = m_places[b] - m_places[a];
                const GkVector3d aside = along.crossProduct(n);
                const double length = aside.length();
                if (!(length > 0))
                    continue;
                const GkVector3d m = aside * (1 / length);
                for (const uint32_t end : {a, b})
                    m_quadrics[end].add(m, -m.dotProduct(m_places[a]), length * length);
            }
        }
    }

    void findNeighbours()
    {
        m_firstOf.assign(m_places.size() + 1, 0);
        for (const Triangle& triangle : m_triangles)
            for (const uint32_t place : triangle.places)
                ++m_firstOf[place + 1];
        for (size_t i = 1; i < m_firstOf.size(); ++i)
            m_firstOf[i] += m_firstOf[i - 1];
        m_around.resize(m_triangles.size() * 3);
        std::vector<uint32_t> next(m_firstOf.begin(), m_firstOf.end() - 1);
        for (size_t i = 0; i < m_triangles.size(); ++i)
            for (const uint32_t place : m_triangles[i].places)
                m_around[next[place]++] = uint32_t(i);
    }

    template <class Each>
    void forEachAround(uint32_t place, const Each& each) const
    {
        for (uint32_t i = m_firstOf[place]; i < m_firstOf[place + 1]; ++i)
            each(m_triangles[m_around[i]]);
    }

    static bool has(const Triangle& triangle, uint32_t place)
    {
        return std::ranges::find(triangle.places, place) != triangle.places.end();
    }

    /// 1 within a face, 2 between two, and 0 where an edge has not just two triangles.
    int facesBeside(uint32_t a, uint32_t b, uint32_t face) const
    {
        int count = 0, same = 0;
        forEachAround(a, [&](const Triangle& triangle) {
            if (has(triangle, b)) {
                ++count;
                same += triangle.face == face;
            }
        });
        return count != 2 ? 0 : same == 2 ? 1 : 2;
    }

    /// The neighbour to which a place can go with the least error, if any.
    Step stepOf(uint32_t from)
    {
        Step best{m_most, from, kNone};
        m_ring.clear();
        forEachAround(from, [&](const Triangle& triangle) {
            for (const uint32_t place : triangle.places)
                if (place != from && std::ranges::find(m_ring, place) == m_ring.end())
                    m_ring.push_back(place);
        });
        for (const uint32_t to : m_ring) {
            Quadric sum = m_quadrics[from];
            sum.add(m_quadrics[to]);
            if (const double error = sum.at(m_places[to]); error < best.error)
                best = {error, from, to};
        }
        return best;
    }

    /// Nothing may turn over, or come to lie on something else.
    bool isSound(const Step& step) const
    {
        bool sound = true;
        std::vector<uint32_t> seen;
        forEachAround(step.from, [&](const Triangle& triangle) {
            for (const uint32_t place : triangle.places)
                if (place != step.from && place != step.to && std::ranges::find(seen, place) == seen.end())
                    seen.push_back(place);
        });
        std::vector<uint32_t> both;
        forEachAround(step.to, [&](const Triangle& triangle) {
            for (const uint32_t place : triangle.places)
                if (std::ranges::find(seen, place) != seen.end() &&
                    std::ranges::find(both, place) == both.end())
                    both.push_back(place);
        });
        if (both.size() != 2)
            return false;
        forEachAround(step.from, [&](const Triangle& triangle) {
            if (!sound || has(triangle, step.to))
                return;
            const Triangle moved = movedTo(step, triangle);
            const GkVector3d before = normalOf(triangle.places), after = normalOf(moved.places);
            const double lengths = before.length() * after.length();
            constexpr double kLeastCosine = 0.25;
            sound = after.length() > 0 &&
                    (before.length() == 0 || before.dotProduct(after) > kLeastCosine * lengths) &&
                    bulgeOf(moved) < m_bulge && isOutward(moved, after);
        });
        return sound;
    }

    /// What a triangle becomes; its corner gets the normal that the new place has in its face.
    Triangle movedTo(const Step& step, Triangle triangle) const
    {
        const size_t corner = size_t(std::ranges::find(triangle.places, step.from) - triangle.places.begin());
        triangle.places[corner] = step.to;
        forEachAround(step.to, [&](const Triangle& other) {
            if (other.face == triangle.face && has(other, step.from))
                triangle.vertices[corner] =
                    other.vertices[size_t(std::ranges::find(other.places, step.to) - other.places.begin())];
        });
        return triangle;
    }

    GkVector3d vertexNormal(uint32_t vertex) const
    {
        const float* n = &m_mesh.normals[3 * size_t(vertex)];
        return {n[0], n[1], n[2]};
    }

    /// Whether a triangle looks where its corners do: else it lies folded on others.
    bool isOutward(const Triangle& triangle, const GkVector3d& normal) const
    {
        constexpr double kLeastCosine = 0.7;
        return std::ranges::all_of(triangle.vertices, [&](uint32_t vertex) {
            return vertexNormal(vertex).dotProduct(normal) > kLeastCosine * normal.length();
        });
    }

    /// How far the surface that the normals belong to is from the middles of a triangle's sides.
    double bulgeOf(const Triangle& triangle) const
    {
        double most = 0;
        for (size_t i = 0; i < 3; ++i) {
            const size_t j = (i + 1) % 3;
            const GkVector3d turn = vertexNormal(triangle.vertices[j]) - vertexNormal(triangle.vertices[i]);
            const GkVector3d side = m_places[triangle.places[j]] - m_places[triangle.places[i]];
            most = std::max(most, std::abs(turn.dotProduct(side)) / 8);
        }
        return most;
    }

    /// Returns how many triangles are left.
    size_t collapse()
    {
        std::vector<Step> steps;
        for (uint32_t place = 0; place < m_places.size(); ++place)
            if (m_firstOf[place] != m_firstOf[place + 1])
                if (const Step step = stepOf(place); step.to != kNone)
                    steps.push_back(step);
        std::ranges::sort(steps, [](const Step& a, const Step& b) {
            return a.error != b.error ? a.error < b.error : a.from < b.from;
        });
        std::vector<bool> touched(m_places.size(), false);
        for (const Step& step : steps) {
            if (touched[step.from] || touched[step.to] || !isSound(step))
                continue;
            move(step, touched);
        }
        std::erase_if(m_triangles, [](const Triangle& triangle) { return triangle.face == kNone; });
        return m_triangles.size();
    }

    void move(const Step& step, std::vector<bool>& touched)
    {
        for (const uint32_t end : {step.from, step.to})
            forEachAround(end, [&](const Triangle& triangle) {
                for (const uint32_t place : triangle.places)
                    touched[place] = true;
            });
        std::vector<Triangle> moved;
        forEachAround(step.from, [&](const Triangle& triangle) {
            moved.push_back(has(triangle, step.to) ? Triangle{{}, {}, kNone} : movedTo(step, triangle));
        });
        for (size_t i = 0; i < moved.size(); ++i)
            m_triangles[m_around[m_firstOf[step.from] + i]] = moved[i];
        m_quadrics[step.to].add(m_quadrics[step.from]);
    }

    std::shared_ptr<const Vs::BodyMesh> result() const
    {
        auto made = std::make_shared<Vs::BodyMesh>();
        made->bounds = m_mesh.bounds;
        made->colours = m_mesh.colours;
        made->finishes = m_mesh.finishes;
        std::unordered_map<uint64_t, uint32_t> numbers;
        size_t next = 0;
        for (size_t face = 0; face < m_mesh.faces.size(); ++face) {
            const auto first = uint32_t(made->triangles.size() / 3);
            for (; next < m_triangles.size() && m_triangles[next].face == face; ++next)
                for (size_t corner = 0; corner < 3; ++corner) {
                    const uint32_t place = m_triangles[next].places[corner],
                                   vertex = m_triangles[next].vertices[corner];
                    const auto [found, isNew] = numbers.try_emplace(uint64_t(place) << 32 | vertex,
                                                                    uint32_t(made->positions.size() / 3));
                    if (isNew) {
                        for (const double value : {m_places[place].x, m_places[place].y, m_places[place].z})
                            made->positions.push_back(float(value));
                        const auto normal = m_mesh.normals.begin() + ptrdiff_t(3 * size_t(vertex));
                        made->normals.insert(made->normals.end(), normal, normal + 3);
                    }
                    made->triangles.push_back(found->second);
                }
            made->faces.push_back(
                {first, uint32_t(made->triangles.size() / 3) - first, m_mesh.faces[face].colour});
        }
        return made;
    }

    const Vs::BodyMesh& m_mesh;
    const double m_most;  ///< Of a quadric.
    const double m_bulge; ///< Between the corners of a triangle; a little more is in its middle.
    std::vector<uint32_t> m_placeOf;
    std::vector<GkVector3d> m_places;
    std::vector<Triangle> m_triangles; ///< In the order of their faces.
    std::vector<Quadric> m_quadrics;
    std::vector<uint32_t> m_firstOf, m_around; ///< Of each place, the triangles around it.
    std::vector<uint32_t> m_ring;
};

} // namespace

std::shared_ptr<const Vs::BodyMesh> reducedMesh(const Vs::BodyMesh& mesh, double deviation)
{
    if (mesh.normals.size() != mesh.positions.size() || !(deviation > 0))
        return nullptr;
    return Reduction(mesh, deviation).reduce();
}

} // namespace Rendra
