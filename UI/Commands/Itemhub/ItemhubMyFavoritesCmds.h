#pragma once

#include "UI/Base/Command/InputControl.h"
#include "UI/Commands/Itemhub/ItemhubCommands.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vu::Commands {

/// The base of definitions that need a signed-in user. It makes no command.
class ItemhubCmdDef : public Vs::Implements<ItemhubCmdDef, CommandDefinition>
{
public:
    explicit ItemhubCmdDef(Info* identity);

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext*) override { return nullptr; }
};

/// For definitions of that kind which are only there to be found.
class ItemhubCmd : public Vs::Implements<ItemhubCmd, SimpleCommand>
{
public:
    ItemhubCmd(CommandDefinition* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status&) override {}
};

/// The items that the user has bookmarked, as a list; the first eight. There is no list before somebody signs
/// in. Main thread only, but for what is said to be for any thread.
class ItemhubMyFavoritesCmdDef
    : public Vs::Implements<ItemhubMyFavoritesCmdDef, ItemhubCmdDef, IListControlHandler>
{
public:
    static const CommandRow kRow;
    static Info* info();

    ItemhubMyFavoritesCmdDef();

    /// Null as long as nobody has brought such a definition.
    [[nodiscard]] static ItemhubMyFavoritesCmdDef* get();
    /// Asks the service for the favourites on a thread of its own, which nobody waits for. Throws
    /// std::system_error if there can be no thread.
    static void refreshLater();
    /// A favourite of the list, by the number and the caption of its item.
    struct Entry
    {
        std::wstring id, caption;
    };
    /// Shows the first eight in place of what the list has shown; nothing happens if there is no list.
    void rebuildFavorites(const std::vector<Entry>& favorites);
    /// Whether there is a list, since somebody has asked for it who was signed in.
    [[nodiscard]] bool hasList() const { return m_list != nullptr; }

    /// What would be told of a chosen favourite: a JSON object with its "itemID".
    [[nodiscard]] static std::wstring selectionMessage(const Info& item);
    void onListSelectionChanged(Info* item) override;

protected:
    InputControl* onInputControl() override;

private:
    /// What the thread does: asks the service, and gives what the main thread is to do with the answer.
    static std::function<void()> refreshFavorites(unsigned long number);

    std::unique_ptr<ListControl> m_list;
    std::vector<std::unique_ptr<Info>> m_items; ///< What the list shows.
};

class ItemhubMyFavoritesChangedCmd;

/// Has the list of favourites brought up to date.
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
