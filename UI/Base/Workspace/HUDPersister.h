#pragma once

#include "Server/Base/Status.h"
#include "UI/Base/Workspace/ToolbarManager.h"

#include <string>
#include <vector>

namespace Vu {

/// A small bar that lies over the canvas.
struct HUD
{
    std::wstring id;
    /// "top", "bottom", "left" or "right"; "point" for one that a command fills and places (HUDManager).
    std::wstring placement;
    std::vector<ToolbarItem> items;
    /// The contents key of the area that says whether it shows, and at which side; empty for always and
    /// there.
    std::string contents = {};

    bool isPlaced() const { return placement == L"point"; }
};

/// Reads heads-up displays from XML:
///
///     <huds> <hud id="Navigation" placement="bottom" contents="NavToolbar"> <item command="FitCommand"/>
///     <separator/> </hud>
///     </huds>
///
/// An item whose command doesn't exist is left out when the HUD is drawn, without a word.
class HUDPersister
{
public:
    static HUDPersister* get();

    /// Errors as in ToolbarPersister::loadToolbars.
    bool loadHUDs(const std::wstring& path, Vs::Status& status);
    const std::vector<HUD>& huds() const { return m_huds; }

private:
    std::vector<HUD> m_huds;
};

} // namespace Vu
