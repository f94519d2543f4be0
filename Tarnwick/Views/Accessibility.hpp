#pragma once
// What the window's own widgets tell assistive technology where Qt's interfaces say too little:
// the role of a widget whose class has another (the status line is a frame, the status dot a
// plain widget), and the name of the button Qt puts into a search field.

#include <QAccessible>

class QLineEdit;
class QWidget;

namespace tarnwick {

/// Shows `widget` to assistive technology in `role`, its name and description being the
/// widget's own accessible name and description.
void setAccessibleRole(QWidget* widget, QAccessible::Role role);

/// Names the button that empties `field` (setClearButtonEnabled), which Qt leaves unnamed.
void nameClearButton(QLineEdit* field);

} // namespace tarnwick
