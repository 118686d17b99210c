#include "UI/Base/Window/Accessible.h"

#include <QAccessibleWidget>
#include <QPointer>
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
            const Press press = m_press; // It may take the widget away, and this with it.
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

/// Null for whatever the toolkit's own classes serve.
QAccessibleInterface* interfaceOf(const QString&, QObject* object)
{
    auto* widget = qobject_cast<QWidget*>(object);
    const QVariant maker = widget ? widget->property(kMaker) : QVariant();
    return maker.isValid() ? maker.value<Accessible::Maker>()(widget) : nullptr;
}

} // namespace

void Accessible::begin()
{
    // The application object takes its own away when it goes, and with it what was put before.
    QAccessible::removeFactory(interfaceOf);
    QAccessible::installFactory(interfaceOf);
}

void Accessible::maker(QWidget* widget, Maker maker)
{
    widget->setProperty(kMaker, QVariant::fromValue(std::move(maker)));
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

} // namespace Vu
