#include "Server/Scene/Rendra/TooCoarse.h"

#include "Server/Scene/Projection.h"

#include <algorithm>
#include <cmath>

namespace Rendra {

using Vs::FinerMesh;
using Vs::Scene::FinerWish;
using Vs::Scene::Projection;

namespace {

/// Smaller bodies have no facets that anybody sees.
constexpr float kLeastPixels = 12;
/// From within the box of a body, what is seen of it is taken to be as far away as this part of its size.
constexpr double kWithin = 0.05;

/// The size in pixels of a millimetre at that place of an instance that is nearest to the viewer.
double pixelsOfUnit(const Batch::Box& box, const Instance& instance, const GkVector3d& origin,
                    const Projection& projection)
{
    const double scale =
        std::hypot(double(instance.rows[0][0]), double(instance.rows[1][0]), double(instance.rows[2][0]));
    const GkPoint3d centre(box.centre[0], box.centre[1], box.centre[2]);
    const GkPoint3d seen = projection.view() * (centre + origin);
    const double radius = std::hypot(double(box.half[0]), double(box.half[1]), double(box.half[2]));
    const double depth = std::max(-seen.z - radius, kWithin * radius);
    return scale / projection.pixelSize(projection.perspective() ? depth : 1);
}

/// The first level at which that many times the allowed deviation is no more than allowed.
int levelFor(double excess)
{
    int level = 0;
    for (; excess > 1 && level < FinerMesh::kLevels; ++level)
        excess /= 4;
    return level;
}

} // namespace

std::vector<FinerWish> tooCoarse(const DrawList& list, const Projection& projection, double pixels)
{
    std::vector<FinerWish> wishes;
    std::vector<uint32_t> visible;
    for (const auto& batch : list.batches()) {
        const auto finer = Vs::finerMeshOf(batch->mesh);
        const double deviation = finer ? finer->deviation(*batch->mesh) : 0;
        if (!(deviation > 0))
            continue;
        DrawList::Sizes sizes;
        const bool all = list.cull(*batch, projection, kLeastPixels, visible, sizes);
        const size_t count = all ? batch->boxes.size() : visible.size();
        double most = 0;
        for (size_t i = 0; i < count; ++i) {
            const size_t index = all ? i : visible[i];
            most = std::max(
                most, pixelsOfUnit(batch->boxes[index], batch->instances[index], list.origin(), projection));
        }
        if (const int level = levelFor(deviation * most / pixels); level > 0)
            wishes.push_back({batch->mesh, level, double(sizes.largest), count});
    }
    return wishes;
}

} // namespace Rendra
