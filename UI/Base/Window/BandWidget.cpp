#include "UI/Base/Window/BandWidget.h"

#include <QPainter>
#include <QPen>

namespace Vu {

namespace {
/// Visible on light and dark views; a crossing band differs by more than its dashes.
const QColor kInside(0x1e, 0x6f, 0xd9), kCrossing(0x2a, 0x9d, 0x55);
constexpr int kFillOpacity = 36;
} // namespace

BandWidget::BandWidget(QWidget* canvas) : QWidget(canvas)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setObjectName(QStringLiteral("selectionBand"));
}

void BandWidget::showBand(const CanvasBand& band)
{
    m_dashed = band.crossing();
    const QRectF area(QPointF(band.left(), band.top()), QPointF(band.right(), band.bottom()));
    setGeometry(area.toAlignedRect().adjusted(0, 0, 1, 1));
    setVisible(true);
    raise();
    update();
}

void BandWidget::paintEvent(QPaintEvent*)
{
    const QColor line = m_dashed ? kCrossing : kInside;
    QColor fill = line;
    fill.setAlpha(kFillOpacity);
    QPainter painter(this);
    painter.setPen(QPen(line, 1, m_dashed ? Qt::DashLine : Qt::SolidLine));
    painter.setBrush(fill);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace Vu
