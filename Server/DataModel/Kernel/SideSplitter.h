#pragma once

#include "Server/DataModel/Kernel/MeshTriangles.h"

#include <array>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Vs::Kernel {

/// Splits sides of a mesh's triangles at their midpoints, on both of the faces that share them.
class SideSplitter
{
public:
    explicit SideSplitter(MeshTriangles& triangles) : m_all(triangles), m_mesh(triangles.mesh) {}

    void mark(uint32_t a, uint32_t b) { m_marked.insert(placesOf(a, b)); }
    bool anyMarked() const { return !m_marked.empty(); }
    /// Marks the longest side of each triangle that has a marked one: bisecting the longest side makes no
    /// triangle thinner than the present ones.
    void spread();
    /// Splits all marked sides and unmarks them. Drops the mesh's edge lines.
    void split();

private:
    /// A side by the positions of its ends. Two faces that share it have separate vertices there, at the same
    /// positions; both must split it, or a gap would open.
    using Places = std::array<float, 6>;
    struct PlacesHash
    {
        size_t operator()(const Places& places) const;
    };

    Places placesOf(uint32_t a, uint32_t b) const;
    uint32_t middle(uint32_t a, uint32_t b);
    void cut(const Triangle& t);

    MeshTriangles& m_all;
    BodyMesh& m_mesh;
    std::unordered_set<Places, PlacesHash> m_marked;
    std::unordered_map<uint64_t, uint32_t> m_middles;
    std::vector<uint32_t> m_made;
};

} // namespace Vs::Kernel
