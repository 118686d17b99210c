#pragma once

#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "Server/DataModel/Recovery/AutoSaveOptionsGroup.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"

namespace CommandsTests {

/// Files that this run closed without asking are offered like those of others.
class WithAutoSave : public WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        Vs::AutoSaveController::get()->start();
    }
    void TearDown() override
    {
        Vs::AutoSaveOptionsGroup::get()->performAutoSave(true);
        for (Vs::Notification* notification : Vs::NotificationCenter::get()->notifications())
            Vs::NotificationCenter::get()->remove(notification);
        answerBoxes(1); // Don't save
        run(L"Document.CloseAll");
        for (const Vs::AutoSavedFileInfo& file : files())
            Vs::AutoSaveController::get()->deleteARecoveryFile(file.autoSavedFile(),
                                                               Vs::AutoSaveController::Reason::Unwanted);
        Vs::AutoSaveController::get()->end();
        WithProgram::TearDown();
    }

    static std::vector<Vs::AutoSavedFileInfo> files()
    {
        std::vector<Vs::AutoSavedFileInfo> found;
        Vs::AutoSaveController::get()->getAllRecoverFiles(found);
        return found;
    }
    static void closeUnsaved(const std::wstring& name)
    {
        answer(L"Design.New");
        answer(L"Design.Box 1 2 3");
        answer(L"Document.Rename " + name);
        Vu::Commands::closeSilently(Vu::SessionMgr::get()->activeDocumentSession());
        Vu::Application::get()->flushDeferredTasks();
    }
};

} // namespace CommandsTests
