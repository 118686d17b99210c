#include "Server/Scene/Rendra/Ground.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Rendra {

namespace {

GkVector3d vectorOf(const float (&values)[3])
{
    return {values[0], values[1], values[2]};
}

/// The half extent of a box along a direction.
double reach(const Batch::Box& box, const GkVector3d& direction)
{
    return std::abs(direction.x) * box.half[0] + std::abs(direction.y) * box.half[1] +
           std::abs(direction.z) * box.half[2];
}

/// How deep the vertices of a body reach.
double lowestVertex(const Vs::BodyMesh& mesh, const Instance& instance, const GkVector3d& up)
{
    const double along[3] = {up.x, up.y, up.z};
    double factors[4] = {};
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            factors[column] += along[row] * double(instance.rows[row][column]);
    double lowest = std::numeric_limits<double>::max();
    for (size_t i = 0; i + 2 < mesh.positions.size(); i += 3)
        lowest = std::min(lowest, factors[0] * double(mesh.positions[i]) +
                                      factors[1] * double(mesh.positions[i + 1]) +
                                      factors[2] * double(mesh.positions[i + 2]));
    return lowest + factors[3];
}

/// The boxes of rotated bodies reach deeper than the bodies; they only tell which bodies needn't be examined.
double lowestPoint(const DrawList& list, const GkVector3d& up)
{
    struct Candidate
    {
        double bound;
        const Batch* batch;
        size_t index;
    };
    std::vector<Candidate> candidates;
    candidates.reserve(list.instances());
    for (const auto& batch : list.batches())
        for (size_t i = 0; i < batch->boxes.size(); ++i) {
            const Batch::Box& box = batch->boxes[i];
            candidates.push_back({vectorOf(box.centre).dotProduct(up) - reach(box, up), batch.get(), i});
        }
    std::sort(candidates.begin(), candidates.end(),
              [](const Candidate& a, const Candidate& b) { return a.bound < b.bound; });
    double lowest = std::numeric_limits<double>::max();
    for (const Candidate& candidate : candidates) {
        if (candidate.bound >= lowest)
            break;
        lowest = std::min(
            lowest, lowestVertex(*candidate.batch->mesh, candidate.batch->instances[candidate.index], up));
    }
    return lowest;
}

} // namespace

void groundAxes(const GkVector3d& up, GkVector3d& right, GkVector3d& forward)
{
    forward = up.crossProduct(std::abs(up.x) < 0.9 ? GkVector3d(1, 0, 0) : GkVector3d(0, 1, 0)).normal();
    right = forward.crossProduct(up);
}

double Ground::size() const
{
    return std::sqrt(width * width + depth * depth + height() * height());
}

GkVector3d Ground::middle() const
{
    return right * (left + width / 2) + forward * (front + depth / 2) + up * level;
}

const Ground* GroundFinder::find(const DrawList& list, const GkVector3d& up)
{
    if (list.shapeRevision() != m_shapes || !m_up.isEqualTo(up)) {
        m_shapes = list.shapeRevision();
        m_up = up;
        m_exists = list.instances() > 0;
        if (m_exists) {
            m_ground.up = up;
            groundAxes(up, m_ground.right, m_ground.forward);
            const auto between = [&](const GkVector3d& direction) {
                double low = std::numeric_limits<double>::max(), high = -low;
                for (const auto& batch : list.batches())
                    for (const Batch::Box& box : batch->boxes) {
                        const double centre = vectorOf(box.centre).dotProduct(direction);
                        low = std::min(low, centre - reach(box, direction));
                        high = std::max(high, centre + reach(box, direction));
                    }
                return std::pair(low, high);
            };
            const auto [left, rightEnd] = between(m_ground.right);
            const auto [front, back] = between(m_ground.forward);
            m_ground.left = left;
            m_ground.width = rightEnd - left;
            m_ground.front = front;
            m_ground.depth = back - front;
            m_ground.top = between(up).second;
            m_ground.level = lowestPoint(list, up);
        }
    }
    return m_exists ? &m_ground : nullptr;
}

} // namespace Rendra
