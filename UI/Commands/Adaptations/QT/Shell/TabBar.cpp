#include "UI/Commands/Adaptations/QT/Shell/TabBar.h"

#include "UI/Base/Window/Glyph.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace Vu::Commands {
namespace {

constexpr int kLeastWidth = 90;
constexpr int kMostWidth = 240;
constexpr int kCloseIcon = 12;

} // namespace

TabBar::TabBar(QWidget* parent) : QTabBar(parent)
{
    setObjectName(QStringLiteral("documentTabs"));
    setDocumentMode(true);
    setDrawBase(false);
    setExpanding(false);
    setMovable(true);
    setUsesScrollButtons(true);
    // The state of a document is at the end of its text.
    setElideMode(Qt::ElideMiddle);
    setFocusPolicy(Qt::TabFocus);
    setSelectionBehaviorOnRemove(QTabBar::SelectLeftTab);
    setContextMenuPolicy(Qt::CustomContextMenu);
}

void TabBar::insert(int place, const QString& closeName)
{
    insertTab(place, QString());
    auto* close = new QToolButton(this);
    close->setObjectName(QStringLiteral("closeTab"));
    close->setIcon(glyphIcon(Glyph::Close));
    close->setIconSize(QSize(kCloseIcon, kCloseIcon));
    close->setAutoRaise(true);
    close->setProperty("flat", true);
    // On the keyboard, Delete closes.
    close->setFocusPolicy(Qt::NoFocus);
    close->setAccessibleName(closeName);
    PlainText::setTooltip(close, closeName);
    setTabButton(place, QTabBar::RightSide, close);
    connect(close, &QToolButton::clicked, this, [this, close] {
        for (int i = 0; i < count(); ++i)
            if (tabButton(i, QTabBar::RightSide) == close)
                emit closeWanted(i);
    });
}

void TabBar::label(int index, const QString& text, const QString& spoken, const QString& tooltip)
{
    // An ampersand in a name isn't a mnemonic.
    const QString shown = QString(text).replace(QLatin1Char('&'), QStringLiteral("&&"));
    if (tabText(index) != shown)
        setTabText(index, shown);
    setAccessibleTabName(index, spoken);
    setTabToolTip(index, PlainText::tooltip(tooltip));
}

bool TabBar::hasRoom(int width) const
{
    int wanted = 0;
    for (int i = 0; i < count() && wanted <= width; ++i)
        wanted += tabSizeHint(i).width();
    return wanted <= width;
}

QSize TabBar::tabSizeHint(int index) const
{
    QSize size = QTabBar::tabSizeHint(index);
    size.setWidth(std::clamp(size.width(), kLeastWidth, kMostWidth));
    return size;
}

// Tabs are scrolled instead of being squeezed until they are unreadable.
QSize TabBar::minimumTabSizeHint(int index) const
{
    return tabSizeHint(index);
}

// A style sheet can't distinguish a tab of the focused bar from others.
void TabBar::paintEvent(QPaintEvent* event)
{
    QTabBar::paintEvent(event);
    if (!hasFocus() || currentIndex() < 0)
        return;
    constexpr int kThickness = 2;
    QPainter painter(this);
    painter.setPen(QPen(palette().color(QPalette::Highlight), kThickness));
    painter.drawRect(tabRect(currentIndex()).adjusted(1, 1, -1, -1));
}

// The base class leaves the icon as it is.
void TabBar::focusInEvent(QFocusEvent* event)
{
    QTabBar::focusInEvent(event);
    update();
}

void TabBar::focusOutEvent(QFocusEvent* event)
{
    QTabBar::focusOutEvent(event);
    update();
}

void TabBar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::MiddleButton)
        m_pressed = tabAt(event->position().toPoint());
    QTabBar::mousePressEvent(event);
}

void TabBar::mouseReleaseEvent(QMouseEvent* event)
{
    QTabBar::mouseReleaseEvent(event);
    if (event->button() != Qt::MiddleButton)
        return;
    const int released = tabAt(event->position().toPoint());
    if (released >= 0 && released == std::exchange(m_pressed, -1))
        emit closeWanted(released);
}

void TabBar::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Delete) && currentIndex() >= 0)
        emit closeWanted(currentIndex());
    else
        QTabBar::keyPressEvent(event);
}

} // namespace Vu::Commands
