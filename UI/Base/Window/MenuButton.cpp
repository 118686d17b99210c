#include "UI/Base/Window/MenuButton.h"

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Window/CommandMenu.h"
#include "UI/Base/Window/PlainText.h"

namespace Vu {
namespace {
/// The name of the signed-in user may be of any length.
constexpr int kLongestTitle = 140;
} // namespace

MenuButton::MenuButton(const ToolbarItem& item, QWidget* parent) : QToolButton(parent), m_item(item)
{
    m_item.menu.clear();
    setObjectName(QString::fromStdWString(item.command));
    if (CommandDefinition* head = CommandDefinitionMgr::get()->findCommandDefinitionById(item.command)) {
        m_control = head->inputControl();
        if (m_control)
            m_control->subscribe(this);
    }
    setPopupMode(QToolButton::InstantPopup);
    setMenu(new CommandMenu(item.menu, this));
    draw();
}

MenuButton::~MenuButton()
{
    if (m_control)
        m_control->unsubscribe(this);
}

void MenuButton::draw()
{
    const MenuHead head = headOf(m_item);
    QString title = fontMetrics().elidedText(head.title, Qt::ElideMiddle, kLongestTitle);
    // An ampersand in a name isn't a mnemonic.
    title.replace(QLatin1Char('&'), QStringLiteral("&&"));
    setText(title + QString::fromUtf16(u" \u25be"));
    setAccessibleName(head.title);
    setIcon(head.icon);
    setToolButtonStyle(head.icon.isNull() ? Qt::ToolButtonTextOnly : Qt::ToolButtonTextBesideIcon);
    PlainText::setTooltip(this, head.title);
}

} // namespace Vu
