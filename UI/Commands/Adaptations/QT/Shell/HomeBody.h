#pragma once

#include <QWidget>

class QBoxLayout;

namespace Vu::Commands {

/// The part of the home screen below the buttons: the sections of tiles and, beside them or in a narrow
/// window below them, the lists. The contents of its areas are found by their keys (AreaContents), so that an
/// add-in can provide them.
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
