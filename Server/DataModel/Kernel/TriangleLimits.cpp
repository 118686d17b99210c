#include "Server/DataModel/Kernel/TriangleLimits.h"

#include "Server/DataModel/Kernel/FaceSides.h"
#include "Server/DataModel/Kernel/SideSplitter.h"

#include <algorithm>
#include <array>
#include <optional>

namespace Vs::Kernel {

namespace {

constexpr size_t kMostTriangles = 2'000'000;
constexpr int kMostPasses = 60;
// As parts of the part's diagonal. Sides of a thousandth already make millions of triangles of a large face;
// a thin triangle needs shorter ones, but not many.
constexpr float kLeastEdgeLength = 1e-3f;
constexpr float kShortestSide = 5e-4f;
// No splitting can make all triangles of an arbitrary outline rounder than this.
constexpr float kLeastRatio = 3;

void limitLength(BodyMesh& mesh, float most)
{
    MeshTriangles all(mesh);
    SideSplitter splitter(all);
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

bool isTooThin(const MeshTriangles& all, const Triangle& t, float ratio)
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
std::array<uint32_t, 2> sideToSplit(const MeshTriangles& all, const FaceSides& sides, uint32_t thin)
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
    MeshTriangles all(mesh);
    SideSplitter splitter(all);
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
