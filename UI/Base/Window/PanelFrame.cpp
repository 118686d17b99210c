#include "UI/Base/Window/PanelFrame.h"

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/Glyph.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/Told.h"
#include "UI/Base/Workspace/Area.h"
#include "UI/Base/Workspace/LayoutStrategy.h"

#include <QBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QSizeGrip>
#include <QToolButton>

#include <algorithm>

namespace Vu {
namespace {

constexpr int kHeadIcon = 14;
constexpr int kSmallest = 120;

struct DockRow
{
    EPlacement placement;
    const char* key;
    const char* english;
};

constexpr DockRow kDocks[] = {
    {EPlacement::Left, "PanelDockLeft", "Dock Left"},
    {EPlacement::Right, "PanelDockRight", "Dock Right"},
    {EPlacement::Top, "PanelDockTop", "Dock at Top"},
    {EPlacement::Bottom, "PanelDockBottom", "Dock at Bottom"},
    {EPlacement::Floating, "PanelFloat", "Float"},
};

std::string contentsOf(const Area& area)
{
    return area.contents() ? area.contents()->text() : std::string();
}

/// The bar onto which a panel at that side collapses.
EPlacement barOf(EPlacement placement)
{
    return placement == EPlacement::Fill || placement == EPlacement::Floating ? EPlacement::Left : placement;
}

/// The definition that hides the area, by its name; null if there is none.
CommandDefinition* hidingCommand(const Area& area)
{
    return CommandDefinitionMgr::get()->findCommandDefinitionById(L"Hide" + area.name() + L"Command");
}

} // namespace

QString areaTitle(const Area& area)
{
    const std::string contents = contentsOf(area);
    if (contents == "BrowserWindow")
        return told("AreaBrowser", "Browser");
    if (contents == "TextCommands")
        return told("AreaCommandLine", "Command Line");
    if (contents == "CommandToolbar")
        return told("AreaToolbar", "Toolbar");
    if (contents == "NavToolbar")
        return told("AreaNavigationBar", "Navigation Bar");
    if (contents == "Palette" && !area.children().empty())
        return areaTitle(*area.children().front());
    const std::wstring title = AreaContents::title(contents);
    return QString::fromStdWString(title.empty() ? area.name() : title);
}

bool hasPanel(const Area& area)
{
    const std::string contents = contentsOf(area);
    return contents == "BrowserWindow" || !AreaContents::title(contents).empty();
}

PanelFrame::PanelFrame(QWidget* parent)
    : QFrame(parent),
      m_head(new QFrame(this)),
      m_title(PlainText::label(m_head)),
      m_menu(headButton("panelMenu", m_head)),
      m_close(headButton("panelClose", m_head)),
      m_column(new QVBoxLayout(this)),
      m_grip(new QSizeGrip(this))
{
    Accessible::role(this, QAccessible::Pane);
    setObjectName(QStringLiteral("areaPanel"));
    m_head->setObjectName(QStringLiteral("areaHead"));
    m_menu->setText(QStringLiteral("\u22ef"));
    m_menu->setPopupMode(QToolButton::InstantPopup);
    // Not the three dots.
    m_menu->setAccessibleName(told("PanelMenu", "Dock, float or collapse"));
    PlainText::setTooltip(m_menu, m_menu->accessibleName());
    auto* menu = new QMenu(m_menu);
    m_menu->setMenu(menu);
    connect(menu, &QMenu::aboutToShow, this, [this] { fillMenu(); });
    m_close->setIcon(glyphIcon(Glyph::Close));
    m_close->setAccessibleName(told("PanelClose", "Hide"));
    PlainText::setTooltip(m_close, m_close->accessibleName());
    connect(m_close, &QToolButton::clicked, this, [this] { close(); });
    // A long title must not widen the panel.
    m_title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* row = new QHBoxLayout(m_head);
    row->setContentsMargins(kMargin + 2, 1, 2, 1);
    row->setSpacing(0);
    row->addWidget(m_title, 1);
    row->addWidget(m_menu);
    row->addWidget(m_close);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(0);
    m_column->addWidget(m_head);
    m_head->installEventFilter(this);
    m_grip->hide();
    setMinimumWidth(kSmallest);
}

QToolButton* PanelFrame::headButton(const char* name, QWidget* head)
{
    auto* button = new QToolButton(head);
    button->setObjectName(QLatin1String(name));
    button->setProperty("flat", true);
    button->setAutoRaise(true);
    button->setIconSize(QSize(kHeadIcon, kHeadIcon));
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

void PanelFrame::contents(QWidget* widget)
{
    m_contents = widget;
    m_column->addWidget(widget, 1);
    widget->show();
}

void PanelFrame::area(Area* area)
{
    m_area = area;
    m_title->setText(areaTitle(*area));
    setAccessibleName(m_title->text());
}

void PanelFrame::floats(bool value)
{
    m_floats = value;
    setProperty("floating", value);
    m_head->setCursor(value ? Qt::SizeAllCursor : Qt::ArrowCursor);
    m_grip->setVisible(value);
    m_grip->raise();
}

void PanelFrame::fillMenu()
{
    QMenu* menu = m_menu->menu();
    menu->clear();
    LayoutStrategy* strategy = LayoutStrategy::activeStrategy();
    for (const DockRow& row : kDocks) {
        QAction* action = menu->addAction(told(row.key, row.english));
        action->setEnabled(m_area->placement() != row.placement);
        connect(action, &QAction::triggered, this, [this, strategy, placement = row.placement] {
            const QPoint corner =
                mapTo(parentWidget()->window(), QPoint()) + QPoint(kSmallest, kSmallest) / 4;
            strategy->dock(m_area, placement,
                           placement == EPlacement::Floating ? Vs::Point2{corner.x(), corner.y()}
                                                             : Vs::Point2{});
        });
    }
    menu->addSeparator();
    connect(menu->addAction(told("PanelCollapse", "Collapse")), &QAction::triggered, this,
            [this, strategy] { strategy->collapse(m_area, barOf(m_area->placement())); });
    connect(menu->addAction(told("PanelClose", "Hide")), &QAction::triggered, this, [this] { close(); });
}

void PanelFrame::close()
{
    const Area* named = m_area->children().empty() ? m_area : m_area->children().front().get();
    if (CommandDefinition* hide = hidingCommand(*named))
        hide->runByHand(ECommandAccessPoint::Menu);
    else
        LayoutStrategy::activeStrategy()->hide(m_area);
}

void PanelFrame::drag(const QPoint& to)
{
    const QPoint room = parentWidget()->rect().bottomRight() - QPoint(kSmallest, m_head->height());
    const QPoint place(std::clamp(to.x(), 0, std::max(0, room.x())),
                       std::clamp(to.y(), 0, std::max(0, room.y())));
    move(place);
    m_area->point({place.x(), place.y()});
}

bool PanelFrame::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_head || !m_floats)
        return QFrame::eventFilter(watched, event);
    if (event->type() == QEvent::MouseButtonPress) {
        m_dragging = true;
        m_grabbed = static_cast<QMouseEvent*>(event)->globalPosition().toPoint() - pos();
        raise();
    } else if (event->type() == QEvent::MouseMove && m_dragging) {
        drag(static_cast<QMouseEvent*>(event)->globalPosition().toPoint() - m_grabbed);
    } else if (event->type() == QEvent::MouseButtonRelease) {
        m_dragging = false;
    }
    return QFrame::eventFilter(watched, event);
}

void PanelFrame::resizeEvent(QResizeEvent*)
{
    m_grip->resize(m_grip->sizeHint());
    m_grip->move(rect().bottomRight() - m_grip->rect().bottomRight());
}

} // namespace Vu
