#include "UI/Base/Workspace/Private/ToolbarItems.h"

#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"

#include <algorithm>

namespace Vu {

namespace {

/// A menu in a menu in a menu is as deep as anybody wants to go.
constexpr int kDeepest = 4;

/// What only menus of the menu bar have. False if it is something else.
bool readOfMenuBar(XmlFile& xml, std::vector<ToolbarItem>& items)
{
    const bool isPlace = xml.name() == QLatin1String("place");
    if (!isPlace && xml.name() != QLatin1String("areas"))
        return false;
    ToolbarItem item;
    item.kind = isPlace ? ToolbarItem::Kind::Place : ToolbarItem::Kind::Areas;
    item.id = xml.attribute("id");
    if (isPlace && item.id.empty())
        xml.problem(L"A place needs the attribute \"id\".");
    else
        items.push_back(std::move(item));
    xml.skip();
    return true;
}

std::vector<ToolbarItem> readItems(XmlFile& xml, const std::wstring& domain, int depth, bool ofMenuBar)
{
    std::vector<ToolbarItem> items;
    while (xml.nextElement()) {
        ToolbarItem item;
        if (xml.name() == QLatin1String("separator")) {
            items.push_back(item);
            xml.skip();
        } else if (xml.name() == QLatin1String("item")) {
            item.command = xml.attribute("command");
            item.title = localizedTitle(xml, domain);
            item.keys = xml.attribute("keys");
            if (item.command.empty())
                xml.problem(L"An item needs the attribute \"command\".");
            else
                items.push_back(item);
            xml.skip();
        } else if (xml.name() == QLatin1String("menu") && depth < kDeepest) {
            item.title = localizedTitle(xml, domain);
            item.command = xml.attribute("command");
            item.id = xml.attribute("id");
            const bool named = !item.title.empty() || !item.command.empty();
            if (!named)
                xml.problem(L"A menu needs the attribute \"title\" or \"command\".");
            item.menu = readItems(xml, domain, depth + 1, ofMenuBar);
            if (named)
                items.push_back(std::move(item));
        } else if (!ofMenuBar || !readOfMenuBar(xml, items)) {
            xml.problem(elementName(xml) + L" cannot stand here.");
            xml.skip();
        }
    }
    return items;
}

} // namespace

void collectUnknownCommands(const std::vector<ToolbarItem>& items, std::vector<std::wstring>& unknown)
{
    for (const ToolbarItem& item : items) {
        collectUnknownCommands(item.menu, unknown);
        if (!item.command.empty() && !CommandDefinitionMgr::get()->findCommandDefinitionById(item.command) &&
            std::find(unknown.begin(), unknown.end(), item.command) == unknown.end())
            unknown.push_back(item.command);
    }
}

std::wstring elementName(const XmlFile& xml)
{
    return L"<" + xml.name().toString().toStdWString() + L">";
}

std::wstring localizedTitle(const XmlFile& xml, const std::wstring& domain)
{
    const std::wstring title = xml.attribute("title");
    const std::wstring key = xml.attribute("titleKey");
    if (key.empty() || title.empty())
        return title;
    return Vs::StringTable::getLocalizedString(domain, Vs::Strings::narrow(key).c_str(),
                                               Vs::Strings::narrow(title).c_str());
}

std::vector<ToolbarItem> readToolbarItems(XmlFile& xml, const std::wstring& domain, bool ofMenuBar)
{
    return readItems(xml, domain, 0, ofMenuBar);
}

} // namespace Vu
