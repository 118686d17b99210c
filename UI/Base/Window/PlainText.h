#pragma once

#include <QString>

#include <memory>
#include <string>

class QAction;
class QLabel;
class QMessageBox;
class QWidget;

/// Texts that are shown letter by letter. Qt takes whatever looks like HTML for HTML in tooltips, labels and
/// message boxes, with pictures from anywhere; but names and messages come from files, which others have
/// made. So this is the only place that sets such texts.
namespace Vu::PlainText {

/// What a tooltip has to be told so that it shows `text`; for a model's Qt::ToolTipRole.
QString tooltip(const QString& text);
QString tooltip(const std::wstring& text);

void setTooltip(QWidget* widget, const QString& text);
void setTooltip(QAction* action, const QString& text);
/// A tooltip that is HTML of the program's own. Whatever else stands in it must have been escaped. `spoken`
/// is what assistive programs read out instead.
void setMarkupTooltip(QWidget* widget, const QString& html, const QString& spoken);

/// A label that shows texts and pictures, but no HTML. Owned by its parent, which may be null until it is
/// laid out.
QLabel* label(QWidget* parent, const QString& text = {});

/// A message box without picture and buttons.
std::unique_ptr<QMessageBox> messageBox(QWidget* parent, const QString& title, const QString& text);
/// What a button of the box unfolds; it is shown letter by letter.
void setDetails(QMessageBox* box, const QString& text);
/// Asks whether to go on; "no" is the answer unless it is chosen.
bool confirmed(QWidget* parent, const QString& title, const QString& question);

} // namespace Vu::PlainText
