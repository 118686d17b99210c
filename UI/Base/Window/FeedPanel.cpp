#include "UI/Base/Window/FeedPanel.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Window/Theme.h"

#include <QBoxLayout>
#include <QDateTime>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QMenu>
#include <QPainter>
#include <QStyledItemDelegate>

namespace Vu {
namespace {

const AreaContents kFeed(
    "DesignFeed", [](QWidget* parent) { return new FeedPanel(parent); },
    [] { return localized("AreaDesignFeed", "Design Feed"); });

constexpr int kIcon = 18;
enum Role { kDetail = Qt::UserRole, kKind };

QString text(const std::wstring& wide)
{
    return QString::fromStdWString(wide);
}

/// The time alone for today, preceded by the date for other days.
QString timeOf(const FeedEntry& entry)
{
    if (entry.time == std::chrono::system_clock::time_point())
        return {};
    using std::chrono::milliseconds;
    const QDateTime when = QDateTime::fromMSecsSinceEpoch(
        std::chrono::duration_cast<milliseconds>(entry.time.time_since_epoch()).count());
    const QLocale locale;
    return when.date() == QDate::currentDate() ? locale.toString(when.time(), QStringLiteral("HH:mm:ss"))
                                               : locale.toString(when, QLocale::ShortFormat);
}

/// The title, and in fainter text below it its origin and time.
class EntryDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {0, 2 * option.fontMetrics.height() + 2 * kMargin};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        item.text.clear();
        item.icon = QIcon();
        option.widget->style()->drawControl(QStyle::CE_ItemViewItem, &item, painter, option.widget);
        const bool chosen = option.state & QStyle::State_Selected;
        const auto kind = static_cast<FeedEntry::Kind>(index.data(kKind).toInt());
        const QPalette& colours = option.palette;
        const QColor faint =
            chosen ? colours.color(QPalette::HighlightedText) : colours.color(QPalette::PlaceholderText);
        const QColor strong = kind == FeedEntry::Kind::Undone ? faint
                              : chosen                        ? colours.color(QPalette::HighlightedText)
                                                              : colours.color(QPalette::Text);
        painter->save();
        QRect room = option.rect.adjusted(kMargin, kMargin, -kMargin, -kMargin);
        if (kind == FeedEntry::Kind::Present)
            painter->fillRect(QRect(option.rect.topLeft(), QSize(3, option.rect.height())),
                              colours.color(QPalette::Highlight));
        index.data(Qt::DecorationRole).value<QIcon>().paint(painter, room.x(), room.y(), kIcon, kIcon);
        room.setLeft(room.left() + kIcon + kMargin);
        QFont font = option.font;
        font.setBold(kind == FeedEntry::Kind::Present);
        painter->setFont(font);
        painter->setPen(strong);
        const QFontMetrics metrics(font);
        painter->drawText(room, Qt::AlignLeft | Qt::AlignTop,
                          metrics.elidedText(index.data().toString(), Qt::ElideRight, room.width()));
        painter->setFont(option.font);
        painter->setPen(faint);
        painter->drawText(
            room, Qt::AlignLeft | Qt::AlignBottom,
            option.fontMetrics.elidedText(index.data(kDetail).toString(), Qt::ElideRight, room.width()));
        painter->restore();
    }
};

} // namespace

FeedPanel::FeedPanel(QWidget* parent)
    : QWidget(parent), m_list(new QListWidget(this)), m_nothing(PlainText::label(this))
{
    Accessible::menus(this);
    m_list->setObjectName(QStringLiteral("designFeed"));
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setItemDelegate(new EntryDelegate(m_list));
    m_list->setUniformItemSizes(true);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    m_list->setAccessibleName(text(localized("AreaDesignFeed", "Design Feed")));
    m_nothing->setText(text(localized("FeedNothing", "Nothing has been done to this document yet.")));
    m_nothing->setWordWrap(true);
    m_nothing->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_nothing->setContentsMargins(kMargin, 2 * kMargin, kMargin, kMargin);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_nothing);
    column->addWidget(m_list, 1);
    connect(m_list, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { run(m_list->row(item)); });
    connect(m_list, &QListWidget::customContextMenuRequested, this,
            [this](const QPoint& place) { showMenu(place); });
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, [this] { refresh(); });
    m_subscriptions.add(DesignFeed::get(), this);
    refresh();
}

/// While hidden it waits until it is shown.
void FeedPanel::feedChanged()
{
    if (isVisible())
        m_soon.start(0);
}

void FeedPanel::showEvent(QShowEvent*)
{
    refresh();
}

void FeedPanel::refresh()
{
    m_soon.stop();
    const DocumentSession* session = SessionMgr::get()->activeDocumentSession();
    m_entries = session ? DesignFeed::get()->entries(*session->document()) : std::vector<FeedEntry>();
    const int chosen = m_list->currentRow();
    m_list->clear();
    for (const FeedEntry& entry : m_entries) {
        auto* item = new QListWidgetItem(iconOf(entry.icon), text(entry.title), m_list);
        QString detail = text(entry.origin);
        const QString time = timeOf(entry);
        if (!detail.isEmpty() && !time.isEmpty())
            detail += QStringLiteral("  \u00b7  ");
        item->setData(kDetail, detail + time);
        item->setData(kKind, static_cast<int>(entry.kind));
        item->setData(Qt::AccessibleDescriptionRole, detail + time);
        const std::wstring hint =
            entry.action ? L'\n' + localizedFormat("FeedHowTo", "Double-click: %1%", entry.actionTitle) : L"";
        item->setData(Qt::ToolTipRole, PlainText::tooltip(entry.title + hint));
    }
    m_list->setCurrentRow(std::min(chosen, m_list->count() - 1));
    m_nothing->setVisible(m_entries.empty());
    m_list->setVisible(!m_entries.empty());
}

void FeedPanel::run(int row)
{
    if (row >= 0 && row < static_cast<int>(m_entries.size()))
        if (const auto action = m_entries[static_cast<size_t>(row)].action)
            action();
}

void FeedPanel::showMenu(const QPoint& place)
{
    const int row = m_list->row(m_list->itemAt(place));
    if (row < 0 || !m_entries[static_cast<size_t>(row)].action)
        return;
    QMenu menu(this);
    const QAction* go = menu.addAction(text(m_entries[static_cast<size_t>(row)].actionTitle));
    // The feed may have changed meanwhile.
    const auto action = m_entries[static_cast<size_t>(row)].action;
    if (menu.exec(m_list->viewport()->mapToGlobal(place)) == go)
        action();
}

} // namespace Vu
