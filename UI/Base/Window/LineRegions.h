#pragma once

#include <QStringList>

#include <vector>

namespace Vu {

/// Lines of a text in place of which another one has others. Lines are counted from 0.
struct LineRegion
{
    int oldLine, oldCount;
    int newLine, newCount;
};

/// Where two texts differ, in their order: as few lines as can be. Where they differ widely, one region may
/// reach over lines that they share.
[[nodiscard]] std::vector<LineRegion> differingRegions(const QStringList& before, const QStringList& after);

} // namespace Vu
