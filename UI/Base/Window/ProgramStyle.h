#pragma once

#include <QProxyStyle>

namespace Vu {

/// The toolkit's Fusion style with four changes: check boxes look the same everywhere (drawCheckBox); the
/// frames of pressed, selected and editable things use the palette's colour `Dark`, so that they stand out
/// from their surroundings, where Fusion darkens the window's colour; scroll bars have a name; and nothing is
/// animated where the user wants less motion (motionIsReduced).
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
