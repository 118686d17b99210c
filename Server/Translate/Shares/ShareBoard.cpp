#include "Server/Translate/Shares/ShareBoard.h"

#include <algorithm>
#include <new>
#include <sys/mman.h>

namespace Vs::Translate::Shares {

namespace {

void* sharedMemory(size_t size)
{
    void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw std::bad_alloc();
    return memory;
}

} // namespace

ShareBoard::ShareBoard() : m_cells(*new (sharedMemory(sizeof m_cells)) std::array<Cell, kMostShares>{}) {}

ShareBoard::~ShareBoard()
{
    munmap(&m_cells, sizeof m_cells);
}

double ShareBoard::progress() const
{
    double done = 0, all = 0;
    for (const Cell& cell : m_cells) {
        const auto bytes = static_cast<double>(cell.bytes.load());
        all += bytes;
        // A reader may write anything here.
        done += bytes * std::clamp(cell.done.load(), 0.0, 1.0);
    }
    return all > 0 ? done / all : 0;
}

} // namespace Vs::Translate::Shares
