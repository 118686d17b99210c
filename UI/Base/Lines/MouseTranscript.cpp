// Events of the mouse as lines of a transcript: written by MouseEventSource, played by the area "Mouse". A
// place is told from the middle of the view to the right and downwards, in parts of what its camera is to
// show, so that a line finds the same place of the model in a canvas of another size.

#include "Server/Base/NumberText.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/TranscriptTrigger.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseEvents.h"

#include <algorithm>

namespace Vu {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Mouse";

struct OperationName
{
    MouseEventSource::Operation operation;
    const wchar_t* name;
};
constexpr OperationName kOperations[] = {{&MouseEventSource::fireMouseDown, L"Down"},
                                         {&MouseEventSource::fireMouseUp, L"Up"},
                                         {&MouseEventSource::fireMouseMove, L"Move"}};

struct ButtonName
{
    int button;
    const wchar_t* name;
};
constexpr ButtonName kButtons[] = {
    {kNoMouseButton, L"None"}, {kLeftButton, L"Left"}, {kRightButton, L"Right"}, {kMiddleButton, L"Middle"}};

struct ModifierName
{
    unsigned modifier;
    const wchar_t* name;
};
constexpr ModifierName kModifiers[] = {
    {kShiftModifier, L"Shift"}, {kControlModifier, L"Control"}, {kAltModifier, L"Alt"}};

/// Logical pixels for the whole of what the camera is to show.
double unitOf(const GraphicsCanvas& canvas)
{
    const GraphicsView* view = canvas.view();
    const Vs::Scene::ViewFragment* fragment = view ? view->modelFragment() : nullptr;
    const double width = fragment ? fragment->camera()->extentsWidth() : 1;
    const double height = fragment ? fragment->camera()->extentsHeight() : 1;
    if (!(width > 0) || !(height > 0))
        return std::min(canvas.width(), canvas.height());
    return std::min(canvas.width() / width, canvas.height() / height) * std::max(width, height);
}

std::vector<GraphicsCanvas*> canvases()
{
    std::vector<GraphicsCanvas*> all;
    GraphicsCanvas::allCanvases(all);
    return all;
}

std::wstring lineOf(const wchar_t* name, const MouseEvent& event)
{
    const GraphicsCanvas& canvas = *event.canvas();
    const std::vector<GraphicsCanvas*> all = canvases();
    const auto number = std::find(all.begin(), all.end(), &canvas) - all.begin() + 1;
    const auto button = std::find_if(std::begin(kButtons), std::end(kButtons),
                                     [&](const ButtonName& each) { return each.button == event.button(); });
    const double unit = unitOf(canvas);
    std::wstring line = std::wstring(kArea) + L'.' + name;
    line += L' ' + Vs::numberText((event.x() - canvas.width() / 2.0) / unit);
    line += L' ' + Vs::numberText((event.y() - canvas.height() / 2.0) / unit);
    line += L' ' + std::wstring(button == std::end(kButtons) ? kButtons->name : button->name);
    line += L' ' + std::to_wstring(number);
    for (const ModifierName& each : kModifiers)
        if (event.modifierMask() & each.modifier)
            line += std::wstring(L" /") + each.name;
    return line;
}

class MouseArea : public Vs::PythonEntry<MouseArea, Vs::TextCommandSubjectArea>
{
public:
    MouseArea() : PythonEntry(kArea, L"Events of the mouse in a view, as transcripts record them", true) {}
};

/// Sends an event as the canvas does.
template <const OperationName& kOperation>
class TextCmdMouse : public Vs::PythonEntry<TextCmdMouse<kOperation>, Vs::TextCommand>
{
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
        const bool hasPlace = parameters.parameters() >= 2;
        const auto x = hasPlace ? Vs::readNumber<double>(parameters[0]) : std::nullopt;
        const auto y = hasPlace ? Vs::readNumber<double>(parameters[1]) : std::nullopt;
        if (!x || !y)
            return {1, localized("MouseNeedsPlace", "A place in the view is missing: two numbers.")};
        if (parameters.parameters() > 2 && !readButton(parameters[2], data.button))
            return {1, localizedFormat("MouseNoButton",
                                       "\"%1%\" is no button of the mouse; there are Left, Right, Middle "
                                       "and None.",
                                       parameters[2])};
        GraphicsCanvas* canvas = MouseEventSource::get()->canvas();
        if (parameters.parameters() > 3)
            canvas = canvasOfNumber(parameters[3]);
        if (!canvas)
            return {1, localized("MouseNoCanvas", "There is no such view in the window.")};
        for (const ModifierName& each : kModifiers)
            data.modifiers |= parameters.hasFlag(each.name) ? each.modifier : 0;
        const double unit = unitOf(*canvas);
        data.x = canvas->width() / 2.0 + *x * unit;
        data.y = canvas->height() / 2.0 + *y * unit;
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
    static GraphicsCanvas* canvasOfNumber(const std::wstring& text)
    {
        const std::vector<GraphicsCanvas*> all = canvases();
        const size_t number = Vs::readNumber<size_t>(text).value_or(0);
        return number >= 1 && number <= all.size() ? all[number - 1] : nullptr;
    }
};

const MouseArea kMouseArea;
TextCmdMouse<kOperations[0]> kDown;
TextCmdMouse<kOperations[1]> kUp;
TextCmdMouse<kOperations[2]> kMove;

} // namespace

void MouseEventSource::transcriptSubscribe(Operation operation)
{
    transcriptUnsubscribe(operation);
    m_recorded.push_back(operation);
}

void MouseEventSource::transcriptUnsubscribe(Operation operation)
{
    std::erase(m_recorded, operation);
}

bool MouseEventSource::revalidateTranscriptRecordStatus() const
{
    return Vs::TranscriptMgr::get()->recording();
}

// Before the sites are told, so that the line stands above those of the commands that the event runs.
void MouseEventSource::record(Operation operation, const MouseEvent& event)
{
    if (!revalidateTranscriptRecordStatus()) {
        m_recorded.clear();
        m_recordedButtons = kNoMouseButton;
        return;
    }
    const bool up = operation == &MouseEventSource::fireMouseUp;
    // A press begins a command that takes the release; without it, a replay would hold the button for ever.
    const bool wanted = std::find(m_recorded.begin(), m_recorded.end(), operation) != m_recorded.end() ||
                        (up && (m_recordedButtons & event.button()));
    if (!event.canvas() || !wanted)
        return;
    if (operation == &MouseEventSource::fireMouseDown)
        m_recordedButtons |= event.button();
    else if (up)
        m_recordedButtons &= ~event.button();
    for (const OperationName& each : kOperations)
        if (each.operation == operation)
            Vs::writeTranscriptLine(lineOf(each.name, event));
}

} // namespace Vu
