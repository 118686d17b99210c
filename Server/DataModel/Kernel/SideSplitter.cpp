#include "Server/DataModel/Kernel/SideSplitter.h"

#include <algorithm>
#include <utility>
#include <xxhash.h>

namespace Vs::Kernel {

size_t SideSplitter::PlacesHash::operator()(const Places& places) const
{
    return XXH3_64bits(places.data(), sizeof places);
}

SideSplitter::Places SideSplitter::placesOf(uint32_t a, uint32_t b) const
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

void SideSplitter::spread()
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

void SideSplitter::split()
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

uint32_t SideSplitter::middle(uint32_t a, uint32_t b)
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
void SideSplitter::cut(const Triangle& t)
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

} // namespace Vs::Kernel
