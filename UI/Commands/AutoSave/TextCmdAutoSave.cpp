#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "Server/DataModel/Recovery/AutoSaveOptionsGroup.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Session/AutoSaving.h"
#include "UI/Commands/AutoSave/NotifyAutoSaveFilesCmd.h"
#include "UI/Commands/AutoSave/RecoveryFiles.h"
#include "UI/Commands/Localized.h"

#include <vector>

namespace Vu::Commands {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

// clang-format off
constexpr const wchar_t* kArea = L"AutoSave";
constexpr DirectTextRow kNotify  = {kArea, L"NotifyAutoSavedFiles", L"Notify exist automatically saved files.", "", false, false};
constexpr DirectTextRow kRecover = {kArea, L"Recovery", L"Do recovery process of auto-saved files"};
// clang-format on

constexpr int kOffer = 3;

class TextCmdAutoSaveNotifyAutoSavedFiles : public DirectTextCommand<kNotify>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        constexpr const wchar_t* kNone = L"No recover files.";
        if (!Vs::AutoSaveOptionsGroup::get()->performAutoSave())
            return {0, kNone};
        const std::vector<Vs::AutoSavedFileInfo> files = RecoveryFiles::all();
        if (files.empty())
            return {0, kNone};
        std::wstring names;
        for (const Vs::AutoSavedFileInfo& file : files)
            names += (names.empty() ? L"" : L", ") + file.fileName();
        Vs::NotificationCenter::get()->sendNotification(
            localized("FileRecovery", "File Recovery"), names,
            localized("RecoverFilesClick", "Click here to view and recover files."), {},
            NotifyAutoSaveFilesCmdDef::notificationClientID(), Vs::NotificationType::makeByType(kOffer),
            nullptr);
        return {0, L"Successfully Notify."};
    }
};

/// Opens a recovery file and gives the document the name and the place of what was being worked on.
void recover(const Vs::AutoSavedFileInfo& file, TextCommandResult& result)
{
    if (const std::wstring reason = RecoveryFiles::openLine(file.autoSavedFile()); !reason.empty())
        result = {1, reason};
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    if (documents->documents() == 0)
        return;
    Vs::Document* newest = documents->document(documents->documents() - 1);
    // Where the file wasn't opened it is kept, and the newest document is another one.
    if (!Vs::AutoSaveController::get()->deleteARecoveryFile(file.autoSavedFile()))
        return;
    if (file.oriSourceFile().empty()) {
        newest->displayName(file.fileName());
        newest->clearPath();
    } else {
        newest->path(file.oriSourceFile());
    }
    AutoSaving::replaySteps(file.autoSavedFile(), newest);
}

class TextCmdAutoSaveRecovery : public DirectTextCommand<kRecover>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        const std::vector<Vs::AutoSavedFileInfo> files = RecoveryFiles::all();
        if (files.empty())
            return {0, {}};
        TextCommandResult result{0, L"Do recovery process of auto-saved files successfully"};
        for (const Vs::AutoSavedFileInfo& file : files)
            recover(file, result);
        return result;
    }
};

TextCmdAutoSaveNotifyAutoSavedFiles theNotify;
TextCmdAutoSaveRecovery theRecovery;

} // namespace
} // namespace Vu::Commands
