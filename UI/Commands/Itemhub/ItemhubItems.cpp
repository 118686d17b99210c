#include "UI/Commands/Itemhub/ItemhubItems.h"

#include "Server/Base/Strings.h"
#include "Server/Base/Task.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/ReplacingDocument.h"
#include "UI/Commands/Itemhub/ItemhubOpenAttachmentCmd.h"
#include "UI/Commands/Localized.h"

namespace Vu::Commands {

using Vs::ItemhubUtilities;

ItemhubItems::Attachment ItemhubItems::designOf(int itemId)
{
    ItemhubUtilities* service = ItemhubUtilities::get();
    const auto item = service->getItemById(itemId);
    const auto workspace = service->getWorkspaceById(static_cast<int>(item.workspaceId()));
    for (const Attachment& attachment : service->getItemAttachments(workspace, item))
        if (attachment.docType() == "VeloraDocType")
            return attachment;
    return {};
}

void ItemhubItems::openLater(int itemId)
{
    Application::get()->deferredTasks()->post([itemId] {
        try {
            const Attachment design = designOf(itemId);
            CommandDefinition* command = CommandDefinitionMgr::get()->findCommandDefinitionById(
                ItemhubOpenAttachmentCmdDef::info()->key());
            if (design.uri().empty()) {
                ItemhubUtilities::get()->fireErrorMessage(
                    localized("ItemhubNoDesign", "The item has no design that could be opened."));
            } else if (command) {
                CommandContext context = CommandContext::activeContext();
                context.addArgument(ItemhubOpenAttachmentCmdDef::fileUri(), Vs::Strings::widen(design.uri()));
                ReplacingDocument::executeLater(command, context);
            }
        } catch (const std::exception&) {
            ItemhubUtilities::get()->fireErrorMessage(ItemhubUtilities::currentFailure());
        }
    });
}

} // namespace Vu::Commands
