#include "UI/Base/Workspace/MenuBar.h"

#include "UI/Base/Workspace/Private/ToolbarItems.h"

#include <algorithm>
#include <iterator>

namespace Vu {
namespace {

/// The menu of that name among the items and below; null if there is none.
ToolbarItem* menuById(std::vector<ToolbarItem>& items, const std::wstring& id)
{
    for (ToolbarItem& item : items) {
        if (item.isMenu() && item.id == id)
            return &item;
        if (ToolbarItem* found = menuById(item.menu, id))
            return found;
    }
    return nullptr;
}

const ToolbarItem* itemOf(const std::vector<ToolbarItem>& items, const std::wstring& command)
{
    for (const ToolbarItem& item : items) {
        if (item.command == command && !item.picture.empty())
            return &item;
        if (const ToolbarItem* found = itemOf(item.menu, command))
            return found;
    }
    return nullptr;
}

} // namespace

MenuBar* MenuBar::get()
{
    static auto* const bar = new MenuBar;
    return bar;
}

void MenuBar::addFile(std::wstring path, std::wstring domain)
{
    if (std::ranges::any_of(m_files, [&](const File& file) { return file.path == path; }))
        return;
    m_files.push_back({std::move(path), std::move(domain)});
    m_read = false;
}

const std::vector<ToolbarItem>& MenuBar::menus()
{
    readAll();
    return m_menus;
}

const std::vector<ToolbarItem>& MenuBar::context(const std::wstring& id)
{
    static const std::vector<ToolbarItem> none;
    readAll();
    const ToolbarItem* found = menuById(m_contexts, id);
    return found ? found->menu : none;
}

std::wstring MenuBar::pictureOf(const std::wstring& command)
{
    const ToolbarItem* item = itemOf(menus(), command);
    return item ? item->picture : std::wstring();
}

const Vs::Status& MenuBar::problems()
{
    readAll();
    return m_problems;
}

std::vector<std::wstring> MenuBar::unknownCommands()
{
    std::vector<std::wstring> unknown;
    collectUnknownCommands(menus(), unknown);
    collectUnknownCommands(m_contexts, unknown);
    return unknown;
}

void MenuBar::readAll()
{
    if (m_read)
        return;
    m_read = true;
    m_menus.clear();
    m_contexts.clear();
    m_problems.clear();
    std::vector<Addition> additions;
    for (const File& file : m_files)
        read(file, additions);
    // Whichever of the files comes first.
    for (const Addition& addition : additions)
        add(addition);
}

void MenuBar::read(const File& file, std::vector<Addition>& additions)
{
    XmlFile xml(file.path, "menus", m_problems);
    std::vector<ToolbarItem> menus, contexts;
    std::vector<Addition> added;
    if (xml.open())
        while (xml.nextElement()) {
            if (xml.name() == QLatin1String("menu")) {
                ToolbarItem menu;
                menu.title = localizedTitle(xml, file.domain);
                menu.id = xml.attribute("id");
                if (menu.title.empty())
                    xml.problem(L"A menu needs the attribute \"title\".");
                menu.menu = readToolbarItems(xml, file.domain, true);
                if (!menu.title.empty())
                    menus.push_back(std::move(menu));
            } else if (xml.name() == QLatin1String("context")) {
                ToolbarItem menu;
                menu.id = xml.attribute("id");
                menu.menu = readToolbarItems(xml, file.domain, true);
                contexts.push_back(std::move(menu));
            } else if (xml.name() == QLatin1String("add")) {
                Addition addition{xml.attribute("menu"), xml.attribute("place"), {}, file.path + L": "};
                addition.items = readToolbarItems(xml, file.domain, true);
                added.push_back(std::move(addition));
            } else {
                xml.problem(elementName(xml) + L" cannot stand here.");
                xml.skip();
            }
        }
    if (xml.broken())
        return;
    std::ranges::move(menus, std::back_inserter(m_menus));
    std::ranges::move(contexts, std::back_inserter(m_contexts));
    std::ranges::move(added, std::back_inserter(additions));
}

void MenuBar::add(const Addition& addition)
{
    ToolbarItem* menu = menuById(m_menus, addition.menu);
    if (!menu)
        menu = menuById(m_contexts, addition.menu);
    if (!menu) {
        m_problems.addError(addition.from + L"There is no menu \"" + addition.menu + L"\" to add to.");
        return;
    }
    const auto place = std::ranges::find_if(
        menu->menu, [&](const ToolbarItem& item) { return item.isPlace && item.id == addition.place; });
    if (place == menu->menu.end() && !addition.place.empty())
        m_problems.addError(addition.from + L"The menu \"" + addition.menu + L"\" has no place \"" +
                            addition.place + L"\"; the entries stand at its end.");
    menu->menu.insert(place, addition.items.begin(), addition.items.end());
}

} // namespace Vu
