#include "UI/Base/Window/FocusFrame.h"

#include <QFocusEvent>
#include <QPainter>

namespace Vu {
namespace {

constexpr int kThickness = 2;

bool isByKeyboard(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

/// Focus restored automatically, such as by a closing window or menu, was there before.
bool isReturn(Qt::FocusReason reason)
{
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
}

} // namespace

FocusFrame::FocusFrame(QWidget* view) : QWidget(view)
{
    setObjectName(QStringLiteral("focusFrame"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    hide();
    view->installEventFilter(this);
}

/// Only its four strips: what lies between them isn't repainted with each picture.
void FocusFrame::cover()
{
    setGeometry(parentWidget()->rect());
    const QRect inside = rect().adjusted(kThickness, kThickness, -kThickness, -kThickness);
    setMask(QRegion(rect()) - QRegion(inside));
}

bool FocusFrame::eventFilter(QObject* view, QEvent* event)
{
    if (event->type() == QEvent::FocusIn) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (isByKeyboard(reason)) {
            cover();
            show();
            raise();
        } else if (!isReturn(reason)) {
            hide();
        }
    } else if (event->type() == QEvent::FocusOut) {
        if (!isReturn(static_cast<QFocusEvent*>(event)->reason()))
            hide();
    } else if (event->type() == QEvent::MouseButtonPress) {
        hide();
    } else if (event->type() == QEvent::Resize && isVisible()) {
        cover();
    }
    return QWidget::eventFilter(view, event);
}

void FocusFrame::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), palette().highlight());
}

} // namespace Vu
