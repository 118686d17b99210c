#include "UI/Commands/Itemhub/ItemhubSaveCmd.h"

#include "Server/DataModel/Document.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Program/LabelDescriptionDialog.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Itemhub/ItemhubNewItemCmd.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/SamePath.h"

#include <boost/filesystem/operations.hpp>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ItemhubSaveCmdDef::kRow = {
    .key = L"ItemhubSaveCommand", .title = "Version Marker", .icon = &Resources::CloudSave, .arguments = {L"DocumentSession", L"Path", L"ItemhubSaveLabel"}};
// clang-format on

namespace {

Vs::Metrics::TimeMetric* const theMetric = timeMetric("ItemhubSave");

Vs::Document* documentOf(const CommandContext& context)
{
    const AssetSession* session = context.assetSession();
    const DocumentSession* owner = session ? session->documentSession() : nullptr;
    return owner ? owner->document() : nullptr;
}

} // namespace

bool ItemhubSaveCmdDef::onIsApplicable(CommandContext* context) const
{
    const Vs::Document* document = itemhubIsEnabled() ? documentOf(*context) : nullptr;
    return document && document->isDirty(false);
}

bool ItemhubSaveCmdDef::onIsVisible(CommandContext* context) const
{
    Vs::Document* document = itemhubIsEnabled() ? documentOf(*context) : nullptr;
    return document && Vs::ItemhubUtilities::get()->isItemhubDocument(document);
}

Vs::Metrics::TimeMetric* ItemhubSaveCmd::metric()
{
    return theMetric;
}

void ItemhubSaveCmd::onExecute(Vs::Status& status)
{
    const DocumentSession* session = documentSessionOf(*commandContext());
    Vs::Document* document = session ? session->document() : nullptr;
    if (!document)
        return;
    std::wstring path = commandContext()->argumentAsString(CommandContext::pathArgumentName());
    if (path.empty())
        path = document->path();
    if (path.empty())
        return;
    std::wstring label = commandContext()->argumentAsString(ItemhubNewItemCmdDef::labelArgument());
    if (label.empty()) {
        if (!LabelDescriptionDialog::getDescriptionForLabel(label)) {
            LabelDescriptionDialog::tellMissing(status);
            return;
        }
        // A recording plays without a question.
        commandContext()->addArgument(ItemhubNewItemCmdDef::labelArgument(), label);
    }
    // A bare name has no folder to create.
    if (const auto folder = boost::filesystem::path(path).parent_path(); !folder.empty())
        boost::filesystem::create_directories(folder);
    Vs::ItemhubUtilities::get()->setCheckinDescription(path, label);
    if (isSamePath(document->path(), path))
        document->save(status);
    else
        document->saveAs(path, status);
}

} // namespace Vu::Commands
