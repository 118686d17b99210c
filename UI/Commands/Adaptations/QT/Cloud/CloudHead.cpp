#include "UI/Commands/Adaptations/QT/Cloud/CloudHead.h"

#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudPath.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudTexts.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace Vu::Commands {

using CloudTexts::text;

CloudHead::CloudHead(Actions actions, bool makesFolders, QWidget* parent)
    : QWidget(parent),
      m_actions(std::move(actions)),
      m_account(PlainText::label(this)),
      m_path(new CloudPath(m_actions.open, this))
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    m_account->setObjectName(QStringLiteral("cloudWhose"));
    m_account->setForegroundRole(QPalette::PlaceholderText);
    m_account->setWordWrap(true);
    column->addWidget(m_account);
    m_up = button("Up", "cloudUp", text("CloudUp", "To the folder above (Backspace)"), m_actions.goAbove);
    m_new = button("NewFolder", "cloudNewFolder", text("CloudNewFolder", "New folder (Ctrl+Shift+N)"),
                   m_actions.makeFolder);
    m_again = button("Refresh", "cloudRefresh", text("CloudRefresh", "Read again (F5)"), m_actions.readAgain);
    m_new->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_N);
    m_again->setShortcut(Qt::Key_F5);
    m_new->setVisible(makesFolders);
    makeSearch();
    auto* row = new QHBoxLayout;
    column->addLayout(row);
    row->addWidget(m_path, 1);
    for (QWidget* each : std::initializer_list<QWidget*>{m_up, m_new, m_again, m_search})
        row->addWidget(each);
    m_subscriptions.add(Vs::CloudEventSource::get(), this);
    CloudHead::cloudSessionChanged(nullptr);
}

QToolButton* CloudHead::button(const char* icon, const char* name, const QString& title,
                               std::function<void()> run)
{
    auto* made = new QToolButton(this);
    made->setObjectName(QLatin1String(name));
    made->setProperty("flat", true);
    made->setAutoRaise(true);
    made->setIcon(CloudTexts::icon(icon));
    made->setIconSize(QSize(kIconSize, kIconSize));
    made->setFocusPolicy(Qt::TabFocus);
    made->setAccessibleName(title);
    PlainText::setTooltip(made, title);
    connect(made, &QToolButton::clicked, this, std::move(run));
    return made;
}

void CloudHead::makeSearch()
{
    m_search = new QLineEdit(this);
    m_search->setObjectName(QStringLiteral("cloudSearch"));
    m_search->setPlaceholderText(text("CloudSearch", "Search in this folder"));
    m_search->setAccessibleName(m_search->placeholderText());
    Accessible::clearButton(m_search);
    constexpr int kSearchWidth = 190;
    m_search->setFixedWidth(kSearchWidth);
    m_search->installEventFilter(this);
    connect(m_search, &QLineEdit::textChanged, this, m_actions.search);
}

void CloudHead::cloudSessionChanged(Vs::CloudEvent*)
{
    m_account->setText(CloudTexts::account());
}

void CloudHead::show(const std::string& folder)
{
    m_folder = folder;
    m_path->show(folder);
}

void CloudHead::clearSearch()
{
    m_search->clear();
}

void CloudHead::goToSearch()
{
    m_search->setFocus(Qt::ShortcutFocusReason);
}

void CloudHead::enable(bool isRead, bool isBusy)
{
    m_up->setEnabled(isRead && m_folder != "/" && !isBusy);
    m_new->setEnabled(isRead && !isBusy);
    for (QWidget* each : std::initializer_list<QWidget*>{m_path, m_again, m_search})
        each->setEnabled(!isBusy);
}

/// A user who is searching has not chosen yet: Return must not press the dialog's button.
bool CloudHead::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_search && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Down) {
            m_actions.toList();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace Vu::Commands
