#pragma once

#include <QLayout>

#include <memory>
#include <optional>
#include <vector>

namespace Vu::Commands {

/// Lays its items out in rows, as many to a row as fit, like words in a paragraph.
class FlowLayout : public QLayout
{
public:
    /// Items of equal width: a row is filled to its end, unless that would make them wider than `most`. Their
    /// height follows from the width.
    struct Cells
    {
        int least;
        int most;
    };

    FlowLayout(QWidget* parent, int spacing, std::optional<Cells> cells = {});
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return arrange(QRect(0, 0, width, 0), false); }
    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    /// The height that the rows need; with `place` the items are positioned.
    int arrange(const QRect& rect, bool place) const;
    QSize sizeOf(const QLayoutItem& item, int width) const;

    std::optional<Cells> m_cells;
    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

} // namespace Vu::Commands
