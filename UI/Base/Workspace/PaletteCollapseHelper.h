#pragma once

#include "UI/Base/Workspace/Area.h"

#include <set>
#include <string>
#include <vector>

namespace Vu {

/// The collapse bars at the sides of the active window. A collapsed area that is shown stands on the bar of
/// its `collapsedPlacement`, and opens when its button there is pressed; a bar that has none takes no room.
/// Names are those of areas of the window's layout; one that it doesn't have is passed over. Main thread
/// only.
class PaletteCollapseHelper
{
public:
    static PaletteCollapseHelper* getInstance();

    /// Whether the bar at that side shows: it isn't hidden, and something stands on it.
    [[nodiscard]] bool isCollapseBarVisible(EPlacement side) const;
    /// A bar that is hidden keeps what stands on it.
    void showCollapseBar(EPlacement side, bool show);

    /// Puts the area on the bar of a side.
    void collapsePalette(const std::wstring& name, EPlacement side);
    /// Takes the area off its bar: with `open` it stands where it was before it was collapsed, otherwise it
    /// is hidden, and still collapsed when it is shown again.
    void removePaletteFromBar(const Vs::UniqueString* name, bool open);

    /// For the window: what stands on the bar of a side, in the order of the tree; nothing for a hidden bar.
    [[nodiscard]] std::vector<Area*> palettes(Area& root, EPlacement side) const;

private:
    PaletteCollapseHelper() = default;

    std::set<EPlacement> m_hidden;
};

} // namespace Vu
