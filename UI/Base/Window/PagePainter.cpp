#include "UI/Base/Window/PagePainter.h"

#include "Server/Scene/OffscreenRenderer.h"
#include "UI/Base/Program/VectorPage.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Vu {

namespace {

/// The height of a capital, as a fraction of a font's size.
constexpr double kCapital = 0.72;

} // namespace

void paintPage(const VectorPage& page, QPainter& painter, double dots)
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    for (const VectorPage::Picture& picture : page.pictures) {
        const QImage image(picture.image->pixels.data(), int(picture.image->width),
                           int(picture.image->height), QImage::Format_RGBA8888);
        painter.drawImage(QRectF(picture.place.x * dots, picture.place.y * dots, picture.width * dots,
                                 picture.height * dots),
                          image);
    }
    for (const VectorPage::Line& line : page.lines) {
        QPen pen(Qt::black, line.width * dots, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
        // Dashes are counted in widths of the line.
        if (line.dashed)
            pen.setDashPattern({3 / line.width * 0.7, 1.5 / line.width * 0.7});
        painter.setPen(pen);
        QPolygonF points;
        for (const GkPoint2d& point : line.points)
            points << QPointF(point.x * dots, point.y * dots);
        painter.drawPolyline(points);
    }
    painter.setPen(Qt::black);
    for (const VectorPage::Text& text : page.texts) {
        QFont font("DejaVu Sans");
        font.setPixelSize(std::max(1, int(std::lround(text.height / kCapital * dots))));
        painter.setFont(font);
        painter.drawText(QPointF(text.place.x * dots, text.place.y * dots),
                         QString::fromStdWString(text.text));
    }
}

} // namespace Vu
