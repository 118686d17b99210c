#include "UI/Base/Window/PointerKeys.h"

#include "Server/DataModel/Asset.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseOverlay.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Window/SelectionText.h"

#include <QKeyEvent>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace Vu {
namespace {

/// The distance between sampled places, in pixels, so that no edge falls between them (PickWish::tolerance);
/// farther from the start the spacing may grow by so much per pixel of distance.
constexpr double kStep = 7, kWidening = 0.04;
/// Deviation sideways from the direction counts as so much extra distance.
constexpr double kAside = 1.5;

struct Direction
{
    double right = 0, down = 0;
};

std::optional<Direction> directionOf(int arrow)
{
    switch (arrow) {
    case Qt::Key_Left:
        return Direction{-1, 0};
    case Qt::Key_Right:
        return Direction{1, 0};
    case Qt::Key_Up:
        return Direction{0, -1};
    case Qt::Key_Down:
        return Direction{0, 1};
    default:
        return std::nullopt;
    }
}

struct Offset
{
    double x, y, cost;
};

/// Places in the quadrant that a direction leads into, or all around without one, up to so far from its
/// start; the nearest first.
std::vector<Offset> offsets(const Direction& way, double farthest)
{
    const bool isAround = way.right == 0 && way.down == 0;
    std::vector<Offset> all;
    if (isAround)
        all.push_back({0, 0, 0});
    for (double ring = kStep; ring <= farthest; ring += std::max(kStep, kWidening * ring)) {
        const double step = std::max(kStep, kWidening * ring);
        const double half = isAround ? 4 * ring : ring;
        for (double along = -half; along <= half; along += step) {
            if (isAround) {
                const double angle = along / ring * (std::numbers::pi / 4);
                all.push_back({ring * std::cos(angle), ring * std::sin(angle), ring});
            } else {
                all.push_back({way.right * ring - way.down * along, way.down * ring + way.right * along,
                               ring + kAside * std::abs(along)});
            }
        }
    }
    std::ranges::stable_sort(all, {}, &Offset::cost);
    return all;
}

/// Whether something other than the scene takes the mouse there.
bool isCovered(const GraphicsCanvas& canvas, const std::vector<CanvasRect>& covered, MouseEvent& event)
{
    MouseOverlay* overlay = canvas.view() ? canvas.view()->mouseOverlay() : nullptr;
    return std::ranges::any_of(covered,
                               [&](const CanvasRect& rect) {
                                   return event.x() >= rect.left && event.x() < rect.right &&
                                          event.y() >= rect.top && event.y() < rect.bottom;
                               }) ||
           (overlay && overlay->takesMouse(&event));
}

/// At rest, the mouse may take an edge of a component at its silhouette, where another one lies behind; keys
/// go from component to component, and within selected ones.
bool isStop(const Vs::Selection& thing, const SelectionCommandInput& input)
{
    const auto* object = Vs::cast<Vs::LogicalSelection>(&thing);
    if (!object || !input.replacesCurrentSelection() ||
        object->path().leaf == Vs::ObjectPath::Leaf::Component)
        return true;
    return std::ranges::any_of(input.selectionSet().selections(), [&](const auto& each) {
        const auto* selected = Vs::cast<Vs::LogicalSelection>(each.get());
        return selected && selected->componentId() == object->componentId();
    });
}

bool isInside(const GraphicsCanvas& canvas, double x, double y)
{
    return x >= 0 && y >= 0 && x < canvas.width() && y < canvas.height();
}

} // namespace

PointerKeys::PointerKeys(std::function<void(const QString&)> tell) : m_tell(std::move(tell))
{
    m_subscriptions.add(MouseEventSource::get(), this);
}

// Including those created by the keys.
void PointerKeys::mouseMove(MouseEvent* event)
{
    m_last = Place{event->canvas(), event->x(), event->y()};
}

std::optional<PointerKeys::Place> PointerKeys::placeIn(GraphicsCanvas& canvas) const
{
    return m_last && m_last->canvas == &canvas && isInside(canvas, m_last->x, m_last->y) ? m_last
                                                                                         : std::nullopt;
}

std::optional<PointerKeys::Place>
PointerKeys::next(GraphicsCanvas& canvas, const SelectionCommandInput& input, double right, double down) const
{
    const std::optional<Place> last = placeIn(canvas);
    const auto thingAt = [&](double x, double y) { return input.under({&canvas, {.x = x, .y = y}}); };
    const Vs::StrongRef<Vs::Selection> now = last ? thingAt(last->x, last->y) : nullptr;
    const double x = last ? last->x : canvas.width() / 2.0, y = last ? last->y : canvas.height() / 2.0;
    const std::vector<CanvasRect> covered = canvas.covered();
    const double farthest = std::max(canvas.width(), canvas.height());
    for (const Offset& offset : offsets(last ? Direction{right, down} : Direction(), farthest)) {
        const Place place{&canvas, std::round(x + offset.x), std::round(y + offset.y)};
        MouseEvent event(&canvas, {.x = place.x, .y = place.y});
        if (!isInside(canvas, place.x, place.y) || isCovered(canvas, covered, event))
            continue;
        if (const auto found = thingAt(place.x, place.y);
            found && isStop(*found, input) && (!now || !found->isEqualTo(*now)))
            return place;
    }
    return std::nullopt;
}

bool PointerKeys::point(int arrow)
{
    const std::optional<Direction> way = directionOf(arrow);
    GraphicsCanvas* canvas = SplitViewMgr::get()->activeCanvas();
    const SelectionCommandInput* input =
        way && canvas ? SelectionCommandInput::currentOf(CommandBase::getActiveCommand()) : nullptr;
    if (!input)
        return false;
    if (const std::optional<Place> place = next(*canvas, *input, way->right, way->down))
        go(*place);
    else
        m_tell(QString::fromStdWString(
            localized("PointerNothing", "There is nothing to pick in that direction.")));
    return true;
}

void PointerKeys::go(const Place& place)
{
    MouseEvent move(place.canvas, {.x = place.x, .y = place.y});
    MouseEventSource::get()->fireMouseMove(&move);
    // The command may have reacted by removing its preview and ending, or something else may lie there.
    const CommandBase* command = CommandBase::getActiveCommand();
    const SelectionCommandInput* input = SelectionCommandInput::currentOf(command);
    const Vs::StrongRef<Vs::Selection> thing = input ? input->under(move) : nullptr;
    const auto* object = Vs::cast<Vs::LogicalSelection>(thing.get());
    if (object && command->assetSession())
        m_tell(QString::fromStdWString(
            localizedFormat("PointerAt", "%1%: Space selects it, Shift+Space adds it to the selection.",
                            selectionText(*object, *command->assetSession()->asset()))));
}

bool PointerKeys::click(const QKeyEvent& event)
{
    GraphicsCanvas* canvas = SplitViewMgr::get()->activeCanvas();
    std::optional<Place> place = canvas ? placeIn(*canvas) : std::nullopt;
    const bool isMenu = event.key() == Qt::Key_Menu;
    if (isMenu && canvas && !place)
        place = Place{canvas, canvas->width() / 2.0, canvas->height() / 2.0};
    if ((event.key() != Qt::Key_Space && !isMenu) || !place ||
        !SelectionCommandInput::currentOf(CommandBase::getActiveCommand()))
        return false;
    constexpr unsigned kKnown = kShiftModifier | kControlModifier;
    const MouseEvent::Data data{.button = isMenu ? kRightButton : kLeftButton,
                                .modifiers = static_cast<unsigned>(event.modifiers()) & kKnown,
                                .x = place->x,
                                .y = place->y};
    MouseEvent down(canvas, data), up(canvas, data);
    MouseEventSource::get()->fireMouseDown(&down);
    MouseEventSource::get()->fireMouseUp(&up);
    return true;
}

} // namespace Vu
