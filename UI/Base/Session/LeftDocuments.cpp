#include "UI/Base/Session/LeftDocuments.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/AutoSaving.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <optional>
#include <vector>

namespace Vu {
namespace {

std::optional<Vs::AutoSavedFileInfo> recordOf(const std::wstring& file)
{
    std::vector<Vs::AutoSavedFileInfo> files;
    Vs::AutoSaveController::get()->getAllRecoverFiles(files);
    const auto found = std::find_if(files.begin(), files.end(), [&](const Vs::AutoSavedFileInfo& each) {
        return each.autoSavedFile() == file;
    });
    return found == files.end() ? std::nullopt : std::optional(*found);
}

void tellGone(const std::wstring& name)
{
    Application::get()->inform(
        localizedFormat("LeftDocumentGone", "What was kept of \"%1%\" no longer exists.", name));
}

/// The document comes back beside what is open, as changed as it was.
void bringBack(const std::wstring& file, const std::wstring& name)
{
    const auto record = recordOf(file);
    if (!record) {
        tellGone(name);
        return;
    }
    const Vs::TextCommandResult opened =
        Vs::TextCommandMgr::get()->executeCommandWithoutOutput(L"Document.Open " + Vs::Strings::quote(file));
    Vs::Document* document = Vs::DocumentMgr::get()->document(file);
    if (opened.first != 0 || !document) {
        Application::get()->inform(opened.second);
        return;
    }
    if (!Vs::AutoSaveController::get()->deleteARecoveryFile(file))
        return; // It tells that itself.
    document->displayName(record->fileName());
    boost::system::error_code error;
    const std::wstring& source = record->oriSourceFile();
    if (source.empty() || !boost::filesystem::exists(source, error))
        document->clearPath();
    else
        document->path(source);
    AutoSaving::replaySteps(file, document);
}

void saveCopy(const std::wstring& file, const std::wstring& name)
{
    const auto record = recordOf(file);
    if (!record) {
        tellGone(name);
        return;
    }
    const Vs::DocumentType* type = Vs::DocumentMgr::get()->documentType(record->docIdentifier());
    const std::wstring extension = type ? type->extension() : std::wstring();
    std::wstring path = record->fileName() + extension;
    if (!FileDialog::getFilenameForExport((type ? type->name() : std::wstring()) + L" (*" + extension + L")",
                                          localized("SaveACopy", "Save a Copy"), path, L""))
        return;
    auto* controller = Vs::AutoSaveController::get();
    // What goes wrong is reported, and the file kept.
    if (!controller->saveRecoveryFileAs(file, path))
        return;
    if (const size_t steps = controller->stepsBehind(file))
        Application::get()->inform(
            localizedFormat("LeftCopyLacksSteps",
                            "The copy lacks the last steps of a script (%1%). They are there when \"%2%\" is "
                            "brought back.",
                            steps, name));
    else
        static_cast<void>(controller->deleteARecoveryFile(file));
}

} // namespace

LeftDocuments::LeftDocuments()
{
    m_subscriptions.add(Vs::AutoSaveEventSource::get(), this);
    m_subscriptions.add(Vs::NotificationsEventSource::get(), this);
}

const std::wstring& LeftDocuments::clientID()
{
    static const std::wstring identifier = L"DocumentLeft";
    return identifier;
}

void LeftDocuments::autoSavedDocumentLeft(Vs::AutoSaveEvent* event)
{
    // Who wrote the line that closes it knows.
    if (!Application::get()->mainWidget())
        return;
    const std::wstring& file = event->file();
    const auto record = recordOf(file);
    const std::wstring name = record ? record->fileName() : std::wstring();
    Vs::NotificationRequest request;
    request.title = event->message();
    request.file = record ? record->oriSourceFile() : std::wstring();
    request.clientID = clientID();
    request.type = Vs::NotificationType::makeByType(Vs::NotificationType::Offer);
    // They go with the file, and stay where that failed.
    request.actions = {
        {localized("LeftDocumentBringBack", "Bring back"), [file, name] { bringBack(file, name); }, false},
        {localized("LeftDocumentSaveCopy", "Save a copy..."), [file, name] { saveCopy(file, name); }, false}};
    if (Vs::Notification* sent = Vs::NotificationCenter::get()->sendNotification(std::move(request)))
        m_files[sent] = file;
}

void LeftDocuments::autoSavedRecoveryFileDeleted(Vs::AutoSaveEvent* event)
{
    std::vector<Vs::Notification*> gone;
    for (const auto& [notification, file] : m_files)
        if (file == event->file())
            gone.push_back(notification);
    for (Vs::Notification* notification : gone)
        Vs::NotificationCenter::get()->remove(notification);
}

} // namespace Vu
