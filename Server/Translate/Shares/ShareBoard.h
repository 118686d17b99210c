#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace Vs::Translate::Shares {

constexpr size_t kMostShares = 64;

/// Memory shared by the readers and the worker: the progress of each with its part.
class ShareBoard
{
public:
    /// Throws std::bad_alloc.
    ShareBoard();
    ~ShareBoard();
    ShareBoard(const ShareBoard&) = delete;
    ShareBoard& operator=(const ShareBoard&) = delete;

    void weigh(size_t share, uint64_t bytes) { m_cells[share].bytes = bytes; }
    /// From 0 to 1.
    void progress(size_t share, double fraction) { m_cells[share].done = fraction; }
    double progress(size_t share) const { return m_cells[share].done; }
    /// Of all together.
    double progress() const;

private:
    struct Cell
    {
        std::atomic<uint64_t> bytes;
        std::atomic<double> done;
    };

    std::array<Cell, kMostShares>& m_cells;
};

} // namespace Vs::Translate::Shares
