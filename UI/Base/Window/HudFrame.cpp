#include "UI/Base/Window/HudFrame.h"

#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Window/CommandButton.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Workspace/HUDPersister.h"

#include <QBoxLayout>
#include <QEvent>
#include <QFrame>
#include <QPainter>

namespace Vu {
namespace {
/// Between a display and the canvas's edge.
constexpr int kDistance = 12;
/// The width of the frame around one of several canvases.
constexpr int kFrame = 2;
const QString kName = QStringLiteral("canvasFrame");
} // namespace

HudFrame::HudFrame(QWidget* parent) : QWidget(parent)
{
    setObjectName(kName);
    SplitViewEventSource::get()->subscribe(this);
}

HudFrame::~HudFrame()
{
    SplitViewEventSource::get()->unsubscribe(this);
}

void HudFrame::canvas(GraphicsCanvas* canvas)
{
    m_canvas = canvas;
    m_widget = canvas->widget(this);
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
    // Now the others are there as well.
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
        auto* bar = new QFrame(this);
        bar->setObjectName(QStringLiteral("hud"));
        const bool upright = hud.placement == L"left" || hud.placement == L"right";
        auto* row = new QBoxLayout(upright ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, bar);
        row->setContentsMargins(kMargin / 2, kMargin / 2, kMargin / 2, kMargin / 2);
        row->setSpacing(2);
        const size_t before = buttons.size();
        addToolbarItems(hud.items, bar, buttons);
        if (buttons.size() == before) {
            delete bar;
            continue;
        }
        m_huds.push_back({bar, hud.placement});
        bar->raise();
    }
    place();
}

void HudFrame::resizeEvent(QResizeEvent*)
{
    place();
}

bool HudFrame::event(QEvent* event)
{
    // Buttons that come and go change what a display needs.
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
        hud.bar->setVisible(isActive());
        const QSize size = hud.bar->sizeHint();
        int x = (width() - size.width()) / 2;
        int y = (height() - size.height()) / 2;
        if (hud.placement == L"left")
            x = kDistance;
        else if (hud.placement == L"right")
            x = width() - size.width() - kDistance;
        else if (hud.placement == L"top")
            y = kDistance;
        else
            y = height() - size.height() - kDistance;
        hud.bar->setGeometry(x, y, size.width(), size.height());
        hud.bar->raise();
    }
}

} // namespace Vu
