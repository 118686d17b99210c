#include "UI/Commands/Itemhub/ItemhubDocuments.h"

#include "Server/Base/Task.h"
#include "Server/DataModel/ApplicationEditionService.h"
#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Program/UIInternalOptionGroup.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Commands/DeliverResults.h"
#include "UI/Commands/Itemhub/DashboardRequests.h"
#include "UI/Commands/Itemhub/ItemhubCommands.h"
#include "UI/Commands/Itemhub/ItemhubFeed.h"
#include "UI/Commands/Itemhub/ItemhubMyFavoritesCmds.h"
#include "UI/Commands/Itemhub/ItemhubRoles.h"
#include "UI/Commands/Itemhub/ItemhubSnapshots.h"
#include "UI/Commands/Itemhub/ItemhubThreads.h"
#include "UI/Commands/Localized.h"

#include <QCoreApplication>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace Vu::Commands {
namespace {

using Vs::ItemhubUtilities;

/// Items that the service reported as gone, by number, across starts: it reports each once.
constexpr const char* kGoneOption = "removedItems";
constexpr size_t kMostGone = 1000;

std::vector<std::wstring> goneItems()
{
    return UIInternalOptionGroup::get()->value(kGoneOption, std::vector<std::wstring>());
}

std::optional<FilePlace::Answer> placeOf(const boost::filesystem::path& file)
{
    const auto item = ItemhubUtilities::get()->itemOf(file);
    if (!item)
        return std::nullopt;
    const std::wstring place =
        localizedFormat("ItemhubPlace", "%1% › item %2%", ItemhubUtilities::getItemhub_TM(), item->itemId);
    const std::vector<std::wstring> gone = goneItems();
    const bool isGone = std::ranges::find(gone, std::to_wstring(item->itemId)) != gone.end();
    return FilePlace::Answer{.place = place, .folder = place, .isSent = true, .isGone = isGone};
}

class Listener : public Vs::ItemhubEventSite
{
public:
    Listener() { Vs::ItemhubEventSource::get()->subscribe(this); }
    ~Listener() override { Vs::ItemhubEventSource::get()->unsubscribe(this); }

private:
    void favoritesChanged(Vs::ItemhubEvent*) override { refresh(); }
    void sessionChanged(Vs::ItemhubEvent*) override
    {
        ItemhubMyFavoritesCmdDef* favorites = ItemhubMyFavoritesCmdDef::get();
        if (isSignedInToItemhub())
            refresh();
        else if (favorites)
            favorites->rebuildFavorites({});
    }

    void itemChanged(Vs::ItemhubItemEvent* event) override
    {
        const bool isRemoved = event->kind() == "item.removed";
        std::vector<std::wstring> gone = goneItems();
        if (std::erase(gone, std::to_wstring(event->itemId())) == 0 && !isRemoved)
            return;
        if (isRemoved)
            gone.push_back(std::to_wstring(event->itemId()));
        if (gone.size() > kMostGone)
            gone.erase(gone.begin());
        UIInternalOptionGroup::get()->setValue(kGoneOption, gone);
    }

    ItemhubSnapshots m_snapshots;
    ItemhubFeed m_feed;
    ItemhubRoles m_roles;
    DashboardRequests m_dashboard;
    const FilePlace m_place{placeOf};

    /// Nobody is asked before there is a list that shows the answer.
    static void refresh()
    {
        ItemhubMyFavoritesCmdDef* favorites = ItemhubMyFavoritesCmdDef::get();
        if (favorites && favorites->hasList())
            ItemhubMyFavoritesCmdDef::refreshLater();
    }
};

std::unique_ptr<Listener>& listener()
{
    static std::unique_ptr<Listener> installed;
    return installed;
}

void notify(const std::wstring& title, const std::wstring& text, const std::wstring& clientID)
{
    Vs::NotificationRequest request;
    request.title = title;
    request.text = text;
    request.clientID = clientID;
    request.type = Vs::NotificationType::makeByType(Vs::NotificationType::Error);
    Vs::NotificationCenter::get()->sendNotification(std::move(request));
}

/// Requests are cancelled by Qt, which does nothing any more once its application object is gone.
void stopClient()
{
    ItemhubUtilities::get()->stop();
}

/// Waiting uploads resume without anybody asking for it. A run without a window resumes them when a line
/// needs it.
void resume()
{
    if (listener() && ItemhubUtilities::get()->canResume())
        std::ignore = itemhubSession(); // What fails is told.
}

} // namespace

void ItemhubDocuments::install()
{
    if (listener())
        return;
    listener() = std::make_unique<Listener>();
    ItemhubUtilities::editionDisables([] {
        const auto* edition = Application::get()->service<Vs::Services::ApplicationEditionService>();
        return edition && edition->itemhubDisabled();
    });
    ItemhubUtilities::notifier(notify);
    qAddPostRoutine(stopClient);
    if (!Application::headless() && !Application::testing())
        Application::get()->idleTasks()->post(resume);
    deliverResults(ItemhubUtilities::results());
}

void ItemhubDocuments::uninstall()
{
    qRemovePostRoutine(stopClient);
    stopClient();
    ItemhubThreads::end();
    ItemhubUtilities::results().wakeUp({});
    ItemhubUtilities::notifier({});
    ItemhubUtilities::editionDisables({});
    listener().reset();
}

} // namespace Vu::Commands
