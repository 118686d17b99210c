#pragma once

#include "UI/Base/Workspace/Area.h"

#include <QWidget>

#include <functional>
#include <vector>

class QSplitter;
class QVBoxLayout;

namespace Vu {

class ToolbarLine;

/// The widgets of the areas in one container. Bars at the top and bottom take the whole width, and
/// consecutive toolbars share a line; between them, panels at the top and bottom are above and below those at
/// the left and right, which are beside those that fill, with splitters between. In a narrow window the
/// panels shrink. Hidden ones keep their place.
class AreaFrame : public QWidget
{
public:
    /// One of them. The widget is a child of the frame, or becomes one.
    struct Place
    {
        Area* area;
        QWidget* widget;
        bool isStrip; ///< A toolbar, or something in the toolbars' line, at the far end.
        bool isBar;   ///< Of the height that it needs; false for resizable ones.

        bool operator==(const Place&) const = default;
    };
    using Resized = std::function<void(Area&, int extent)>;

    /// With `shares`, those at the top and bottom share the height evenly with the others (a split view).
    /// `resized` is called when a splitter has been moved.
    AreaFrame(bool shares, Resized resized, QWidget* parent);

    /// Places all of them, in tree order. Nothing is moved if they were there already. Those no longer among
    /// them are left to their owner.
    void arrange(const std::vector<Place>& places);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Seat
    {
        Place place;
        EPlacement side;
        Vs::Point2 point;

        bool operator==(const Seat&) const = default;
    };

    std::vector<Seat> at(EPlacement side, bool bars) const;
    /// Widgets side by side, from the left.
    std::vector<Seat> row() const;
    void fillRow();
    void divideRow(const std::vector<Seat>& row);
    void fillRows();
    void addBars(EPlacement side);
    void tell(QSplitter* splitter, bool upright) const;

    bool m_shares;
    Resized m_resized;
    QVBoxLayout* m_column;
    QSplitter* m_rows; ///< Panels at the top, the row, panels at the bottom.
    QSplitter* m_row;
    std::vector<Seat> m_seats;
    std::vector<ToolbarLine*> m_lines; ///< Of toolbars that share one.
};

} // namespace Vu
