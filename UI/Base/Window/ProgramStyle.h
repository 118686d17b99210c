#pragma once

#include <QProxyStyle>

namespace Vu {

/// The toolkit's Fusion, but for four things: check boxes look the same everywhere (drawCheckBox); the frames
/// of what is pressed, chosen and filled in have the palette's colour `Dark`, so that they stand out from
/// what is around them, where Fusion darkens the window's; scroll bars have a name; and nothing moves by
/// itself where the user wants less of that (motionIsReduced).
class ProgramStyle : public QProxyStyle
{
public:
    ProgramStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
};

} // namespace Vu
