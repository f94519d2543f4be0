#pragma once
// What the window's own widgets tell assistive technology where Qt's interfaces say too little:
// the role of a widget whose class has another (the status line is a frame, the status dot a
// plain widget), a progress bar's value in words, and the name of the button Qt puts into a
// search field.

#include <QAccessible>

class QLineEdit;
class QWidget;

namespace tarnwick {

/// Puts the window's own interfaces before Qt's: widgets given a role, progress bars whose
/// value is read out as their text (RunProgress: "bootloader.bin, 45 %"), and the status line
/// (StatusText) read through its text as well as its name. Done once; every window calls it
/// before its widgets are first looked at.
void installAccessibleInterfaces();

/// Shows `widget` to assistive technology in `role`, its name and description being the
/// widget's own accessible name and description.
void setAccessibleRole(QWidget* widget, QAccessible::Role role);

/// Gives `widget` the accessible name `name` unless it has it already: every new name is
/// announced, so one set again on each refresh would be heard again and again.
void renameAccessibly(QWidget* widget, const QString& name);

/// Names the button that empties `field` (setClearButtonEnabled), which Qt leaves unnamed.
void nameClearButton(QLineEdit* field);

} // namespace tarnwick
