#pragma once

#include <QString>

#include <memory>
#include <string>

class QAction;
class QLabel;
class QMessageBox;
class QWidget;

/// Texts that are shown literally. Qt treats anything that looks like HTML as HTML in tooltips, labels and
/// message boxes, including images from anywhere; but names and messages come from files written by others.
/// So this is the only place that sets such texts.
namespace Vu::PlainText {

/// The tooltip that makes Qt show `text` literally, the beginning of a long one; for a model's
/// Qt::ToolTipRole.
QString tooltip(const QString& text);
QString tooltip(const std::wstring& text);

void setTooltip(QWidget* widget, const QString& text);
void setTooltip(QAction* action, const QString& text);
/// A tooltip in HTML written by the program. Anything else in it must have been escaped. `spoken` is what
/// assistive technology reads out instead.
void setMarkupTooltip(QWidget* widget, const QString& html, const QString& spoken);

/// A label that shows text and pictures, but no HTML. Owned by its parent, which may be null until it is laid
/// out.
QLabel* label(QWidget* parent, const QString& text = {});

/// `text` with chances to wrap within its long words (paths, lists without blanks, a name of one letter again
/// and again): a label wraps at blanks alone, and cuts off the rest. The chances are characters without a
/// width, so that this is for being shown only.
QString breakable(const QString& text);

/// A message box without icon and buttons.
std::unique_ptr<QMessageBox> messageBox(QWidget* parent, const QString& title, const QString& text);
/// The details that a button of the box expands; shown literally.
void setDetails(QMessageBox* box, const QString& text);
/// Asks whether to go on; the default answer is "no".
bool confirmed(QWidget* parent, const QString& title, const QString& question);

} // namespace Vu::PlainText
