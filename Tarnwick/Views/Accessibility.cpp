#include "Tarnwick/Views/Accessibility.hpp"

#include <QAccessibleWidget>
#include <QLineEdit>
#include <QToolButton>
#include <mutex>

#include "Localization/AccessibleTexts.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick {

namespace {
/// The dynamic property that holds a widget's role.
constexpr const char* roleProperty = "tarnwickAccessibleRole";

QAccessibleInterface* interfaceWithRole(const QString& className, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr) return nullptr;
  // Asked once per class up the widget's hierarchy: answering for its own class keeps Qt's
  // interfaces for every other widget.
  if (className != QLatin1String(object->metaObject()->className())) return nullptr;
  const QVariant role = object->property(roleProperty);
  if (!role.isValid()) return nullptr;
  return new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()));
}
} // namespace

void setAccessibleRole(QWidget* widget, QAccessible::Role role) {
  static std::once_flag installed;
  std::call_once(installed, [] { QAccessible::installFactory(interfaceWithRole); });
  widget->setProperty(roleProperty, static_cast<int>(role));
}

void nameClearButton(QLineEdit* field) {
  for (auto* button : field->findChildren<QToolButton*>(Qt::FindDirectChildrenOnly))
    button->setAccessibleName(qt(L10n::Accessible::clearField()));
}

} // namespace tarnwick
