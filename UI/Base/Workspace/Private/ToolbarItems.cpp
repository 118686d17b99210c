#include "UI/Base/Workspace/Private/ToolbarItems.h"

#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"

namespace Vu {

namespace {

/// A menu in a menu in a menu is as deep as anybody wants to go.
constexpr int kDeepest = 4;

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

std::vector<ToolbarItem> readToolbarItems(XmlFile& xml, const std::wstring& domain)
{
    return readItems(xml, domain, 0);
}

} // namespace Vu
