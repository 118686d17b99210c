#pragma once

#include "Server/Base/Event.h"
#include "Server/Base/OptionGroup.h"

#include <deque>
#include <string>
#include <vector>

namespace Vu {

class InputControl;

/// One entry of a toolbar, a HUD or a menu.
struct ToolbarItem
{
    std::wstring command; ///< A command's key; of a menu, the one that gives it title and picture.
    std::wstring title;   ///< Of a menu; of a command in a menu, what stands there instead of its own title.
    std::vector<ToolbarItem> menu;
    std::wstring id = {}; ///< Of a menu or a place, by which other files find it.
    bool isPlace = false; ///< Where other files put their entries; not to be seen.
    /// In a menu, the command that takes back what the other one does: the entry runs whichever applies, and
    /// has a tick while it is this one.
    std::wstring off = {};
    /// In a menu: keys of the command besides its own, separated by semicolons: "Ctrl+F; F3".
    std::wstring keys = {};
    /// The folder of a set of pictures: in a toolbar instead of the command's own, in a menu where the
    /// command has none; empty for none.
    std::wstring picture = {};

    bool operator==(const ToolbarItem&) const = default;
    bool separator() const { return !isPlace && command.empty() && title.empty(); }
    bool isMenu() const { return !menu.empty() || (command.empty() && !title.empty()); }
};

/// A toolbar as it was described; the window draws it.
struct Toolbar
{
    std::wstring id;
    std::wstring title;
    std::string contents; ///< Key of the area in which it stands.
    std::vector<ToolbarItem> items;
    bool visible = true;
    /// Identifiers of the environments in which it stands; empty for everywhere, also without a session.
    std::vector<std::wstring> environments = {};
    /// At the far end of its area, away from the others.
    bool atEnd = false;
    /// Of several areas with these contents, the name of the one in which it stands; empty, or where there is
    /// none of that name, the first.
    std::wstring area = {};

    /// Whether it is to be drawn while the active session is in that environment; an empty name is none.
    [[nodiscard]] bool standsIn(const std::wstring& environment) const;

    /// The entry of the control's command; null if the toolbar has none.
    [[nodiscard]] const ToolbarItem* findItem(const InputControl* control) const;
    /// Puts the control's command at the position, or at the end; the window draws it at the next
    /// `ToolbarManager::updateToolbars`.
    void addItem(const InputControl* control, size_t position);
};

class ToolbarEventSite : public Vs::EventSite
{
public:
    virtual void toolbarsChanged() = 0;
};

/// All toolbars, in the order in which they were read. One that the user has taken from the window
/// (UIBaseOptionGroup::hiddenToolbars) begins hidden, and follows that option.
class ToolbarManager : public Vs::Implements<ToolbarManager>,
                       public Vs::EventSource<ToolbarEventSite>,
                       private Vs::OptionEventSite
{
public:
    static ToolbarManager* get();

    const std::deque<Toolbar>& toolbars() const { return m_toolbars; }
    /// Null if there is none.
    Toolbar* toolbarById(const std::wstring& id);
    /// A toolbar of an id that is there already is replaced.
    void add(Toolbar toolbar);
    /// For this run.
    void hideToolbar(const std::wstring& id);
    void showToolbar(const std::wstring& id);

    /// Tells that a toolbar was changed in its place.
    void updateToolbars() { changed(); }

    /// Ids of commands that toolbars name but nobody has registered, without repetition. The window tells
    /// them once.
    [[nodiscard]] std::vector<std::wstring> unknownCommands() const;

private:
    ToolbarManager();
    void changed();
    void optionChanged(Vs::OptionEvent* event) override;

    std::deque<Toolbar> m_toolbars;
    std::vector<std::wstring> m_hidden; ///< By the user.
};

} // namespace Vu
