#include "Tarnwick/Views/Accessibility.hpp"

#include <QAccessibleWidget>
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

QAccessibleInterface* ownInterface(const QString& className, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr) return nullptr;
  // Asked once per class up the widget's hierarchy: answering for its own class keeps Qt's
  // interfaces for every other widget.
  if (className != QLatin1String(object->metaObject()->className())) return nullptr;
  if (className == QLatin1String("tarnwick::RunProgress"))
    return new ProgressInWords(static_cast<QProgressBar*>(widget));
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
