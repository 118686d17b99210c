#include "UI/Base/View/Private/MouseLine.h"

#include "Server/Base/NumberText.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"

#include <algorithm>

namespace Vu::MouseLine {

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

std::wstring lineOf(const wchar_t* operation, const MouseEvent& event)
{
    const GraphicsCanvas& canvas = *event.canvas();
    const std::vector<GraphicsCanvas*> all = canvases();
    const auto number = std::find(all.begin(), all.end(), &canvas) - all.begin() + 1;
    const auto button = std::find_if(std::begin(kButtons), std::end(kButtons),
                                     [&](const ButtonName& each) { return each.button == event.button(); });
    const double unit = unitOf(canvas);
    std::wstring line = std::wstring(kArea) + L'.' + operation;
    line += L' ' + Vs::numberText((event.x() - canvas.width() / 2.0) / unit);
    line += L' ' + Vs::numberText((event.y() - canvas.height() / 2.0) / unit);
    line += L' ' + std::wstring(button == std::end(kButtons) ? kButtons->name : button->name);
    line += L' ' + std::to_wstring(number);
    for (const ModifierName& each : kModifiers)
        if (event.modifierMask() & each.modifier)
            line += std::wstring(L" /") + each.name;
    return line;
}

} // namespace Vu::MouseLine
