#include "UI/Base/Workspace/ToolbarPersister.h"

#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"
#include "UI/Base/Workspace/HUDPersister.h"
#include "UI/Base/Workspace/Private/ToolbarItems.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <algorithm>

namespace Vu {
namespace {

/// A menu in a menu in a menu is as deep as anybody wants to go.
constexpr int kDeepest = 4;

std::wstring elementName(const XmlFile& xml)
{
    return L"<" + xml.name().toString().toStdWString() + L">";
}

std::vector<ToolbarItem> readItems(XmlFile& xml, const std::wstring& domain, int depth)
{
    std::vector<ToolbarItem> items;
    while (xml.nextElement()) {
        ToolbarItem item;
        if (xml.name() == QLatin1String("separator")) {
            items.push_back(item);
            xml.skip();
        } else if (xml.name() == QLatin1String("item")) {
            item.command = xml.attribute("command");
            if (item.command.empty())
                xml.problem(L"An item needs the attribute \"command\".");
            else
                items.push_back(item);
            xml.skip();
        } else if (xml.name() == QLatin1String("menu") && depth < kDeepest) {
            item.title = localizedTitle(xml, domain);
            item.command = xml.attribute("command");
            const bool named = !item.title.empty() || !item.command.empty();
            if (!named)
                xml.problem(L"A menu needs the attribute \"title\" or \"command\".");
            item.menu = readItems(xml, domain, depth + 1);
            if (named)
                items.push_back(std::move(item));
        } else {
            xml.problem(elementName(xml) + L" cannot stand here.");
            xml.skip();
        }
    }
    return items;
}

} // namespace

std::wstring localizedTitle(const XmlFile& xml, const std::wstring& domain)
{
    const std::wstring title = xml.attribute("title");
    const std::wstring key = xml.attribute("titleKey");
    if (key.empty() || title.empty())
        return title;
    return Vs::StringTable::getLocalizedString(domain, Vs::Strings::narrow(key).c_str(),
                                               Vs::Strings::narrow(title).c_str());
}

std::vector<ToolbarItem> readToolbarItems(XmlFile& xml, const std::wstring& domain)
{
    return readItems(xml, domain, 0);
}

ToolbarPersister* ToolbarPersister::get()
{
    static ToolbarPersister persister;
    return &persister;
}

bool ToolbarPersister::loadToolbars(const std::wstring& path, const std::wstring& domain, Vs::Status& status)
{
    Vs::Status found;
    XmlFile xml(path, "toolbars", found);
    std::vector<Toolbar> toolbars;
    if (xml.open())
        while (xml.nextElement()) {
            if (xml.name() != QLatin1String("toolbar")) {
                xml.problem(elementName(xml) + L" cannot stand here.");
                xml.skip();
                continue;
            }
            Toolbar toolbar;
            toolbar.id = xml.attribute("id");
            toolbar.title = localizedTitle(xml, domain);
            toolbar.contents = Vs::Strings::narrow(xml.attribute("contents"));
            const std::wstring environments = xml.attribute("environments");
            boost::split(toolbar.environments, environments, boost::is_space(), boost::token_compress_on);
            std::erase(toolbar.environments, std::wstring());
            const std::wstring align = xml.attribute("align");
            toolbar.atEnd = align == L"end";
            if (!align.empty() && !toolbar.atEnd)
                xml.problem(L"\"" + align + L"\" is no alignment; there is only \"end\".");
            if (toolbar.id.empty())
                xml.problem(L"A toolbar needs the attribute \"id\".");
            toolbar.items = readToolbarItems(xml, domain);
            if (!toolbar.id.empty())
                toolbars.push_back(std::move(toolbar));
        }
    if (!xml.broken())
        for (Toolbar& toolbar : toolbars)
            ToolbarManager::get()->add(std::move(toolbar));
    status.merge(found);
    return found.isOk();
}

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
