#include "UI/Commands/Adaptations/QT/Shell/ShellButton.h"

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Commands/Adaptations/QT/Shell/FlowLayout.h"
#include "UI/Commands/Adaptations/QT/Shell/Icons.h"

#include <QHBoxLayout>
#include <QMenu>

namespace Vu::Commands {
namespace {
constexpr int kIconSize = 32;
constexpr int kSideMargin = 40;
constexpr int kSpacing = 12;
} // namespace

ShellButton::ShellButton(CommandDefinition* definition, const std::wstring& picture, QWidget* parent)
    : QToolButton(parent),
      m_definition(definition),
      m_picture(iconAt(picture)),
      m_control(definition->inputControl())
{
    setObjectName(QStringLiteral("shellButton"));
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setIconSize(QSize(kIconSize, kIconSize));
    setFocusPolicy(Qt::StrongFocus);
    if (m_control)
        m_control->subscribe(this);
    auto* list = Vs::cast<ListControl>(m_control);
    const bool offersOneKind = list && list->items().size() == 1;
    if (list && !offersOneKind) {
        auto* menu = new QMenu(this);
        setMenu(menu);
        setPopupMode(QToolButton::InstantPopup);
        connect(menu, &QMenu::aboutToShow, this, [this] { fillMenu(); });
    } else {
        connect(this, &QToolButton::clicked, this, [this, offersOneKind] { press(offersOneKind); });
    }
    CommandContext context = CommandContext::activeContext();
    m_definition->updateInputControl(&context);
    draw();
}

ShellButton::~ShellButton()
{
    if (m_control)
        m_control->unsubscribe(this);
}

void ShellButton::inputControlDestroyed(InputControl*)
{
    m_control = nullptr;
    setEnabled(false);
}

void ShellButton::title(const std::wstring& text)
{
    m_title = text;
    draw();
}

void ShellButton::draw()
{
    if (!m_control)
        return;
    const Info* info = m_control->info();
    setAccessibleName(QString::fromStdWString(m_title.empty() ? info->name() : m_title));
    setText(QLatin1Char(' ') + accessibleName());
    setIcon(info->icon() ? iconOf(info->icon()) : m_picture);
    setEnabled(m_control->enabled());
    // Of two commands with the same purpose, only the one that can be used is shown.
    setVisible(m_control->visible() && m_control->enabled());
}

void ShellButton::press(bool makesKind)
{
    auto* list = makesKind ? Vs::cast<ListControl>(m_control) : nullptr;
    if (list && !list->items().empty())
        list->selectedItem(list->items().front(), true);
    else if (!makesKind)
        m_definition->onClicked();
}

void ShellButton::fillMenu()
{
    menu()->clear();
    auto* list = Vs::cast<ListControl>(m_control);
    if (!list)
        return;
    for (Info* item : list->items()) {
        if (item->key() == ListControl::kSeparator) {
            menu()->addSeparator();
            continue;
        }
        const QAction* action =
            menu()->addAction(iconOf(item->icon()), QString::fromStdWString(item->name()));
        connect(action, &QAction::triggered, this, [list, item] { list->selectedItem(item, true); });
    }
}

void addShellButtons(QLayout& layout, QWidget* parent, bool atEnd)
{
    for (const Toolbar& toolbar : ToolbarManager::get()->toolbars())
        if (toolbar.contents == "HomeButtons" && toolbar.atEnd == atEnd && toolbar.standsIn({}))
            for (const ToolbarItem& item : toolbar.items)
                if (CommandDefinition* definition =
                        CommandDefinitionMgr::get()->findCommandDefinitionById(item.command))
                    layout.addWidget(new ShellButton(definition, item.picture, parent));
}

QWidget* makeShellButtons(QWidget* parent)
{
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(kSideMargin, 0, kSideMargin, kSpacing);
    layout->setSpacing(kSpacing);
    // They wrap to a second line in a narrow window.
    auto* flowing = new QWidget(row);
    flowing->setProperty("beginsWithKeyboard", true);
    auto* flow = new FlowLayout(flowing, kSpacing);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    flowing->setSizePolicy(policy);
    layout->addWidget(flowing, 1);
    addShellButtons(*flow, flowing, false);
    if (QWidget* search = AreaContents::make("HomeSearch", row))
        layout->addWidget(search);
    return row;
}

} // namespace Vu::Commands
