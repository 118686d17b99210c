#include "UI/Commands/Itemhub/ItemhubOpenAttachmentCmd.h"

#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Session/ReplacingDocument.h"
#include "UI/Commands/Documents/OpenDocumentCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <boost/filesystem/operations.hpp>

namespace Vu::Commands {

using Def = ItemhubOpenAttachmentCmdDef;

// clang-format off
constinit const CommandRow ItemhubOpenAttachmentCmdDef::kRow = {
    .key = L"ItemhubOpenAttachmentCommand", .title = "", .titleKey = "ItemhubOpenAttachmentCommand",
    .icon = &Resources::CloudOpen, .arguments = {L"fileUri"}};
// clang-format on

namespace {

Vs::Metrics::TimeMetric* const theMetric = timeMetric("ItemhubOpenAttachment");

} // namespace

Info* Def::info()
{
    static Info record = itemhubInfo(kRow, "Open ", " Item...");
    return &record;
}

Def::ItemhubOpenAttachmentCmdDef() : ItemhubDefinition(info())
{
    ReplacingDocument::byCommand(info()->key());
}

const Vs::UniqueString* Def::fileUri()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("fileUri", true);
    return name;
}

Vs::Metrics::TimeMetric* ItemhubOpenAttachmentCmd::metric()
{
    return theMetric;
}

void ItemhubOpenAttachmentCmd::onExecute(Vs::Status& status)
{
    if (!itemhubSession())
        return;
    withItemhubErrors([&] {
        constexpr std::wstring_view kEnding = L".xml";
        std::wstring uri = commandContext()->argumentAsString(Def::fileUri());
        if (!uri.ends_with(kEnding))
            uri += kEnding;
        const std::wstring path = Vs::ItemhubUtilities::get()->downloadAttachment(uri);
        if (path.empty())
            return;
        if (!boost::filesystem::exists(path)) {
            Vs::ItemhubUtilities::get()->fireErrorMessage(localized(
                "ItemhubOpenDocumentErrorFileNotExist", "Downloaded file form Itemhub isn't existed error"));
            return;
        }
        OpenDocumentCmd::OpenSingleFile(path, status, "");
        Vs::Document* document = status.isOk() ? Vs::DocumentMgr::get()->document(path) : nullptr;
        if (document)
            nameAfterFile(*document, path);
    });
}

} // namespace Vu::Commands
