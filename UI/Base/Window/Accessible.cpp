#include "UI/Base/Window/Accessible.h"

#include "UI/Base/Window/Told.h"

#include <QAccessibleWidget>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QToolButton>
#include <QVariant>
#include <QWidget>

#include <utility>

namespace Vu {
namespace {

using Press = std::function<void()>;

constexpr const char* kMaker = "accessibleMaker";

class Pressable : public QAccessibleWidget
{
public:
    Pressable(QWidget* widget, QAccessible::Role role, Press press)
        : QAccessibleWidget(widget, role), m_press(std::move(press))
    {
    }

    QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (widget()->isEnabled())
            names.prepend(pressAction());
        return names;
    }
    void doAction(const QString& name) override
    {
        if (name != pressAction()) {
            QAccessibleWidget::doAction(name);
        } else if (widget()->isEnabled()) {
            const Press press = m_press; // It may destroy the widget, and this with it.
            press();
        }
    }

private:
    Press m_press;
};

class Opener : public Pressable
{
public:
    Opener(QWidget* button, QWidget* opened, Press press)
        : Pressable(button, QAccessible::ButtonMenu, std::move(press)), m_opened(opened)
    {
    }

    int childCount() const override { return m_opened && m_opened->isVisible() ? 1 : 0; }
    QAccessibleInterface* child(int index) const override
    {
        return index < childCount() ? QAccessible::queryAccessibleInterface(m_opened) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* each) const override { return each == child(0) ? 0 : -1; }

private:
    QPointer<QWidget> m_opened;
};

class MenuHolder : public QAccessibleWidget
{
public:
    explicit MenuHolder(QWidget* widget) : QAccessibleWidget(widget) {}

    int childCount() const override { return QAccessibleWidget::childCount() + int(open().size()); }
    QAccessibleInterface* child(int index) const override
    {
        const int before = QAccessibleWidget::childCount();
        return index < before         ? QAccessibleWidget::child(index)
               : index < childCount() ? QAccessible::queryAccessibleInterface(open()[index - before])
                                      : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* each) const override
    {
        const auto index = each ? open().indexOf(qobject_cast<QMenu*>(each->object())) : -1;
        return index < 0 ? QAccessibleWidget::indexOfChild(each)
                         : QAccessibleWidget::childCount() + int(index);
    }

private:
    QList<QMenu*> open() const
    {
        QList<QMenu*> all = widget()->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
        all.removeIf([](const QMenu* each) { return !each->isVisible(); });
        return all;
    }
};

/// Null for anything that the toolkit's own classes handle.
QAccessibleInterface* interfaceOf(const QString&, QObject* object)
{
    auto* widget = qobject_cast<QWidget*>(object);
    const QVariant maker = widget ? widget->property(kMaker) : QVariant();
    return maker.isValid() ? maker.value<Accessible::Maker>()(widget) : nullptr;
}

} // namespace

void Accessible::begin()
{
    // The application object removes its own factory when it is destroyed, and with it those installed
    // before.
    QAccessible::removeFactory(interfaceOf);
    QAccessible::installFactory(interfaceOf);
}

void Accessible::maker(QWidget* widget, const Maker& maker)
{
    widget->setProperty(kMaker, QVariant::fromValue(maker));
}

void Accessible::role(QWidget* widget, QAccessible::Role role)
{
    maker(widget, [role](QWidget* each) { return new QAccessibleWidget(each, role); });
}

void Accessible::pressable(QWidget* widget, QAccessible::Role role, std::function<void()> press)
{
    maker(widget,
          [role, press = std::move(press)](QWidget* each) { return new Pressable(each, role, press); });
}

void Accessible::opener(QWidget* button, QWidget* opened, std::function<void()> press)
{
    maker(button, [opened = QPointer(opened), press = std::move(press)](QWidget* each) {
        return new Opener(each, opened, press);
    });
}

void Accessible::menus(QWidget* widget)
{
    maker(widget, [](QWidget* each) { return new MenuHolder(each); });
}

void Accessible::clearButton(QLineEdit* field)
{
    if (field->isClearButtonEnabled())
        return;
    field->setClearButtonEnabled(true);
    for (QToolButton* button : field->findChildren<QToolButton*>(QString(), Qt::FindDirectChildrenOnly))
        if (button->accessibleName().isEmpty())
            button->setAccessibleName(told("ClearField", "Clear"));
}

} // namespace Vu
