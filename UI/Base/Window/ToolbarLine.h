#pragma once

#include <QFrame>

#include <vector>

namespace Vu {

/// Strips of toolbars beside each other, and what else stands in their line. Strips whose things all stand at
/// the far end, and what is no strip, are at the line's end. Where the width doesn't do for all, the later
/// ones yield first, so that opening, saving, undo and redo stand on any screen.
class ToolbarLine : public QFrame
{
public:
    explicit ToolbarLine(QWidget* parent);

    /// The widget becomes the line's child, and stays hidden if it is.
    void add(QWidget* widget);
    /// Takes all out again, to `parent`.
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
