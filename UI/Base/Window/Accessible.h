#pragma once

#include <QAccessible>

#include <functional>

class QLineEdit;
class QWidget;

/// What screen readers and other assistive programs learn about widgets beyond their classes. A name is set
/// by QWidget::setAccessibleName, and the plain text of a tooltip by whoever sets the tooltip (PlainText).
/// Main thread only.
namespace Vu::Accessible {

/// Makes the functions below work; for the application object that there is.
void begin();

/// Makes what is told of a widget, in the program's own way. Qt owns what it makes.
using Maker = std::function<QAccessibleInterface*(QWidget*)>;
/// To be called before anybody learns of the widget, like the two below: where it is made, before it gets its
/// name.
void maker(QWidget* widget, const Maker& maker);
/// The widget is such a thing.
void role(QWidget* widget, QAccessible::Role role);
/// The same for what can be pressed without being a button of the toolkit's: `press` does then what a click
/// does.
void pressable(QWidget* widget, QAccessible::Role role, std::function<void()> press);

/// A button that opens a window of its own, which would else be seen only while it has the keyboard: it
/// stands below the button as long as it shows.
void opener(QWidget* button, QWidget* opened, std::function<void()> press);

/// Context menus that are children of the widget stand below it while they are open: as popups, the toolkit
/// puts them into no tree.
void menus(QWidget* widget);

/// Gives the field the toolkit's button that empties it, which has no name by itself.
void clearButton(QLineEdit* field);

} // namespace Vu::Accessible
