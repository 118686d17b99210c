#include "UI/Base/Window/PagePreview.h"

#include "UI/Base/Window/PagePainter.h"

#include <QPainter>

#include <algorithm>

namespace Vu {

namespace {
constexpr int kWidth = 460, kHeight = 380;
/// Around the paper, where its shadow falls.
constexpr int kBorder = 12;
constexpr int kShadow = 3;
} // namespace

PagePreview::PagePreview(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setMinimumSize(kWidth / 2, kHeight / 2);
}

void PagePreview::show(std::optional<VectorPage> page, const QString& reason)
{
    m_page = std::move(page);
    m_reason = reason;
    m_working.clear();
    setAccessibleDescription(reason);
    update();
}

// At once, since whoever makes the page may leave no time for painting.
void PagePreview::showWorking(const QString& text)
{
    m_working = text;
    setAccessibleDescription(text);
    repaint();
}

QSize PagePreview::sizeHint() const
{
    return {kWidth, kHeight};
}

void PagePreview::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.save();
    paintShown(painter);
    painter.restore();
    if (!m_working.isEmpty())
        paintWorking(painter);
}

void PagePreview::paintWorking(QPainter& painter) const
{
    QRect box = fontMetrics().boundingRect(m_working).adjusted(-kBorder, -kBorder, kBorder, kBorder);
    box.moveCenter(rect().center());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRoundedRect(box, kBorder / 2.0, kBorder / 2.0);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(box, Qt::AlignCenter, m_working);
}

void PagePreview::paintShown(QPainter& painter) const
{
    if (!m_page) {
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(rect().adjusted(kBorder, kBorder, -kBorder, -kBorder),
                         Qt::AlignCenter | Qt::TextWordWrap, m_reason);
        return;
    }
    const double dots =
        std::min((width() - 2.0 * kBorder) / m_page->width, (height() - 2.0 * kBorder) / m_page->height);
    const QRectF paper((width() - m_page->width * dots) / 2, (height() - m_page->height * dots) / 2,
                       m_page->width * dots, m_page->height * dots);
    painter.fillRect(paper.translated(kShadow, kShadow), QColor(0, 0, 0, 70));
    painter.fillRect(paper, Qt::white);
    painter.setClipRect(paper);
    painter.translate(paper.topLeft());
    paintPage(*m_page, painter, dots);
}

} // namespace Vu
