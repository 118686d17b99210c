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

    /// Makes `ranges` cover those of the last `update` whose states have just these of the bits in `mask`:
    /// one state for each of the list's instances, batch after batch.
    void showSome(const DrawList& list, const std::vector<uint8_t>& states, uint8_t mask, uint8_t bits);
    /// Makes `ranges` those of the last `update` again.
    void showInView() { m_ranges = m_inView; }
    /// Calls `each` with the index of every instance of a batch that the last `update` found in view.
    template <class Each>
    void forEachInView(size_t batch, const Each& each) const
    {
        const bool all = m_inView[batch].buffer == m_all;
        const size_t count = size_t(m_inView[batch].count);
        for (size_t i = 0; i < count; ++i)
            each(all ? i : size_t(m_visibleIndices[m_firstVisible[batch] + i]));
    }

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
    void uploadGathered(GLuint buffer);

    GLuint m_all = 0, m_visible = 0, m_some = 0;
    uint64_t m_layout = 0;
    std::vector<size_t> m_offsets;
    std::vector<Range> m_ranges, m_inView;
    std::vector<Lit> m_lit;
    std::vector<Instance> m_gathered;
    std::vector<uint32_t> m_indices;
    std::vector<uint32_t> m_visibleIndices; ///< In their batches, of those of which not all are in view.
    std::vector<size_t> m_firstVisible;     ///< Where those of each batch begin.
};

} // namespace Rendra
