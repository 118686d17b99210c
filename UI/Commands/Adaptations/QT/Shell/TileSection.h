#pragma once

#include <QWidget>

#include <vector>

class QHBoxLayout;
class QLabel;

namespace Vu::Commands {

class FlowLayout;
class Tile;

/// Tiles below a heading. The arrow keys go from tile to tile, in rows and columns as they lie. All sections
/// of one width have tiles of one width.
class TileSection : public QWidget
{
public:
    TileSection(const QString& title, QWidget* parent);

    const std::vector<Tile*>& tiles() const { return m_tiles; }

protected:
    /// What the section shows from now on, in this order; it takes the new ones. Those that aren't among them
    /// are hidden, and the caller's to delete: at the end of the event, since one of them may be what asks
    /// for it. The keyboard stays with its tile, or goes to the one that takes its place.
    void arrange(const std::vector<Tile*>& tiles);
    /// Beside the heading, at the far end.
    void addToHeading(QWidget* widget);
    /// Instead of tiles; null takes it away.
    void placeholder(QWidget* widget);
    /// The number of the tile that has the keyboard, or -1.
    int focused() const;

    void keyPressEvent(QKeyEvent* event) override;

private:
    Tile* neighbour(const Tile* from, int key) const;

    QLabel* m_title;
    QHBoxLayout* m_heading;
    QWidget* m_last = nullptr; ///< In the heading; the keyboard goes from there to the tiles.
    QWidget* m_flowing;
    FlowLayout* m_flow;
    QWidget* m_placeholder = nullptr;
    std::vector<Tile*> m_tiles;
};

} // namespace Vu::Commands
