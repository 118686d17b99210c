#pragma once

#include "Server/Base/Status.h"
#include "UI/Base/Workspace/ToolbarManager.h"

#include <string>
#include <vector>

namespace Vu {

/// The menus of a window, as files describe them:
///
///     <menus>
///       <menu id="File" title="&amp;File" titleKey="MenuFile">
///         <item command="OpenDocumentCommand" title="Open" titleKey="MenuOpen"/>
///         <place id="Exchange"/>
///         <separator/>
///         <menu ...> <item .../> </menu>
///         <item command="ShowBrowserCommand" off="HideBrowserCommand" title="Browser"
///         titleKey="MenuBrowser"/>
///       </menu>
///       <add menu="File" place="Exchange"> <item .../> </add>
///       <context id="OnEdge"> <item .../> <place .../> </context>
///     </menus>
///
/// An item's title stands for the command's own, and its attribute `keys` adds keys to the command's own;
/// `off` is the command that takes back what the other one does, so that the item and its keys switch on and
/// off. `picture` names a set of pictures beside the file's folder, "Edit/Cut", for a command that has none
/// of its own. "&" comes before the letter that opens a menu. An add-in puts its commands into the menus of
/// others by `<add>`: before the place of that name, or at the end. A `<context>` is a menu that opens at
/// what was clicked, and can be added to like the others. Main thread only.
class MenuBar
{
public:
    /// That of the program's windows.
    static MenuBar* get();

    /// Nothing is read before somebody wants to see the menus: a run without a window never does. A file that
    /// is there already, as that of an add-in that comes again, isn't added twice.
    void addFile(std::wstring path, std::wstring domain);

    /// In the order in which the files name them. Of a file that isn't XML there is nothing; a wrong element
    /// is left out.
    const std::vector<ToolbarItem>& menus();
    /// The entries of the context menu of that id; none if no file has it.
    const std::vector<ToolbarItem>& context(const std::wstring& id);
    /// What the menus name as the picture of a command; empty if none does.
    std::wstring pictureOf(const std::wstring& command);
    /// What was wrong with the files, each with file, line and cause.
    const Vs::Status& problems();
    /// Ids of commands that the menus name but nobody has registered, without repetition.
    [[nodiscard]] std::vector<std::wstring> unknownCommands();

private:
    struct File
    {
        std::wstring path, domain;
    };
    /// What a file puts into a menu, perhaps of another file.
    struct Addition
    {
        std::wstring menu, place;
        std::vector<ToolbarItem> items;
        std::wstring from; ///< "FILE: ", for messages.
    };

    void readAll();
    void read(const File& file, std::vector<Addition>& additions);
    void add(const Addition& addition);

    std::vector<File> m_files;
    std::vector<ToolbarItem> m_menus, m_contexts;
    Vs::Status m_problems;
    bool m_read = false;
};

} // namespace Vu
