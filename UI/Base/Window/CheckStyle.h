#pragma once

#include <QProxyStyle>

namespace Vu {

/// Qt's plain style, but for check boxes: in dialogs, panels, lists and menus they look the same, and are
/// seen on light and on dark grounds.
class CheckStyle : public QProxyStyle
{
public:
    CheckStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

} // namespace Vu
