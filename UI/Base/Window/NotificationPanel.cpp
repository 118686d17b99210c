#include "UI/Base/Window/NotificationPanel.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/NotificationRow.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/ProgressPanel.h"
#include "UI/Base/Window/Theme.h"

#include <QBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QScreen>
#include <QScrollArea>
#include <QToolButton>

#include <algorithm>

namespace Vu {
namespace {

constexpr int kWidth = 400;
constexpr int kHeight = 480;
constexpr int kDistance = 4;
/// How often the progress of work is polled, in milliseconds.
constexpr int kWorkInterval = 100;

QToolButton* flatButton(QWidget* parent, const char* name, const std::wstring& text)
{
    auto* button = new QToolButton(parent);
    button->setProperty("flat", true);
    button->setObjectName(QString::fromLatin1(name));
    button->setText(QString::fromStdWString(text));
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

} // namespace

NotificationPanel::NotificationPanel(ProgressPanel* progress, QWidget* parent)
    : QFrame(parent, Qt::Popup),
      m_progress(progress),
      m_work(new QWidget(this)),
      m_scroll(new QScrollArea(this))
{
    Accessible::role(this, QAccessible::Pane);
    setObjectName(QStringLiteral("notificationPanel"));
    // A click on the bell closes it, and must not reopen it.
    setAttribute(Qt::WA_NoMouseReplay);
    setAccessibleName(QString::fromStdWString(localized("Notifications", "Notifications")));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(1, 1, 1, 1);
    column->setSpacing(0);
    addHead(*column);
    addWork(*column);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setWidgetResizable(true);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    column->addWidget(m_scroll, 1);
    m_fillTimer.setSingleShot(true);
    connect(&m_fillTimer, &QTimer::timeout, this, [this] { fill(); });
    connect(&m_workTimer, &QTimer::timeout, this, [this] { showWork(); });
    m_subscriptions.add(Vs::NotificationsEventSource::get(), this);
}

void NotificationPanel::addHead(QBoxLayout& column)
{
    auto* head = new QFrame(this);
    head->setObjectName(QStringLiteral("panelHead"));
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(2 * kMargin, kMargin, kMargin, kMargin);
    QLabel* title =
        PlainText::label(head, QString::fromStdWString(localized("Notifications", "Notifications")));
    title->setObjectName(QStringLiteral("notificationTitle"));
    row->addWidget(title, 1);
    m_clear = flatButton(head, "clearNotifications", localized("NotificationsClear", "Clear"));
    connect(m_clear, &QToolButton::clicked, this, [this] { clear(); });
    row->addWidget(m_clear);
    column.addWidget(head);
}

void NotificationPanel::addWork(QBoxLayout& column)
{
    m_work->setObjectName(QStringLiteral("runningWork"));
    auto* row = new QGridLayout(m_work);
    row->setContentsMargins(2 * kMargin, kMargin, kMargin, kMargin);
    m_workText = PlainText::label(m_work);
    m_workText->setWordWrap(true);
    m_workText->setMinimumWidth(1);
    row->addWidget(m_workText, 0, 0, 1, 2);
    m_workBar = new QProgressBar(m_work);
    m_workBar->setRange(0, m_progress->steps());
    m_workBar->setTextVisible(false);
    m_workBar->setFixedHeight(2 * kMargin);
    row->addWidget(m_workBar, 1, 0);
    m_cancel = flatButton(m_work, "cancelWork", localized("ButtonCancel", "Cancel"));
    connect(m_cancel, &QToolButton::clicked, m_progress, [this] { m_progress->cancel(); });
    row->addWidget(m_cancel, 1, 1);
    row->setColumnStretch(0, 1);
    m_work->hide();
    column.addWidget(m_work);
}

void NotificationPanel::openAbove(const QWidget& anchor)
{
    m_anchor = QRect(anchor.mapToGlobal(QPoint()), anchor.size());
    fill();
    showWork();
    show();
    place(); // The layout knows the heights now.
    focusRow(0);
    m_workTimer.start(kWorkInterval);
    auto* center = Vs::NotificationCenter::get();
    for (Vs::Notification* notification : center->notifications())
        center->markSeen(notification);
}

void NotificationPanel::hideEvent(QHideEvent*)
{
    m_workTimer.stop();
}

void NotificationPanel::place()
{
    const QScreen* there = screen();
    const QRect available = there ? there->availableGeometry() : QRect(0, 0, kWidth, kHeight);
    const int width = std::min(kWidth, available.width());
    const QWidget* list = m_scroll->widget();
    const int listHeight =
        list->hasHeightForWidth() ? list->heightForWidth(width - 2) : list->sizeHint().height();
    int height = kMargin + m_clear->parentWidget()->sizeHint().height() + std::max(listHeight, 1);
    if (!m_work->isHidden())
        height += m_work->sizeHint().height();
    height = std::min({height, kHeight, std::max(m_anchor.top() - available.top() - kDistance, kHeight / 3)});
    const int left = std::clamp(m_anchor.right() + 1 - width, available.left(),
                                std::max(available.left(), available.right() + 1 - width));
    setGeometry(left, m_anchor.top() - kDistance - height, width, height);
}

void NotificationPanel::fill()
{
    m_fillTimer.stop();
    const qsizetype focused = m_focused >= 0 ? m_focused : focusedRow();
    m_focused = -1;
    m_rows.clear();
    auto* list = new QWidget;
    list->setObjectName(QStringLiteral("notificationList"));
    auto* column = new QVBoxLayout(list);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (Vs::Notification* notification : Vs::NotificationCenter::get()->notifications()) {
        auto* row = new NotificationRow(notification, NotificationRow::Place::List, list);
        row->onMove(
            [this, index = static_cast<qsizetype>(m_rows.size())](int step) { focusRow(index + step); });
        m_rows.push_back(row);
        column->addWidget(row);
    }
    if (m_rows.empty()) {
        QLabel* none = PlainText::label(
            list, QString::fromStdWString(localized("NotificationsNone", "There are no notifications.")));
        none->setContentsMargins(2 * kMargin, 2 * kMargin, 2 * kMargin, 2 * kMargin);
        none->setForegroundRole(QPalette::PlaceholderText);
        column->addWidget(none);
    }
    column->addStretch(1);
    m_scroll->setWidget(list); // The one before goes.
    m_clear->setEnabled(!m_rows.empty());
    if (!isVisible())
        return;
    place();
    focusRow(std::max<qsizetype>(focused, 0));
}

qsizetype NotificationPanel::focusedRow() const
{
    const QWidget* focus = focusWidget();
    for (size_t i = 0; i < m_rows.size(); ++i)
        if (focus && (m_rows[i] == focus || m_rows[i]->isAncestorOf(focus)))
            return static_cast<qsizetype>(i);
    return -1;
}

void NotificationPanel::focusRow(qsizetype index)
{
    if (m_rows.empty()) {
        setFocus();
        return;
    }
    NotificationRow* row = m_rows[static_cast<size_t>(
        std::clamp<qsizetype>(index, 0, static_cast<qsizetype>(m_rows.size()) - 1))];
    row->setFocus();
    m_scroll->ensureWidgetVisible(row, 0, 0);
}

void NotificationPanel::clear()
{
    auto* center = Vs::NotificationCenter::get();
    for (Vs::Notification* notification : center->notifications())
        center->remove(notification);
}

void NotificationPanel::showWork()
{
    const bool works = !m_progress->isHidden();
    if (works) {
        m_workText->setText(m_progress->text());
        m_workBar->setValue(m_progress->value());
        m_cancel->setEnabled(!m_progress->cancelled());
    }
    // Nothing can be started while work runs.
    m_scroll->setEnabled(!works);
    if (m_work->isHidden() != works)
        return;
    m_work->setVisible(works);
    if (isVisible())
        place();
}

void NotificationPanel::notificationSent(Vs::NotificationEvent* event)
{
    if (!isVisible())
        return;
    Vs::NotificationCenter::get()->markSeen(event->notification());
    m_fillTimer.start(0);
}

void NotificationPanel::notificationRemoved(Vs::NotificationEvent* event)
{
    // A disabled row loses the focus.
    if (m_focused < 0)
        m_focused = focusedRow();
    // The notification is gone before the list is rebuilt.
    for (NotificationRow* row : m_rows)
        if (row->notification() == event->notification())
            row->setEnabled(false);
    m_fillTimer.start(0);
}

} // namespace Vu
