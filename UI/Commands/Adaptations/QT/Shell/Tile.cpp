#include "UI/Commands/Adaptations/QT/Shell/Tile.h"

#include "UI/Base/Window/PlainText.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolButton>

namespace Vu::Commands {
namespace {

constexpr int kRadius = 8;
constexpr int kPadding = 12;
constexpr int kIconSize = 64;
constexpr int kRemoveSize = 24;
constexpr double kFaint = 0.45;
constexpr int kMiddleLightness = 128;

/// Where the pictures stand: about the ground that models have in the canvas, so that they look as there.
QLinearGradient ground(const QRect& rect, bool dark)
{
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, dark ? QColor(0x55, 0x5e, 0x69) : QColor(0xd5, 0xde, 0xe8));
    gradient.setColorAt(1, dark ? QColor(0x3c, 0x42, 0x4a) : QColor(0xf0, 0xf3, 0xf6));
    return gradient;
}

} // namespace

Tile::Tile(const QString& name, const QIcon& icon, QWidget* parent) : QAbstractButton(parent), m_icon(icon)
{
    setText(name);
    setAccessibleName(name);
    setFixedSize(kWidth, kHeight);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
}

void Tile::place(const QString& text)
{
    m_place = text;
    describe();
}

void Tile::note(const QString& text)
{
    m_note = text;
    describe();
}

void Tile::describe()
{
    setAccessibleDescription(m_place + QStringLiteral(", ") + m_note);
    update();
}

void Tile::picture(const QImage& image)
{
    m_picture = image;
    update();
}

void Tile::missing(bool value)
{
    m_missing = value;
    showRemove();
    update();
}

void Tile::mark(const QIcon& icon)
{
    m_mark = icon;
    update();
}

void Tile::onRemove(std::function<void()> action, const QIcon& icon, const QString& tooltip)
{
    m_onRemove = std::move(action);
    m_remove = new QToolButton(this);
    m_remove->setObjectName(QStringLiteral("removeTile"));
    m_remove->setIcon(icon);
    PlainText::setTooltip(m_remove, tooltip);
    m_remove->setAccessibleName(tooltip);
    m_remove->setCursor(Qt::ArrowCursor);
    m_remove->setFocusPolicy(Qt::NoFocus);
    m_remove->setGeometry(kWidth - kRemoveSize - 6, 6, kRemoveSize, kRemoveSize);
    connect(m_remove, &QToolButton::clicked, this, [this] {
        // The action may delete the tile, and with it the function that runs.
        const std::function<void()> action = m_onRemove;
        action();
    });
    showRemove();
}

void Tile::showRemove()
{
    if (m_remove)
        m_remove->setVisible(m_missing || underMouse() || hasFocus());
}

void Tile::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    showRemove();
}

void Tile::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    showRemove();
}

void Tile::focusInEvent(QFocusEvent* event)
{
    QAbstractButton::focusInEvent(event);
    showRemove();
}

void Tile::focusOutEvent(QFocusEvent* event)
{
    QAbstractButton::focusOutEvent(event);
    showRemove();
}

void Tile::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
    } else if (event->key() == Qt::Key_Delete && m_remove) {
        m_remove->click();
    } else if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right || event->key() == Qt::Key_Up ||
               event->key() == Qt::Key_Down) {
        event->ignore(); // The list knows its rows.
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

void Tile::paintPicture(QPainter& painter, const QRect& rect) const
{
    const bool dark = palette().color(QPalette::Window).lightness() < kMiddleLightness;
    painter.fillRect(rect, ground(rect, dark));
    if (m_picture.isNull()) {
        QRect square(0, 0, kIconSize, kIconSize);
        square.moveCenter(rect.center());
        m_icon.paint(&painter, square);
        return;
    }
    QRectF target(QPointF(0, 0), QSizeF(m_picture.size()).scaled(rect.size(), Qt::KeepAspectRatio));
    target.moveCenter(QRectF(rect).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, m_picture);
}

void Tile::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_missing)
        painter.setOpacity(kFaint);
    const bool chosen = hasFocus();
    const bool touched = chosen || underMouse();
    const QRectF frame = QRectF(rect()).adjusted(1, 1, -1, -1);
    QPainterPath shape;
    shape.addRoundedRect(frame, kRadius, kRadius);
    painter.fillPath(shape, palette().color(isDown() ? QPalette::AlternateBase : QPalette::Base));

    painter.save();
    painter.setClipPath(shape);
    paintPicture(painter, QRect(1, 1, width() - 2, kPictureHeight));
    painter.restore();
    if (!m_mark.isNull()) {
        constexpr int kMarkSize = 24, kGround = 32, kFromEdge = 6;
        const QRect ground(width() - kGround - kFromEdge, kPictureHeight - kGround - kFromEdge, kGround,
                           kGround);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::Base));
        painter.drawEllipse(ground);
        QRect place(0, 0, kMarkSize, kMarkSize);
        place.moveCenter(ground.center());
        m_mark.paint(&painter, place);
    }

    const int textWidth = width() - 2 * kPadding;
    QFont bold = font();
    bold.setBold(true);
    int y = kPictureHeight + 9;
    const auto line = [&](const QString& text, const QFont& used, QPalette::ColorRole role,
                          Qt::TextElideMode elide) {
        const QFontMetrics metrics(used);
        painter.setFont(used);
        painter.setPen(palette().color(role));
        painter.drawText(QRect(kPadding, y, textWidth, metrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(text, elide, textWidth));
        y += metrics.height() + 3;
    };
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    line(text(), bold, QPalette::Text, Qt::ElideMiddle);
    line(m_place, small, QPalette::PlaceholderText, Qt::ElideLeft);
    line(m_note, small, QPalette::PlaceholderText, Qt::ElideRight);

    painter.setOpacity(1);
    painter.setPen(QPen(palette().color(touched ? QPalette::Highlight : QPalette::Mid), chosen ? 2 : 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(shape);
}

} // namespace Vu::Commands
