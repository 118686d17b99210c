#pragma once

#include <QWidget>

class QBoxLayout;

namespace Vu::Commands {

/// What lies below the buttons of the home screen: the sections of tiles, and beside them, or below them
/// where the window is narrow, the lists. What its areas hold is found by their keys (AreaContents), so that
/// an add-in can bring it.
class HomeBody : public QWidget
{
public:
    explicit HomeBody(QWidget* parent);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void fold(int width);

    QBoxLayout* m_columns;
    QWidget* m_side;
};

} // namespace Vu::Commands
