#pragma once

#include <cstdint>
#include <utility>
#include <vector>

namespace Vs {

/// Joins straight pieces between nodes into lines as long as possible, so that dashes can run along them.
class LineChains
{
public:
    void add(uint32_t from, uint32_t to) { m_pieces.emplace_back(from, to); }
    /// The lines' nodes; one that is closed ends where it begins. Where more than two pieces meet, lines end.
    [[nodiscard]] std::vector<std::vector<uint32_t>> take();

private:
    std::vector<std::pair<uint32_t, uint32_t>> m_pieces;
};

} // namespace Vs
