#pragma once

#include <QFrame>

#include <vector>

class QBoxLayout;

namespace Vu {

class Area;

/// The bar at one side of the window with a button for each collapsed area, which opens it. Hidden while it
/// has none.
class CollapseBar : public QFrame
{
public:
    /// A vertical one is at the left or right.
    CollapseBar(bool upright, QWidget* parent);

    /// Nothing is rebuilt if they are the same as before.
    void areas(const std::vector<Area*>& collapsed);

private:
    bool m_upright;
    QBoxLayout* m_row;
    std::vector<unsigned long> m_numbers;
};

} // namespace Vu
