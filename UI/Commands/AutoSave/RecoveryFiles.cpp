#include "UI/Commands/AutoSave/RecoveryFiles.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "Server/DataModel/Recovery/AutoSaveOptionsGroup.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/AutoSaving.h"
#include "UI/Commands/Documents/OpenDocumentsCmds.h"
#include "UI/Commands/Itemhub/ItemhubCommands.h"
#include "UI/Commands/Localized.h"

#include <QDateTime>
#include <QLocale>

#include <boost/filesystem/operations.hpp>

#include <tuple>

namespace Vu::Commands {

using Reason = Vs::AutoSaveController::Reason;

namespace {

constexpr int kRecoveryAccessPoint = 5;

bool exists(const std::wstring& path)
{
    boost::system::error_code error;
    return !path.empty() && boost::filesystem::exists(path, error);
}

bool signedIn()
{
    return Vs::ItemhubUtilities::get()->isAuthenticated();
}

/// Where the file can be read; empty if it can't.
std::wstring placeOf(const Vs::AutoSavedFileInfo& file)
{
    if (!file.isCloudFile())
        return file.autoSavedFile();
    if (!signedIn())
        return {};
    std::wstring found;
    withItemhubErrors([&] {
        const Vs::ItemhubUtilities* service = Vs::ItemhubUtilities::get();
        const std::wstring path = service->downloadAttachment(file.attachmentUrl());
        if (exists(path))
            found = path;
        else
            service->fireErrorMessage(localized("ItemhubOpenDocumentErrorFileNotExist",
                                                "Downloaded file form Itemhub isn't existed error"));
    });
    return found;
}

std::wstring inQuotes(const std::wstring& path)
{
    const std::wstring quoted = Vs::Strings::quote(path);
    return quoted.starts_with(L'"') ? quoted : L'"' + quoted + L'"';
}

// What was opened or copied from the service is not in the local file that stands for it.
bool letGo(const Vs::AutoSavedFileInfo& file)
{
    return Vs::AutoSaveController::get()->deleteARecoveryFile(
        file.autoSavedFile(), file.isCloudFile() ? Reason::Unwanted : Reason::Taken);
}

void showInOpenList()
{
    CommandContext context = CommandContext::activeContext();
    context.accessPoint(kRecoveryAccessPoint);
    if (CommandDefinition* list = CommandDefinitionMgr::get()->findCommandDefinitionById(
            CurrentlyOpenDocumentsCmdDef::info()->key()))
        std::ignore = list->executeCommand(context);
}

std::wstring withoutSuffix(const std::wstring& path)
{
    constexpr std::wstring_view kSuffix = L".backup";
    return path.ends_with(kSuffix) ? path.substr(0, path.size() - kSuffix.size()) : path;
}

} // namespace

std::vector<Vs::AutoSavedFileInfo> RecoveryFiles::all()
{
    std::vector<Vs::AutoSavedFileInfo> files;
    Vs::AutoSaveController::get()->getAllRecoverFiles(files);
    return files;
}

std::vector<Vs::AutoSavedFileInfo> RecoveryFiles::offered()
{
    if (!Vs::AutoSaveOptionsGroup::get()->performAutoSave())
        return {};
    std::vector<Vs::AutoSavedFileInfo> files = all();
    std::erase_if(files, [](const auto& file) { return file.isCloudFile() && !signedIn(); });
    return files;
}

std::wstring RecoveryFiles::timeOf(const Vs::AutoSavedFileInfo& file)
{
    const QDateTime time = QDateTime::fromString(QString::fromStdWString(file.fileSavedTime()),
                                                 QStringLiteral("yyyyMMddThhmmss"));
    const QString form = QString::fromStdWString(localized("RecoveryTimeForm", "hh:mm AP, MMMM d, yyyy"));
    return QLocale().toString(time, form).toStdWString();
}

std::wstring RecoveryFiles::rowOf(const Vs::AutoSavedFileInfo& file)
{
    const std::wstring row =
        file.isCloudFile()
            ? localizedFormat("RecoveryCloudFileRow", "%1%: Auto-saved  on the Cloud on %2%.",
                              file.fileName(), timeOf(file))
            : localizedFormat("RecoveryFileRow", "%1%: Auto-saved on %2%.", file.fileName(), timeOf(file));
    return file.isOlder()
               ? row + L' ' +
                     localized("RecoveryFileOlder", "The last file is damaged; this is the one before.")
               : row;
}

std::wstring RecoveryFiles::openLine(const std::wstring& path)
{
    const Vs::TextCommandResult opened =
        Vs::TextCommandMgr::get()->executeCommandWithoutOutput(L"Document.Open " + inQuotes(path));
    return opened.first == 0 ? std::wstring() : opened.second;
}

bool RecoveryFiles::open(const Vs::AutoSavedFileInfo& file)
{
    const std::wstring path = placeOf(file);
    const std::wstring& source = file.oriSourceFile();
    if (path.empty())
        return false;
    if (const std::wstring reason = openLine(path); !reason.empty())
        Application::get()->inform(reason);
    std::wstring followUp = L"Document.UpdateRootComponentName";
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    if (documents->documents() == 0)
        return false;
    Vs::Document* newest = documents->document(documents->documents() - 1);
    // Where the file wasn't opened it is kept, and the newest document is another one.
    if (!letGo(file))
        return false;
    if (file.isCloudFile()) {
        newest->displayName(file.fileName());
    } else if (!exists(source)) {
        newest->clearPath();
        newest->displayName(file.fileName());
    } else {
        newest->path(source);
        followUp += L' ' + inQuotes(source);
    }
    AutoSaving::replaySteps(file.autoSavedFile(), newest);
    showInOpenList();
    std::ignore = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(followUp);
    return true;
}

bool RecoveryFiles::saveAs(const Vs::AutoSavedFileInfo& file)
{
    const std::wstring path = placeOf(file);
    if (path.empty())
        return false;
    std::wstring name = withoutSuffix(path), filter, extension;
    if (const Vs::DocumentType* type = Vs::DocumentMgr::get()->documentType(file.docIdentifier())) {
        extension = type->extension();
        filter = type->name() + L" (*" + extension + L")";
    }
    if (!FileDialog::getFilenameForSaveAs(filter, localized("SaveRecoveryFileAs", "Save Recovery File As"),
                                          name, {}))
        return false;
    if (name.find(L'.') == std::wstring::npos)
        name += extension;
    if (!Vs::AutoSaveController::get()->saveRecoveryFileAs(path, name))
        return false;
    const size_t steps = Vs::AutoSaveController::get()->stepsBehind(file.autoSavedFile());
    if (steps == 0)
        return letGo(file);
    Application::get()->inform(localizedFormat("RecoveryCopyLacksSteps",
                                               "The copy lacks the last steps of a script (%1%). They come "
                                               "back when the recovery file is opened, which is "
                                               "kept.",
                                               steps));
    return false;
}

void RecoveryFiles::remove(const Vs::AutoSavedFileInfo& file)
{
    Vs::AutoSaveController::get()->deleteARecoveryFile(file.autoSavedFile(), Reason::Unwanted);
}

} // namespace Vu::Commands
