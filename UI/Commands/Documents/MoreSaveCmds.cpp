#include "UI/Commands/Documents/MoreSaveCmds.h"

#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentCopy.h"
#include "Server/DataModel/DocumentType.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Documents/FileNameFor.h"
#include "UI/Commands/Documents/OpenDocumentCmd.h"
#include "UI/Commands/Documents/SaveDocumentCmd.h"
#include "UI/Commands/Documents/ShowDocument.h"
#include "UI/Commands/Documents/ShownState.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/WaitCursor.h"

#include <boost/filesystem/operations.hpp>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow RevertDocumentCmdDef::kRow = {
    .key = L"RevertDocumentCommand", .title = "Revert",
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"DocumentSession"}};

constinit const CommandRow SaveDocumentCopyCmdDef::kRow = {
    .key = L"SaveDocumentCopyCommand", .title = "Save a Copy...", .icon = &Resources::Save,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"DocumentSession", L"Path"}};

constinit const CommandRow SaveAllDocumentsCmdDef::kRow = {
    .key = L"SaveAllDocumentsCommand", .title = "Save All", .icon = &Resources::Save,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}};
// clang-format on

namespace {

Vs::Document* documentOf(const CommandContext& context)
{
    const DocumentSession* session = documentSessionOf(context);
    return session ? session->document() : nullptr;
}

std::wstring fileOf(const Vs::Document& document)
{
    return document.isOnDisk() ? document.path() : document.importedFrom();
}

bool mayRevert(const Vs::Document& document)
{
    MessageBox box(
        localizedFormat("RevertQuestion",
                        "Go back to what is in the file of \"%1%\"?\nWhat you have changed since is "
                        "not in it.",
                        document.displayName()));
    box.icon(kQuestionIcon);
    box.addButton(localized("RevertDocumentCommand", "Revert"));
    box.addButton(kCancelButton, true);
    return box.show() == 0;
}

void revert(Vs::Document* document, const RunningMeasurement& measured, Vs::Status& status)
{
    const std::wstring file = fileOf(*document);
    boost::system::error_code error;
    if (!boost::filesystem::is_regular_file(file, error)) {
        status.addError(
            localizedFormat("RevertNoFile", "\"%1%\" has no file to go back to.", document->displayName()));
        return;
    }
    const DocumentSession* front = SessionMgr::get()->activeDocumentSession();
    const bool wasInFront = front && front->document() == document;
    // What is opened takes the place of what shows.
    if (!showDocument(document, AllSessions::No))
        return;
    const ShownState before;
    const bool isNative = document->isOnDisk();
    const std::wstring name = document->displayName();
    // Only one document can have the file; if it can't be read, this one gets it back.
    if (isNative)
        document->clearPath();
    OpenDocumentCmd::OpenSingleFile(file, status, document->cloudId());
    const DocumentSession* shown = SessionMgr::get()->activeDocumentSession();
    if (shown && shown->document() != document) {
        if (!isNative)
            before.restoreHidden(status);
        if (wasInFront)
            measured.resume(); // Before the selection is there, of which it would measure more.
        before.restore();
        return;
    }
    if (isNative)
        document->path(file);
    document->displayName(name);
    if (status.isOk())
        status.addError(
            localizedFormat("RevertFailed", "\"%1%\" can't be read; the document is as it was.", file));
}

} // namespace

void RevertDocumentCmdDef::createCommandDef()
{
    static RevertDocumentCmdDef definition;
}

bool RevertDocumentCmdDef::onIsApplicable(CommandContext* context) const
{
    const Vs::Document* document = documentOf(*context);
    return document && !fileOf(*document).empty();
}

CommandBase* RevertDocumentCmdDef::onCreateCommand(CommandContext* context)
{
    const Vs::Document* document = documentOf(*context);
    if (document && context->isByHand() && document->isDirty(false) && !Application::testing() &&
        !mayRevert(*document))
        return nullptr;
    return new RevertDocumentCmd(this, context);
}

RevertDocumentCmd::RevertDocumentCmd(RevertDocumentCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void RevertDocumentCmd::onExecute(Vs::Status& status)
{
    if (Vs::Document* document = documentOf(*commandContext()))
        revert(document, m_measured, status);
}

void SaveDocumentCopyCmdDef::createCommandDef()
{
    static SaveDocumentCopyCmdDef definition;
}

bool SaveDocumentCopyCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

SaveDocumentCopyCmd::SaveDocumentCopyCmd(SaveDocumentCopyCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void SaveDocumentCopyCmd::onExecute(Vs::Status& status)
{
    Vs::Document* document = documentOf(*commandContext());
    if (!document)
        return;
    const Vs::DocumentType& type = *document->documentType();
    std::wstring name = fileNameFor(document, type.extension());
    if (!FileDialog::getTranscriptableFilenameForSaveAs(type.name() + L" (*" + type.extension() + L")",
                                                        localized("SaveDocumentCopyCaption", "Save a Copy"),
                                                        name, commandContext())) {
        FileDialog::tellMissing(status);
        return;
    }
    if (!boost::filesystem::path(name).has_extension())
        name += type.extension();
    const WaitCursor wait;
    Vs::saveCopy(*document, name, status);
}

void SaveAllDocumentsCmdDef::createCommandDef()
{
    static SaveAllDocumentsCmdDef definition;
}

bool SaveAllDocumentsCmdDef::onIsApplicable(CommandContext*) const
{
    for (const Vs::Document* document : SessionMgr::get()->openDocuments())
        if (document->isDirty(false))
            return true;
    return false;
}

SaveAllDocumentsCmd::SaveAllDocumentsCmd(SaveAllDocumentsCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void SaveAllDocumentsCmd::onExecute(Vs::Status& status)
{
    for (Vs::Document* document : SessionMgr::get()->openDocuments()) {
        if (!document->isDirty(false))
            continue;
        const SaveFailures failures;
        if (!document->isOnDisk())
            SessionMgr::get()->documentSession(document)->firstSave(true);
        Vs::Status own;
        const WaitCursor wait;
        const bool saved = document->save(own);
        if (!saved && own.isOk() && !document->isOnDisk())
            return; // The user gave no name and wants to stop here.
        if (!failures.reason().empty() && !failures.reported())
            status.addError(failures.reason());
    }
}

} // namespace Vu::Commands
