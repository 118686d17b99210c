#include "UI/Base/Workspace/Private/ToolbarItems.h"

#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"

#include <boost/filesystem/path.hpp>

#include <algorithm>

namespace Vu {

namespace {

/// Three levels of menus are as deep as anybody wants to go.
constexpr int kDeepest = 4;

void readPlace(XmlFile& xml, std::vector<ToolbarItem>& items)
{
    ToolbarItem item;
    item.isPlace = true;
    item.id = xml.attribute("id");
    if (item.id.empty())
        xml.problem(L"A place needs the attribute \"id\".");
    else
        items.push_back(std::move(item));
    xml.skip();
}

/// Named as the resources are: "Edit/Cut". The file lies in a folder beside the pictures'.
std::wstring pictureOf(const XmlFile& xml)
{
    const std::wstring name = xml.attribute("picture");
    return name.empty() ? name
                        : (boost::filesystem::path(xml.path()).parent_path().parent_path() / name).wstring();
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
            item.off = xml.attribute("off");
            item.picture = pictureOf(xml);
            if (item.command.empty())
                xml.problem(L"An item needs the attribute \"command\".");
            else
                items.push_back(item);
            xml.skip();
        } else if (xml.name() == QLatin1String("menu") && depth < kDeepest) {
            item.title = localizedTitle(xml, domain);
            item.command = xml.attribute("command");
            item.id = xml.attribute("id");
            item.picture = pictureOf(xml);
            const bool named = !item.title.empty() || !item.command.empty();
            if (!named)
                xml.problem(L"A menu needs the attribute \"title\" or \"command\".");
            item.menu = readItems(xml, domain, depth + 1, ofMenuBar);
            if (named)
                items.push_back(std::move(item));
        } else if (ofMenuBar && xml.name() == QLatin1String("place")) {
            readPlace(xml, items);
        } else {
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
        for (const std::wstring& command : {item.command, item.off})
            if (!command.empty() && !CommandDefinitionMgr::get()->findCommandDefinitionById(command) &&
                std::find(unknown.begin(), unknown.end(), command) == unknown.end())
                unknown.push_back(command);
    }
}

std::wstring elementName(const XmlFile& xml)
{
    return L"<" + xml.name().toString().toStdWString() + L">";
}

std::wstring localizedTitle(const XmlFile& xml, const std::wstring& domain)
{
    std::wstring title = xml.attribute("title");
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
