#include "UI/Commands/Adaptations/QT/Shell/FlowLayout.h"

#include <algorithm>

namespace Vu::Commands {

FlowLayout::FlowLayout(QWidget* parent, int spacing, std::optional<Cells> cells)
    : QLayout(parent), m_cells(cells)
{
    setSpacing(spacing);
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem* item)
{
    m_items.emplace_back(item);
}

QLayoutItem* FlowLayout::itemAt(int index) const
{
    return index >= 0 && index < count() ? m_items[static_cast<size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index)
{
    if (index < 0 || index >= count())
        return nullptr;
    QLayoutItem* item = m_items[static_cast<size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    return item;
}

QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const auto& item : m_items)
        size = size.expandedTo(item->minimumSize());
    const QMargins margins = contentsMargins();
    return size + QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

void FlowLayout::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

QSize FlowLayout::sizeOf(const QLayoutItem& item, int width) const
{
    if (!m_cells)
        return item.sizeHint();
    const int inRow = std::max(1, (width + spacing()) / (m_cells->least + spacing()));
    const int cell = std::min((width - (inRow - 1) * spacing()) / inRow, m_cells->most);
    return {cell, item.heightForWidth(cell)};
}

int FlowLayout::arrange(const QRect& rect, bool place) const
{
    const QMargins margins = contentsMargins();
    const QRect inner = rect.marginsRemoved(margins);
    int x = inner.x();
    int y = inner.y();
    int rowHeight = 0;
    for (const auto& item : m_items) {
        if (item->isEmpty())
            continue;
        const QSize size = sizeOf(*item, inner.width());
        if (x > inner.x() && x + size.width() > inner.x() + inner.width()) {
            x = inner.x();
            y += rowHeight + spacing();
            rowHeight = 0;
        }
        if (place)
            item->setGeometry(QRect(QPoint(x, y), size));
        x += size.width() + spacing();
        rowHeight = std::max(rowHeight, size.height());
    }
    return y + rowHeight - rect.y() + margins.bottom();
}

} // namespace Vu::Commands
