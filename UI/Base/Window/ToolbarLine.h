#pragma once

#include <QFrame>

#include <vector>

namespace Vu {

/// Toolbar strips side by side, and whatever else is in their line. Strips with all items at the far end, and
/// other widgets, go to the end of the line. If the width is not enough for all, the later ones shrink first,
/// so that opening, saving, undo and redo are visible on any screen.
class ToolbarLine : public QFrame
{
public:
    explicit ToolbarLine(QWidget* parent);

    /// The widget becomes the line's child, and stays hidden if it is.
    void add(QWidget* widget);
    /// Moves all of them out again, to `parent`.
    void release(QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    std::vector<QWidget*> shown() const;
    std::vector<int> widths(const std::vector<QWidget*>& parts) const;
    void place();

    std::vector<QWidget*> m_parts;
};

} // namespace Vu
