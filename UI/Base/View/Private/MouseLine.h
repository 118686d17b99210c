#pragma once

// Events of the mouse as lines of a transcript: written by MouseEventSource, played by the area "Mouse". A
// place is told from the middle of the view to the right and downwards, in parts of what its camera is to
// show, so that a line finds the same place of the model in a canvas of another size.

#include "UI/Base/View/MouseEvents.h"

#include <string>
#include <vector>

namespace Vu::MouseLine {

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
double unitOf(const GraphicsCanvas& canvas);

/// In the order in which lines count them.
std::vector<GraphicsCanvas*> canvases();

/// The line for an event of a canvas, which must be there.
std::wstring lineOf(const wchar_t* operation, const MouseEvent& event);

} // namespace Vu::MouseLine
