#include "Server/Scene/Rendra/InstanceStore.h"

#include "Server/Scene/Rendra/BufferOffset.h"
#include "Server/Scene/Rendra/MeshStore.h"

#include <cstddef>

namespace Rendra {

uint64_t InstanceStore::update(const DrawList& list, const Vs::Scene::Projection& projection, float smallest)
{
    const uint64_t changed = uploadChanges(list);
    m_ranges.assign(list.batches().size(), {});
    m_gathered.clear();
    m_visibleIndices.clear();
    m_firstVisible.clear();
    m_lit.clear();
    for (size_t i = 0; i < list.batches().size(); ++i) {
        const Batch& batch = *list.batches()[i];
        for (size_t left = batch.lit, index = 0; left > 0; ++index)
            if (batch.instances[index].flags & (Instance::kPointed | Instance::kSelected)) {
                m_lit.push_back({&batch, i, index});
                --left;
            }
        m_firstVisible.push_back(m_visibleIndices.size());
        DrawList::Sizes pixels;
        if (list.cull(batch, projection, smallest, m_indices, pixels)) {
            m_ranges[i] = {m_all, m_offsets[i], GLsizei(batch.instances.size()), pixels.largest,
                           pixels.smallest};
            continue;
        }
        m_ranges[i] = {m_visible, m_gathered.size() * sizeof(Instance), GLsizei(m_indices.size()),
                       pixels.largest, pixels.smallest};
        for (uint32_t index : m_indices)
            m_gathered.push_back(batch.instances[index]);
        m_visibleIndices.insert(m_visibleIndices.end(), m_indices.begin(), m_indices.end());
    }
    uploadGathered(m_visible);
    m_inView = m_ranges;
    return changed;
}

void InstanceStore::showSome(const DrawList& list, const std::vector<uint8_t>& states, uint8_t mask,
                             uint8_t bits)
{
    m_ranges = m_inView;
    m_gathered.clear();
    for (size_t i = 0; i < m_ranges.size(); ++i) {
        const Batch& batch = *list.batches()[i];
        const uint8_t* const state = &states[m_offsets[i] / sizeof(Instance)];
        const size_t first = m_gathered.size();
        forEachInView(i, [&](size_t index) {
            if ((state[index] & mask) == bits)
                m_gathered.push_back(batch.instances[index]);
        });
        const size_t count = m_gathered.size() - first;
        if (count == size_t(m_inView[i].count))
            m_gathered.resize(first);
        else
            m_ranges[i] = {m_some, first * sizeof(Instance), GLsizei(count), m_inView[i].pixels,
                           m_inView[i].leastPixels};
    }
    uploadGathered(m_some);
}

void InstanceStore::uploadGathered(GLuint buffer)
{
    if (m_gathered.empty())
        return;
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(m_gathered.size() * sizeof(Instance)), m_gathered.data(),
                 GL_STREAM_DRAW);
}

void InstanceStore::showAll(const DrawList& list)
{
    uploadChanges(list);
    m_ranges.resize(list.batches().size());
    for (size_t i = 0; i < m_ranges.size(); ++i)
        m_ranges[i] = {m_all, m_offsets[i], GLsizei(list.batches()[i]->instances.size())};
}

uint64_t InstanceStore::uploadChanges(const DrawList& list)
{
    if (!m_all) {
        glGenBuffers(1, &m_all);
        glGenBuffers(1, &m_visible);
        glGenBuffers(1, &m_some);
    }
    glBindBuffer(GL_ARRAY_BUFFER, m_all);
    const bool anew = m_layout != list.layoutRevision();
    uint64_t sent = 0;
    if (anew) {
        m_layout = list.layoutRevision();
        m_offsets.clear();
        size_t offset = 0;
        for (const auto& batch : list.batches()) {
            m_offsets.push_back(offset);
            offset += batch->instances.size() * sizeof(Instance);
        }
        glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(offset), nullptr, GL_DYNAMIC_DRAW);
    }
    for (size_t i = 0; i < list.batches().size(); ++i) {
        Batch& batch = *list.batches()[i];
        const size_t first = anew ? 0 : batch.dirtyFirst;
        const size_t count = anew ? batch.instances.size() : batch.dirtyEnd - batch.dirtyFirst;
        if (count > 0)
            glBufferSubData(GL_ARRAY_BUFFER, GLintptr(m_offsets[i] + first * sizeof(Instance)),
                            GLsizeiptr(count * sizeof(Instance)), &batch.instances[first]);
        sent += count;
        batch.dirtyFirst = batch.dirtyEnd = 0;
    }
    return sent;
}

void InstanceStore::bind(const Range& range)
{
    glBindBuffer(GL_ARRAY_BUFFER, range.buffer);
    const auto at = [&](size_t offset) { return bufferOffset(range.offset + offset); };
    constexpr size_t kRow = sizeof(float) * 4;
    for (GLuint row = 0; row < 3; ++row)
        glVertexAttribPointer(kRow0 + row, 4, GL_FLOAT, GL_FALSE, sizeof(Instance),
                              at(offsetof(Instance, rows) + row * kRow));
    glVertexAttribPointer(kInstanceColour, 4, GL_UNSIGNED_BYTE, GL_TRUE, sizeof(Instance),
                          at(offsetof(Instance, colour)));
    glVertexAttribIPointer(kInstanceFlags, 1, GL_UNSIGNED_INT, sizeof(Instance),
                           at(offsetof(Instance, flags)));
}

void InstanceStore::release()
{
    const GLuint buffers[] = {m_all, m_visible, m_some};
    glDeleteBuffers(3, buffers);
    *this = InstanceStore();
}

} // namespace Rendra
