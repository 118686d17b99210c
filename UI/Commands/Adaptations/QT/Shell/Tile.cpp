#include "UI/Commands/Adaptations/QT/Shell/Tile.h"

#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Commands/Adaptations/QT/Told.h"
#include "UI/Commands/Resources.h"

#include <QApplication>
#include <QDrag>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>
#include <QToolButton>
#include <QUrl>

namespace Vu::Commands {
namespace {

constexpr int kRadius = 8;
constexpr int kPadding = 12;
constexpr int kIconSize = 64;
constexpr int kCornerSize = 24;
constexpr int kFromCorner = 6;
constexpr int kLineSpacing = 3;
constexpr double kFaint = 0.45;
constexpr int kMiddleLightness = 128;

int pictureHeight(int width)
{
    return width * 5 / 8;
}

QFont boldOf(QFont font)
{
    font.setBold(true);
    return font;
}

QFont smallOf(QFont font)
{
    font.setPointSizeF(font.pointSizeF() * 0.9);
    return font;
}

/// The background of the pictures: close to the canvas's background, so that models look the same here.
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
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
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
    showCornerButtons();
    update();
}

void Tile::mark(const QIcon& icon)
{
    m_mark = icon;
    update();
}

QToolButton* Tile::makeCornerButton(const char* name, std::function<void()> Tile::*action)
{
    auto* button = new QToolButton(this);
    button->setObjectName(QLatin1String(name));
    button->setCursor(Qt::ArrowCursor);
    button->setFocusPolicy(Qt::NoFocus);
    connect(button, &QToolButton::clicked, this, [this, action] {
        // The action may delete the tile, and with it the running function.
        const std::function<void()> copy = this->*action;
        copy();
    });
    return button;
}

void Tile::onRemove(std::function<void()> action, const QIcon& icon, const QString& tooltip)
{
    m_onRemove = std::move(action);
    m_remove = makeCornerButton("removeTile", &Tile::m_onRemove);
    m_remove->setIcon(icon);
    PlainText::setTooltip(m_remove, tooltip);
    m_remove->setAccessibleName(tooltip);
    showCornerButtons();
}

void Tile::onPin(std::function<void()> action)
{
    m_onPin = std::move(action);
    m_pin = makeCornerButton("pinTile", &Tile::m_onPin);
    pinned(m_pinned);
}

void Tile::pinned(bool value)
{
    m_pinned = value;
    if (!m_pin)
        return;
    m_pin->setIcon(iconOf(value ? Resources::PinnedMRU() : Resources::UnpinnedMRU()));
    const QString tooltip = value ? told("HomeUnpin", "No longer keep at the front")
                                  : told("HomePin", "Keep at the front of this list");
    PlainText::setTooltip(m_pin, tooltip);
    m_pin->setAccessibleName(tooltip);
    showCornerButtons();
}

void Tile::showCornerButtons()
{
    const bool touched = underMouse() || hasFocus();
    if (m_remove)
        m_remove->setVisible(m_missing || touched);
    if (m_pin)
        m_pin->setVisible(m_pinned || touched);
}

void Tile::resizeEvent(QResizeEvent* event)
{
    QAbstractButton::resizeEvent(event);
    QRect corner(width() - kCornerSize - kFromCorner, kFromCorner, kCornerSize, kCornerSize);
    for (QToolButton* button : {m_remove, m_pin}) {
        if (!button)
            continue;
        button->setGeometry(corner);
        corner.translate(-kCornerSize - kFromCorner / 2, 0);
    }
}

int Tile::heightForWidth(int width) const
{
    return pictureHeight(width) + 3 * kPadding / 2 + QFontMetrics(boldOf(font())).height() +
           2 * (QFontMetrics(smallOf(font())).height() + kLineSpacing);
}

void Tile::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    showCornerButtons();
}

void Tile::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    showCornerButtons();
}

void Tile::focusInEvent(QFocusEvent* event)
{
    QAbstractButton::focusInEvent(event);
    showCornerButtons();
}

void Tile::focusOutEvent(QFocusEvent* event)
{
    QAbstractButton::focusOutEvent(event);
    showCornerButtons();
}

QToolButton* Tile::buttonOf(const QKeyEvent& event) const
{
    if (event.modifiers() != Qt::NoModifier)
        return nullptr;
    return event.key() == Qt::Key_Delete ? m_remove : event.key() == Qt::Key_P ? m_pin : nullptr;
}

bool Tile::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && buttonOf(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QAbstractButton::event(event);
}

void Tile::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
    } else if (QToolButton* button = buttonOf(*event)) {
        button->click();
    } else if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right || event->key() == Qt::Key_Up ||
               event->key() == Qt::Key_Down) {
        event->ignore(); // The list knows its rows.
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

void Tile::mousePressEvent(QMouseEvent* event)
{
    m_pressed = event->position().toPoint();
    QAbstractButton::mousePressEvent(event);
}

void Tile::mouseMoveEvent(QMouseEvent* event)
{
    const bool drags =
        isDown() && !m_file.empty() && !m_missing &&
        (event->position().toPoint() - m_pressed).manhattanLength() >= QApplication::startDragDistance();
    if (drags)
        dragFile();
    else
        QAbstractButton::mouseMoveEvent(event);
}

/// Drags out the file as it is on the disk. The release ends the drag, so it must not count as a click.
void Tile::dragFile()
{
    setDown(false);
    auto* data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(QString::fromStdWString(m_file))});
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    constexpr int kDraggedSide = 64;
    const QPixmap shown =
        m_picture.isNull() ? m_icon.pixmap(kIconSize)
                           : QPixmap::fromImage(m_picture.scaled(
                                 kDraggedSide, kDraggedSide, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    drag->setPixmap(shown);
    drag->exec(Qt::CopyAction);
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

void Tile::paintMark(QPainter& painter) const
{
    if (m_mark.isNull())
        return;
    constexpr int kMarkSize = 24, kGround = 32;
    const QRect ground(width() - kGround - kFromCorner, pictureHeight(width()) - kGround - kFromCorner,
                       kGround, kGround);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawEllipse(ground);
    QRect place(0, 0, kMarkSize, kMarkSize);
    place.moveCenter(ground.center());
    m_mark.paint(&painter, place);
}

void Tile::paintTexts(QPainter& painter) const
{
    const int textWidth = width() - 2 * kPadding;
    int y = pictureHeight(width()) + kPadding * 3 / 4;
    const auto line = [&](const QString& text, const QFont& used, QPalette::ColorRole role,
                          Qt::TextElideMode elide) {
        const QFontMetrics metrics(used);
        painter.setFont(used);
        painter.setPen(palette().color(role));
        painter.drawText(QRect(kPadding, y, textWidth, metrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(text, elide, textWidth));
        y += metrics.height() + kLineSpacing;
    };
    line(text(), boldOf(font()), m_missing ? QPalette::PlaceholderText : QPalette::Text, Qt::ElideMiddle);
    const QFont small = smallOf(font());
    line(m_place, small, QPalette::PlaceholderText, Qt::ElideLeft);
    line(m_note, small, QPalette::PlaceholderText, Qt::ElideRight);
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
    paintPicture(painter, QRect(1, 1, width() - 2, pictureHeight(width())));
    painter.restore();
    paintMark(painter);
    // What is faint says that the file is missing; the texts, which say which one, stay readable.
    painter.setOpacity(1);
    paintTexts(painter);
    painter.setPen(QPen(palette().color(touched ? QPalette::Highlight : QPalette::Dark), chosen ? 3 : 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(shape);
}

} // namespace Vu::Commands
