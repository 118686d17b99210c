#include "UI/Commands/Documents/NewDocumentCmd.h"

#include "Server/Base/SerializableObject.h"
#include "Server/Base/Strings.h"
#include "Server/Base/UnitTestMgr.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/ReplacingDocument.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/LayoutUtil.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Documents/ShowDocument.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"
#include "UI/Commands/TranscribedUuid.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow NewDocumentCmdDef::kRow = {
    .key = L"NewDocumentCommand", .title = "New Document", .icon = &Resources::New,
    .hotkey = "ctrl+n",
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup, &CommandGroup::DebugGroup},
    .readonly = true, .arguments = {L"AssetType", L"Uuid"}};

constinit const CommandRow NewSingleDocumentCmdDef::kRow = {
    .key = L"NewSingleDocumentCommand", .title = "New Single Document", .icon = &Resources::New,
    .hotkey = "ctrl+n",
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"AssetType", L"Uuid"}};
// clang-format on

namespace {

bool canMakeDocuments()
{
    return !UIBaseOptionGroup::get()->offlineWorkflowsDisabled() && LayoutUtil::displayQAT();
}

/// Exactly one of the two commands is offered. The counts are settled; they take in the types that no list
/// shows.
bool offersTheSingleType()
{
    const unsigned types = Vs::AssetTypeMgr::get()->assetTypes();
    return types == 1 || types == 3;
}

bool refusedAsLocal(const char* key, Vs::Status& status)
{
    if (!UIBaseOptionGroup::get()->offlineWorkflowsDisabled() || Vs::UnitTestMgr::get()->runningTests())
        return false;
    status.addError(localized(key, "Creation of local files is not supported!!"));
    return true;
}

/// The title that the single command was given last.
std::wstring& singleTitle()
{
    static std::wstring title;
    return title;
}

} // namespace

const Vs::UniqueString* NewDocumentCmdDef::assetTypeArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("AssetType", true);
    return name;
}

const Vs::UniqueString* NewDocumentCmdDef::uuidArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Uuid", true);
    return name;
}

NewDocumentCmdDef::NewDocumentCmdDef()
{
    Vs::AssetEventSource::get()->subscribe(this);
}

NewDocumentCmdDef::~NewDocumentCmdDef()
{
    Vs::AssetEventSource::get()->unsubscribe(this);
}

bool NewDocumentCmdDef::onIsApplicable(CommandContext*) const
{
    return canMakeDocuments() && !offersTheSingleType();
}

InputControl* NewDocumentCmdDef::onInputControl()
{
    return m_types.control(info(), this);
}

void NewDocumentCmdDef::assetTypeRegistered(Vs::AssetTypeEvent* event)
{
    m_types.update(event->assetType(), true);
}

void NewDocumentCmdDef::assetTypeUnregistered(Vs::AssetTypeEvent* event)
{
    m_types.update(event->assetType(), false);
}

void NewDocumentCmdDef::onListSelectionChanged(Info* item)
{
    if (!item)
        return;
    CommandContext context = CommandContext::emptyContext();
    context.addArgument(assetTypeArgumentName(), Vs::UniqueStringObject::get(Vs::UniqueString::find(
                                                     Vs::Strings::narrow(item->key()), true)));
    ReplacingDocument::executeLater(this, context);
}

NewDocumentCmd::NewDocumentCmd(NewDocumentCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

Vs::Document* NewDocumentCmd::CreateNewDocument(Vs::Status& status, const std::string& assetTypeId)
{
    Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    Vs::AssetType* type = Vs::AssetTypeMgr::get()->assetType(assetTypeId);
    return documents && type ? documents->create(type, status) : nullptr;
}

void NewDocumentCmd::ActivateAsset(Vs::Document* document)
{
    DocumentSession* previous = SessionMgr::get()->activeDocumentSession();
    restoreWindow();
    if (showDocument(document, AllSessions::No) && previous)
        closeSilently(previous);
}

Vs::Document* NewDocumentCmd::NewFile(const std::wstring& path, Vs::Status& status,
                                      const std::string& assetTypeId)
{
    Vs::Document* document = CreateNewDocument(status, assetTypeId);
    if (!document)
        return nullptr;
    document->path(path);
    ActivateAsset(document);
    return document;
}

void NewDocumentCmd::onExecute(Vs::Status& status)
{
    if (refusedAsLocal("disallowNewDocumentCmd", status))
        return;
    const auto* type = Vs::cast<Vs::UniqueStringObject>(
        commandContext()->argument(NewDocumentCmdDef::assetTypeArgumentName()));
    if (!type)
        return;
    Vs::Document* document = CreateNewDocument(status, type->value()->text());
    if (!document)
        return;
    transcribeUuid(*commandContext(), NewDocumentCmdDef::uuidArgumentName(), document->identifier());
    ActivateAsset(document);
}

const Vs::UniqueString* NewSingleDocumentCmdDef::assetTypeArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("AssetType", true);
    return name;
}

const Vs::UniqueString* NewSingleDocumentCmdDef::uuidArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Uuid", true);
    return name;
}

NewSingleDocumentCmdDef::NewSingleDocumentCmdDef()
{
    Vs::AssetEventSource::get()->subscribe(this);
}

NewSingleDocumentCmdDef::~NewSingleDocumentCmdDef()
{
    Vs::AssetEventSource::get()->unsubscribe(this);
}

bool NewSingleDocumentCmdDef::onIsApplicable(CommandContext*) const
{
    return canMakeDocuments() && offersTheSingleType();
}

CommandBase* NewSingleDocumentCmdDef::onCreateCommand(CommandContext* context)
{
    context->addArgument(assetTypeArgumentName(), Vs::AssetTypeMgr::get()->assetType(0u));
    context->executeImmediately(false);
    return new NewSingleDocumentCmd(this, context);
}

void NewSingleDocumentCmdDef::onUpdateInputControl(CommandContext* context)
{
    CommandDefinition::onUpdateInputControl(context);
    Vs::AssetType* type = isApplicable(context) ? Vs::AssetTypeMgr::get()->assetType(0u) : nullptr;
    if (!type)
        return;
    singleTitle() = localizedFormat("NewDocumentFormat", "New %s Document", type->name());
    info()->changeAppearance(singleTitle(), type->icon());
    inputControl()->info(info());
}

NewSingleDocumentCmd::NewSingleDocumentCmd(NewSingleDocumentCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

// The document that was current stays open: that is what tells this command from the list's.
void NewSingleDocumentCmd::onExecute(Vs::Status& status)
{
    if (refusedAsLocal("disallowNewSingleDocumentCmd", status))
        return;
    Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    Vs::AssetType* type = Vs::AssetTypeMgr::get()->assetType(0u);
    if (!documents || !type || !SharedWorkflows::activeAssetShell())
        return;
    restoreWindow();
    Vs::Document* document = documents->create(type, status);
    if (!document)
        return;
    transcribeUuid(*commandContext(), NewSingleDocumentCmdDef::uuidArgumentName(), document->identifier());
    showDocument(document, AllSessions::No);
}

} // namespace Vu::Commands
