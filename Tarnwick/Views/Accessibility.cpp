#include "Tarnwick/Views/Accessibility.hpp"

#include <QAccessibleWidget>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QToolButton>
#include <mutex>

#include "Localization/AccessibleTexts.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick {

namespace {
/// The dynamic property that holds a widget's role.
constexpr const char* roleProperty = "tarnwickAccessibleRole";

/// A progress bar whose value is read as its text, with the numbers behind it for tools that
/// show a bar of their own. Qt's reads the number alone.
class ProgressInWords : public QAccessibleWidget, public QAccessibleValueInterface {
public:
  explicit ProgressInWords(QProgressBar* bar) : QAccessibleWidget(bar, QAccessible::ProgressBar) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return bar()->text();
    return QAccessibleWidget::text(kind);
  }
  QVariant currentValue() const override { return bar()->value(); }
  // Progress is the run's to set.
  void setCurrentValue(const QVariant&) override {}
  QVariant maximumValue() const override { return bar()->maximum(); }
  QVariant minimumValue() const override { return bar()->minimum(); }
  QVariant minimumStepSize() const override { return 0; }

private:
  QProgressBar* bar() const { return static_cast<QProgressBar*>(widget()); }
};

/// A line of text a screen reader reads through its text as well as its name: the status line,
/// whose words are the result of a run. Qt's labels offer their name alone. Read-only: no caret,
/// no selection.
class ReadableLine : public QAccessibleWidget, public QAccessibleTextInterface {
public:
  explicit ReadableLine(QLabel* label) : QAccessibleWidget(label, QAccessible::StaticText) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Name && widget()->accessibleName().isEmpty()) return whole();
    return QAccessibleWidget::text(kind);
  }

  QString text(int startOffset, int endOffset) const override {
    return whole().mid(startOffset, endOffset - startOffset);
  }
  int characterCount() const override { return static_cast<int>(whole().size()); }
  QRect characterRect(int offset) const override {
    // Where the character is drawn, the text being left-aligned in the label's contents.
    const QString line = whole();
    if (offset < 0 || offset >= line.size()) return {};
    const QFontMetrics metrics = label()->fontMetrics();
    const QRect area = label()->contentsRect();
    const int x = area.left() + metrics.horizontalAdvance(line.left(offset));
    const QRect local(x, area.center().y() - metrics.height() / 2,
                      metrics.horizontalAdvance(line.at(offset)), metrics.height());
    return QRect(label()->mapToGlobal(local.topLeft()), local.size());
  }
  int offsetAtPoint(const QPoint& point) const override {
    const QString line = whole();
    const QFontMetrics metrics = label()->fontMetrics();
    const int x = label()->mapFromGlobal(point).x() - label()->contentsRect().left();
    for (int i = 0; i < line.size(); ++i)
      if (metrics.horizontalAdvance(line.left(i + 1)) > x) return i;
    return -1;
  }
  int cursorPosition() const override { return 0; }
  void setCursorPosition(int) override {}
  int selectionCount() const override { return 0; }
  void selection(int, int* startOffset, int* endOffset) const override {
    *startOffset = *endOffset = 0;
  }
  void addSelection(int, int) override {}
  void removeSelection(int) override {}
  void setSelection(int, int, int) override {}
  void scrollToSubstring(int, int) override {}
  QString attributes(int offset, int* startOffset, int* endOffset) const override {
    *startOffset = *endOffset = offset;
    return {};
  }

private:
  QLabel* label() const { return static_cast<QLabel*>(widget()); }
  QString whole() const { return label()->text(); }
};

QAccessibleInterface* ownInterface(const QString& className, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr) return nullptr;
  // Asked once per class up the widget's hierarchy: answering for its own class keeps Qt's
  // interfaces for every other widget.
  if (className != QLatin1String(object->metaObject()->className())) return nullptr;
  if (className == QLatin1String("tarnwick::RunProgress"))
    return new ProgressInWords(static_cast<QProgressBar*>(widget));
  if (className == QLatin1String("tarnwick::StatusText"))
    return new ReadableLine(static_cast<QLabel*>(widget));
  const QVariant role = object->property(roleProperty);
  if (!role.isValid()) return nullptr;
  return new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()));
}
} // namespace

void installAccessibleInterfaces() {
  static std::once_flag installed;
  std::call_once(installed, [] { QAccessible::installFactory(ownInterface); });
}

void setAccessibleRole(QWidget* widget, QAccessible::Role role) {
  installAccessibleInterfaces();
  widget->setProperty(roleProperty, static_cast<int>(role));
}

void renameAccessibly(QWidget* widget, const QString& name) {
  if (widget->accessibleName() != name) widget->setAccessibleName(name);
}

void nameClearButton(QLineEdit* field) {
  for (auto* button : field->findChildren<QToolButton*>(Qt::FindDirectChildrenOnly))
    button->setAccessibleName(qt(L10n::Accessible::clearField()));
}

} // namespace tarnwick
