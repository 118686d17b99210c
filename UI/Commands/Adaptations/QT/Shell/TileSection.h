#pragma once

#include <QWidget>

#include <vector>

class QHBoxLayout;
class QLabel;

namespace Vu::Commands {

class FlowLayout;
class Tile;

/// Tiles below a heading. The arrow keys go from tile to tile, in rows and columns as laid out. All sections
/// of the same width have tiles of the same width.
class TileSection : public QWidget
{
public:
    TileSection(const QString& title, QWidget* parent);

    const std::vector<Tile*>& tiles() const { return m_tiles; }

protected:
    /// The tiles to show from now on, in this order; it takes ownership of new ones. Those not among them are
    /// hidden and left to the caller to delete: at the end of the event, since one of them may be the sender.
    /// The focus stays with its tile, or goes to the one that takes its place.
    void arrange(const std::vector<Tile*>& tiles);
    /// Beside the heading, at the far end.
    void addToHeading(QWidget* widget);
    /// Shown instead of tiles; null removes it.
    void placeholder(QWidget* widget);
    /// The index of the focused tile, or -1.
    int focused() const;

    void keyPressEvent(QKeyEvent* event) override;

private:
    Tile* neighbour(const Tile* from, int key) const;

    QLabel* m_title;
    QHBoxLayout* m_heading;
    QWidget* m_last = nullptr; ///< In the heading; the focus goes from there to the tiles.
    QWidget* m_flowing;
    FlowLayout* m_flow;
    QWidget* m_placeholder = nullptr;
    std::vector<Tile*> m_tiles;
};

} // namespace Vu::Commands
