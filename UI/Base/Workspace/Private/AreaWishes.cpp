#include "UI/Base/Workspace/Private/AreaWishes.h"

#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Workspace/Area.h"

namespace Vu {
namespace {

enum class KeptBy { Command, Strategy };

struct WishRow
{
    const char* contents;
    Vs::Option<bool> UIBaseOptionGroup::*wish;
    const char* option;
    KeptBy keptBy;
};

// clang-format off
constexpr WishRow kRows[] = {
    {"BrowserWindow",  &UIBaseOptionGroup::wantToShowBrowser,           "wantToShowBrowser",           KeptBy::Command},
    {"DesignFeed",     &UIBaseOptionGroup::wantToShowDesignFeed,        "wantToShowDesignFeed",        KeptBy::Command},
    {"Properties",     &UIBaseOptionGroup::wantToShowProperties,        "wantToShowProperties",        KeptBy::Command},
    {"ScriptPanel",    &UIBaseOptionGroup::wantToShowScriptPanel,       "wantToShowScriptPanel",       KeptBy::Command},
    {"Orbicon",        &UIBaseOptionGroup::wantToShowOrbicon,           "wantToShowOrbicon",           KeptBy::Command},
    {"TextCommands",   &UIBaseOptionGroup::wantToShowTextCommands,      "wantToShowTextCommands",      KeptBy::Strategy},
    {"CommandToolbar", &UIBaseOptionGroup::wantToShowCommandToolbar,    "wantToShowCommandToolbar",    KeptBy::Strategy},
    // What stands in the toolbars' line goes with them.
    {"ItemhubSearch",  &UIBaseOptionGroup::wantToShowCommandToolbar,    "wantToShowCommandToolbar",    KeptBy::Command},
    {"NavToolbar",     &UIBaseOptionGroup::wantToShowNavigationToolbar, "wantToShowNavigationToolbar", KeptBy::Strategy},
};
// clang-format on

const WishRow* rowOf(const Area& area)
{
    if (area.contents())
        for (const WishRow& row : kRows)
            if (area.contents()->text() == row.contents)
                return &row;
    return nullptr;
}

void applyWhere(Area& root, const std::string* option)
{
    if (const WishRow* row = rowOf(root); row && (!option || *option == row->option))
        root.palette()->visible((UIBaseOptionGroup::get()->*row->wish)());
    for (const auto& child : root.children())
        applyWhere(*child, option);
}

} // namespace

void AreaWishes::apply(Area& root)
{
    applyWhere(root, nullptr);
}

void AreaWishes::apply(Area& root, const std::string& option)
{
    applyWhere(root, &option);
}

void AreaWishes::keep(const Area& area)
{
    if (const WishRow* row = rowOf(area); row && row->keptBy == KeptBy::Strategy)
        (UIBaseOptionGroup::get()->*row->wish)(area.visible());
    for (const auto& child : area.children())
        if (const WishRow* row = rowOf(*child);
            row && row->keptBy == KeptBy::Strategy && child->palette() == &area)
            (UIBaseOptionGroup::get()->*row->wish)(area.visible());
}

void AreaWishes::keepAll(const Area& root)
{
    for (const auto& child : root.children()) {
        const WishRow* row = rowOf(*child);
        if (row && row->wish != &UIBaseOptionGroup::wantToShowBrowser)
            (UIBaseOptionGroup::get()->*row->wish)(child->palette()->visible());
        keepAll(*child);
    }
}

} // namespace Vu
