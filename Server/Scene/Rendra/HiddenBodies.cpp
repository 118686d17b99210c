#include "Server/Scene/Rendra/HiddenBodies.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace Rendra {

namespace {

/// Scenes with fewer are drawn faster than asked about.
constexpr size_t kFewestInstances = 100;
constexpr uint64_t kFewestTriangles = 20000;

/// Of an instance: it was seen in the last picture; nothing hides it in this one.
constexpr uint8_t kBefore = 1, kNow = 2;

/// How much a body may reach beyond its bounds, as a part of its size and of the scene's: by outlines, which
/// are drawn a little nearer, and by the rounding of coordinates. And how inexact depths are.
constexpr double kReach = 0.005, kReachOfScene = 1e-6;
constexpr float kDepthStep = 4e-5f;

/// Where bodies of one mesh are in the picture.
class Outlook
{
public:
    Outlook(const Frame& frame, const Batch& batch)
        : m_halfWidth(float(frame.part.width) / 2),
          m_halfHeight(float(frame.part.height) / 2),
          m_margin(0.5f * frame.target.lineWidth + 1.5f)
    {
        double rows[4][4];
        frame.sceneToClip(rows);
        for (size_t i = 0; i < 4; ++i)
            for (size_t j = 0; j < 4; ++j)
                m_clip[i][j] = float(rows[i][j]);
        const BBox& bounds = frame.shownOf(batch)->bounds;
        const double reach = kReach * bounds.diagonal();
        const GkPoint3d middle = bounds.centre();
        const GkVector3d half = (bounds.high() - bounds.low()) * 0.5 + GkVector3d(reach, reach, reach);
        m_middle = {float(middle.x), float(middle.y), float(middle.z)};
        m_half = {float(half.x), float(half.y), float(half.z)};
        m_reach = float(kReachOfScene * frame.fragment.viewFragmentNode()->boundingBox().diagonal());
    }

    /// False if it isn't wholly in front of the viewer.
    bool find(const Instance& instance, FarthestDepths::Box& box) const
    {
        std::array<float, 3> place{}, edge{};
        for (size_t row = 0; row < 3; ++row)
            place[row] = instance.rows[row][0] * m_middle[0] + instance.rows[row][1] * m_middle[1] +
                         instance.rows[row][2] * m_middle[2] + instance.rows[row][3];
        std::array<float, 4> corners[8];
        for (size_t row = 0; row < 4; ++row)
            corners[0][row] = m_clip[row][0] * place[0] + m_clip[row][1] * place[1] +
                              m_clip[row][2] * place[2] + m_clip[row][3];
        // From the middle, half of each edge to both sides makes two of each point.
        size_t count = 1;
        for (size_t axis = 0; axis < 3; ++axis, count *= 2) {
            for (size_t row = 0; row < 3; ++row)
                edge[row] = instance.rows[row][axis] * m_half[axis];
            const float length = std::sqrt(edge[0] * edge[0] + edge[1] * edge[1] + edge[2] * edge[2]);
            const float more = 1 + m_reach / std::max(length, 1e-30f);
            for (size_t row = 0; row < 4; ++row) {
                const float step =
                    (m_clip[row][0] * edge[0] + m_clip[row][1] * edge[1] + m_clip[row][2] * edge[2]) * more;
                for (size_t i = 0; i < count; ++i) {
                    corners[count + i][row] = corners[i][row] + step;
                    corners[i][row] -= step;
                }
            }
        }
        box = {1e30f, 1e30f, -1e30f, -1e30f, 1e30f};
        for (const auto& [x, y, z, w] : corners) {
            if (!(w > 1e-12f) || z < -w)
                return false;
            const float perW = 1 / w, across = (1 + x * perW) * m_halfWidth,
                        up = (1 + y * perW) * m_halfHeight;
            box.left = std::min(box.left, across);
            box.right = std::max(box.right, across);
            box.bottom = std::min(box.bottom, up);
            box.top = std::max(box.top, up);
            box.nearest = std::min(box.nearest, 0.5f + 0.5f * z * perW);
        }
        box.left -= m_margin;
        box.bottom -= m_margin;
        box.right += m_margin;
        box.top += m_margin;
        box.nearest -= kDepthStep;
        return true;
    }

private:
    float m_halfWidth, m_halfHeight, m_margin, m_reach = 0;
    std::array<float, 3> m_middle{}, m_half{};
    std::array<std::array<float, 4>, 4> m_clip{};
};

} // namespace

bool HiddenBodies::begin(const Frame& frame)
{
    const DrawList& list = frame.scene.list;
    KeptScene::Seen& seen = frame.scene.seen;
    size_t instances = 0;
    uint64_t triangles = 0;
    bool opaque = false;
    for (size_t i = 0; i < list.batches().size(); ++i) {
        const auto count = size_t(frame.scene.instances.ranges()[i].count);
        instances += count;
        triangles += list.batches()[i]->mesh->triangles.size() / 3 * count;
        opaque = opaque || (count > 0 && !list.batches()[i]->transparent);
    }
    // Who draws at once waits longer for the depths than drawing takes.
    if (!frame.software || !frame.target.skipsHidden || !opaque || instances < kFewestInstances ||
        triangles < kFewestTriangles)
        return false;
    if (seen.layout != list.layoutRevision() || seen.states.size() != list.instances()) {
        seen.layout = list.layoutRevision();
        seen.states.assign(list.instances(), kBefore);
    }
    frame.scene.instances.showSome(list, seen.states, kBefore, kBefore);
    return true;
}

bool HiddenBodies::findMore(const Frame& frame)
{
    const DrawList& list = frame.scene.list;
    const InstanceStore& store = frame.scene.instances;
    std::vector<uint8_t>& states = frame.scene.seen.states;
    const bool known = m_depths.read(frame);
    bool more = false;
    size_t first = 0;
    for (size_t i = 0; i < list.batches().size(); ++i) {
        const Batch& batch = *list.batches()[i];
        const Outlook outlook(frame, batch);
        store.forEachInView(i, [&](size_t index) {
            FarthestDepths::Box box{};
            uint8_t& state = states[first + index];
            if (known && outlook.find(batch.instances[index], box) && m_depths.hide(box)) {
                ++frame.statistics.hiddenInstances;
                return;
            }
            more = more || !(state & kBefore);
            state |= kNow;
        });
        first += batch.instances.size();
    }
    if (more)
        frame.scene.instances.showSome(list, states, kBefore | kNow, kNow);
    return more;
}

void HiddenBodies::finish(const Frame& frame) const
{
    std::vector<uint8_t>& states = frame.scene.seen.states;
    for (uint8_t& state : states)
        state = state & kNow ? kBefore : 0;
    frame.scene.instances.showSome(frame.scene.list, states, kBefore, kBefore);
}

} // namespace Rendra
