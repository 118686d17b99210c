#include "UI/Commands/Adaptations/QT/Itemhub/SearchResult.h"

#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Localized.h"

#include <QDateTime>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>

namespace Vu::Commands {
namespace {

constexpr char16_t kFullStar = u'\u2605', kEmptyStar = u'\u2606';

QString shown(const std::string& utf8)
{
    return QString::fromStdString(utf8).simplified();
}

QString detailOf(const SearchResult::Item& item)
{
    const QDateTime changed =
        QDateTime::fromString(QString::fromStdString(item.changedAt()), Qt::ISODateWithMs).toLocalTime();
    const QString when =
        changed.isValid() ? QLocale().toString(changed.date(), QLocale::ShortFormat) : QString();
    return QString::fromStdWString(localizedFormat("ItemhubFoundDetail", "No. %1% by %2%, %3%", item.id(),
                                                   shown(item.createdBy()).toStdWString(),
                                                   when.toStdWString()));
}

} // namespace

SearchResult::SearchResult(const Item& item, QWidget* parent)
    : QAbstractButton(parent),
      m_item(item),
      m_caption(shown(item.caption())),
      m_detail(detailOf(item)),
      m_isFavourite(item.isFavourite())
{
    setObjectName(QStringLiteral("searchResult"));
    // The bar keeps the focus, and moves the selection.
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(m_caption);
    setAccessibleDescription(m_detail);
    const QString description = shown(item.description());
    PlainText::setTooltip(this, description.isEmpty() ? m_caption : m_caption + u'\n' + description);
    setMouseTracking(true);
}

void SearchResult::selected(bool value)
{
    m_isSelected = value;
    update();
}

QSize SearchResult::sizeHint() const
{
    return {0, 2 * fontMetrics().height() + 2 * kMargin};
}

QRect SearchResult::star() const
{
    const int side = height();
    return {width() - side, 0, side, side};
}

void SearchResult::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QPalette& colours = palette();
    const bool lit = m_isSelected;
    if (lit)
        painter.fillRect(rect(), colours.highlight());
    else if (underMouse())
        painter.fillRect(rect(), colours.midlight());
    const QRect room = rect().adjusted(kMargin, kMargin, -star().width(), -kMargin);
    const QColor strong = colours.color(lit ? QPalette::HighlightedText : QPalette::Text);
    const QColor faint = colours.color(lit ? QPalette::HighlightedText : QPalette::PlaceholderText);
    const QFontMetrics metrics = fontMetrics();
    painter.setPen(strong);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignTop,
                     metrics.elidedText(m_caption, Qt::ElideRight, room.width()));
    painter.setPen(faint);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignBottom,
                     metrics.elidedText(m_detail, Qt::ElideRight, room.width()));
    if (!m_isFavourite && !underMouse() && !lit)
        return;
    painter.setPen(m_isFavourite ? strong : faint);
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    painter.setFont(large);
    painter.drawText(star(), Qt::AlignCenter, QString(QChar(m_isFavourite ? kFullStar : kEmptyStar)));
}

void SearchResult::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !star().contains(event->position().toPoint())) {
        QAbstractButton::mouseReleaseEvent(event);
        return;
    }
    setDown(false);
    bookmark();
}

void SearchResult::bookmark()
{
    const auto* service = Vs::ItemhubUtilities::get();
    try {
        service->setFavorite(itemId(), !m_isFavourite);
        m_isFavourite = !m_isFavourite;
        update();
    } catch (const std::exception&) {
        service->fireErrorMessage(Vs::ItemhubUtilities::currentFailure());
    }
}

void SearchResult::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void SearchResult::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

} // namespace Vu::Commands
