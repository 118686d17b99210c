#include "UI/Base/Window/RovingFocus.h"

#include <QAbstractButton>
#include <QChildEvent>
#include <QEvent>
#include <QKeyEvent>
#include <QToolButton>

#include <algorithm>

namespace Vu {

RovingFocus::RovingFocus(QWidget* bar) : QObject(bar), m_bar(bar)
{
    bar->setFocusPolicy(Qt::TabFocus);
    bar->installEventFilter(this);
    for (QAbstractButton* button : bar->findChildren<QAbstractButton*>(Qt::FindDirectChildrenOnly))
        adopt(button);
}

void RovingFocus::adopt(QAbstractButton* button)
{
    button->setFocusPolicy(Qt::NoFocus);
    button->installEventFilter(this);
}

/// In visual order.
QList<QAbstractButton*> RovingFocus::stops() const
{
    QList<QAbstractButton*> stops;
    for (QAbstractButton* button : m_bar->findChildren<QAbstractButton*>(Qt::FindDirectChildrenOnly))
        if (button->isVisible() && button->isEnabled())
            stops << button;
    std::ranges::stable_sort(stops, [](const QWidget* one, const QWidget* other) {
        return one->x() != other->x() ? one->x() < other->x() : one->y() < other->y();
    });
    return stops;
}

void RovingFocus::enter()
{
    const QList<QAbstractButton*> all = stops();
    QAbstractButton* button = all.contains(m_last) ? m_last.data() : all.value(0);
    if (button)
        button->setFocus(Qt::TabFocusReason);
}

bool RovingFocus::step(QAbstractButton* from, int key)
{
    const QList<QAbstractButton*> all = stops();
    const qsizetype at = all.indexOf(from);
    if (all.isEmpty())
        return false;
    qsizetype to = 0;
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        to = (at + all.size() - 1) % all.size();
        break;
    case Qt::Key_Right:
        to = (at + 1) % all.size();
        break;
    case Qt::Key_Down:
        if (auto* tool = qobject_cast<QToolButton*>(from); tool && tool->menu()) {
            tool->showMenu();
            return true;
        }
        to = (at + 1) % all.size();
        break;
    case Qt::Key_Home:
        break;
    case Qt::Key_End:
        to = all.size() - 1;
        break;
    default:
        return false;
    }
    all[to]->setFocus(Qt::TabFocusReason);
    return true;
}

/// At the bar's own position in the window's tab order: its buttons may have been created long after the
/// widgets that follow.
void RovingFocus::leave(bool next)
{
    for (QWidget* to = m_bar;;) {
        to = next ? to->nextInFocusChain() : to->previousInFocusChain();
        if (to == m_bar)
            return;
        const bool takesTab = (to->focusPolicy() & Qt::TabFocus) && !to->focusProxy();
        if (takesTab && !m_bar->isAncestorOf(to) && to->isVisible() && to->isEnabled() &&
            to->window() == m_bar->window()) {
            to->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return;
        }
    }
}

bool RovingFocus::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_bar) {
        if (event->type() == QEvent::FocusIn)
            enter();
        else if (event->type() == QEvent::ChildPolished)
            if (auto* button = qobject_cast<QAbstractButton*>(static_cast<QChildEvent*>(event)->child()))
                adopt(button);
        return false;
    }
    auto* button = qobject_cast<QAbstractButton*>(watched);
    if (!button) // It is also notified of its own end, when it is no longer a button.
        return false;
    if (event->type() == QEvent::FocusIn)
        m_last = button;
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        button->click();
        return true;
    }
    if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
        leave(key == Qt::Key_Tab);
        return true;
    }
    return step(button, key);
}

} // namespace Vu
