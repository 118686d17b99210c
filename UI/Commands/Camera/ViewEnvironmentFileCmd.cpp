#include "UI/Commands/Camera/ViewEnvironmentFileCmd.h"

#include "Server/Base/Exception.h"
#include "Server/Scene/EnvironmentManager.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ViewEnvironmentFileCmdDef::kRow = {
    .key = L"ViewEnvironmentFileCommand", .title = "Environment from File...", .groups = {&CommandGroup::VisualizationGroup, &CommandGroup::BaseGroup}, .arguments = {L"Path"}};
// clang-format on

ViewEnvironmentFileCmd::ViewEnvironmentFileCmd(ViewEnvironmentFileCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void ViewEnvironmentFileCmd::onExecute(Vs::Status& status)
{
    std::wstring path;
    if (!FileDialog::getTranscriptableFilename(localized("PanoramaFilesFilter", "Panoramas (*.hdr)"), path,
                                               commandContext(), true, L"")) {
        FileDialog::tellMissing(status);
        return;
    }
    auto* manager = Vs::Scene::EnvironmentManager::getEnvManager();
    try {
        manager->activeEnvironmentID(manager->read(path));
    } catch (const Vs::Exception& error) {
        status.addError(error.message());
        return;
    }
    WorkspaceWindow::invalidate(kInvalidateAll);
    CommandEventSource::get()->fireCommandAvailabilitiesChanged();
}

} // namespace Vu::Commands
