#include "UI/Commands/Itemhub/ItemhubMyFavoritesCmds.h"

#include "Server/Base/Strings.h"
#include "Server/Base/Task.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
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
/// Its requests are given up by then.
constexpr std::chrono::seconds kMomentAtTheEnd(2);

/// The threads that ask.
struct Refreshes
{
    std::mutex mutex;
    std::condition_variable done;
    int running = 0;
    unsigned long begun = 0;
    unsigned long shown = 0; ///< The last that has filled the list; earlier ones come too late.
    bool ended = false;
};

/// Never destroyed: a thread may be on its way out when the program goes.
Refreshes& refreshes()
{
    static auto* const all = new Refreshes;
    return *all;
}

/// Answers may overtake each other.
bool isNewest(unsigned long number)
{
    const std::lock_guard lock(refreshes().mutex);
    if (number < refreshes().shown)
        return false;
    refreshes().shown = number;
    return true;
}

class RunningRefresh
{
public:
    RunningRefresh() = default;
    ~RunningRefresh()
    {
        const std::lock_guard lock(refreshes().mutex);
        --refreshes().running;
        refreshes().done.notify_all();
    }
    RunningRefresh(const RunningRefresh&) = delete;
    RunningRefresh& operator=(const RunningRefresh&) = delete;
};

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
    {
        const std::lock_guard lock(refreshes().mutex);
        if (refreshes().ended)
            return;
        ++refreshes().running;
    }
    auto running = std::make_unique<RunningRefresh>();
    std::thread([running = std::move(running)] { refreshFavorites(); }).detach();
}

void ItemhubMyFavoritesCmdDef::refreshFavorites()
{
    std::vector<Entry> favorites;
    const auto* service = Vs::ItemhubUtilities::get();
    const unsigned long number = [] {
        const std::lock_guard lock(refreshes().mutex);
        return ++refreshes().begun;
    }();
    using Favorites = decltype(service->getFavorites());
    // With nobody signed in there are none, which is no failure.
    for (const auto& favorite : service->isAuthenticated() ? service->getFavorites() : Favorites())
        favorites.push_back({std::to_wstring(favorite->getItemId()), favorite->getCaption()});
    const std::lock_guard lock(refreshes().mutex);
    if (refreshes().ended)
        return;
    Vs::ItemhubUtilities::results().post([favorites = std::move(favorites), number] {
        ItemhubMyFavoritesCmdDef* definition = get();
        if (definition && isNewest(number))
            definition->rebuildFavorites(isSignedInToItemhub() ? favorites : std::vector<Entry>());
    });
}

void ItemhubMyFavoritesCmdDef::endRefreshes()
{
    std::unique_lock lock(refreshes().mutex);
    refreshes().ended = true;
    refreshes().done.wait_for(lock, kMomentAtTheEnd, [] { return refreshes().running == 0; });
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
    // Whoever draws the list looks at the new ones before the old ones go.
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
