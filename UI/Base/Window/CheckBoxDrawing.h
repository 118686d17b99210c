#pragma once

class QPainter;
class QStyleOption;

namespace Vu {

/// Draws the box of a check box, with its mark, so that it is seen on light and on dark grounds. Dialogs,
/// panels, lists and menus have the same.
void drawCheckBox(const QStyleOption& option, QPainter& painter);

} // namespace Vu
