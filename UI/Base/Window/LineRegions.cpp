#include "UI/Base/Window/LineRegions.h"

#include <algorithm>
#include <cstdint>

namespace Vu {
namespace {

/// More pairs of lines take longer than anybody wants to wait for a place that is kept.
constexpr size_t kMostPairs = 4'000'000;

/// For each pair of lines, how many lines the texts share from there on.
class SharedLines
{
public:
    SharedLines(const QString* before, int beforeCount, const QString* after, int afterCount)
        : m_width(static_cast<size_t>(afterCount) + 1),
          m_counts((static_cast<size_t>(beforeCount) + 1) * m_width)
    {
        for (int i = beforeCount - 1; i >= 0; --i)
            for (int j = afterCount - 1; j >= 0; --j)
                at(i, j) =
                    before[i] == after[j] ? at(i + 1, j + 1) + 1 : std::max(at(i + 1, j), at(i, j + 1));
    }

    uint32_t& at(int i, int j) { return m_counts[static_cast<size_t>(i) * m_width + static_cast<size_t>(j)]; }

private:
    size_t m_width;
    std::vector<uint32_t> m_counts;
};

} // namespace

std::vector<LineRegion> differingRegions(const QStringList& before, const QStringList& after)
{
    const auto shorter = std::min(before.size(), after.size());
    const auto start = static_cast<int>(
        std::mismatch(before.begin(), before.begin() + shorter, after.begin()).first - before.begin());
    const auto same = static_cast<int>(
        std::mismatch(before.rbegin(), before.rbegin() + (shorter - start), after.rbegin()).first -
        before.rbegin());
    const int oldCount = static_cast<int>(before.size()) - start - same;
    const int newCount = static_cast<int>(after.size()) - start - same;
    if (oldCount == 0 && newCount == 0)
        return {};
    if (oldCount == 0 || newCount == 0 ||
        static_cast<size_t>(oldCount) * static_cast<size_t>(newCount) > kMostPairs)
        return {{start, oldCount, start, newCount}};

    const QString* oldLines = before.constData() + start;
    const QString* newLines = after.constData() + start;
    SharedLines shared(oldLines, oldCount, newLines, newCount);
    std::vector<LineRegion> regions;
    for (int i = 0, j = 0; i < oldCount || j < newCount;) {
        LineRegion region{start + i, 0, start + j, 0};
        while (i < oldCount && j < newCount && oldLines[i] != newLines[j])
            shared.at(i + 1, j) >= shared.at(i, j + 1) ? ++i : ++j;
        if (i == oldCount || j == newCount) {
            i = oldCount;
            j = newCount;
        }
        region.oldCount = start + i - region.oldLine;
        region.newCount = start + j - region.newLine;
        if (region.oldCount > 0 || region.newCount > 0)
            regions.push_back(region);
        for (; i < oldCount && j < newCount && oldLines[i] == newLines[j]; ++i, ++j)
            ;
    }
    return regions;
}

} // namespace Vu
