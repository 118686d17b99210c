#include "UI/Commands/Itemhub/ItemhubLines.h"

#include "Server/Base/Strings.h"
#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/ForwardedRun.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Commands/Itemhub/ItemhubInsertComponentCmd.h"
#include "UI/Commands/Itemhub/ItemhubItems.h"
#include "UI/Commands/Itemhub/ItemhubOpenAttachmentCmd.h"
#include "UI/Commands/Itemhub/ToldError.h"
#include "UI/Commands/Localized.h"

#include <algorithm>
#include <initializer_list>

namespace Vu::Commands {
namespace {

using Vs::ItemhubUtilities;
using Vs::Strings::widen;
namespace Web = Corvane::Itemstore::WebServices;

/// One line of a list. What others have written stays in its column.
void add(std::wstring& list, std::initializer_list<std::wstring> columns)
{
    if (!list.empty())
        list += L'\n';
    bool first = true;
    for (std::wstring column : columns) {
        std::ranges::replace_if(
            column, [](wchar_t letter) { return letter < L' '; }, L' ');
        list += (first ? L"" : L"\t") + column;
        first = false;
    }
}

std::vector<Web::Attachment> attachmentsOf(int itemId)
{
    ItemhubUtilities* service = ItemhubUtilities::get();
    const Web::Item item = service->getItemById(itemId);
    return service->getItemAttachments(service->getWorkspaceById(static_cast<int>(item.workspaceId())), item);
}

const wchar_t* nameOf(Vs::UploadQueuedFileInfo::State state)
{
    using State = Vs::UploadQueuedFileInfo::State;
    switch (state) {
    case State::Uploading:
        return L"uploading";
    case State::Failed:
        return L"failed";
    case State::Outdated:
        return L"outdated";
    case State::Waiting:
        break;
    }
    return L"waiting";
}

Vs::TextCommandResult run(const std::wstring& command, CommandContext& context,
                          const Vs::TextCommandParameters& parameters)
{
    const ForwardedRun forwarded;
    const ToldError told;
    Vs::TextCommandResult result = runDefinition(command, context, parameters);
    if (result.first == 0 && !told.message.empty())
        return {1, told.message};
    return result;
}

std::wstring noDesign()
{
    return localized("ItemhubNoDesign", "The item has no design that could be opened.");
}

} // namespace

std::wstring ItemhubLines::account()
{
    const ItemhubUtilities* service = ItemhubUtilities::get();
    std::wstring list;
    add(list, {service->accountName(), service->customer(),
               service->isOwnService() ? L"own" : widen(service->serviceAddress())});
    return list;
}

std::wstring ItemhubLines::nobody()
{
    return localized("ItemhubNobody", "Nobody is signed in to the lifecycle service.");
}

std::wstring ItemhubLines::workspaces()
{
    std::wstring list;
    for (const Web::Workspace& workspace : ItemhubUtilities::get()->getWorkspaces())
        add(list, {std::to_wstring(workspace.id()), widen(workspace.name()), widen(workspace.role())});
    return list;
}

std::wstring ItemhubLines::items(int workspaceId)
{
    const ItemhubUtilities* service = ItemhubUtilities::get();
    std::wstring list;
    for (const Web::Item& item : service->getItems(service->getWorkspaceById(workspaceId)))
        add(list, {std::to_wstring(item.id()), widen(item.caption()), widen(item.createdBy())});
    return list;
}

std::wstring ItemhubLines::attachments(int itemId)
{
    std::wstring list;
    for (const Web::Attachment& attachment : attachmentsOf(itemId))
        add(list, {std::to_wstring(attachment.id()), widen(attachment.name()), widen(attachment.docType()),
                   std::to_wstring(attachment.latestVersion()), widen(attachment.uri())});
    return list;
}

std::wstring ItemhubLines::versions(int itemId)
{
    std::wstring list;
    for (const Web::Attachment& attachment : attachmentsOf(itemId)) {
        std::vector<Web::Version> versions = ItemhubUtilities::get()->getVersions(attachment);
        std::ranges::sort(versions, std::greater(), &Web::Version::number);
        for (const Web::Version& version : versions)
            add(list, {std::to_wstring(attachment.id()), std::to_wstring(version.number),
                       widen(version.label), widen(version.author), widen(version.createdAt)});
    }
    return list;
}

std::wstring ItemhubLines::found(const std::wstring& text)
{
    std::wstring list;
    for (const Web::Item& item : ItemhubUtilities::get()->search(text))
        add(list, {std::to_wstring(item.id()), widen(item.caption())});
    return list;
}

std::wstring ItemhubLines::favourites()
{
    std::wstring list;
    for (const auto& favourite : ItemhubUtilities::get()->getFavorites())
        add(list, {std::to_wstring(favourite->getItemId()), favourite->getCaption()});
    return list;
}

std::wstring ItemhubLines::comments(int itemId)
{
    const ItemhubUtilities* service = ItemhubUtilities::get();
    std::wstring list;
    for (const Web::Comment& comment : service->getComments(service->getItemById(itemId)))
        add(list, {widen(comment.author), widen(comment.createdAt), widen(comment.body)});
    return list;
}

std::wstring ItemhubLines::pending()
{
    std::wstring list;
    for (const Vs::UploadQueuedFileInfo& file : ItemhubUtilities::get()->pendingUploads())
        add(list, {file.fileName(), file.label(), nameOf(file.state()), file.reason()});
    return list;
}

Vs::TextCommandResult ItemhubLines::open(int itemId, const Vs::TextCommandParameters& parameters)
{
    const Web::Attachment design = ItemhubItems::designOf(itemId);
    if (design.uri().empty())
        return {1, noDesign()};
    CommandContext context = CommandContext::activeContext();
    context.addArgument(ItemhubOpenAttachmentCmdDef::fileUri(), widen(design.uri()));
    return run(ItemhubOpenAttachmentCmdDef::info()->key(), context, parameters);
}

Vs::TextCommandResult ItemhubLines::insert(int itemId, const Vs::TextCommandParameters& parameters)
{
    const Web::Attachment design = ItemhubItems::designOf(itemId);
    if (design.uri().empty())
        return {1, noDesign()};
    using Def = ItemhubInsertComponentCmdDef;
    CommandContext context = CommandContext::activeContext();
    context.addArgument(Def::workspaceId(), static_cast<int>(design.workspaceId()));
    context.addArgument(Def::itemId(), static_cast<int>(design.itemId()));
    context.addArgument(Def::docType(), widen(design.docType()));
    return run(Def::info()->key(), context, parameters);
}

} // namespace Vu::Commands
