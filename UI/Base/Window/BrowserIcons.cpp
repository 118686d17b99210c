#include "UI/Base/Window/BrowserIcons.h"

#include <QColor>
#include <QPainter>
#include <QPen>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>

#include <utility>

namespace Vu::BrowserIcons {
namespace {

constexpr int kSide = 32; // Of a picture, in pixels.

class Drawing
{
public:
    explicit Drawing(QPixmap onto = blank()) : m_picture(std::move(onto)), m_painter(&m_picture)
    {
        m_painter.setRenderHint(QPainter::Antialiasing);
    }

    QPainter& painter() { return m_painter; }
    void pen(const QColor& colour, double width)
    {
        m_painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    }
    QPixmap finished()
    {
        m_painter.end();
        return m_picture;
    }

private:
    static QPixmap blank()
    {
        QPixmap picture(kSide, kSide);
        picture.fill(Qt::transparent);
        return picture;
    }

    QPixmap m_picture;
    QPainter m_painter;
};

constexpr QColor kOutline(0x5b, 0x6b, 0x7c), kLight(0xb9, 0xd6, 0xf2), kMedium(0x6f, 0xa8, 0xdc),
    kDark(0x3f, 0x7f, 0xbf);

/// `x`, `y` is its middle corner, the one nearest to the viewer.
void drawBox(Drawing& drawing, double x, double y, double size)
{
    const QPointF top(x, y - size), left(x - size * 0.87, y - size / 2), right(x + size * 0.87, y - size / 2);
    const QPointF middle(x, y), lowLeft = left + QPointF(0, size), lowRight = right + QPointF(0, size);
    const QPointF bottom(x, y + size);
    const auto side = [&](const QColor& colour, const QPolygonF& corners) {
        drawing.painter().setBrush(colour);
        drawing.painter().drawPolygon(corners);
    };
    drawing.pen(kOutline, 1.6);
    side(kLight, {{top, right, middle, left}});
    side(kMedium, {{left, middle, bottom, lowLeft}});
    side(kDark, {{middle, right, lowRight, bottom}});
}

} // namespace

QPixmap part()
{
    Drawing drawing;
    drawBox(drawing, 16, 16, 13);
    return drawing.finished();
}

QPixmap assembly()
{
    Drawing drawing;
    drawBox(drawing, 16, 9, 7);
    drawBox(drawing, 9, 21.5, 7);
    drawBox(drawing, 23, 21.5, 7);
    return drawing.finished();
}

QPixmap damagedPart()
{
    Drawing drawing(part());
    QPainter& painter = drawing.painter();
    drawing.pen(QColor(0x7a, 0x4b, 0x00), 1.4);
    painter.setBrush(QColor(0xff, 0xc1, 0x3d));
    painter.drawPolygon(QPolygonF({{22, 12.5}, {31, 30}, {13, 30}}));
    drawing.pen(QColor(0x3d, 0x25, 0x00), 2.4);
    painter.drawLine(QPointF(22, 19), QPointF(22, 23.5));
    painter.drawPoint(QPointF(22, 27.2));
    return drawing.finished();
}

QPixmap camera()
{
    Drawing drawing;
    QPainter& painter = drawing.painter();
    drawing.pen(kOutline, 1.6);
    painter.setBrush(kMedium);
    painter.drawRoundedRect(QRectF(2.5, 10, 18.5, 14), 2.5, 2.5);
    painter.setBrush(kLight);
    painter.drawPolygon(QPolygonF({{21, 15}, {29.5, 10}, {29.5, 24}, {21, 19}}));
    return drawing.finished();
}

} // namespace Vu::BrowserIcons
