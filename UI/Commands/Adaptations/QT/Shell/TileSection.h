#pragma once

#include <QWidget>

#include <vector>

class QLabel;

namespace Vu::Commands {

class FlowLayout;
class Tile;

/// Tiles below a heading. The arrow keys go from tile to tile, in rows and columns as they lie.
class TileSection : public QWidget
{
public:
    TileSection(const QString& title, QWidget* parent);

    const std::vector<Tile*>& tiles() const { return m_tiles; }

protected:
    /// The section takes the tile, as its last one.
    void add(Tile* tile);
    /// Takes all tiles away; at the end of the event, since one of them may be what asks for it.
    void clear();
    /// Instead of tiles; null takes it away.
    void placeholder(QWidget* widget);
    /// To the tile that has the focus, or, if that went, to the one that stands in its place.
    int focused() const;
    void focus(int index);

    void keyPressEvent(QKeyEvent* event) override;

private:
    Tile* neighbour(const Tile* from, int key) const;

    QLabel* m_title;
    QWidget* m_flowing;
    FlowLayout* m_flow;
    QWidget* m_placeholder = nullptr;
    std::vector<Tile*> m_tiles;
};

} // namespace Vu::Commands
