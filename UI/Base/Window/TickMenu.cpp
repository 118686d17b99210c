#include "UI/Base/Window/TickMenu.h"

#include "UI/Base/Command/Info.h"
#include "UI/Base/Command/InputControl.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>

namespace Vu {
namespace {

constexpr const char* kTicks = "ticks";

/// Triggers checkable actions itself, since the menu would close.
class StaysOpen : public QObject
{
public:
    explicit StaysOpen(QMenu* menu) : QObject(menu), m_menu(menu) { menu->installEventFilter(this); }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        QAction* action = nullptr;
        if (event->type() == QEvent::MouseButtonRelease)
            action = m_menu->actionAt(static_cast<QMouseEvent*>(event)->position().toPoint());
        else if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space)
            action = m_menu->activeAction();
        if (!action || !action->isEnabled() || !action->property(kTicks).toBool())
            return false;
        action->trigger();
        return true;
    }

private:
    QMenu* m_menu;
};

/// Checking one item may check or clear others.
void showTicks(const QMenu& menu, const MenuControl& control)
{
    const QList<QAction*> actions = menu.actions();
    const auto& items = control.items();
    for (qsizetype i = 0; i < actions.size() && static_cast<size_t>(i) < items.size(); ++i)
        if (actions[i]->isCheckable())
            actions[i]->setChecked(items[static_cast<size_t>(i)]->checked());
}

} // namespace

void fillWithTicks(QMenu* menu, const std::function<MenuControl*()>& control)
{
    if (!menu->findChild<QObject*>(QLatin1String(kTicks), Qt::FindDirectChildrenOnly))
        (new StaysOpen(menu))->setObjectName(QLatin1String(kTicks));
    menu->clear();
    if (!control())
        return;
    for (const MenuItem* item : control()->items()) {
        if (item->separator()) {
            menu->addSeparator();
            continue;
        }
        // Without an icon, which would hide the check mark.
        QAction* action = menu->addAction(QString::fromStdWString(item->info()->name()));
        action->setProperty(kTicks, true);
        action->setCheckable(true);
        action->setChecked(item->checked());
        action->setEnabled(item->enabled());
        const auto place = static_cast<size_t>(menu->actions().size()) - 1;
        QObject::connect(action, &QAction::triggered, menu, [menu, control, place](bool on) {
            if (!control() || place >= control()->items().size())
                return;
            control()->selectItem(control()->items()[place], on, true);
            if (control())
                showTicks(*menu, *control());
        });
    }
}

} // namespace Vu
