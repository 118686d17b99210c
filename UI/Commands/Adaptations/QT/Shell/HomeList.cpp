#include "UI/Commands/Adaptations/QT/Shell/HomeList.h"

#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Commands/Adaptations/QT/Shell/ShellButton.h"
#include "UI/Commands/Localized.h"

#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace Vu::Commands {
namespace {

constexpr int kMargin = 12, kIconSize = 24;

void asRow(QToolButton& button)
{
    button.setObjectName(QStringLiteral("homeRow"));
    button.setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button.setIconSize(QSize(kIconSize, kIconSize));
    button.setFocusPolicy(Qt::StrongFocus);
    button.setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

} // namespace

HomeList::HomeList(const QString& title, QWidget* parent) : QFrame(parent), m_rows(new QVBoxLayout(this))
{
    setObjectName(QStringLiteral("homeList"));
    setAccessibleName(title);
    m_rows->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    m_rows->setSpacing(2);
    auto* heading = PlainText::label(this, title);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    heading->setContentsMargins(kMargin / 2, 0, 0, kMargin / 2);
    m_rows->addWidget(heading);
}

void HomeList::add(QWidget* row)
{
    // A later one was created after everything that follows this list.
    if (QWidget* last = m_rows->itemAt(m_rows->count() - 1)->widget())
        QWidget::setTabOrder(last, row);
    m_rows->addWidget(row);
}

QToolButton* HomeList::addRow(const QString& text, const QString& tooltip, const QIcon& icon,
                              std::function<void()> action)
{
    auto* row = new QToolButton(this);
    asRow(*row);
    // An ampersand in a name isn't a mnemonic.
    row->setText(u' ' + QString(text).replace(u'&', QStringLiteral("&&")));
    row->setAccessibleName(text);
    PlainText::setTooltip(row, tooltip);
    row->setIcon(icon);
    connect(row, &QToolButton::clicked, this, std::move(action));
    add(row);
    return row;
}

void HomeList::addCommands(const std::string& contents)
{
    for (const Toolbar& toolbar : ToolbarManager::get()->toolbars())
        if (toolbar.contents == contents && toolbar.standsIn({}))
            for (const ToolbarItem& item : toolbar.items)
                if (CommandDefinition* definition =
                        CommandDefinitionMgr::get()->findCommandDefinitionById(item.command)) {
                    auto* button = new ShellButton(definition, item.picture, this);
                    button->title(item.title);
                    asRow(*button);
                    add(button);
                }
}

LearnList::LearnList(QWidget* parent)
    : HomeList(QString::fromStdWString(localized("HomeLearn", "Learn")), parent)
{
    addCommands("HomeLearn");
}

} // namespace Vu::Commands
