#include "UI/Base/Window/DroppedFiles.h"

#include "Server/Base/UniqueString.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/ReplacingDocument.h"

namespace Vu {
namespace {

constexpr const wchar_t* kOpenCommand = L"OpenDocumentCommand";
constexpr const wchar_t* kHomeCommand = L"ManagementShellCommand";

/// Behind the event that dropped the files: a source that waits for the drop to end must not wait for a load.
void run(CommandDefinition* definition, const std::wstring& path)
{
    CommandContext context = CommandContext::activeContext();
    if (!path.empty())
        context.addArgument(Vs::UniqueString::find("DragAndDrop", true), path);
    CommandMgr::get()->executeLater(definition, context);
}

} // namespace

void openDroppedFiles(const std::vector<std::wstring>& paths)
{
    CommandDefinition* open = CommandDefinitionMgr::get()->findCommandDefinitionById(kOpenCommand);
    CommandDefinition* home = CommandDefinitionMgr::get()->findCommandDefinitionById(kHomeCommand);
    if (!open)
        return;
    // Behind the event that dropped the files: a source that waits for the drop to end must not wait for an
    // answer.
    Application::get()->deferredTasks()->post([open, home, paths] {
        if (paths.empty() || !ReplacingDocument::agreed(paths.front()))
            return;
        for (const std::wstring& path : paths) {
            // Opening replaces what shows. On the home screen nothing does, so that what was dropped first
            // stays.
            if (home && path != paths.front())
                run(home, {});
            run(open, path);
        }
    });
}

} // namespace Vu
