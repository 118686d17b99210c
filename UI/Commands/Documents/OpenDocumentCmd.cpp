#include "UI/Commands/Documents/OpenDocumentCmd.h"

#include "Server/Base/DiskAnswer.h"
#include "Server/Base/Metrics.h"
#include "Server/Base/OptionGroup.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/UnitTestMgr.h"
#include "Server/DataModel/ApplicationEditionService.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentOpener.h"
#include "Server/DataModel/Translator.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Session/ReplacingDocument.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/LayoutUtil.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Documents/ShowDocument.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Usage.h"
#include "UI/Commands/WaitCursor.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow OpenDocumentCmdDef::kRow = {
    .key = L"OpenDocumentCommand", .title = "Open...", .icon = &Resources::Open,
    .hotkey = "ctrl+o",
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup, &CommandGroup::DebugGroup},
    .readonly = true, .arguments = {L"Path", L"DragAndDrop"}};
// clang-format on

namespace {

constexpr int kOpenOrdinarily = 1;
constexpr const wchar_t* kX11Address = L"https://www.x.org/";

/// Made at the start, so that it is listed before the first opening.
Vs::Metrics::TimeMetric* const theOpenMetric =
    Vs::Metrics::TimeMetric::make(Vs::UniqueString::find("Open", true), L"Open");

bool refusedAsCloudPath(const std::wstring& path, Vs::Status& status)
{
    if (Vs::MeshportAuth::globalInstance()->cloudDisabled() || !Vs::PathInfo::isPathInCloudCache(path))
        return false;
    status.addError(Vs::SkyvaultUtilities::msgErrorOpenCloudLocal());
    return true;
}

/// Whoever asked a disk that doesn't answer would take the whole window along.
bool refusedByDisk(const std::wstring& path, Vs::Status& status)
{
    if (Vs::diskAnswers(path))
        return false;
    status.addError(localizedFormat(
        "OpenNoAnswer", "\"%1%\" can't be opened: the disk on which it lies doesn't answer.", path));
    return true;
}

void openNativeOrForeign(const Vs::TranslatorFileRecognizer& recognizer, const std::wstring& path,
                         Vs::Status& status)
{
    if (Vs::Translator* translator = recognizer.translator(path))
        OpenDocumentCmd::translatorOpen(translator, path, status);
    else
        OpenDocumentCmd::openDocument(path, status, "");
}

} // namespace

OpenDocumentCmdDef::OpenDocumentCmdDef()
{
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
    ReplacingDocument::byCommand(info()->key());
}

bool OpenDocumentCmdDef::onIsApplicable(CommandContext*) const
{
    return !UIBaseOptionGroup::get()->offlineWorkflowsDisabled() && LayoutUtil::displayQAT();
}

void OpenDocumentCmdDef::documentOpenedInBackground(Vs::DocumentEvent* event)
{
    Vs::Status status;
    if (event->timing() == Vs::Timing::After)
        OpenDocumentCmd::openDocument(event->document()->path(), status, "");
}

OpenDocumentCmd::OpenDocumentCmd(OpenDocumentCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

std::wstring OpenDocumentCmd::getFilterValues(Vs::DocumentMgr* manager,
                                              Vs::TranslatorFileRecognizer* recognizer)
{
    if (auto* edition = Application::get()->service<Vs::Services::ApplicationEditionService>())
        if (std::wstring imposed = edition->defaultOpenFileFilterStr(); !imposed.empty())
            return imposed;

    std::wstring extensions = recognizer->fileExtensions();
    std::wstring native;
    for (unsigned i = 0; i < manager->documentTypes(); ++i) {
        const Vs::DocumentType* type = manager->documentType(i);
        if (type->identifier() == "TorvexDocumentType")
            continue;
        native += type->name() + L" (*" + type->extension() + L");;";
        extensions += L";*" + type->extension();
    }
    return localizedFormat("AllFilesOpenSupportedStr", "All supported files ( %1% );", extensions) + L";" +
           native + recognizer->fileFilter();
}

void OpenDocumentCmd::onExecute(Vs::Status& status)
{
    if (UIBaseOptionGroup::get()->offlineWorkflowsDisabled() && !Vs::UnitTestMgr::get()->runningTests()) {
        status.addError(localized("disallowOpenDocumentCmd", "Opening of local files is not supported!!"));
        return;
    }
    static const Vs::UniqueString* const clockName =
        Vs::UniqueString::find("OpenDocumentCmd::onExecute", true);
    const Vs::Clock clock(clockName);

    Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
    if (!manager)
        return;
    Vs::TranslatorFileRecognizer recognizer("", false);
    recognizer.recognize();
    const std::wstring filter = getFilterValues(manager, &recognizer);
    restoreWindow();
    if (Vs::MultiThreadOptionGroup::get()->openMultipleFiles())
        openSeveral(recognizer, filter, status);
    else
        openOne(recognizer, filter, status);
}

void OpenDocumentCmd::openSeveral(const Vs::TranslatorFileRecognizer& recognizer, const std::wstring& filter,
                                  Vs::Status& status)
{
    if (Application::testing()) {
        const std::wstring path = commandContext()->argumentAsString(CommandContext::pathArgumentName());
        if (path.empty() || refusedByDisk(path, status) || refusedAsCloudPath(path, status))
            return;
        theOpenMetric->start();
        openNativeOrForeign(recognizer, path, status);
        return;
    }
    std::vector<std::wstring> names;
    if (!FileDialog::getFilenamesForOpen(filter, names, L"")) {
        FileDialog::tellMissing(status);
        return;
    }
    theOpenMetric->start();
    std::vector<std::wstring> native;
    for (const std::wstring& name : names)
        if (Vs::Translator* translator = recognizer.translator(name))
            translatorOpen(translator, name, status);
        else
            native.push_back(name);
    if (!native.empty())
        openDocuments(native, status, "");
}

void OpenDocumentCmd::openOne(const Vs::TranslatorFileRecognizer& recognizer, const std::wstring& filter,
                              Vs::Status& status)
{
    static const Vs::UniqueString* const dragAndDrop = Vs::UniqueString::find("DragAndDrop", true);
    std::wstring name;
    if (commandContext()->argument(dragAndDrop, CommandContext::EArgType::String, &name)) {
        if (!refusedByDisk(name, status))
            openNativeOrForeign(recognizer, name, status);
        return;
    }
    if (!FileDialog::getTranscriptableFilename(filter, name, commandContext(), true, L"")) {
        FileDialog::tellMissing(status);
        return;
    }
    if (refusedByDisk(name, status) || refusedAsCloudPath(name, status))
        return;
    theOpenMetric->start();
    Vs::Translator* translator = recognizer.translator(name);
    if (!translator) {
        openDocument(name, status, "");
        return;
    }
    translatorOpen(translator, name, status);
    if (status.isError() && status.matchingError("X11_MISSING")) {
        MessageBox::error(std::wstring(L"X11 must be installed to open Rivetcad files.  You can download it "
                                       L"directly from ") +
                          kX11Address);
        status.clear();
    }
}

void OpenDocumentCmd::onEnd(ETerminationReason reason)
{
    theOpenMetric->stop();
    SimpleCommand::onEnd(reason);
    sendUsage(reason, "Quillet.OpenDocumentCmd");
}

void OpenDocumentCmd::OpenSingleFile(const std::wstring& path, Vs::Status& status, const std::string& cloudId)
{
    Vs::TranslatorFileRecognizer recognizer("", false);
    recognizer.recognize();
    if (Vs::Translator* translator = recognizer.translator(path))
        translatorOpen(translator, path, status);
    else
        openDocument(path, status, cloudId);
}

void OpenDocumentCmd::openDocument(const std::wstring& path, Vs::Status& status, const std::string& cloudId)
{
    DocumentSession* previous = SessionMgr::get()->activeDocumentSession();
    Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
    if (!manager)
        return;
    SessionMgr::get()->finishLeaving(path);
    Vs::Document* document = manager->document(path);
    if (document && previous && document == previous->document())
        return;
    if (!document) {
        Vs::Status own;
        {
            const WaitCursor wait;
            document = manager->open(path, own);
        }
        // Of several files each failure is told once.
        const bool told = status.reported();
        status.merge(own);
        if (!document) {
            MessageBox::warning((told ? own : status).toString());
            status.reported(true);
            return;
        }
    }
    document->setCloudId(cloudId);
    if (!showDocument(document, AllSessions::Yes))
        return;
    RecentDocumentMgr::get()->add(path, document->isCloud());
    if (previous)
        closeSilently(previous);
}

void OpenDocumentCmd::translatorOpen(Vs::Translator* translator, const std::wstring& path, Vs::Status& status)
{
    if (!translator || path.empty())
        return;
    DocumentSession* previous = SessionMgr::get()->activeDocumentSession();
    const std::unique_ptr<Vs::TranslatorOpenOptions> options = translator->createOpenOptions();
    options->fileName(path);
    Vs::TranslatorContext context;
    context.identifier(translator->identifier());
    context.open(true);
    bool opened = false;
    {
        const WaitCursor wait;
        opened = translator->open(*options, context, status);
    }
    // A cancelled translator doesn't report it, but a line of text must not count as successful.
    if (!opened && status.isOk())
        status.addError(localizedFormat("OpenCancelled", "Opening \"%1%\" was cancelled.", path));
    // Without a document of its own, the file failed; the last document in the list was open before.
    if (context.document() && showDocument(context.document(), AllSessions::No) && previous)
        closeSilently(previous);
}

void OpenDocumentCmd::openDocuments(const std::vector<std::wstring>& paths, Vs::Status& status,
                                    const std::string& cloudId)
{
    if (!Vs::MultiThreadOptionGroup::get()->multiThreadLoad()) {
        for (const std::wstring& path : paths)
            openDocument(path, status, cloudId);
        return;
    }
    Vs::Status loading;
    Vs::DocumentOpener opener({paths.begin(), paths.end()});
    opener.open(loading, kOpenOrdinarily);
    // By their paths: one that is named twice is closed between its two turns.
    std::vector<std::wstring> opened;
    for (unsigned i = 0; i < opener.documentsOpened(); ++i)
        opened.push_back(opener.documentOpened(i)->path());
    for (const std::wstring& path : opened)
        openDocument(path, loading, "");
    // Files loaded in parallel fail silently for the caller, but not for the user.
    if (loading.isError() && !loading.reported())
        MessageBox::warning(loading.toString());
}

} // namespace Vu::Commands
