#include "UI/Commands/Adaptations/QT/Options/ServicePage.h"

#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

namespace Vu::Commands {

ServicePage::ServicePage(const char* name, const QString& title, QWidget* parent)
    : QWidget(parent),
      m_name(QLatin1String(name)),
      m_on(new QCheckBox(title, this)),
      m_rest(new QWidget(this)),
      m_column(new QVBoxLayout(m_rest))
{
    setObjectName(nameOf("Page"));
    m_on->setObjectName(nameOf("On"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_on);
    column->addWidget(m_rest);
    m_column->setContentsMargins(0, 0, 0, 0);
}

QString ServicePage::nameOf(const char* part) const
{
    return m_name + QLatin1String(part);
}

QLabel* ServicePage::addHead(const QString& title)
{
    QLabel* head = PlainText::label(m_rest, title);
    head->setForegroundRole(QPalette::PlaceholderText);
    head->setContentsMargins(0, 2 * kMargin, 0, 0);
    m_column->addWidget(head);
    return head;
}

QLabel* ServicePage::addText(const char* part)
{
    QLabel* label = PlainText::label(m_rest);
    label->setObjectName(nameOf(part));
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_column->addWidget(label);
    return label;
}

QPushButton* ServicePage::addButton(const char* part, const QString& title)
{
    auto* button = new QPushButton(title, m_rest);
    button->setObjectName(nameOf(part));
    button->setAutoDefault(false);
    m_column->addWidget(button, 0, Qt::AlignLeft);
    return button;
}

QCheckBox* ServicePage::addChoice(const char* part, const QString& title)
{
    m_column->addSpacing(2 * kMargin);
    auto* box = new QCheckBox(title, m_rest);
    box->setObjectName(nameOf(part));
    m_column->addWidget(box);
    return box;
}

bool ServicePage::showRest(bool switchedOff, bool isDisabled)
{
    m_on->setChecked(!switchedOff);
    // If the edition has no service, there is nothing to switch on.
    m_on->setEnabled(switchedOff || !isDisabled);
    m_rest->setVisible(!isDisabled);
    return !isDisabled;
}

void ServicePage::keepKeyboard(const QPushButton* button, bool stays, QWidget* other)
{
    if (!stays && button->hasFocus())
        other->setFocus();
}

} // namespace Vu::Commands
