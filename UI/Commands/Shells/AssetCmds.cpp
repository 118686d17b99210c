#include "UI/Commands/Shells/AssetCmds.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Documents/DocumentSets.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/AssetShell.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow NextAssetCmdDef::kRow = {
    .key = L"NextAssetCommand", .title = "Next Asset", .icon = &Resources::NextAsset,
    .groups = {&CommandGroup::BaseGroup}};

constinit const CommandRow PreviousAssetCmdDef::kRow = {
    .key = L"PreviousAssetCommand", .title = "Previous Asset", .icon = &Resources::PreviousAsset,
    .groups = {&CommandGroup::BaseGroup}};

constinit const CommandRow SwitchAssetCmdDef::kRow = {
    .key = L"SwitchAssetCommand", .title = "Switch Asset",
    .groups = {&CommandGroup::BaseGroup}, .arguments = {L"AssetSession"}};

constinit const CommandRow CloseAssetCmdDef::kRow = {
    .key = L"CloseAssetCommand", .title = "Close Asset", .icon = &Resources::CloseAsset,
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

AssetShell* assetShellOf(const CommandContext* context)
{
    return Vs::cast<AssetShell>(context->shell());
}

} // namespace

bool NextAssetCmdDef::onIsApplicable(CommandContext* context) const
{
    const AssetShell* shell = assetShellOf(context);
    return shell && shell->nextAssetSession();
}

bool NextAssetCmdDef::onIsVisible(CommandContext*) const
{
    return true;
}

NextAssetCmd::NextAssetCmd(NextAssetCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType NextAssetCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void NextAssetCmd::onExecute(Vs::Status&)
{
    if (AssetShell* shell = assetShellOf(commandContext()))
        shell->currentAssetSession(shell->nextAssetSession(), true, true);
}

bool PreviousAssetCmdDef::onIsApplicable(CommandContext* context) const
{
    const AssetShell* shell = assetShellOf(context);
    return shell && shell->previousAssetSession();
}

bool PreviousAssetCmdDef::onIsVisible(CommandContext*) const
{
    return true;
}

PreviousAssetCmd::PreviousAssetCmd(PreviousAssetCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType PreviousAssetCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void PreviousAssetCmd::onExecute(Vs::Status&)
{
    if (AssetShell* shell = assetShellOf(commandContext()))
        shell->currentAssetSession(shell->previousAssetSession(), true, true);
}

const Vs::UniqueString* SwitchAssetCmdDef::assetSessionArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("AssetSession", true);
    return name;
}

bool SwitchAssetCmdDef::onIsApplicable(CommandContext* context) const
{
    return context->arguments() > 0;
}

SwitchAssetCmd::SwitchAssetCmd(SwitchAssetCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType SwitchAssetCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void SwitchAssetCmd::onExecute(Vs::Status&)
{
    auto* session =
        Vs::cast<AssetSession>(commandContext()->argument(SwitchAssetCmdDef::assetSessionArgumentName()));
    AssetShell* shell = assetShellOf(commandContext());
    if (session && shell)
        shell->currentAssetSession(session, true, true);
}

bool CloseAssetCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

CommandBase* CloseAssetCmdDef::onCreateCommand(CommandContext* context)
{
    AssetSession* session = context->assetSession();
    Vs::Asset* asset = session ? session->asset() : nullptr;
    Vs::Document* document = asset ? asset->document() : nullptr;
    if (!document)
        return new CloseAssetCmd(this, context);
    // Another dirty asset that the shell shows keeps the document open, so that nothing can be lost and
    // nothing is asked.
    const AssetShell* shell = assetShellOf(context);
    for (unsigned i = 0; i < document->assets(); ++i) {
        Vs::Asset* other = document->asset(i);
        AssetSession* otherSession =
            other != asset && other->isDirty(false) ? SessionMgr::get()->assetSession(other) : nullptr;
        if (otherSession && shell && shell->has(otherSession))
            return new CloseAssetCmd(this, context);
    }
    return closingAgreed({document}) ? new CloseAssetCmd(this, context) : nullptr;
}

CloseAssetCmd::CloseAssetCmd(CloseAssetCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

ECommandType CloseAssetCmd::onCommandType() const
{
    return ECommandType::Exclusive;
}

EStackingBehavior CloseAssetCmd::onStackingBehavior() const
{
    return EStackingBehavior::OverNothing;
}

void CloseAssetCmd::onExecute(Vs::Status&)
{
    AssetShell* shell = assetShellOf(commandContext());
    AssetSession* closed = commandContext()->assetSession();
    if (!shell || !closed)
        return;
    const DocumentSession* documentSession = closed->documentSession();
    Vs::Document* document = documentSession->document();
    // The document is not to be opened with what was closed, as the line Asset.Close has it, too.
    for (unsigned i = 0; i < document->assets(); ++i)
        if (document->asset(i) != closed->asset()) {
            document->activeAsset(document->asset(i));
            break;
        }
    shell->remove(closed, true);
    for (AssetSession* other : shell->assetSessions())
        if (other->documentSession() == documentSession && other->asset()->fullyInitialized())
            return;
    for (unsigned i = 0; i < document->assets(); ++i) {
        AssetSession* session = SessionMgr::get()->assetSession(document->asset(i));
        if (session && shell->has(session))
            shell->remove(session, true);
    }
}

} // namespace Vu::Commands
