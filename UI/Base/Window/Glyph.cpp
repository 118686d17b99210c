#include "UI/Base/Window/Glyph.h"

#include "UI/Base/Window/Theme.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>

namespace Vu {
namespace {

/// All glyphs are drawn in a square of this side, centred on the origin.
constexpr double kSide = 24;
constexpr double kRadius = 9;

QColor colourOf(Glyph glyph)
{
    const QPalette palette = QApplication::palette();
    switch (glyph) {
    case Glyph::Error:
        return errorColour();
    case Glyph::Warning:
        return isDark() ? QColor(0xf2, 0xb8, 0x4b) : QColor(0xa8, 0x62, 0x00);
    case Glyph::Information:
    case Glyph::Offer:
        return palette.color(QPalette::Highlight);
    default:
        return palette.color(QPalette::ButtonText);
    }
}

void drawBell(QPainter& painter)
{
    QPainterPath body(QPointF(-7.5, 5.5));
    body.cubicTo({-5, 3}, {-5.5, -1}, {-5, -3});
    body.cubicTo({-4.5, -9.5}, {4.5, -9.5}, {5, -3});
    body.cubicTo({5.5, -1}, {5, 3}, {7.5, 5.5});
    body.closeSubpath();
    painter.drawPath(body);
    QPainterPath clapper(QPointF(-2.5, 8));
    clapper.cubicTo({-1.5, 10}, {1.5, 10}, {2.5, 8});
    painter.drawPath(clapper);
}

void drawTriangle(QPainter& painter)
{
    QPainterPath path(QPointF(0, -8.5));
    path.lineTo(9, 7.5);
    path.lineTo(-9, 7.5);
    path.closeSubpath();
    painter.drawPath(path);
}

/// The interior of the filled shapes.
void drawSign(QPainter& painter, Glyph glyph)
{
    switch (glyph) {
    case Glyph::Error:
        painter.drawLine(QPointF(-3, -3), QPointF(3, 3));
        painter.drawLine(QPointF(-3, 3), QPointF(3, -3));
        break;
    case Glyph::Warning:
        painter.drawLine(QPointF(0, -3), QPointF(0, 1.5));
        painter.drawPoint(QPointF(0, 5));
        break;
    case Glyph::Information:
        painter.drawPoint(QPointF(0, -4.5));
        painter.drawLine(QPointF(0, -1), QPointF(0, 4.5));
        break;
    default:
        painter.drawLine(QPointF(-4, 0), QPointF(4, 0));
        painter.drawLine(QPointF(1, -3), QPointF(4, 0));
        painter.drawLine(QPointF(1, 3), QPointF(4, 0));
    }
}

void drawArrowHead(QPainter& painter, const QPointF& tip, const QPointF& back)
{
    const QPointF across(-back.y(), back.x());
    painter.drawLine(tip, tip + back + across);
    painter.drawLine(tip, tip + back - across);
}

/// What runs a script. The dot is the line at which it stands.
void drawRun(QPainter& painter, Glyph glyph, const QColor& colour)
{
    const auto filled = [&](auto draw) {
        painter.setBrush(colour);
        draw();
        painter.setBrush(Qt::NoBrush);
    };
    const auto dot = [&](double y) { filled([&] { painter.drawEllipse(QPointF(0, y), 2.2, 2.2); }); };
    switch (glyph) {
    case Glyph::Run:
        filled([&] { painter.drawPolygon(QPolygonF({{-5, -7}, {7, 0}, {-5, 7}})); });
        break;
    case Glyph::Stop:
        filled([&] { painter.drawRect(QRectF(-6, -6, 12, 12)); });
        break;
    case Glyph::StepOver:
        painter.drawArc(QRectF(-8, -7, 16, 16), 15 * 16, 150 * 16);
        drawArrowHead(painter, {8, 0}, {-1, -4});
        dot(6);
        break;
    case Glyph::StepInto:
        painter.drawLine(QPointF(0, -9), QPointF(0, 2));
        drawArrowHead(painter, {0, 2}, {0, -4});
        dot(8);
        break;
    case Glyph::StepOut:
        painter.drawLine(QPointF(0, -9), QPointF(0, 2));
        drawArrowHead(painter, {0, -9}, {0, 4});
        dot(8);
        break;
    case Glyph::RunToLine:
        filled([&] { painter.drawPolygon(QPolygonF({{-9, -6}, {1, 0}, {-9, 6}})); });
        painter.drawLine(QPointF(7, -8), QPointF(7, 8));
        break;
    default: // Restart
        painter.drawArc(QRectF(-7, -7, 14, 14), 40 * 16, 290 * 16);
        drawArrowHead(painter, {7, -4}, {-4, -1});
    }
}

/// `scale` is the number of pixels per unit: a line thinner than one and a half of them looks faint.
void draw(QPainter& painter, Glyph glyph, const QColor& colour, double scale)
{
    constexpr double kWidth = 1.8, kLeastPixels = 1.5;
    QPen pen(colour, std::max(kWidth, kLeastPixels / scale), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(pen);
    if (glyph == Glyph::Bell) {
        drawBell(painter);
        return;
    }
    if (glyph == Glyph::Close) {
        painter.drawLine(QPointF(-5, -5), QPointF(5, 5));
        painter.drawLine(QPointF(-5, 5), QPointF(5, -5));
        return;
    }
    if (glyph == Glyph::Plus) {
        painter.drawLine(QPointF(-6, 0), QPointF(6, 0));
        painter.drawLine(QPointF(0, -6), QPointF(0, 6));
        return;
    }
    if (glyph == Glyph::Down) {
        painter.drawPolyline(QPolygonF({{-6, -3}, {0, 3}, {6, -3}}));
        return;
    }
    if (glyph >= Glyph::Run) {
        drawRun(painter, glyph, colour);
        return;
    }
    painter.setBrush(colour);
    if (glyph == Glyph::Warning)
        drawTriangle(painter);
    else
        painter.drawEllipse(QPointF(), kRadius, kRadius);
    pen.setColor(QApplication::palette().color(QPalette::Base));
    pen.setWidthF(2.2);
    painter.setPen(pen);
    drawSign(painter, glyph);
}

class GlyphEngine : public QIconEngine
{
public:
    explicit GlyphEngine(Glyph glyph) : m_glyph(glyph) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const double scale = std::min(rect.width(), rect.height()) / kSide;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(rect).center());
        painter->scale(scale, scale);
        draw(*painter, m_glyph,
             mode == QIcon::Disabled ? QApplication::palette().color(QPalette::PlaceholderText)
                                     : colourOf(m_glyph),
             scale * painter->device()->devicePixelRatioF());
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }
    QIconEngine* clone() const override { return new GlyphEngine(m_glyph); }

private:
    Glyph m_glyph;
};

} // namespace

QIcon glyphIcon(Glyph glyph)
{
    return QIcon(new GlyphEngine(glyph));
}

} // namespace Vu
