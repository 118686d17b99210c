#include "UI/Commands/Shells/InsertAssetCmd.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"
#include "UI/Commands/TranscribedUuid.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow InsertAssetCmdDef::kRow = {
    .key = L"InsertAssetCommand", .title = "Insert Asset", .icon = &Resources::NewAsset,
    .groups = {&CommandGroup::BaseGroup}, .arguments = {L"AssetType", L"DocumentSession", L"Uuid", L"Hidden"}};
// clang-format on

namespace {

DocumentSession* documentSessionOf(const CommandContext& context)
{
    if (auto* given =
            Vs::cast<DocumentSession>(context.argument(InsertAssetCmdDef::documentSessionArgumentName())))
        return given;
    const AssetSession* session = context.assetSession();
    return session ? session->documentSession() : SessionMgr::get()->activeDocumentSession();
}

void markDirty(Vs::Asset* asset)
{
    if (!asset->isDirty(false))
        asset->markDirty();
}

/// Lays the arguments down in the order of the line's parameters: type, document, identifier, hidden.
void transcribe(CommandContext& context, DocumentSession* document, const Vs::Asset& made, int hidden)
{
    const bool recording = Vs::TranscriptMgr::get()->recording();
    if (recording) {
        const std::wstring recorded = context.argumentAsString(InsertAssetCmdDef::uuidArgumentName());
        context.removeArgument(InsertAssetCmdDef::hiddenArgumentName());
        context.removeArgument(InsertAssetCmdDef::uuidArgumentName());
        context.addArgument(InsertAssetCmdDef::documentSessionArgumentName(), document);
        context.addArgument(InsertAssetCmdDef::uuidArgumentName(), recorded);
    }
    transcribeUuid(context, InsertAssetCmdDef::uuidArgumentName(), made.guid());
    if (recording)
        context.addArgument(InsertAssetCmdDef::hiddenArgumentName(), hidden);
}

} // namespace

const Vs::UniqueString* InsertAssetCmdDef::assetTypeArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("AssetType", true);
    return name;
}

const Vs::UniqueString* InsertAssetCmdDef::documentSessionArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("DocumentSession", true);
    return name;
}

const Vs::UniqueString* InsertAssetCmdDef::uuidArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Uuid", true);
    return name;
}

const Vs::UniqueString* InsertAssetCmdDef::hiddenArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Hidden", true);
    return name;
}

InsertAssetCmdDef::InsertAssetCmdDef()
{
    m_subscriptions.add(Vs::AssetEventSource::get(), this);
}

bool InsertAssetCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

InputControl* InsertAssetCmdDef::onInputControl()
{
    return m_types.control(info(), this);
}

void InsertAssetCmdDef::assetTypeRegistered(Vs::AssetTypeEvent* event)
{
    m_types.update(event->assetType(), true);
}

void InsertAssetCmdDef::assetTypeUnregistered(Vs::AssetTypeEvent* event)
{
    m_types.update(event->assetType(), false);
}

void InsertAssetCmdDef::onListSelectionChanged(Info* item)
{
    if (!item)
        return;
    CommandContext context = CommandContext::activeContext();
    context.addArgument(assetTypeArgumentName(),
                        Vs::AssetTypeMgr::get()->assetType(Vs::Strings::narrow(item->key())));
    executeLater(context);
}

InsertAssetCmd::InsertAssetCmd(InsertAssetCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType InsertAssetCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void InsertAssetCmd::onExecute(Vs::Status&)
{
    CommandContext& context = *commandContext();
    AssetShell* shell = context.shell() ? findShell<AssetShell>(context.shell()->shellManager()) : nullptr;
    DocumentSession* session = documentSessionOf(context);
    auto* type = Vs::cast<Vs::AssetType>(context.argument(InsertAssetCmdDef::assetTypeArgumentName()));
    if (!shell || !session || !type)
        return;
    int hidden = 0;
    context.argument(InsertAssetCmdDef::hiddenArgumentName(), CommandContext::EArgType::Int, &hidden);

    Vs::Document* document = session->document();
    const std::wstring name = document->uniqueAssetName(type->name());
    Vs::Asset* asset = nullptr;
    if (hidden) {
        asset = Vs::Asset::createHidden(document, document->activeAsset(), name, type);
        if (!asset)
            return;
        markDirty(document->activeAsset());
    } else {
        asset = Vs::Asset::create(document, name, type);
    }
    markDirty(asset);
    transcribe(context, session, *asset, hidden);
    if (hidden)
        return;
    AssetSession* shown = SessionMgr::get()->assetSession(asset);
    shell->add(shown);
    shell->currentAssetSession(shown, true, true);
    shell->shellManager()->activeShell(shell);
}

} // namespace Vu::Commands
