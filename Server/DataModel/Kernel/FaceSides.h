#pragma once

#include "Server/DataModel/Kernel/MeshTriangles.h"

#include <algorithm>
#include <array>
#include <optional>
#include <unordered_map>

namespace Vs::Kernel {

/// The sides inside one face of a mesh, with the two triangles that meet in each.
class FaceSides
{
public:
    FaceSides(MeshTriangles& triangles, const BodyMesh::Face& face);

    /// Whether the side lies inside a plane, so that it may move without changing the surface.
    bool isFlat(uint32_t a, uint32_t b) const;
    /// The triangle on the other side, if the side lies inside a plane.
    std::optional<uint32_t> beyond(uint32_t triangle, uint32_t a, uint32_t b) const;
    /// Where four corners lie in a plane, swaps the diagonal if that makes the triangles rounder.
    void flip();

private:
    struct Neighbours
    {
        uint32_t first = 0, second = 0;
        int count = 0;
    };

    static uint64_t key(uint32_t a, uint32_t b) { return uint64_t(std::min(a, b)) << 32 | std::max(a, b); }
    bool isFlat(const Neighbours& pair) const;
    std::optional<std::array<uint32_t, 4>> flip(uint64_t side);
    void move(uint64_t side, uint32_t from, uint32_t to);

    MeshTriangles& m_all;
    std::unordered_map<uint64_t, Neighbours> m_sides;
};

} // namespace Vs::Kernel
