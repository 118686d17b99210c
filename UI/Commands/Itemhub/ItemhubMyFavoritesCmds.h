#pragma once

#include "UI/Base/Command/InputControl.h"
#include "UI/Commands/Itemhub/ItemhubCommands.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vu::Commands {

/// Base of definitions that need a signed-in user. It creates no command.
class ItemhubCmdDef : public Vs::Implements<ItemhubCmdDef, CommandDefinition>
{
public:
    explicit ItemhubCmdDef(Info* identity);

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext*) override { return nullptr; }
};

/// For definitions of that kind that only have to exist.
class ItemhubCmd : public Vs::Implements<ItemhubCmd, SimpleCommand>
{
public:
    ItemhubCmd(CommandDefinition* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status&) override {}
};

/// The items that the user has bookmarked, as a list; the first eight. There is no list before the user signs
/// in. Main thread only, except where noted.
class ItemhubMyFavoritesCmdDef
    : public Vs::Implements<ItemhubMyFavoritesCmdDef, ItemhubCmdDef, IListControlHandler>
{
public:
    static const CommandRow kRow;
    static Info* info();

    ItemhubMyFavoritesCmdDef();

    /// Null until such a definition is registered.
    [[nodiscard]] static ItemhubMyFavoritesCmdDef* get();
    /// Asks the service for the favourites on a detached thread. Throws std::system_error if no thread can be
    /// started.
    static void refreshLater();
    /// A favourite in the list, with the number and caption of its item.
    struct Entry
    {
        std::wstring id, caption;
    };
    /// Replaces the list's contents with the first eight; does nothing if there is no list.
    void rebuildFavorites(const std::vector<Entry>& favorites);
    /// Whether the list exists, because a signed-in user has asked for it.
    [[nodiscard]] bool hasList() const { return m_list != nullptr; }

    /// The event data for a chosen favourite: a JSON object with its "itemID".
    [[nodiscard]] static std::wstring selectionMessage(const Info& item);
    void onListSelectionChanged(Info* item) override;

protected:
    InputControl* onInputControl() override;

private:
    /// The thread's work: asks the service, and returns what the main thread is to do with the answer.
    static std::function<void()> refreshFavorites(unsigned long number);

    std::unique_ptr<ListControl> m_list;
    std::vector<std::unique_ptr<Info>> m_items; ///< The contents of the list.
};

class ItemhubMyFavoritesChangedCmd;

/// Has the list of favourites updated.
class ItemhubMyFavoritesChangedCmdDef
    : public CommandRowDefinition<ItemhubMyFavoritesChangedCmdDef, ItemhubMyFavoritesChangedCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext*) const override { return itemhubIsEnabled(); }
};

class ItemhubMyFavoritesChangedCmd : public Vs::Implements<ItemhubMyFavoritesChangedCmd, SimpleCommand>
{
public:
    ItemhubMyFavoritesChangedCmd(CommandDefinition* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
