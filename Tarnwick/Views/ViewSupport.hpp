#pragma once
// Small helpers shared by the views.

#include <QKeySequence>
#include <QString>
#include <string>

namespace tarnwick {

/// A catalogue text as Qt wants it.
inline QString qt(const std::string& text) { return QString::fromStdString(text); }

/// The shortcuts of the window's commands, in one place so menus, tooltips and help agree.
namespace Shortcuts {
inline QKeySequence flash() { return QKeySequence(Qt::CTRL | Qt::Key_R); }
inline QKeySequence showLog() { return QKeySequence(Qt::CTRL | Qt::Key_L); }
inline QKeySequence clearLog() { return QKeySequence(Qt::CTRL | Qt::Key_K); }
inline QKeySequence saveLog() { return QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_S); }
inline QKeySequence findInLog() { return QKeySequence(Qt::CTRL | Qt::Key_F); }
inline QKeySequence findNext() { return QKeySequence(Qt::Key_F3); }
inline QKeySequence findPrevious() { return QKeySequence(Qt::SHIFT | Qt::Key_F3); }
// Written out rather than taken from QKeySequence's standard keys: those are empty on some
// desktops (Save As outside GNOME and macOS) and on the offscreen platform, while the help
// promises these everywhere.
inline QKeySequence newProduct() { return QKeySequence(Qt::CTRL | Qt::Key_N); }
inline QKeySequence openProduct() { return QKeySequence(Qt::CTRL | Qt::Key_O); }
inline QKeySequence saveProduct() { return QKeySequence(Qt::CTRL | Qt::Key_S); }
inline QKeySequence saveProductAs() { return QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S); }
inline QKeySequence quit() { return QKeySequence(Qt::CTRL | Qt::Key_Q); }
inline QKeySequence help() { return QKeySequence(Qt::Key_F1); }
inline QKeySequence removeFiles() { return QKeySequence(Qt::Key_Delete); }
} // namespace Shortcuts

} // namespace tarnwick
