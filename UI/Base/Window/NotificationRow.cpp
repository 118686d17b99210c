#include "UI/Base/Window/NotificationRow.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/Glyph.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"

#include <QBoxLayout>
#include <QDateTime>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMouseEvent>
#include <QToolButton>

namespace Vu {
namespace {

constexpr int kSignSide = 20;
constexpr int kCloseSide = 12;
constexpr qsizetype kLongestText = 600;
constexpr size_t kShownActions = 2;

struct Kind
{
    Glyph glyph;
    const char* key;
    const char* name;
};

/// In the order of NotificationType::Kind.
constexpr Kind kKinds[] = {{Glyph::Error, "NotificationError", "Error"},
                           {Glyph::Warning, "NotificationWarning", "Warning"},
                           {Glyph::Information, "NotificationInformation", "Information"},
                           {Glyph::Offer, "NotificationOffer", "Offer"}};

QString shortened(const std::wstring& text)
{
    QString shown = QString::fromStdWString(text).trimmed();
    if (shown.size() > kLongestText)
        shown = shown.left(kLongestText) + QStringLiteral("\u2026");
    return shown;
}

/// After the event: the notification may remove the row.
template <class Action>
void later(Action&& action)
{
    Application::get()->deferredTasks()->post(std::forward<Action>(action));
}

} // namespace

NotificationRow::NotificationRow(Vs::Notification* notification, Place place, QWidget* parent)
    : QFrame(parent), m_notification(notification), m_place(place)
{
    Accessible::pressable(this, place == Place::List ? QAccessible::ListItem : QAccessible::Notification,
                          [this] { activate(); });
    setObjectName(place == Place::Toast ? QStringLiteral("toast") : QStringLiteral("notification"));
    setFocusPolicy(place == Place::Toast ? Qt::NoFocus : Qt::StrongFocus);
    if (!notification->clickText().empty())
        setCursor(Qt::PointingHandCursor);
    const Kind& kind = kKinds[notification->type().kind()];
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(2 * kMargin, kMargin + 2, kMargin + 2, kMargin + 2);
    row->setSpacing(kMargin + 2);
    QLabel* sign = PlainText::label(this);
    sign->setPixmap(glyphIcon(kind.glyph).pixmap(QSize(kSignSide, kSignSide), devicePixelRatioF()));
    row->addWidget(sign, 0, Qt::AlignTop);
    auto* column = new QVBoxLayout;
    column->setSpacing(2);
    row->addLayout(column, 1);
    addHead(*column);
    addText(*column, shortened(notification->text()), "notificationText");
    const std::wstring file = FilePlace::shown(notification->file());
    addText(*column, shortened(file), "notificationFile");
    addText(*column, shortened(notification->clickText()), "notificationClick");
    addActions(*column);
    m_close = [notification] {
        later([notification] { Vs::NotificationCenter::get()->remove(notification); });
    };
    QStringList parts{QString::fromStdWString(localized(kind.key, kind.name)),
                      shortened(notification->title())};
    for (const std::wstring* part : {&notification->text(), &file, &notification->clickText()})
        if (!part->empty())
            parts << shortened(*part);
    setAccessibleName(parts.join(QStringLiteral(". ")));
    setAccessibleDescription(timeText());
}

QString NotificationRow::timeText() const
{
    const QDateTime time = QDateTime::fromSecsSinceEpoch(m_notification->time());
    const QString clock = time.toString(QStringLiteral("HH:mm"));
    return time.date() == QDate::currentDate()
               ? clock
               : QLocale().toString(time.date(), QLocale::ShortFormat) + QLatin1Char(' ') + clock;
}

void NotificationRow::addHead(QBoxLayout& column)
{
    auto* head = new QHBoxLayout;
    head->setSpacing(kMargin);
    QLabel* title = PlainText::label(this, PlainText::breakable(shortened(m_notification->title())));
    title->setObjectName(QStringLiteral("notificationTitle"));
    title->setWordWrap(true);
    // A long word must not widen the list.
    title->setMinimumWidth(1);
    head->addWidget(title, 1, Qt::AlignTop);
    QLabel* time = PlainText::label(this, timeText());
    time->setObjectName(QStringLiteral("notificationTime"));
    time->setForegroundRole(QPalette::PlaceholderText);
    head->addWidget(time, 0, Qt::AlignTop);
    auto* close = new QToolButton(this);
    close->setProperty("flat", true);
    close->setObjectName(QStringLiteral("dismissNotification"));
    close->setIcon(glyphIcon(Glyph::Close));
    close->setIconSize(QSize(kCloseSide, kCloseSide));
    const QString dismiss = QString::fromStdWString(localized("NotificationDismiss", "Dismiss"));
    PlainText::setTooltip(close, dismiss);
    close->setAccessibleName(dismiss + QStringLiteral(": ") + shortened(m_notification->title()));
    close->setFocusPolicy(m_place == Place::Toast ? Qt::NoFocus : Qt::TabFocus);
    connect(close, &QToolButton::clicked, this, [this] { m_close(); });
    head->addWidget(close, 0, Qt::AlignTop);
    column.addLayout(head);
}

void NotificationRow::addText(QBoxLayout& column, const QString& text, const char* name)
{
    if (text.isEmpty())
        return;
    QLabel* label = PlainText::label(this, PlainText::breakable(text));
    label->setObjectName(QString::fromLatin1(name));
    label->setWordWrap(true);
    label->setMinimumWidth(1);
    PlainText::setTooltip(label, text);
    column.addWidget(label);
}

void NotificationRow::addActions(QBoxLayout& column)
{
    const std::vector<Vs::NotificationAction>& actions = m_notification->actions();
    if (actions.empty())
        return;
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, kMargin / 2, 0, 0);
    for (size_t i = 0; i < actions.size() && i < kShownActions; ++i) {
        auto* button = new QToolButton(this);
        button->setObjectName(QStringLiteral("notificationAction"));
        button->setText(
            QString::fromStdWString(actions[i].text).replace(QLatin1Char('&'), QLatin1String("&&")));
        button->setAccessibleName(QString::fromStdWString(actions[i].text));
        button->setFocusPolicy(m_place == Place::Toast ? Qt::NoFocus : Qt::StrongFocus);
        connect(button, &QToolButton::clicked, this, [this, notification = m_notification, i] {
            closeList();
            later([notification, i] { Vs::NotificationCenter::get()->act(notification, i); });
        });
        row->addWidget(button);
    }
    row->addStretch(1);
    column.addLayout(row);
}

void NotificationRow::activate()
{
    if (!m_notification->clickText().empty())
        closeList();
    later([notification = m_notification] { Vs::NotificationCenter::get()->activate(notification); });
}

/// The action may ask something, or have an effect that the list would cover.
void NotificationRow::closeList()
{
    if (m_place == Place::List)
        window()->close();
}

void NotificationRow::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        activate();
        break;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        m_close();
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (m_move)
            m_move(event->key() == Qt::Key_Up ? -1 : 1);
        break;
    default:
        QFrame::keyPressEvent(event);
    }
}

void NotificationRow::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        activate();
}

} // namespace Vu
