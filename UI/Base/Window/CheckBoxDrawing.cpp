#include "UI/Base/Window/CheckBoxDrawing.h"

#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace Vu {
namespace {

constexpr double kRadius = 3, kThickness = 1.4, kTickThickness = 2;

/// For a box one unit wide and high.
constexpr QPointF kTick[] = {{0.24, 0.52}, {0.43, 0.72}, {0.77, 0.30}};
constexpr QPointF kDash[] = {{0.27, 0.5}, {0.73, 0.5}};

template <size_t kCount>
QPolygonF within(const QRectF& box, const QPointF (&points)[kCount])
{
    QPolygonF polygon;
    for (const QPointF& point : points)
        polygon << box.topLeft() + QPointF(point.x() * box.width(), point.y() * box.height());
    return polygon;
}

} // namespace

void drawCheckBox(const QStyleOption& option, QPainter& painter)
{
    const QPalette& palette = option.palette;
    const bool isUsable = option.state & QStyle::State_Enabled;
    const bool isMarked = option.state & (QStyle::State_On | QStyle::State_NoChange);
    const QColor frame = palette.color(QPalette::PlaceholderText);
    const QColor ground =
        isMarked && isUsable ? palette.color(QPalette::Highlight) : palette.color(QPalette::Base);
    const double side = std::min(option.rect.width(), option.rect.height()) - 1;
    QRectF box(0, 0, side, side);
    box.moveCenter(QRectF(option.rect).center());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(isMarked && isUsable ? ground : frame, kThickness));
    painter.setBrush(ground);
    painter.drawRoundedRect(box.adjusted(kThickness / 2, kThickness / 2, -kThickness / 2, -kThickness / 2),
                            kRadius, kRadius);
    const QColor mark = isUsable ? palette.color(QPalette::HighlightedText) : frame;
    painter.setPen(QPen(mark, kTickThickness, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (option.state & QStyle::State_On)
        painter.drawPolyline(within(box, kTick));
    else if (option.state & QStyle::State_NoChange)
        painter.drawPolyline(within(box, kDash));
    painter.restore();
}

} // namespace Vu
