#include "UI/Commands/Itemhub/ItemhubNewItemCmd.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/ReplacingDocument.h"
#include "UI/Commands/Documents/NewDocumentCmd.h"
#include "UI/Commands/Itemhub/ItemhubSaveCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ItemhubNewItemCmdDef::kRow = {
    .key = L"ItemhubNewItemCommand", .title = "Itemdesk New Item", .icon = &Resources::New,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .arguments = {L"ItemhubWorkspaceId", L"ItemhubItemName", L"ItemhubLinkedItemId", L"ItemhubLinkedItemWorkspaceId", L"ItemhubAssetType", L"ItemhubItemDescription"}};

constinit const CommandRow ItemhubNewDesignCmdDef::kRow = {
    .key = L"ItemhubNewDesignCommand", .title = "New Design", .icon = &Resources::New,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .arguments = {L"ItemhubWorkspaceId", L"ItemhubItemName", L"ItemhubLinkedItemId", L"ItemhubLinkedItemWorkspaceId", L"ItemhubAssetType", L"ItemhubItemDescription"}};

constinit const CommandRow ItemhubNewDocumentationCmdDef::kRow = {
    .key = L"ItemhubNewDocumentationCommand", .title = "New Documentation", .icon = &Resources::New,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}};
// clang-format on

namespace {

Vs::Metrics::TimeMetric* const theMetric = timeMetric("ItemhubNewItem");

constexpr const char* kDesignAssetType = "VeloraAssetType";
constexpr int kCalledByACommand = 11;

/// Each of the two ways to a new item is counted separately.
int theNewItems = 1;
int theNewDesigns = 1;

const Vs::UniqueString* named(const char* name)
{
    return Vs::UniqueString::find(name, true);
}

std::wstring madeUpName(int& counter)
{
    return L"Design" + std::to_wstring(counter++);
}

/// What the first version is made by; it is part of the new item, whose line a recording has.
void saveFirstVersion()
{
    CommandContext context = CommandContext::activeContext();
    context.executeImmediately(false);
    context.partOfCaller(true);
    context.accessPoint(kCalledByACommand);
    context.addArgument(ItemhubNewItemCmdDef::labelArgument(), ItemhubNewItemCmdDef::initialLabel());
    if (CommandMgr* manager = CommandMgr::getActiveCommandManager())
        static_cast<void>(manager->executeCommand(ItemhubSaveCmdDef::info()->key(), context));
}

} // namespace

const Vs::UniqueString* ItemhubNewItemCmdDef::workspaceId()
{
    static const Vs::UniqueString* const name = named("ItemhubWorkspaceId");
    return name;
}

const Vs::UniqueString* ItemhubNewItemCmdDef::itemName()
{
    static const Vs::UniqueString* const name = named("ItemhubItemName");
    return name;
}

const Vs::UniqueString* ItemhubNewItemCmdDef::labelArgument()
{
    static const Vs::UniqueString* const name = named("ItemhubSaveLabel");
    return name;
}

const Vs::UniqueString* ItemhubNewItemCmdDef::linkedItemId()
{
    static const Vs::UniqueString* const name = named("ItemhubLinkedItemId");
    return name;
}

const Vs::UniqueString* ItemhubNewItemCmdDef::linkedItemWorkspaceId()
{
    static const Vs::UniqueString* const name = named("ItemhubLinkedItemWorkspaceId");
    return name;
}

const Vs::UniqueString* ItemhubNewItemCmdDef::assetType()
{
    static const Vs::UniqueString* const name = named("ItemhubAssetType");
    return name;
}

const Vs::UniqueString* ItemhubNewItemCmdDef::notes()
{
    static const Vs::UniqueString* const name = named("ItemhubItemDescription");
    return name;
}

const std::wstring& ItemhubNewItemCmdDef::initialLabel()
{
    static const std::wstring label = localized("Itemhub_SAVE_CMD_INTITIAL_LABEL", "Document created");
    return label;
}

ItemhubNewItemCmdDef::ItemhubNewItemCmdDef() : ItemhubNewItemCmdDef(info()) {}

ItemhubNewItemCmdDef::ItemhubNewItemCmdDef(Info* identity) : ItemhubDefinition(identity)
{
    ReplacingDocument::byCommand(identity->key());
}

Vs::Metrics::TimeMetric* ItemhubNewItemCmd::metric()
{
    return theMetric;
}

void ItemhubNewItemCmd::onExecute(Vs::Status& status)
{
    using Def = ItemhubNewItemCmdDef;
    if (!itemhubSession())
        return;
    const CommandContext& context = *commandContext();
    const int workspace = numberArgument(context, Def::workspaceId());
    const int linkedItem = numberArgument(context, Def::linkedItemId());
    const int linkedWorkspace = numberArgument(context, Def::linkedItemWorkspaceId());
    std::wstring name = context.argumentAsString(Def::itemName());
    if (name.empty())
        name = madeUpName(theNewItems);
    std::string typeName = Vs::Strings::narrow(context.argumentAsString(Def::assetType()));
    if (typeName.empty())
        typeName = kDesignAssetType;
    const Vs::AssetType* type = Vs::AssetTypeMgr::get()->assetType(typeName);
    const Vs::DocumentType* documentType =
        type ? Vs::DocumentMgr::get()->documentType(type->defaultDocType()) : nullptr;
    if (!documentType)
        return;
    const std::wstring path = Vs::ItemhubUtilities::get()->addNewItem(
        documentType, workspace, linkedWorkspace, linkedItem, name, context.argumentAsString(Def::notes()));
    if (path.empty())
        return;
    Vs::Document* document = NewDocumentCmd::NewFile(path, status, typeName);
    if (!document)
        return;
    nameAfterFile(*document, path);
    saveFirstVersion();
}

CommandBase* ItemhubNewDesignCmdDef::onCreateCommand(CommandContext* context)
{
    context->addArgument(assetType(), Vs::Strings::widen(kDesignAssetType));
    context->addArgument(itemName(), madeUpName(theNewDesigns));
    for (const Vs::UniqueString* number : {workspaceId(), linkedItemId(), linkedItemWorkspaceId()})
        if (!context->hasArgument(number))
            context->addArgument(number, 0);
    return new ItemhubNewItemCmd(this, context);
}

} // namespace Vu::Commands
