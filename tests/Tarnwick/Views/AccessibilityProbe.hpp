#pragma once
// Reading a window as assistive technology does: every interface reachable from it through
// Qt's accessibility tree, and those of its widgets the tree does not reach (the controls inside
// the file table's cells), each with its name and whether it must have one.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QString>
#include <QWidget>
#include <set>
#include <vector>

#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick::testing {

struct AccessibleNode {
  /// Where it is, from the window down: classes, object names and child positions.
  QString where;
  QAccessible::Role role;
  QString name;
  /// A control a person operates or a part read as one thing: it is useless without a name.
  bool needsName;
};

inline bool needsName(QAccessibleInterface* node) {
  switch (node->role()) {
  case QAccessible::PushButton:
  case QAccessible::CheckBox:
  case QAccessible::RadioButton:
  case QAccessible::ComboBox:
  case QAccessible::EditableText:
  case QAccessible::SpinBox:
  case QAccessible::Slider:
  case QAccessible::Dial:
  case QAccessible::ProgressBar:
  case QAccessible::ButtonMenu:
  case QAccessible::ButtonDropDown:
  case QAccessible::ButtonDropGrid:
  case QAccessible::MenuItem:
  case QAccessible::Cell:
  case QAccessible::ColumnHeader:
  case QAccessible::PageTab:
  case QAccessible::Link:
  case QAccessible::Table:
  case QAccessible::Tree:
  case QAccessible::TreeItem:
  case QAccessible::StatusBar: return true;
  case QAccessible::ListItem:
    // A picker's separator line is stepped over; Qt marks it so.
    return node->text(QAccessible::Description) != QLatin1String("separator");
  case QAccessible::List: {
    // A combo box's list is read through the combo box.
    QAccessibleInterface* parent = node->parent();
    return parent == nullptr || parent->role() != QAccessible::ComboBox;
  }
  case QAccessible::Separator: return false;
  default:
    // Whatever takes the keyboard focus is announced when it does.
    return node->state().focusable && node->object() != nullptr &&
           qobject_cast<QWidget*>(node->object()) != nullptr &&
           static_cast<QWidget*>(node->object())->focusPolicy() != Qt::NoFocus;
  }
}

inline QString describe(QAccessibleInterface* node) {
  QString text = QString::number(int(node->role()));
  if (QObject* object = node->object()) {
    text = QString::fromLatin1(object->metaObject()->className());
    if (!object->objectName().isEmpty()) text += u'#' + object->objectName();
  }
  return text;
}

inline void collect(QAccessibleInterface* node, const QString& where,
                    std::vector<AccessibleNode>& nodes, std::set<QObject*>& objects, int depth) {
  if (node == nullptr || !node->isValid() || depth > 40) return;
  if (QObject* object = node->object()) {
    objects.insert(object);
    // Hidden on purpose in this state (an extension button, an absent mark): no one meets it.
    if (auto* widget = qobject_cast<QWidget*>(object); widget != nullptr && widget->isHidden())
      return;
  }
  nodes.push_back({where, node->role(), node->text(QAccessible::Name), needsName(node)});
  for (int i = 0; i < node->childCount(); ++i) {
    QAccessibleInterface* child = node->child(i);
    if (child == nullptr) continue;
    collect(child, where + u'/' + describe(child) + u'[' + QString::number(i) + u']', nodes,
            objects, depth + 1);
  }
}

/// Every interface of `window`: its tree, then each widget the tree leaves out.
inline std::vector<AccessibleNode> accessibleNodes(QWidget* window) {
  std::vector<AccessibleNode> nodes;
  std::set<QObject*> objects;
  QAccessibleInterface* root = QAccessible::queryAccessibleInterface(window);
  collect(root, describe(root), nodes, objects, 0);
  for (QWidget* widget : window->findChildren<QWidget*>()) {
    if (objects.count(widget) != 0) continue;
    // A window of its own (a menu, a combo box's list) is reached through its owner; what is
    // hidden with its parent (another page of a stack) is met when that is shown.
    if (widget->isWindow() || !widget->isVisibleTo(window)) continue;
    QAccessibleInterface* node = QAccessible::queryAccessibleInterface(widget);
    if (node == nullptr) continue;
    QString where;
    for (QWidget* up = widget; up != nullptr && up != window; up = up->parentWidget())
      where = u'/' + describe(QAccessible::queryAccessibleInterface(up)) + where;
    collect(node, describe(root) + where, nodes, objects, 0);
  }
  return nodes;
}

/// The texts `root` shows a sighted reader: titles, labels, button and entry texts, the items of
/// lists, tables and pickers, menu entries; mnemonic marks taken out.
inline std::set<QString> shownTexts(QWidget* root) {
  std::set<QString> texts;
  auto add = [&](const QString& text) {
    QString plain = withoutMnemonic(text);
    if (!plain.isEmpty()) texts.insert(plain);
  };
  QList<QWidget*> widgets = root->findChildren<QWidget*>();
  widgets.prepend(root);
  for (QWidget* widget : widgets) {
    add(widget->windowTitle());
    if (auto* label = qobject_cast<QLabel*>(widget)) add(label->text());
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) add(button->text());
    if (auto* group = qobject_cast<QGroupBox*>(widget)) add(group->title());
    if (auto* field = qobject_cast<QLineEdit*>(widget)) add(field->text());
    if (auto* view = qobject_cast<QAbstractItemView*>(widget)) {
      const QAbstractItemModel* model = view->model();
      for (int column = 0; model != nullptr && column < model->columnCount(); ++column)
        add(model->headerData(column, Qt::Horizontal).toString());
      for (int row = 0; model != nullptr && row < model->rowCount(); ++row)
        for (int column = 0; column < model->columnCount(); ++column)
          add(model->index(row, column).data().toString());
    }
    for (QAction* action : widget->actions())
      add(action->text());
  }
  return texts;
}

} // namespace tarnwick::testing
