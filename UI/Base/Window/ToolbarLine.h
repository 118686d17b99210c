#pragma once

#include <QFrame>

#include <vector>

namespace Vu {

class ToolbarStrip;

/// Strips of toolbars beside each other; those whose things all stand at the far end are at the line's end.
/// Where the width doesn't do for all, the later ones yield first, so that opening, saving, undo and redo
/// stand on any screen.
class ToolbarLine : public QFrame
{
public:
    explicit ToolbarLine(QWidget* parent);

    /// The strip becomes the line's child, and stays hidden if it is.
    void add(ToolbarStrip* strip);
    /// Takes all strips out again, to `parent`.
    void release(QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    std::vector<ToolbarStrip*> shown() const;
    std::vector<int> widths(const std::vector<ToolbarStrip*>& strips) const;
    void place();

    std::vector<ToolbarStrip*> m_strips;
};

} // namespace Vu
