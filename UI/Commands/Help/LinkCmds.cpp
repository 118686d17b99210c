#include "UI/Commands/Help/LinkCmds.h"

#include "Server/Base/UniqueString.h"
#include "Server/DataModel/ApplicationEditionService.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/Address.h"
#include "UI/Base/Program/VideoLinksMgr.h"
#include "UI/Commands/ActiveCommand.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Selection/SelectCmd.h"

#include <boost/filesystem/operations.hpp>

#include <tuple>

namespace Vu::Commands {

using Vs::Services::ApplicationEditionService;

// clang-format off
constinit const CommandRow HelpCmdDef::kRow           = {.key = L"HelpCommand", .title = "Help", .icon = &Resources::Help, .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow FeedbackCmdDef::kRow       = {.key = L"FeedbackCommand", .title = "Feedback", .icon = &Resources::Feedback, .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow JoinDiscussionCmdDef::kRow = {.key = L"JoinDiscussionCommand", .title = "Join Discussion", .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow VideosCmdDef::kRow         = {.key = L"VideosCommand", .title = "Essential Videos", .icon = &Resources::EssentialVideos, .groups = {&CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"Address"}};
constinit const CommandRow SuggestboxCmdDef::kRow     = {.key = L"SuggestboxCommand", .title = "Suggestbox", .groups = {&CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"Address"}};
constinit const CommandRow OpenWebBrowserCmdDef::kRow = {.key = L"OpenWebBrowserCommand", .title = "Open Web Browser", .titleKey = "OpenWebBrowserCommandDesc", .icon = &Resources::WebShell, .groups = {&CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"Address"}};
// clang-format on

namespace {

std::wstring givenAddress(const CommandContext* context)
{
    return context->argumentAsString(OpenWebBrowserCmdDef::addressArgumentName());
}

/// The page of a tool, where the manual is a file with one for each command beside it. Nothing for none, and
/// for what runs when the user has no tool. A place within a page would be lost on the way to most browsers.
std::wstring pageOf(const CommandBase* tool, const std::wstring& manual)
{
    const CommandDefinition* definition = tool ? tool->commandDefinition() : nullptr;
    if (!definition || definition->id() == SelectCmdDef::info()->key())
        return {};
    const boost::filesystem::path page =
        boost::filesystem::path(manual).parent_path() / "commands" / (definition->id() + L".html");
    boost::system::error_code ignored;
    return boost::filesystem::is_regular_file(page, ignored) ? page.wstring() : std::wstring();
}

} // namespace

const Vs::UniqueString* OpenWebBrowserCmdDef::addressArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Address", true);
    return name;
}

bool FeedbackCmdDef::onIsVisible(CommandContext*) const
{
    return !editionAddress(&ApplicationEditionService::productFeedbackAddress).empty();
}

bool JoinDiscussionCmdDef::onIsVisible(CommandContext*) const
{
    return !editionAddress(&ApplicationEditionService::productDiscussionAddress).empty();
}

bool VideosCmdDef::onIsVisible(CommandContext*) const
{
    return !editionAddress(&ApplicationEditionService::productVideosURL).empty();
}

bool SuggestboxCmdDef::onIsVisible(CommandContext*) const
{
    return !VideoLinksMgr::get()->suggestboxInfoIsEmpty();
}

void HelpCmd::onExecute(Vs::Status& status)
{
    const std::wstring manual = editionAddress(&ApplicationEditionService::productWikiHelpURL);
    const std::wstring page = pageOf(activeCommandOf(commandContext()->assetSession()), manual);
    openAddress(page.empty() ? manual : page, AddressOf::Edition, status);
}

void FeedbackCmd::onExecute(Vs::Status& status)
{
    const std::wstring address = editionAddress(&ApplicationEditionService::productFeedbackAddress);
    openAddress(address.empty() ? address : L"mailto:" + address, AddressOf::Edition, status);
}

void JoinDiscussionCmd::onExecute(Vs::Status& status)
{
    openAddress(editionAddress(&ApplicationEditionService::productDiscussionAddress), AddressOf::Edition,
                status);
}

void VideosCmd::onExecute(Vs::Status& status)
{
    if (const std::wstring given = givenAddress(commandContext()); !given.empty())
        openAddress(given, AddressOf::Anybody, status);
    else
        openAddress(editionAddress(&ApplicationEditionService::productVideosURL), AddressOf::Edition, status);
}

void SuggestboxCmd::onExecute(Vs::Status&)
{
    CommandContext* context = commandContext();
    context->accessPoint(ECommandAccessPoint::Command);
    if (VideoLinksMgr::get()->suggestboxInfoIsEmpty())
        return;
    context->addArgument(OpenWebBrowserCmdDef::addressArgumentName(),
                         VideoLinksMgr::get()->suggestboxInfo(0).address);
    context->executeImmediately(true);
    if (CommandDefinition* browser =
            CommandDefinitionMgr::get()->findCommandDefinitionById(L"OpenWebBrowserCommand"))
        std::ignore = browser->executeCommand(*context);
}

void OpenWebBrowserCmd::onExecute(Vs::Status& status)
{
    openAddress(givenAddress(commandContext()), AddressOf::Anybody, status);
}

} // namespace Vu::Commands
