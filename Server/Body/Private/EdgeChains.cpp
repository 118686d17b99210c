#include "Server/Body/Private/EdgeChains.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace Vs {

namespace {

/// A line that turns by more has a corner there.
constexpr double kStraightOnCosine = 0.766; // 40 degrees

struct Piece
{
    uint32_t from, to;                   ///< Nodes.
    std::pair<uint32_t, uint32_t> joins; ///< Regions, the lower one first.
};

class Walk
{
public:
    Walk(const MeshSides& sides, const MeshRegions& regions) : m_sides(sides)
    {
        for (uint32_t t = 0; t < sides.triangles(); ++t)
            for (uint32_t k = 0; k < 3; ++k)
                add(regions, t, k);
        m_taken.assign(m_pieces.size(), false);
        // The pieces at each node, side by side.
        m_begin.assign(sides.nodes() + 1, 0);
        for (const Piece& piece : m_pieces)
            for (const uint32_t node : {piece.from, piece.to})
                ++m_begin[node + 1];
        std::partial_sum(m_begin.begin(), m_begin.end(), m_begin.begin());
        m_at.resize(m_begin.back());
        std::vector<uint32_t> fill(m_begin.begin(), m_begin.end() - 1);
        for (uint32_t i = 0; i < m_pieces.size(); ++i)
            for (const uint32_t node : {m_pieces[i].from, m_pieces[i].to})
                m_at[fill[node]++] = i;
    }

    void lines(EdgeChains& found)
    {
        std::vector<bool> known(m_sides.nodes(), false);
        for (uint32_t i = 0; i < m_pieces.size(); ++i) {
            if (m_taken[i])
                continue;
            std::vector<uint32_t> line = along(i);
            for (const uint32_t end : {line.front(), line.back()})
                if (isCorner(end) && !known[end]) {
                    known[end] = true;
                    found.corners.push_back(end);
                }
            found.lines.push_back(std::move(line));
        }
    }

private:
    void add(const MeshRegions& regions, uint32_t t, uint32_t k)
    {
        const uint32_t from = m_sides.node(t, k), to = m_sides.node(t, k + 1);
        const uint32_t other = m_sides.neighbour(t, k);
        if (!m_sides.isFirst(t, k) || from == to || (m_sides.isThin(t) && other == MeshSides::kNone))
            return;
        const uint32_t ours = regions.ofTriangle[t];
        const uint32_t theirs = other == MeshSides::kNone ? MeshSides::kNone : regions.ofTriangle[other];
        if (m_sides.isSharp(t, k) || theirs != ours)
            m_pieces.push_back({from, to, std::minmax(ours, theirs)});
    }

    GkVector3d direction(const Piece& piece, uint32_t from) const
    {
        const uint32_t to = piece.from == from ? piece.to : piece.from;
        return (m_sides.place(to) - m_sides.place(from)).normal();
    }

    bool isCorner(uint32_t node) const
    {
        if (m_begin[node + 1] - m_begin[node] != 2)
            return true;
        const Piece& one = m_pieces[m_at[m_begin[node]]];
        const Piece& other = m_pieces[m_at[m_begin[node] + 1]];
        return one.joins != other.joins ||
               -direction(one, node).dotProduct(direction(other, node)) < kStraightOnCosine;
    }

    /// From a piece on over one of its ends, up to a corner or round to itself.
    void follow(uint32_t piece, uint32_t node, std::vector<uint32_t>& nodes)
    {
        for (;;) {
            nodes.push_back(node);
            if (isCorner(node))
                return;
            const uint32_t first = m_at[m_begin[node]];
            const uint32_t next = first == piece ? m_at[m_begin[node] + 1] : first;
            if (m_taken[next])
                return;
            m_taken[next] = true;
            piece = next;
            node = m_pieces[next].from == node ? m_pieces[next].to : m_pieces[next].from;
        }
    }

    std::vector<uint32_t> along(uint32_t piece)
    {
        m_taken[piece] = true;
        std::vector<uint32_t> before, after;
        follow(piece, m_pieces[piece].from, before);
        // All the way round there is nothing left for the other direction.
        follow(piece, m_pieces[piece].to, after);
        std::reverse(before.begin(), before.end());
        before.insert(before.end(), after.begin(), after.end());
        return before;
    }

    const MeshSides& m_sides;
    std::vector<Piece> m_pieces;
    std::vector<bool> m_taken;
    std::vector<uint32_t> m_begin, m_at;
};

} // namespace

EdgeChains::EdgeChains(const MeshSides& sides, const MeshRegions& regions)
{
    Walk(sides, regions).lines(*this);
}

} // namespace Vs
