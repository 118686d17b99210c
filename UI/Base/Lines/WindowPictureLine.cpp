// A picture of the whole window: for a manual, or to go with the findings of a test in a window.

#include "Server/Base/Status.h"
#include "Server/Base/TextCommand.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Private/PictureFile.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

namespace Vu {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

class TextCmdSaveWindow : public Vs::PythonEntry<TextCmdSaveWindow, Vs::TextCommand>
{
public:
    TextCmdSaveWindow()
        : PythonEntry(L"View", L"SaveWindow",
                      L"<file> Writes a PNG picture of the program's whole window, with its panels and "
                      L"without the desktop's frame.",
                      "%s", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() != 1)
            return {1, L"Usage: View.SaveWindow " + help()};
        Vs::Scene::Image image;
        WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
        if (!window || !window->picture(image))
            return {1, localized("SaveWindowNone", "There is no window to take a picture of.")};
        Vs::Status status;
        if (!writePicture(image, parameters[0], {}, status))
            return {1, status.toString()};
        return {0, {}};
    }
};

TextCmdSaveWindow theSaveWindow;

} // namespace
} // namespace Vu
