#pragma once

#include <QAccessible>

#include <functional>

class QLineEdit;
class QWidget;

/// What screen readers and other assistive programs learn about widgets beyond their classes. A name is set
/// by QWidget::setAccessibleName, and the plain text of a tooltip by whoever sets the tooltip (PlainText).
/// Main thread only.
namespace Vu::Accessible {

/// Enables the functions below, for the existing application object.
void begin();

/// Creates the program's own accessible interface of a widget. Qt owns the result.
using Maker = std::function<QAccessibleInterface*(QWidget*)>;
/// Call this before anyone queries the widget, like the two below: where it is created, before it gets its
/// name.
void maker(QWidget* widget, const Maker& maker);
/// The widget is such a thing.
void role(QWidget* widget, QAccessible::Role role);
/// The same for something that can be pressed but isn't one of the toolkit's buttons: `press` then does what
/// a click does.
void pressable(QWidget* widget, QAccessible::Role role, std::function<void()> press);

/// A button that opens a window of its own, which would otherwise be found only while it has the focus: it is
/// a child of the button while it is shown.
void opener(QWidget* button, QWidget* opened, std::function<void()> press);

/// Context menus of the widget are its accessible children while they are open: being popups, the toolkit
/// puts them into no tree.
void menus(QWidget* widget);

/// Gives the field the toolkit's clear button, which has no name by default.
void clearButton(QLineEdit* field);

} // namespace Vu::Accessible
