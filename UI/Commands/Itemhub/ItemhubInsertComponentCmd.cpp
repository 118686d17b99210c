#include "UI/Commands/Itemhub/ItemhubInsertComponentCmd.h"

#include "Server/Base/Strings.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <boost/filesystem/operations.hpp>

namespace Vu::Commands {

namespace Web = Corvane::Itemstore::WebServices;
using Def = ItemhubInsertComponentCmdDef;
using Vs::ItemhubUtilities;

// clang-format off
constinit const CommandRow ItemhubInsertComponentCmdDef::kRow = {
    .key = L"ItemhubInsertComponentCommand", .title = "Itemdesk Insert Component", .icon = &Resources::CloudSave, .arguments = {L"ItemhubWorkspaceId", L"ItemhubItemId", L"ItemhubDocType"}};
// clang-format on

namespace {

Vs::Metrics::TimeMetric* const theMetric = timeMetric("ItemhubInsertComponent");

constexpr const wchar_t* kImportCommand = L"VeloraImportCommand";
constexpr int kCalledByACommand = 11;
constexpr int kNoId = -1;

int idArgument(const CommandContext& context, const Vs::UniqueString* name)
{
    return context.argumentAsString(name).empty() ? kNoId : numberArgument(context, name);
}

void tell(const char* key, const char* english, const std::exception& failure)
{
    ItemhubUtilities::get()->fireErrorMessage(
        localizedFormat(key, english, Vs::Strings::widen(failure.what())));
}

} // namespace

const Vs::UniqueString* Def::workspaceId()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("ItemhubWorkspaceId", true);
    return name;
}

const Vs::UniqueString* Def::itemId()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("ItemhubItemId", true);
    return name;
}

const Vs::UniqueString* Def::docType()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("ItemhubDocType", true);
    return name;
}

Vs::Metrics::TimeMetric* ItemhubInsertComponentCmd::metric()
{
    return theMetric;
}

bool ItemhubInsertComponentCmd::isFileSupported(const std::wstring& docType)
{
    return docType == L"VeloraDocType";
}

void ItemhubInsertComponentCmd::onExecute(Vs::Status&)
{
    if (!itemhubSession())
        return;
    try {
        insert();
    } catch (const Web::PayloadException& failure) {
        tell("ItemhubPayloadError", "Error calling Itemhub REST endpoint : %1%", failure);
    } catch (const Web::ItemhubException& failure) {
        tell("ItemhubOperationError", "Itemhub operation failed : %1%", failure);
    } catch (const Web::ConnectionException& failure) {
        tell("ItemhubConnectionError", "Connection exception : %1%", failure);
    } catch (...) {
        ItemhubUtilities::get()->fireErrorMessage(
            localized("ItemhubOpenDocumentErrorUnknownError2",
                      "Catch a unknown error when downloading and inserting component form Itemhub"));
    }
}

// The attachment itself isn't asked what it is: whoever calls has said it for the item.
std::wstring ItemhubInsertComponentCmd::addressOfDesign() const
{
    const CommandContext& context = *commandContext();
    const int workspaceId = idArgument(context, Def::workspaceId());
    const int itemId = idArgument(context, Def::itemId());
    const std::wstring type = context.argumentAsString(Def::docType());
    ItemhubUtilities* service = ItemhubUtilities::get();
    const Web::Workspace workspace = service->getWorkspaceById(workspaceId);
    const Web::Item item = service->getItemById(workspace, itemId);
    for (const Web::Attachment& attachment : service->getItemAttachments(workspace, item))
        if (isFileSupported(type))
            return Vs::Strings::widen(attachment.uri());
    return {};
}

void ItemhubInsertComponentCmd::insert()
{
    const std::wstring address = addressOfDesign();
    if (address.empty())
        return;
    const std::wstring path = ItemhubUtilities::get()->downloadAttachment(address);
    if (path.empty() || !boost::filesystem::exists(path))
        return;
    CommandContext context = *commandContext();
    context.addArgument(CommandContext::pathArgumentName(), path);
    context.executeImmediately(true);
    context.accessPoint(kCalledByACommand);
    if (CommandMgr* manager = CommandMgr::getActiveCommandManager())
        static_cast<void>(manager->executeCommand(kImportCommand, context));
}

} // namespace Vu::Commands
