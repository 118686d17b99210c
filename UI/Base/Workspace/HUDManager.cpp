#include "UI/Base/Workspace/HUDManager.h"

#include "UI/Base/Workspace/HUDPersister.h"

#include <algorithm>
#include <utility>

namespace Vu {

HUDManager* HUDManager::get()
{
    static auto* const manager = new HUDManager;
    return manager;
}

PlacedHUD* HUDManager::hudById(const std::wstring& id)
{
    const auto known = std::find_if(m_huds.begin(), m_huds.end(), [&](auto& hud) { return hud.id() == id; });
    if (known != m_huds.end())
        return &*known;
    const std::vector<HUD>& named = HUDPersister::get()->huds();
    const bool exists = std::any_of(named.begin(), named.end(),
                                    [&](const HUD& hud) { return hud.id == id && hud.isPlaced(); });
    return exists ? &m_huds.emplace_back(id) : nullptr;
}

void HUDManager::showHUD(const std::wstring& id, const Vs::Point2& place)
{
    PlacedHUD* hud = hudById(id);
    if (!hud)
        return;
    hud->m_shown = true;
    hud->m_place = place;
    changed();
}

void HUDManager::hideHUD(const std::wstring& id)
{
    PlacedHUD* hud = hudById(id);
    if (hud && std::exchange(hud->m_shown, false))
        changed();
}

void HUDManager::hint(const std::wstring& text, const Vs::Point2& place)
{
    if (text == m_hint && place == m_hintPlace)
        return;
    m_hint = text;
    m_hintPlace = place;
    changed();
}

void HUDManager::changed()
{
    forEach([](HUDEventSite* site) { site->hudsChanged(); });
}

} // namespace Vu
