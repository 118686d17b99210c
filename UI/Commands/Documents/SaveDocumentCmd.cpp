#include "UI/Commands/Documents/SaveDocumentCmd.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/UnitTestMgr.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Workspace/LayoutUtil.h"
#include "UI/Commands/Cloud/CloudDocuments.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Usage.h"
#include "UI/Commands/WaitCursor.h"

#include <boost/filesystem/operations.hpp>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow SaveDocumentCmdDef::kRow = {
    .key = L"SaveDocumentCommand", .title = "Save", .icon = &Resources::Save, .hotkey = "ctrl+s",
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup, &CommandGroup::DebugGroup}, .arguments = {L"DocumentSession", L"Path"}};

constinit const CommandRow SaveDocumentAsCmdDef::kRow = {
    .key = L"SaveDocumentAsCommand", .title = "Save As...", .icon = &Resources::Save, .hotkey = "ctrl+shift+s",
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup, &CommandGroup::DebugGroup}, .arguments = {L"DocumentSession", L"Path"}};
// clang-format on

namespace {

bool hasLocalDocument(const CommandContext* context)
{
    const AssetSession* session = context->assetSession();
    const DocumentSession* document = session ? session->documentSession() : nullptr;
    return document && document->document() && !CloudDocuments::isOfDrive(*document->document());
}

/// Tells the user which command saves a document of the cloud drive.
void refuseCloudPath(const std::wstring& path)
{
    MessageBox box(localizedFormat("SaveOnCloudDocError",
                                   "The document %1% has been saved to the cloud.  You must use the Save to "
                                   "%2% command for this operation",
                                   boost::filesystem::path(path).filename().wstring(),
                                   Vs::SkyvaultUtilities::getCloud_TM()));
    box.addButton(kOkButton);
    box.icon(kWarningIcon);
    box.show();
}

bool mayOverwrite(const std::wstring& name)
{
    MessageBox box(
        localizedFormat("OverwritingExistingFile", "%1% already exists.\nDo you want to replace it?", name));
    box.addButton(kYesButton);
    box.addButton(kNoButton, true);
    constexpr int kNoIndex = 1;
    return box.show() != kNoIndex;
}

/// Takes the new name from the context or from the user. False if there is none.
///
/// A name with a dot was dealt with by the dialog, which appends suffixes and asks before it gives the name
/// of a file that exists. That five refusals count as consent is settled.
bool askForName(const Vs::DocumentType& type, CommandContext& context, std::wstring& name, Vs::Status& status)
{
    constexpr int kPasses = 5;
    const std::wstring filter = type.name() + L" (*" + type.extension() + L")";
    const std::wstring caption = localized("SaveDocumentAsCaption", "Save Document As");
    for (int pass = 0; pass < kPasses; ++pass) {
        if (!FileDialog::getTranscriptableFilenameForSaveAs(filter, caption, name, &context)) {
            FileDialog::tellMissing(status);
            return false;
        }
        if (name.find(L'.') != std::wstring::npos)
            return true;
        // The suffix alone would create a hidden file in that folder.
        if (name.empty() || name.ends_with(L'/')) {
            status.addError(localizedFormat("NoFileName", "\"%1%\" is not the name of a file.", name));
            return false;
        }
        name += type.extension();
        boost::system::error_code error;
        if (!boost::filesystem::exists(name, error) || mayOverwrite(name))
            return true;
        // The next pass asks again, even where this name was given as an argument.
        if (pass + 1 < kPasses)
            context.removeArgument(CommandContext::pathArgumentName());
    }
    return true;
}

} // namespace

bool SaveDocumentCmdDef::onIsApplicable(CommandContext* context) const
{
    return LayoutUtil::displayQAT() && hasLocalDocument(context);
}

bool SaveDocumentCmdDef::onIsVisible(CommandContext* context) const
{
    return hasLocalDocument(context);
}

SaveDocumentCmd::SaveDocumentCmd(SaveDocumentCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void SaveDocumentCmd::onExecute(Vs::Status& status)
{
    DocumentSession* session = documentSessionOf(*commandContext());
    Vs::Document* document = session ? session->document() : nullptr;
    if (!document)
        return;
    const bool hadPath = document->isOnDisk();
    const std::wstring name = document->displayName();
    if (!hadPath) {
        const std::wstring path = commandContext()->argumentAsString(CommandContext::pathArgumentName());
        if (!path.empty())
            document->path(path);
        session->firstSave(true);
    }
    // A document whose first save failed is as it was, and can be given another name at the next.
    const auto giveUp = [&] {
        if (hadPath)
            return;
        document->clearPath();
        document->displayName(name);
    };
    if (!Vs::MeshportAuth::globalInstance()->cloudDisabled() &&
        Vs::PathInfo::isPathInCloudCache(document->path())) {
        refuseCloudPath(document->path());
        giveUp();
        return;
    }
    const SaveFailures failures;
    {
        const WaitCursor wait;
        if (!document->save(status))
            giveUp();
        status.clear();
    }
    if (!failures.reason().empty() && !failures.reported() && failures.alone())
        MessageBox::error(failures.reason());
    if (!Vs::TranscriptMgr::get()->recording() || !document->isOnDisk())
        return;
    // Where an item's file lies is this profile's own business; played elsewhere, the item shown is saved.
    if (Vs::ItemhubUtilities::get()->isItemhubDocument(document)) {
        commandContext()->removeArgument(CloseDocumentCmdDef::documentSessionArgumentName());
        commandContext()->removeArgument(CommandContext::pathArgumentName());
    } else {
        commandContext()->addArgument(CommandContext::pathArgumentName(), document->path());
    }
}

void SaveDocumentCmd::onEnd(ETerminationReason reason)
{
    SimpleCommand::onEnd(reason);
    sendUsage(reason, "Quillet.SaveDocumentCmd");
}

bool SaveDocumentAsCmdDef::onIsApplicable(CommandContext* context) const
{
    return !UIBaseOptionGroup::get()->offlineWorkflowsDisabled() && LayoutUtil::displayQAT() &&
           hasAssetSession(context);
}

bool SaveDocumentAsCmdDef::onIsVisible(CommandContext* context) const
{
    return hasAssetSession(context);
}

SaveDocumentAsCmd::SaveDocumentAsCmd(SaveDocumentAsCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void SaveDocumentAsCmd::onExecute(Vs::Status& status)
{
    if (UIBaseOptionGroup::get()->offlineWorkflowsDisabled() && !Vs::UnitTestMgr::get()->runningTests()) {
        status.addError(localized("disallowSaveDocumentAsCmd", "Saving to local disk is not supported!!"));
        return;
    }
    DocumentSession* session = documentSessionOf(*commandContext());
    Vs::Document* document = session ? session->document() : nullptr;
    if (!document)
        return;
    std::wstring name = document->displayName();
    if (!askForName(*document->documentType(), *commandContext(), name, status))
        return;
    // A clean asset wouldn't be written.
    for (unsigned i = 0; i < document->assets(); ++i)
        if (!document->asset(i)->isDirty(false))
            document->asset(i)->markDirty();
    {
        const WaitCursor wait;
        document->saveAs(name, status);
    }
    if (!status.isOk())
        return;
    RecentDocumentMgr::get()->add(document->path(), document->isCloud());
    Vs::DocumentEvent event(document, Vs::Timing::Notification);
    Vs::DocumentEventSource::get()->fireDocumentSaved(&event);
}

void SaveDocumentAsCmd::onEnd(ETerminationReason reason)
{
    SimpleCommand::onEnd(reason);
    sendUsage(reason, "Quillet.SaveDocumentAsCmd");
}

int SaveFailures::s_listening = 0;

SaveFailures::SaveFailures()
{
    ++s_listening;
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
}

SaveFailures::~SaveFailures()
{
    m_subscriptions.clear();
    --s_listening;
}

void SaveFailures::documentSaveFailed(Vs::DocumentFailureEvent* event)
{
    if (!m_reason.empty())
        return;
    m_reason = event->status().toString();
    m_reported = event->status().reported();
}

} // namespace Vu::Commands
