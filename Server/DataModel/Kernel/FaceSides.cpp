#include "Server/DataModel/Kernel/FaceSides.h"

#include <vector>

namespace Vs::Kernel {

FaceSides::FaceSides(MeshTriangles& triangles, const BodyMesh::Face& face) : m_all(triangles)
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

bool FaceSides::isFlat(uint32_t a, uint32_t b) const
{
    const auto found = m_sides.find(key(a, b));
    return found != m_sides.end() && isFlat(found->second);
}

std::optional<uint32_t> FaceSides::beyond(uint32_t triangle, uint32_t a, uint32_t b) const
{
    const auto found = m_sides.find(key(a, b));
    if (found == m_sides.end() || !isFlat(found->second))
        return std::nullopt;
    return found->second.first == triangle ? found->second.second : found->second.first;
}

void FaceSides::flip()
{
    std::vector<uint64_t> waiting;
    for (const auto& [side, pair] : m_sides)
        waiting.push_back(side);
    // The order must not depend on how the table keeps them.
    std::sort(waiting.begin(), waiting.end());
    // With rounded numbers, the swapping might never end.
    for (size_t left = waiting.size() * 10; left > 0 && !waiting.empty(); --left) {
        const uint64_t side = waiting.back();
        waiting.pop_back();
        if (const auto corners = flip(side))
            for (size_t k = 0; k < 4; ++k)
                waiting.push_back(key((*corners)[k], (*corners)[(k + 1) % 4]));
    }
}

bool FaceSides::isFlat(const Neighbours& pair) const
{
    constexpr float kFlatCosine = 1 - 1e-5f;
    if (pair.count != 2)
        return false;
    const Triangle s = m_all.triangle(pair.first), t = m_all.triangle(pair.second);
    const Vector m = m_all.area(s[0], s[1], s[2]), n = m_all.area(t[0], t[1], t[2]);
    return dot(m, n) > kFlatCosine * length(m) * length(n);
}

// The four corners around the side if it was replaced.
std::optional<std::array<uint32_t, 4>> FaceSides::flip(uint64_t side)
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
    // The angles opposite the side add up to more than half a turn.
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

void FaceSides::move(uint64_t side, uint32_t from, uint32_t to)
{
    Neighbours& pair = m_sides[side];
    (pair.first == from ? pair.first : pair.second) = to;
    if (pair.count == 1)
        pair.first = pair.second = to;
}

} // namespace Vs::Kernel
