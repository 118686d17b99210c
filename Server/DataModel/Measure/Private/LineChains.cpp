#include "Server/DataModel/Measure/Private/LineChains.h"

#include <algorithm>
#include <unordered_map>

namespace Vs {

namespace {

struct Meeting
{
    uint32_t pieces[2] = {0, 0};
    uint32_t count = 0;

    bool isPassed() const { return count == 2; }
};

} // namespace

std::vector<std::vector<uint32_t>> LineChains::take()
{
    std::unordered_map<uint32_t, Meeting> meetings;
    for (uint32_t i = 0; i < m_pieces.size(); ++i)
        for (const uint32_t node : {m_pieces[i].first, m_pieces[i].second}) {
            Meeting& meeting = meetings[node];
            if (meeting.count < 2)
                meeting.pieces[meeting.count] = i;
            ++meeting.count;
        }
    std::vector<bool> used(m_pieces.size());
    std::vector<std::vector<uint32_t>> lines;
    const auto follow = [&](uint32_t piece, uint32_t from) {
        std::vector<uint32_t> line{from};
        while (!used[piece]) {
            used[piece] = true;
            const auto [first, second] = m_pieces[piece];
            line.push_back(line.back() == first ? second : first);
            const Meeting& meeting = meetings[line.back()];
            if (!meeting.isPassed())
                break;
            piece = meeting.pieces[meeting.pieces[0] == piece ? 1 : 0];
        }
        lines.push_back(std::move(line));
    };
    // First those with ends; what remains is closed.
    for (uint32_t i = 0; i < m_pieces.size(); ++i)
        for (const uint32_t node : {m_pieces[i].first, m_pieces[i].second})
            if (!used[i] && !meetings[node].isPassed())
                follow(i, node);
    for (uint32_t i = 0; i < m_pieces.size(); ++i)
        if (!used[i])
            follow(i, m_pieces[i].first);
    m_pieces.clear();
    return lines;
}

} // namespace Vs
