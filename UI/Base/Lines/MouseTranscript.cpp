#include "Server/Base/NumberText.h"
#include "Server/Base/TextCommand.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/Private/MouseLine.h"

namespace Vu {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;
using namespace MouseLine;

constexpr AreaRow kMouseAreaRow = {kArea, L"Events of the mouse in a view, as transcripts record them", true};

/// Sends an event as the canvas does.
template <size_t kIndex>
class TextCmdMouse : public Vs::PythonEntry<TextCmdMouse<kIndex>, Vs::TextCommand>
{
    static constexpr const OperationName& kOperation = kOperations[kIndex];

public:
    TextCmdMouse()
        : Vs::PythonEntry<TextCmdMouse, Vs::TextCommand>(
              kArea, kOperation.name,
              L"<x> <y> [None|Left|Right|Middle] [<canvas>] [/Shift] [/Control] [/Alt] An event of the mouse "
              L"at a place from the middle of the view, in parts of what the camera is to show.",
              "%f%f%s%d", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        MouseEvent::Data data;
        if (parameters.parameters() < 2)
            return {1, localized("MouseNeedsPlace", "A place in the view is missing: two numbers.")};
        if (parameters.parameters() > 2 && !readButton(parameters[2], data.button))
            return {1, localizedFormat("MouseNoButton",
                                       "\"%1%\" is not a button of the mouse; there are Left, Right, Middle "
                                       "and None.",
                                       parameters[2])};
        GraphicsCanvas* canvas = MouseEventSource::get()->canvas();
        if (parameters.parameters() > 3)
            canvas = canvasOfNumber(parameters.integer<size_t>(3));
        if (!canvas)
            return {1, localized("MouseNoCanvas", "There is no such view in the window.")};
        // A document opened just now is framed first, since it was framed when the recorded user pointed
        // there.
        if (GraphicsView* view = canvas->view()) {
            view->settleLayout();
            view->settleFit();
        }
        for (const ModifierName& each : kModifiers)
            data.modifiers |= parameters.hasFlag(each.name) ? each.modifier : 0;
        const double unit = unitOf(*canvas);
        data.x = canvas->width() / 2.0 + parameters.real(0) * unit;
        data.y = canvas->height() / 2.0 + parameters.real(1) * unit;
        MouseEvent event(canvas, data);
        (MouseEventSource::get()->*kOperation.operation)(&event);
        return {0, {}};
    }

private:
    static bool readButton(const std::wstring& name, int& button)
    {
        for (const ButtonName& each : kButtons)
            if (name == each.name) {
                button = each.button;
                return true;
            }
        return false;
    }
    static GraphicsCanvas* canvasOfNumber(size_t number)
    {
        const std::vector<GraphicsCanvas*> all = canvases();
        return number >= 1 && number <= all.size() ? all[number - 1] : nullptr;
    }
};

const SubjectArea<kMouseAreaRow> kMouseArea;
TextCmdMouse<0> kDown;
TextCmdMouse<1> kUp;
TextCmdMouse<2> kMove;

} // namespace

} // namespace Vu
