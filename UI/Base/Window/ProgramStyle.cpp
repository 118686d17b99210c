#include "UI/Base/Window/ProgramStyle.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Private/ReducedMotion.h"
#include "UI/Base/Window/CheckBoxDrawing.h"

#include <QPainter>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOption>
#include <QTabBar>

namespace Vu {
namespace {

/// Fusion's frames are the window's colour, so many times darker, in per cent.
constexpr int kDarker = 140;

/// Calls `draw` with a copy of the option whose frames get the palette's colour for them; returns false if
/// the option is of another kind.
template <class Option, class Draw>
bool drawFramed(const QStyleOption* option, Draw&& draw)
{
    const auto* known = qstyleoption_cast<const Option*>(option);
    if (!known)
        return false;
    Option framed(*known);
    framed.palette.setColor(QPalette::Window, framed.palette.color(QPalette::Dark).lighter(kDarker));
    draw(&framed);
    return true;
}

/// Fusion's is a faint shade, which is invisible on checked or selected items.
void drawFocus(const QStyleOption& option, QPainter& painter)
{
    if (!(option.state & QStyle::State_KeyboardFocusChange))
        return;
    constexpr double kThickness = 2, kRadius = 3;
    const bool isLit = option.state & QStyle::State_Selected;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(
        QPen(option.palette.color(isLit ? QPalette::HighlightedText : QPalette::Highlight), kThickness));
    constexpr double kInset = kThickness / 2;
    painter.drawRoundedRect(QRectF(option.rect).adjusted(kInset, kInset, -kInset, -kInset), kRadius, kRadius);
    painter.restore();
}

} // namespace

ProgramStyle::ProgramStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void ProgramStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const
{
    const auto draw = [&](const QStyleOption* used) {
        QProxyStyle::drawPrimitive(element, used, painter, widget);
    };
    bool drawn = false;
    switch (element) {
    case PE_FrameFocusRect:
        // The sheet of the tabs frames the whole tab.
        if (!qobject_cast<const QTabBar*>(widget))
            drawFocus(*option, *painter);
        return;
    case PE_FrameLineEdit:
    case PE_Frame:
        drawn = drawFramed<QStyleOptionFrame>(option, draw);
        break;
    case PE_IndicatorCheckBox:
        drawCheckBox(*option, *painter);
        return;
    case PE_IndicatorRadioButton:
    case PE_PanelButtonCommand:
        drawn = drawFramed<QStyleOptionButton>(option, draw);
        break;
    case PE_PanelButtonTool:
        drawn = drawFramed<QStyleOptionToolButton>(option, draw);
        break;
    default:
        break;
    }
    if (!drawn)
        draw(option);
}

void ProgramStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                      QPainter* painter, const QWidget* widget) const
{
    const auto draw = [&](const QStyleOptionComplex* used) {
        QProxyStyle::drawComplexControl(control, used, painter, widget);
    };
    bool drawn = false;
    // Where other styles have a rectangle, this one has a shade of its button.
    const bool hasFocus = control == CC_ComboBox && option->state & State_HasFocus;
    if (control == CC_ComboBox)
        drawn = drawFramed<QStyleOptionComboBox>(option, draw);
    else if (control == CC_SpinBox)
        drawn = drawFramed<QStyleOptionSpinBox>(option, draw);
    else if (control == CC_Slider)
        drawn = drawFramed<QStyleOptionSlider>(option, draw);
    if (!drawn)
        draw(option);
    if (hasFocus)
        drawFocus(*option, *painter);
}

void ProgramStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (qobject_cast<QScrollBar*>(widget) && widget->accessibleName().isEmpty())
        widget->setAccessibleName(QString::fromStdWString(localized("ScrollBar", "Scroll bar")));
}

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* data) const
{
    if (hint == SH_Widget_Animation_Duration && motionIsReduced())
        return 0;
    // The program's own dialogs have none, and neither should Qt's.
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
}

} // namespace Vu
