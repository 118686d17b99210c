#include "UI/Base/Window/DroppedFiles.h"

#include "Server/Base/FilledText.h"
#include "Server/Base/UniqueString.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/ReplacingDocument.h"

#include <boost/filesystem/operations.hpp>

namespace Vu {
namespace {

constexpr size_t kMany = 20;
constexpr const wchar_t* kOpenCommand = L"OpenDocumentCommand";
constexpr const wchar_t* kHomeCommand = L"ManagementShellCommand";

/// After the event that dropped the files: a source that waits for the drop to end must not wait for a load.
void run(CommandDefinition* definition, const std::wstring& path)
{
    CommandContext context = CommandContext::activeContext();
    if (!path.empty())
        context.addArgument(Vs::UniqueString::find("DragAndDrop", true), path);
    CommandMgr::get()->executeLater(definition, context);
}

/// Without folders, which are reported.
std::vector<std::wstring> filesOf(const std::vector<std::wstring>& paths)
{
    std::vector<std::wstring> files;
    for (const std::wstring& path : paths) {
        boost::system::error_code error;
        if (boost::filesystem::is_directory(path, error))
            Application::get()->inform(Vs::filledText(
                localized("DropFolder", "\"%1%\" is a folder. Drop the files that are in it."), path));
        else
            files.push_back(path);
    }
    return files;
}

bool areMeant(size_t files)
{
    if (files <= kMany)
        return true;
    MessageBox box(Vs::filledText(
        localized("DropMany", "%1% files were dropped, and each of them will stay open. Open them all?"),
        files));
    box.icon(kQuestionIcon);
    box.addButton(kYesButton);
    box.addButton(kNoButton, true);
    return box.show() == 0;
}

void openAll(CommandDefinition* open, CommandDefinition* home, const std::vector<std::wstring>& paths)
{
    if (paths.empty() || !areMeant(paths.size()) || !ReplacingDocument::agreed(paths.front()))
        return;
    for (const std::wstring& path : paths) {
        // Opening replaces the document shown. On the home screen there is none, so the file dropped first
        // stays.
        if (home && path != paths.front())
            run(home, {});
        run(open, path);
    }
}

} // namespace

void openDroppedFiles(const std::vector<std::wstring>& paths)
{
    CommandDefinition* open = CommandDefinitionMgr::get()->findCommandDefinitionById(kOpenCommand);
    CommandDefinition* home = CommandDefinitionMgr::get()->findCommandDefinitionById(kHomeCommand);
    if (!open)
        return;
    // After the event that dropped the files: a source that waits for the drop to end must not wait for an
    // answer.
    Application::get()->deferredTasks()->post([open, home, paths] { openAll(open, home, filesOf(paths)); });
}

} // namespace Vu
