#include "UI/Base/Window/CanvasMenu.h"

#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/Window/ContextMenu.h"
#include "UI/Base/Window/RestingCommand.h"

#include <QMenu>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace Vu {
namespace {

bool isThere(const GraphicsCanvas* canvas)
{
    const std::vector<GraphicsCanvas*>& all = GraphicsCanvas::existingCanvases();
    return std::find(all.begin(), all.end(), canvas) != all.end();
}

/// Whether the one is a component that has the other in it.
bool holds(const Vs::Selection& whole, const Vs::Selection& part)
{
    const auto* component = Vs::cast<Vs::LogicalSelection>(&whole);
    const auto* object = Vs::cast<Vs::LogicalSelection>(&part);
    return component && object && component->path().leaf == Vs::ObjectPath::Leaf::Component &&
           (object->componentId() + '/').starts_with(component->componentId() + '/');
}

/// Of several things that are selected, each has the menu of them all, and so has what is in them.
void selectPointed(Vs::SelectionMgr& manager)
{
    const auto pointed = manager.highlightSet().selections();
    const auto& selected = manager.selectionSet().selections();
    const auto isSelected = [&](const auto& each) {
        return std::any_of(selected.begin(), selected.end(), [&](const auto& other) {
            return other->isEqualTo(*each) || holds(*other, *each);
        });
    };
    if (!std::all_of(pointed.begin(), pointed.end(), isSelected))
        manager.selectionSet().replace(pointed);
}

} // namespace

CanvasMenu::CanvasMenu(QWidget* window) : QObject(window), m_window(window)
{
    MouseEventSource::get()->subscribe(this);
}

CanvasMenu::~CanvasMenu()
{
    MouseEventSource::get()->unsubscribe(this);
}

void CanvasMenu::mouseDown(MouseEvent* event)
{
    const QWidget* widget = event->canvas() ? event->canvas()->existingWidget() : nullptr;
    m_pressed = event->button() == kRightButton && widget && widget->window() == m_window;
}

// Behind the event, which also ends the camera's command that the press has started.
void CanvasMenu::mouseUp(MouseEvent* event)
{
    if (event->button() == kRightButton && std::exchange(m_pressed, false))
        QTimer::singleShot(
            0, this, [this, canvas = event->canvas(), place = event->position()] { open(canvas, place); });
}

void CanvasMenu::open(GraphicsCanvas* canvas, const Vs::Point2& place)
{
    Vs::SelectionMgr* manager = ActiveAssetUtils::selectionManager();
    if (!manager || !isThere(canvas) || !canvas->existingWidget() || !commandRests())
        return;
    // What lies there lights up again, which the camera's command has put out.
    MouseEvent move(canvas, {kNoMouseButton, kNoModifier, double(place.x), double(place.y), 0});
    MouseEventSource::get()->fireMouseMove(&move);
    selectPointed(*manager);
    auto* menu = new QMenu(m_window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addContextCommands(*menu, MarkingMenuEventSource::ESource::Canvas);
    if (menu->isEmpty())
        delete menu;
    else
        menu->popup(canvas->existingWidget()->mapToGlobal(QPoint(place.x, place.y)));
}

} // namespace Vu
