#include "UI/Commands/Help/SubscriptionCmd.h"

#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/ApplicationEditionService.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <boost/algorithm/string/trim.hpp>
#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <thread>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow SubscriptionCmdDef::kRow = {.key = L"SubscriptionCommand", .title = "Subscription", .icon = &Resources::Subscription, .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

namespace fs = boost::filesystem;

/// The first line of the file without blanks around it; empty if it can't be read.
std::string firstLine(const std::wstring& path)
{
    boost::system::error_code ignored;
    std::string line;
    // A pipe in its place would block the thread for good.
    if (fs::is_regular_file(fs::path(path), ignored)) {
        constexpr std::streamsize kMost = 100;
        char text[kMost] = {};
        fs::ifstream(fs::path(path)).getline(text, kMost);
        line = text;
    }
    boost::trim(line);
    return line;
}

void tellOutcome(const std::wstring& path, const std::string& newest)
{
    const unsigned version = Vs::SoftwareVersion::versionInfo(newest);
    if (version == 0) {
        Application::get()->inform(
            localizedFormat("NoNewestVersion", "\"%1%\" doesn't say which version is the newest.", path));
        return;
    }
    if (version <= Vs::SoftwareVersion::currentVersionNumber()) {
        Application::get()->inform(localized("NewestVersionRuns", "This is the newest version."));
        return;
    }
    auto* definition = Vs::cast<SubscriptionCmdDef>(
        CommandDefinitionMgr::get()->findCommandDefinitionById(SubscriptionCmdDef::kRow.key));
    if (!definition)
        return;
    definition->clearAllUpdates();
    definition->addUpdates({L"Quillet " + Vs::Strings::widen(newest)});
}

} // namespace

const std::wstring& SubscriptionCmdDef::notificationClientID()
{
    static const std::wstring identifier = L"UpdateNotification";
    return identifier;
}

bool SubscriptionCmdDef::onIsVisible(CommandContext*) const
{
    return !editionAddress(&Vs::Services::ApplicationEditionService::newestVersionPath).empty();
}

void SubscriptionCmdDef::addUpdate(const std::wstring& name)
{
    m_updates.push_back(name);
}

void SubscriptionCmdDef::addUpdates(const std::vector<std::wstring>& names)
{
    m_updates.insert(m_updates.end(), names.begin(), names.end());
    notifyUpdatesAvailable();
}

void SubscriptionCmdDef::clearUpdate(const std::wstring& name)
{
    if (const auto found = std::ranges::find(m_updates, name); found != m_updates.end())
        m_updates.erase(found);
}

void SubscriptionCmdDef::clearAllUpdates()
{
    m_updates.clear();
}

void SubscriptionCmdDef::notifyUpdatesAvailable()
{
    if (m_updates.empty())
        return;
    std::wstring text = localized("UpdatesAvailableText", "Updates Available: \n");
    for (const std::wstring& name : m_updates)
        text += name + L'\n';
    Vs::NotificationCenter::get()->sendNotification(
        localized("UpdatesAvailable", "Updates Available"), text, L"", L"", notificationClientID(),
        Vs::NotificationType::makeByType(Vs::NotificationType::Information), nullptr);
}

void SubscriptionCmd::onExecute(Vs::Status& status)
{
    const std::wstring path = editionAddress(&Vs::Services::ApplicationEditionService::newestVersionPath);
    if (path.empty()) {
        status.addError(localized(
            "NoUpdates", "This edition of the program doesn't say where its updates are announced."));
        return;
    }
    std::thread([path] {
        Application::get()->deferredTasks()->post(
            [path, newest = firstLine(path)] { tellOutcome(path, newest); });
    }).detach();
}

} // namespace Vu::Commands
