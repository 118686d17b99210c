#pragma once

#include "Server/Scene/Rendra/DrawList.h"

#include <epoxy/gl.h>
#include <unordered_map>
#include <vector>

namespace Rendra {

/// The instances of one draw list on the GPU: all of them, to be drawn as they are, and those left of a
/// picture's batches after culling.
class InstanceStore
{
public:
    /// Where the instances of one batch are for this picture.
    struct Range
    {
        GLuint buffer = 0;
        size_t offset = 0; ///< In bytes.
        GLsizei count = 0;
        float pixels = 1e30f;      ///< Across the largest of them.
        float leastPixels = 1e30f; ///< Across the smallest.
    };

    /// One instance that stands out.
    struct Lit
    {
        const Batch* batch;
        size_t batchIndex, index;
    };

    /// Uploads what changed, and determines what must be drawn: nothing of less than `smallest` pixels.
    /// Returns the number of instances that were uploaded because they changed.
    uint64_t update(const DrawList& list, const Vs::Scene::Projection& projection, float smallest);

    /// Makes `ranges` cover all instances, wherever they are, until the next `update`: for drawing from
    /// another viewpoint than the viewer's.
    void showAll(const DrawList& list);

    /// One for each of the list's batches, in the same order.
    const std::vector<Range>& ranges() const { return m_ranges; }

    /// Those of the instances of the last `update` that are pointed at or selected, in view or not.
    const std::vector<Lit>& lit() const { return m_lit; }
    Range rangeOf(const Lit& lit) const
    {
        return {m_all, m_offsets[lit.batchIndex] + lit.index * sizeof(Instance), 1};
    }

    /// Sets the instance attributes of the vertex array that is bound.
    static void bind(const Range& range);

    void release();

private:
    uint64_t uploadChanges(const DrawList& list);

    GLuint m_all = 0, m_visible = 0;
    uint64_t m_layout = 0;
    std::vector<size_t> m_offsets;
    std::vector<Range> m_ranges;
    std::vector<Lit> m_lit;
    std::vector<Instance> m_gathered;
    std::vector<uint32_t> m_indices;
};

} // namespace Rendra
