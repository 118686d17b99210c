#include "UI/Base/Window/HudFrame.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Window/CommandButton.h"
#include "UI/Base/Window/EmptyHint.h"
#include "UI/Base/Window/RovingFocus.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/ToolbarStrip.h"
#include "UI/Base/Workspace/HUDPersister.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace Vu {
namespace {
/// Between a display and the canvas's edge.
constexpr int kDistance = 12;
/// The width of the frame around one of several canvases.
constexpr int kFrame = 2;

EPlacement sideOf(const std::wstring& placement)
{
    if (placement == L"left")
        return EPlacement::Left;
    if (placement == L"right")
        return EPlacement::Right;
    return placement == L"top" ? EPlacement::Top : EPlacement::Bottom;
}

const QString kName = QStringLiteral("canvasFrame");
} // namespace

HudFrame::HudFrame(QWidget* parent) : QWidget(parent)
{
    setObjectName(kName);
    m_subscriptions.add(SplitViewEventSource::get(), this);
}

HudFrame::~HudFrame() = default;

void HudFrame::canvas(GraphicsCanvas* canvas)
{
    m_canvas = canvas;
    m_widget = canvas->widget(this);
    delete findChild<QWidget*>(QStringLiteral("emptyHint"), Qt::FindDirectChildrenOnly);
    new EmptyHint(*canvas, this);
    place();
    m_widget->show();
}

bool HudFrame::isOneOfSeveral() const
{
    return window()->findChildren<QWidget*>(kName).size() > 1;
}

bool HudFrame::isActive() const
{
    return !isOneOfSeveral() || SplitViewMgr::get()->activeCanvas() == m_canvas;
}

void HudFrame::splitViewActivate(SplitViewEvent*)
{
    place();
    update();
}

void HudFrame::splitViewDeactivate(SplitViewEvent*)
{
    place();
    update();
}

void HudFrame::showEvent(QShowEvent*)
{
    // Now the others exist as well.
    place();
}

void HudFrame::paintEvent(QPaintEvent*)
{
    if (isOneOfSeveral())
        QPainter(this).fillRect(rect(), isActive() ? palette().highlight() : palette().mid());
}

void HudFrame::addHuds(std::vector<CommandButton*>& buttons)
{
    for (const HUD& hud : HUDPersister::get()->huds()) {
        if (hud.isPlaced())
            continue;
        auto* bar = new ToolbarStrip(this);
        Toolbar toolbar;
        toolbar.items = hud.items;
        bar->toolbars({&toolbar}, buttons);
        if (bar->isEmpty()) {
            delete bar;
            continue;
        }
        bar->setObjectName(QStringLiteral("hud"));
        bar->setAccessibleName(QString::fromStdWString(localized("AreaNavigationBar", "Navigation Bar")));
        new RovingFocus(bar);
        const EPlacement side = sideOf(hud.placement);
        m_huds.push_back({bar, side, hud.contents, side, {}, true});
        bar->raise();
    }
    place();
}

void HudFrame::follow(Area& root, const QWidget& stage)
{
    for (Hud& hud : m_huds) {
        std::vector<Area*> areas;
        if (!hud.contents.empty())
            root.childrenByContents(Vs::UniqueString::find(hud.contents.c_str()), areas);
        hud.shown = areas.empty() || (areas.front()->visible() && !areas.front()->collapsed());
        const EPlacement wanted = areas.empty() ? EPlacement::Fill : areas.front()->placement();
        hud.side = wanted == EPlacement::Fill ? hud.usual : wanted;
        hud.point =
            areas.empty()
                ? QPoint()
                : mapFrom(window(),
                          stage.mapTo(window(), QPoint(areas.front()->point().x, areas.front()->point().y)));
    }
    place();
}

void HudFrame::resizeEvent(QResizeEvent*)
{
    place();
}

bool HudFrame::event(QEvent* event)
{
    // Buttons that come and go change a display's size.
    if (event->type() == QEvent::LayoutRequest)
        place();
    return QWidget::event(event);
}

void HudFrame::place()
{
    const int border = isOneOfSeveral() ? kFrame : 0;
    if (m_widget && m_widget->parentWidget() == this)
        m_widget->setGeometry(rect().adjusted(border, border, -border, -border));
    m_placed.canvas(isActive(), {border, border});
    for (const Hud& hud : m_huds) {
        hud.bar->setVisible(isActive() && hud.shown);
        hud.bar->setGeometry(placeOf(hud));
        hud.bar->raise();
    }
}

/// Within the canvas, with a margin from its edges as far as there is room.
QRect HudFrame::placeOf(const Hud& hud) const
{
    QSize size = hud.bar->sizeHint();
    size.setWidth(
        std::max(hud.bar->minimumSizeHint().width(), std::min(size.width(), width() - 2 * kDistance)));
    QPoint corner((width() - size.width()) / 2, (height() - size.height()) / 2);
    if (hud.side == EPlacement::Left)
        corner.setX(kDistance);
    else if (hud.side == EPlacement::Right)
        corner.setX(width() - size.width() - kDistance);
    else if (hud.side == EPlacement::Top)
        corner.setY(kDistance);
    else if (hud.side == EPlacement::Bottom)
        corner.setY(height() - size.height() - kDistance);
    else
        corner = QPoint(std::clamp(hud.point.x(), 0, std::max(0, width() - size.width())),
                        std::clamp(hud.point.y(), 0, std::max(0, height() - size.height())));
    return {corner, size};
}

} // namespace Vu
