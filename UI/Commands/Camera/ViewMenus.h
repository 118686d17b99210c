#pragma once

#include "UI/Base/Command/InputControl.h"
#include "UI/Commands/CommandRow.h"

#include <memory>
#include <span>
#include <vector>

namespace Vu::Commands {

/// One item of a menu of settings: a check that stands for a list definition with the values on and off.
struct ViewMenuEntry
{
    Info* (*info)();      ///< Of the list definition that the item runs.
    bool (*isChecked)();  ///< By the user's options.
    bool (*isEnabled)();  ///< Null for always.
    const wchar_t* on;    ///< The identifier that the definition is given for a check...
    const wchar_t* off;   ///< ...and for none.
    bool refilledByCheck; ///< The menu is filled anew when the check is no longer right.
};

/// A menu of settings, each with a check mark of its own.
class ViewMenuCmdDef : public Vs::Implements<ViewMenuCmdDef, CommandDefinition, IMenuControlHandler>
{
public:
    ~ViewMenuCmdDef() override;

    void onMenuSelectionChanged(MenuItem* item) override;

protected:
    explicit ViewMenuCmdDef(Info* info) : Implements(info) {}
    /// In the order of the menu; they must outlive it.
    void entries(std::span<const ViewMenuEntry> entries) { m_entries = entries; }

    /// The context has an active asset.
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
    InputControl* onInputControl() override;
    void onUpdateInputControl(CommandContext* context) override;
    /// An item was chosen and its definition has run.
    virtual void onItemRun(MenuItem*) {}

    bool menuNeedsUpdating() const;
    void updateMenuControl();
    void reCreateMenuControl();
    MenuControl* menuControl() const { return m_menu.get(); }
    /// The item of a list definition; null before the menu is filled.
    MenuItem* itemOf(const Info* info) const;

private:
    std::span<const ViewMenuEntry> m_entries;
    std::vector<std::unique_ptr<MenuItem>> m_items; ///< One for each entry, in its place.
    std::unique_ptr<MenuControl> m_menu;            ///< Null until it is first asked for.
    bool m_updatingMenu = false;
};

/// What makes the picture richer: dome, ground, shadows, smooth edges.
class ViewEffectCmdDef : public RowDefinition<ViewEffectCmdDef, ViewMenuCmdDef>
{
public:
    static const CommandRow kRow;
    ViewEffectCmdDef();

protected:
    void onItemRun(MenuItem* item) override;
};

/// The grid and its numbers.
class ViewLayoutGridCmdDef : public RowDefinition<ViewLayoutGridCmdDef, ViewMenuCmdDef>
{
public:
    static const CommandRow kRow;
    ViewLayoutGridCmdDef();
};

} // namespace Vu::Commands
