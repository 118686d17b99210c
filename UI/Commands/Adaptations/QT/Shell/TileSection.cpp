#include "UI/Commands/Adaptations/QT/Shell/TileSection.h"

#include "UI/Base/Window/PlainText.h"
#include "UI/Commands/Adaptations/QT/Shell/FlowLayout.h"
#include "UI/Commands/Adaptations/QT/Shell/Tile.h"

#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdlib>

namespace Vu::Commands {
namespace {
constexpr int kSpacing = 16;
constexpr int kSideMargin = 40;
} // namespace

TileSection::TileSection(const QString& title, QWidget* parent)
    : QWidget(parent),
      m_title(PlainText::label(this, title)),
      m_heading(new QHBoxLayout),
      m_flowing(new QWidget(this)),
      m_flow(new FlowLayout(m_flowing, kSpacing, FlowLayout::Cells{Tile::kLeastWidth, Tile::kMostWidth}))
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kSideMargin, kSpacing, kSideMargin, kSpacing);
    column->setSpacing(kSpacing * 3 / 4);
    QFont font = m_title->font();
    font.setPointSizeF(font.pointSizeF() * 1.25);
    font.setBold(true);
    m_title->setFont(font);
    m_heading->addWidget(m_title, 1);
    column->addLayout(m_heading);
    column->addWidget(m_flowing);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    m_flowing->setSizePolicy(policy);
    setSizePolicy(policy);
}

void TileSection::addToHeading(QWidget* widget)
{
    m_heading->addWidget(widget);
    m_last = widget;
}

void TileSection::arrange(const std::vector<Tile*>& tiles)
{
    const int before = focused();
    const Tile* held = before < 0 ? nullptr : m_tiles[static_cast<size_t>(before)];
    const bool stays = std::ranges::find(tiles, held) != tiles.end();
    for (Tile* tile : m_tiles) {
        m_flow->removeWidget(tile);
        if (std::ranges::find(tiles, tile) == tiles.end())
            tile->hide();
    }
    for (Tile* tile : tiles) {
        if (tile->parentWidget() != m_flowing)
            tile->setParent(m_flowing);
        m_flow->addWidget(tile);
        tile->show();
    }
    // They were created after everything that follows this section. Widgets that take no focus aren't in the
    // tab order.
    m_flowing->setFocusPolicy(Qt::TabFocus);
    QWidget* previous = m_last ? m_last : m_flowing;
    for (Tile* tile : tiles) {
        QWidget::setTabOrder(previous, tile);
        previous = tile;
    }
    m_flowing->setFocusPolicy(Qt::NoFocus);
    m_tiles = tiles;
    if (held && !stays && !tiles.empty())
        tiles[std::min(static_cast<size_t>(before), tiles.size() - 1)]->setFocus();
}

void TileSection::placeholder(QWidget* widget)
{
    if (m_placeholder)
        m_placeholder->deleteLater();
    m_placeholder = widget;
    m_flowing->setVisible(!widget);
    if (widget)
        layout()->addWidget(widget);
}

int TileSection::focused() const
{
    for (size_t i = 0; i < m_tiles.size(); ++i)
        if (m_tiles[i]->hasFocus())
            return static_cast<int>(i);
    return -1;
}

Tile* TileSection::neighbour(const Tile* from, int key) const
{
    const auto at = std::find(m_tiles.begin(), m_tiles.end(), from);
    if (at == m_tiles.end())
        return nullptr;
    if (key == Qt::Key_Left)
        return at == m_tiles.begin() ? nullptr : *(at - 1);
    if (key == Qt::Key_Right)
        return at + 1 == m_tiles.end() ? nullptr : *(at + 1);
    Tile* best = nullptr;
    for (Tile* tile : m_tiles) {
        const int down = tile->y() - from->y();
        if (key == Qt::Key_Down ? down <= 0 : down >= 0)
            continue;
        const auto distance = [&](const Tile* to) {
            return std::pair(std::abs(to->y() - from->y()), std::abs(to->x() - from->x()));
        };
        if (!best || distance(tile) < distance(best))
            best = tile;
    }
    return best;
}

void TileSection::keyPressEvent(QKeyEvent* event)
{
    const int index = focused();
    Tile* next = index < 0 ? nullptr : neighbour(m_tiles[static_cast<size_t>(index)], event->key());
    const bool arrow = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right ||
                       event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    if (!arrow || !next) {
        QWidget::keyPressEvent(event);
        return;
    }
    next->setFocus(Qt::TabFocusReason);
    for (QWidget* above = parentWidget(); above; above = above->parentWidget())
        if (auto* page = qobject_cast<QScrollArea*>(above))
            page->ensureWidgetVisible(next);
}

} // namespace Vu::Commands
