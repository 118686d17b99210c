#include "UI/Base/Window/AreaStage.h"

#include "UI/Base/Window/CollapseBar.h"
#include "UI/Base/Window/PanelFrame.h"
#include "UI/Base/Window/ToolbarStrip.h"
#include "UI/Base/Window/TourOverlay.h"
#include "UI/Base/Workspace/PaletteCollapseHelper.h"

#include <QGridLayout>
#include <QScrollArea>

#include <algorithm>

namespace Vu {
namespace {

constexpr int kFloatingWidth = 280;
constexpr int kFloatingHeight = 360;

struct BarRow
{
    EPlacement side;
    int row, column, columns;
};

constexpr BarRow kBars[] = {
    {EPlacement::Top, 0, 0, 3},
    {EPlacement::Left, 1, 0, 1},
    {EPlacement::Right, 1, 2, 1},
    {EPlacement::Bottom, 2, 0, 3},
};

bool isOf(const Area& area, const char* contents)
{
    return area.contents() && area.contents()->text() == contents;
}

void collectNumbers(const Area& area, std::set<unsigned long>& numbers)
{
    numbers.insert(area.number());
    for (const auto& child : area.children())
        collectNumbers(*child, numbers);
}

/// A new widget in a visible window is hidden at first; contents with nothing to show hide themselves.
void showUnlessHidden(QWidget* widget)
{
    if (!widget->testAttribute(Qt::WA_WState_ExplicitShowHide))
        widget->show();
}

QScrollArea* scrollPage(QWidget* parent)
{
    auto* page = new QScrollArea(parent);
    page->setObjectName(QStringLiteral("scrollPage"));
    page->setFrameShape(QFrame::NoFrame);
    page->setWidgetResizable(true);
    page->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    page->setFocusPolicy(Qt::NoFocus);
    return page;
}

} // namespace

AreaStage::AreaStage(Makers makers, QWidget* parent)
    : QWidget(parent), m_makers(std::move(makers)), m_limbo(new QWidget(this))
{
    m_limbo->hide();
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    grid->setRowStretch(1, 1);
    grid->setColumnStretch(1, 1);
    for (const BarRow& bar : kBars) {
        const bool upright = bar.side == EPlacement::Left || bar.side == EPlacement::Right;
        CollapseBar* widget = m_bars[bar.side] = new CollapseBar(upright, this);
        grid->addWidget(widget, bar.row, bar.column, 1, bar.columns);
    }
}

AreaStage::~AreaStage()
{
    for (const QPointer<QWidget>& gone : m_gone)
        delete gone.data();
}

void AreaStage::show(Area* root, const std::vector<Area*>& others)
{
    // A widget that is reparented loses the keyboard focus.
    const QPointer<QWidget> focus = window()->focusWidget();
    std::set<unsigned long> shown, alive;
    for (const Area* other : others)
        collectNumbers(*other, alive);
    const QPointer<QWidget> before = m_top;
    m_top = nullptr;
    if (root) {
        collectNumbers(*root, shown);
        AreaFrame* frame = frameOf(*root, this);
        sync(*root, *frame);
        m_top = frame;
    }
    drop(shown, alive);
    if (m_top != before) {
        if (before)
            before->hide();
        if (m_top) {
            static_cast<QGridLayout*>(layout())->addWidget(m_top, 1, 1);
            m_top->show();
            m_top->lower();
        }
    }
    for (const auto& [side, bar] : m_bars)
        bar->areas(root ? PaletteCollapseHelper::getInstance()->palettes(*root, side) : std::vector<Area*>());
    if (focus && focus != window()->focusWidget() && isAncestorOf(focus))
        focus->setFocus();
}

bool AreaStage::sync(Area& area, AreaFrame& frame)
{
    std::vector<AreaFrame::Place> places;
    bool any = false;
    for (const auto& child : area.children()) {
        const bool wanted = child->visible() && !child->collapsed();
        const bool shows = child->children().empty() ? showLeaf(*child, wanted, frame, places)
                                                     : showFrame(*child, wanted, frame, places);
        any = any || shows;
    }
    frame.arrange(places);
    return any;
}

bool AreaStage::showLeaf(Area& area, bool wanted, AreaFrame& frame, std::vector<AreaFrame::Place>& places)
{
    Leaf* leaf = leafOf(area, wanted, &frame);
    if (!leaf)
        return false;
    const auto* strip = dynamic_cast<const ToolbarStrip*>(leaf->widget);
    const bool shows = wanted && !(strip && strip->isEmpty());
    const bool isPanel = leaf->outer != leaf->widget;
    put(area, leaf->outer, shows, !isPanel && area.contents() != Area::graphicsCanvas(), places);
    return shows;
}

bool AreaStage::showFrame(Area& area, bool wanted, AreaFrame& frame, std::vector<AreaFrame::Place>& places)
{
    if (!wanted && !m_containers.contains(area.number()))
        return false;
    AreaFrame* inner = frameOf(area, &frame);
    const bool shows = sync(area, *inner) && wanted;
    put(area, m_containers[area.number()].outer, shows, false, places);
    return shows;
}

void AreaStage::put(Area& area, QWidget* outer, bool shows, bool isBar, std::vector<AreaFrame::Place>& places)
{
    if (area.placement() == EPlacement::Floating) {
        floatOver(area, outer, shows);
        return;
    }
    if (m_floating.erase(area.number()) > 0) {
        outer->setMinimumHeight(0);
        if (auto* panel = dynamic_cast<PanelFrame*>(outer))
            panel->floats(false);
    }
    setHidden(area.number(), outer, !shows);
    const bool isStrip =
        dynamic_cast<ToolbarStrip*>(outer) || outer->property("standsInToolbarLine").toBool();
    places.push_back({&area, outer, isStrip, isBar});
}

/// Contents that have hidden themselves stay hidden.
void AreaStage::setHidden(unsigned long area, QWidget* outer, bool hidden)
{
    if (hidden ? m_hidden.insert(area).second : m_hidden.erase(area) > 0)
        outer->setHidden(hidden);
}

void AreaStage::floatOver(Area& area, QWidget* outer, bool shows)
{
    if (m_floating[area.number()] != outer) {
        m_floating[area.number()] = outer;
        // With a resize corner.
        outer->setParent(this, Qt::SubWindow);
        outer->show();
        if (auto* panel = dynamic_cast<PanelFrame*>(outer)) {
            panel->floats(true);
            panel->resize(area.extent() > 0 ? area.extent() : kFloatingWidth, kFloatingHeight);
        } else {
            outer->resize(outer->sizeHint());
        }
    }
    outer->move(area.point().x, area.point().y);
    setHidden(area.number(), outer, !shows);
    outer->raise();
    keepInside();
}

/// However small the window gets, the panels stay within reach of the mouse.
void AreaStage::keepInside() const
{
    for (const auto& [number, widget] : m_floating)
        if (widget && !size().isEmpty())
            widget->move(std::clamp(widget->x(), 0, std::max(0, width() - widget->width())),
                         std::clamp(widget->y(), 0, std::max(0, height() - widget->height())));
}

void AreaStage::resizeEvent(QResizeEvent*)
{
    keepInside();
}

AreaStage::Leaf* AreaStage::leafOf(Area& area, bool make, QWidget* parent)
{
    if (const auto known = m_leaves.find(area.number()); known != m_leaves.end())
        return &known->second;
    QWidget* widget = make ? m_makers.contents(area, parent) : nullptr;
    if (!widget)
        return nullptr;
    Leaf leaf{widget, widget};
    const bool inPalette = area.palette() != &area;
    if (!inPalette && hasPanel(area)) {
        auto* panel = new PanelFrame(parent);
        panel->area(&area);
        panel->contents(widget);
        leaf.outer = panel;
    }
    if (area.contents())
        TourOverlay::markArea(leaf.outer, area.contents()->text());
    showUnlessHidden(leaf.outer);
    return &(m_leaves[area.number()] = leaf);
}

AreaFrame* AreaStage::frameOf(Area& area, QWidget* parent)
{
    if (const auto known = m_containers.find(area.number()); known != m_containers.end())
        return known->second.frame;
    auto* frame = new AreaFrame(
        area.contents() == Area::splitView(),
        [this](Area& resized, int extent) {
            m_resizing = true;
            resized.extent(extent);
            m_resizing = false;
        },
        parent);
    const Container container{frame, enclosed(area, frame, parent)};
    m_containers[area.number()] = container;
    if (parent != this) // The root is shown once it is complete.
        showUnlessHidden(container.outer);
    return frame;
}

QWidget* AreaStage::enclosed(const Area& area, AreaFrame* frame, QWidget* parent)
{
    if (isOf(area, "ScrollPage")) {
        QScrollArea* page = scrollPage(parent);
        page->setWidget(frame);
        return page;
    }
    if (isOf(area, "Palette")) {
        auto* panel = new PanelFrame(parent);
        panel->area(const_cast<Area*>(&area));
        panel->contents(frame);
        return panel;
    }
    return frame;
}

/// Releases everything that no layout has any more, and shared widgets that the shown one doesn't have. What
/// is left in a container about to be destroyed is recreated when needed: while its layout wasn't shown, its
/// area has moved to another one.
void AreaStage::drop(const std::set<unsigned long>& shown, const std::set<unsigned long>& alive)
{
    std::vector<QWidget*> going;
    for (const auto& [number, container] : m_containers)
        if (!shown.contains(number) && !alive.contains(number))
            going.push_back(container.outer);
    const std::vector<QWidget*> containers = going;
    const auto goesWithOne = [&](const QWidget* outer) {
        return std::any_of(containers.begin(), containers.end(), [&](const QWidget* container) {
            return container == outer || container->isAncestorOf(outer);
        });
    };
    for (auto leaf = m_leaves.begin(); leaf != m_leaves.end();) {
        const auto [widget, outer] = leaf->second;
        const bool shared = m_makers.isShared(widget);
        if ((shown.contains(leaf->first) || (alive.contains(leaf->first) && !shared)) &&
            !goesWithOne(outer)) {
            if (!shown.contains(leaf->first) && m_floating.contains(leaf->first))
                setHidden(leaf->first, outer, true);
            ++leaf;
            continue;
        }
        const bool reused = std::any_of(m_leaves.begin(), m_leaves.end(), [&](const auto& other) {
            return shown.contains(other.first) && other.second.widget == widget && !goesWithOne(widget);
        });
        if (!reused)
            m_makers.leaves(widget);
        if (!shared || outer != widget)
            going.push_back(outer);
        forget(leaf->first);
        leaf = m_leaves.erase(leaf);
    }
    for (auto container = m_containers.begin(); container != m_containers.end();) {
        if (!goesWithOne(container->second.outer)) {
            ++container;
            continue;
        }
        forget(container->first);
        container = m_containers.erase(container);
    }
    std::erase_if(m_gone, [](const auto& gone) { return gone.isNull(); });
    for (QWidget* widget : going)
        retire(widget);
}

void AreaStage::forget(unsigned long area)
{
    m_floating.erase(area);
    m_hidden.erase(area);
}

/// One of its buttons may be the sender of the click that leads here.
void AreaStage::retire(QWidget* widget)
{
    widget->hide();
    widget->setParent(m_limbo);
    widget->setObjectName({});
    m_gone.emplace_back(widget);
    widget->deleteLater();
}

} // namespace Vu
