#pragma once

namespace Vs {

class Asset;

/// Says on which asset the simple commands of tests work: such a command makes one of its own unless one was
/// named here. Main thread only.
class SegmentFinder
{
public:
    /// From now on this one, until it closes; null for none.
    static void useExistingAsset(Asset* asset);
    /// Null if the commands are to make their own.
    [[nodiscard]] static Asset* existingAsset();
};

} // namespace Vs
