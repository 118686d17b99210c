#pragma once

class QPainter;
class QStyleOption;

namespace Vu {

/// Draws the box of a check box, with its mark, visible on light and dark backgrounds. Dialogs, panels, lists
/// and menus share it.
void drawCheckBox(const QStyleOption& option, QPainter& painter);

} // namespace Vu
