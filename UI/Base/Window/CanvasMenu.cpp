#include "UI/Base/Window/CanvasMenu.h"

#include "Server/DataModel/Selection/SelectionFilter.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/Private/CanvasPicker.h"
#include "UI/Base/View/AutoCamViewFragment.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/Window/CommandMenu.h"
#include "UI/Base/Window/ContextMenu.h"
#include "UI/Base/Window/RestingCommand.h"
#include "UI/Base/Workspace/MenuBar.h"

#include <QMenu>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <utility>

namespace Vu {
namespace {

using Leaf = Vs::ObjectPath::Leaf;
using Selections = std::vector<Vs::StrongRef<Vs::Selection>>;

constexpr const wchar_t* kPropertiesCommand = L"ShowPropertiesCommand";

/// What can be clicked, and the name of its menu.
struct Kind
{
    Leaf leaf;
    const wchar_t* context;
    std::wstring (*title)(); ///< Of its menu within another's.
};

constexpr Kind kKinds[] = {
    {Leaf::Edge, L"OnEdge", [] { return localized("MenuOfEdge", "Edge"); }},
    {Leaf::Face, L"OnFace", [] { return localized("MenuOfFace", "Face"); }},
    {Leaf::Component, L"OnPart", [] { return localized("MenuOfPart", "Component"); }},
};

/// If all are of that kind; null for other kinds, and if there is nothing.
const Kind* kindOf(const Selections& selections)
{
    const auto isOf = [](const Kind& kind, const Vs::Selection& selection) {
        const auto* object = Vs::cast<Vs::LogicalSelection>(&selection);
        return object && (object->path().leaf == kind.leaf ||
                          (kind.leaf == Leaf::Component && object->path().isWhole()));
    };
    for (const Kind& kind : kKinds)
        if (!selections.empty() && std::all_of(selections.begin(), selections.end(),
                                               [&](const auto& each) { return isOf(kind, *each); }))
            return &kind;
    return nullptr;
}

class KindFilter : public Vs::Implements<KindFilter, Vs::SelectionFilter>
{
public:
    bool accepts(const Vs::Selection&) const override { return true; }
    bool mayAccept(Leaf leaf) const override
    {
        return std::any_of(std::begin(kKinds), std::end(kKinds),
                           [&](const Kind& kind) { return kind.leaf == leaf; });
    }
};

/// The menu of another thing at the same place: while it is open, that thing is selected, and it stays
/// selected if one of the entries is chosen.
void addMenuAbout(const Kind& kind, const Vs::StrongRef<Vs::Selection>& object, QMenu& menu)
{
    auto* about =
        new CommandMenu(MenuBar::get()->context(kind.context), &menu, ECommandAccessPoint::ContextMenu);
    struct State
    {
        Selections before;
        bool chosen = false;
    };
    const auto state = std::make_shared<State>();
    const auto select = [](const Selections& selections) {
        if (Vs::SelectionSet* selected = ActiveAssetUtils::selectionSet())
            selected->replace(selections);
    };
    menu.addMenu(about);
    about->setTitle(QString::fromStdWString(kind.title()));
    // The commands are asked again whether they can run, now that this is selected.
    QObject::connect(about, &QMenu::aboutToShow, about, [=] {
        if (const Vs::SelectionSet* selected = ActiveAssetUtils::selectionSet())
            state->before = selected->selections();
        state->chosen = false;
        select({object});
        about->prepare();
    });
    QObject::connect(about, &QMenu::triggered, about, [state] { state->chosen = true; });
    // An entry is triggered after this.
    QObject::connect(about, &QMenu::aboutToHide, about, [=] {
        QTimer::singleShot(0, about, [=] {
            if (!state->chosen)
                select(state->before);
        });
    });
}

/// Of the things at that place, the first of each kind except the menu's own.
void addOtherThings(const MouseEvent& event, const Kind* present, QMenu& menu)
{
    const AssetSession* session = ActiveAssetUtils::assetSession();
    if (!session)
        return;
    const KindFilter filter;
    const Selections objects = objectsUnder(event, *session, &filter);
    for (const Kind& kind : kKinds) {
        const auto found = std::find_if(objects.begin(), objects.end(), [&](const auto& each) {
            const auto* object = Vs::cast<Vs::LogicalSelection>(each.get());
            return object && object->path().leaf == kind.leaf;
        });
        if (&kind != present && found != objects.end())
            addMenuAbout(kind, *found, menu);
    }
}

void addProperties(QMenu& menu)
{
    CommandContext context = CommandContext::activeContext();
    const CommandDefinition* properties =
        CommandDefinitionMgr::get()->findCommandDefinitionById(kPropertiesCommand);
    if (properties && properties->isAvailable(&context))
        addContextCommand(menu, *properties);
}

void popup(QMenu& menu, const GraphicsCanvas& canvas, const Vs::Point2& place)
{
    menu.setObjectName(QLatin1String(CanvasMenu::kName));
    menu.popup(canvas.existingWidget()->mapToGlobal(QPoint(place.x, place.y)));
}

bool isThere(const GraphicsCanvas* canvas)
{
    const std::vector<GraphicsCanvas*>& all = GraphicsCanvas::existingCanvases();
    return std::find(all.begin(), all.end(), canvas) != all.end();
}

/// Whether one is a component that contains the other.
bool holds(const Vs::Selection& whole, const Vs::Selection& part)
{
    const auto* component = Vs::cast<Vs::LogicalSelection>(&whole);
    const auto* object = Vs::cast<Vs::LogicalSelection>(&part);
    return component && object && component->path().leaf == Vs::ObjectPath::Leaf::Component &&
           (object->componentId() + '/').starts_with(component->componentId() + '/');
}

/// If several things are selected, each of them, and whatever they contain, gets the menu of them all.
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
    m_subscriptions.add(MouseEventSource::get(), this);
    AutoCamViewFragment::onRightClick(this, [this](GraphicsCanvas* canvas, const Vs::Point2& place) {
        const QWidget* widget = canvas ? canvas->existingWidget() : nullptr;
        if (widget && widget->window() == m_window)
            QTimer::singleShot(0, this, [=, this] { openOnCube(canvas, place); });
    });
}

CanvasMenu::~CanvasMenu()
{
    AutoCamViewFragment::onRightClick(this, nullptr);
    m_subscriptions.clear();
}

void CanvasMenu::mouseDown(MouseEvent* event)
{
    const QWidget* widget = event->canvas() ? event->canvas()->existingWidget() : nullptr;
    m_pressed = event->button() == kRightButton && widget && widget->window() == m_window;
}

// After the event, which also ends the camera command that the press started.
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
    // Highlights what lies there again, since the camera command cleared it.
    MouseEvent move(canvas, {kNoMouseButton, kNoModifier, double(place.x), double(place.y), 0});
    MouseEventSource::get()->fireMouseMove(&move);
    selectPointed(*manager);
    const bool beside = manager->highlightSet().empty();
    const Kind* kind = beside ? nullptr : kindOf(manager->selectionSet().selections());
    const std::wstring context = kind ? kind->context : beside ? L"OnNothing" : L"";
    auto* menu =
        new CommandMenu(MenuBar::get()->context(context), m_window, ECommandAccessPoint::ContextMenu);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->prepare();
    if (kind)
        addProperties(*menu);
    menu->addSeparator();
    addContextCommands(*menu, MarkingMenuEventSource::ESource::Canvas);
    if (!beside) {
        menu->addSeparator();
        addOtherThings(move, kind, *menu);
    }
    markLetters(*menu);
    if (menu->isEmpty())
        delete menu;
    else
        popup(*menu, *canvas, place);
}

void CanvasMenu::openOnCube(GraphicsCanvas* canvas, const Vs::Point2& place)
{
    if (!isThere(canvas) || !canvas->existingWidget())
        return;
    auto* menu =
        new CommandMenu(MenuBar::get()->context(L"OnCube"), m_window, ECommandAccessPoint::ContextMenu);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    popup(*menu, *canvas, place);
}

} // namespace Vu
