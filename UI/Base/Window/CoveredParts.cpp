#include "UI/Base/Window/CoveredParts.h"

#include <QWidget>

namespace Vu {

// Children are in stacking order. What covers a parent covers its children.
void addCoveredParts(const QWidget& widget, std::vector<CanvasRect>& parts)
{
    const QPoint corner = widget.mapTo(widget.window(), QPoint());
    for (const QWidget* inner = &widget; !inner->isWindow(); inner = inner->parentWidget()) {
        const QObjectList& children = inner->parentWidget()->children();
        for (qsizetype i = children.indexOf(inner) + 1; i < children.size(); ++i) {
            const auto* over = qobject_cast<QWidget*>(children[i]);
            if (!over || over->isWindow() || !over->isVisible() ||
                over->testAttribute(Qt::WA_TransparentForMouseEvents))
                continue;
            const QRect part =
                QRect(over->mapTo(widget.window(), QPoint()) - corner, over->size()) & widget.rect();
            if (!part.isEmpty())
                parts.push_back({double(part.x()), double(part.y()), double(part.x() + part.width()),
                                 double(part.y() + part.height())});
        }
    }
}

} // namespace Vu
