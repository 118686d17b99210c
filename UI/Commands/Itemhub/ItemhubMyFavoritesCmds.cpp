#include "UI/Commands/Itemhub/ItemhubMyFavoritesCmds.h"

#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Commands/Itemhub/ItemhubThreads.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ItemhubMyFavoritesCmdDef::kRow = {
    .key = L"ItemhubMyFavoritesCommand", .title = "MY FAVORITES"};

constinit const CommandRow ItemhubMyFavoritesChangedCmdDef::kRow = {
    .key = L"ItemhubMyFavoritesChangedCommand", .title = "My Favorites Changed"};
// clang-format on

namespace {

constexpr size_t kMostFavorites = 8;
/// Answers may overtake each other; those older than the one shown come too late.
unsigned long s_asked = 0, s_shown = 0;

} // namespace

ItemhubCmdDef::ItemhubCmdDef(Info* identity) : Implements(identity)
{
    joinCommandGroup(CommandGroup::DocumentGroup());
    joinCommandGroup(CommandGroup::BaseGroup());
    readonly(true);
}

bool ItemhubCmdDef::onIsApplicable(CommandContext*) const
{
    return itemhubIsEnabled() && isSignedInToItemhub();
}

bool ItemhubCmdDef::onIsVisible(CommandContext*) const
{
    return true;
}

ItemhubCmd::ItemhubCmd(CommandDefinition* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

Info* ItemhubMyFavoritesCmdDef::info()
{
    static Info record = makeInfo(kRow);
    return &record;
}

ItemhubMyFavoritesCmdDef::ItemhubMyFavoritesCmdDef() : Implements(info()) {}

ItemhubMyFavoritesCmdDef* ItemhubMyFavoritesCmdDef::get()
{
    return Vs::cast<ItemhubMyFavoritesCmdDef>(
        CommandDefinitionMgr::get()->findCommandDefinitionById(info()->key()));
}

InputControl* ItemhubMyFavoritesCmdDef::onInputControl()
{
    if (!m_list && isSignedInToItemhub()) {
        m_list.reset(ListControl::make(info(), this));
        refreshLater();
    }
    return m_list.get();
}

void ItemhubMyFavoritesCmdDef::refreshLater()
{
    ItemhubThreads::run([number = ++s_asked] { return refreshFavorites(number); });
}

std::function<void()> ItemhubMyFavoritesCmdDef::refreshFavorites(unsigned long number)
{
    std::vector<Entry> favorites;
    const auto* service = Vs::ItemhubUtilities::get();
    // With nobody signed in there are none, which is no failure.
    if (service->isAuthenticated())
        for (const auto& favorite : service->getFavorites())
            favorites.push_back({std::to_wstring(favorite->getItemId()), favorite->getCaption()});
    return [favorites = std::move(favorites), number] {
        ItemhubMyFavoritesCmdDef* definition = get();
        if (!definition || number < s_shown)
            return;
        s_shown = number;
        definition->rebuildFavorites(isSignedInToItemhub() ? favorites : std::vector<Entry>());
    };
}

void ItemhubMyFavoritesCmdDef::rebuildFavorites(const std::vector<Entry>& favorites)
{
    if (!m_list)
        return;
    std::vector<std::unique_ptr<Info>> items;
    std::vector<Info*> shown;
    for (size_t i = 0; i < std::min(favorites.size(), kMostFavorites); ++i) {
        items.push_back(std::make_unique<Info>(favorites[i].id, favorites[i].caption, nullptr));
        shown.push_back(items.back().get());
    }
    // Whoever draws the list looks at the new ones before the old ones are deleted.
    m_list->items(std::move(shown));
    m_items = std::move(items);
}

std::wstring ItemhubMyFavoritesCmdDef::selectionMessage(const Info& item)
{
    const QJsonObject message{{QStringLiteral("itemID"), QString::fromStdWString(item.key())}};
    return QString::fromUtf8(QJsonDocument(message).toJson()).toStdWString();
}

// The message has no receiver yet: what shows favourites opens them itself.
void ItemhubMyFavoritesCmdDef::onListSelectionChanged(Info* item)
{
    if (item)
        static_cast<void>(selectionMessage(*item));
}

ItemhubMyFavoritesChangedCmd::ItemhubMyFavoritesChangedCmd(CommandDefinition* definition,
                                                           CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void ItemhubMyFavoritesChangedCmd::onExecute(Vs::Status&)
{
    ItemhubMyFavoritesCmdDef::refreshLater();
}

} // namespace Vu::Commands
