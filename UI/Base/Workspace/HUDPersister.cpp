#include "UI/Base/Workspace/HUDPersister.h"

#include "Server/Base/Strings.h"
#include "UI/Base/Workspace/Private/ToolbarItems.h"

namespace Vu {

HUDPersister* HUDPersister::get()
{
    static HUDPersister persister;
    return &persister;
}

bool HUDPersister::loadHUDs(const std::wstring& path, Vs::Status& status)
{
    Vs::Status found;
    XmlFile xml(path, "huds", found);
    std::vector<HUD> huds;
    if (xml.open())
        while (xml.nextElement()) {
            if (xml.name() != QLatin1String("hud")) {
                xml.problem(elementName(xml) + L" cannot stand here.");
                xml.skip();
                continue;
            }
            HUD hud{xml.attribute("id"), xml.attribute("placement"), {}};
            hud.contents = Vs::Strings::narrow(xml.attribute("contents"));
            if (hud.id.empty())
                xml.problem(L"A HUD needs the attribute \"id\".");
            hud.items = readToolbarItems(xml, {});
            if (!hud.id.empty())
                huds.push_back(std::move(hud));
        }
    if (!xml.broken())
        for (HUD& hud : huds) {
            std::erase_if(m_huds, [&](const HUD& old) { return old.id == hud.id; });
            m_huds.push_back(std::move(hud));
        }
    status.merge(found);
    return found.isOk();
}

} // namespace Vu
