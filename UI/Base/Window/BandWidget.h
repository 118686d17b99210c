#pragma once

#include "UI/Base/Program/CanvasBand.h"

#include <QWidget>

namespace Vu {

/// Draws a band over a canvas and lets the mouse through.
class BandWidget : public QWidget
{
public:
    explicit BandWidget(QWidget* canvas);
    void showBand(const CanvasBand& band);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_dashed = false;
};

} // namespace Vu
