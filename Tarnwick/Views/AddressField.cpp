#include "Tarnwick/Views/AddressField.hpp"

#include <QAction>
#include <QKeyEvent>
#include <QPainter>
#include <QToolButton>

#include "Localization/AccessibleTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Tarnwick/Model/Colours.hpp"
#include "Tarnwick/Views/Accessibility.hpp"

namespace tarnwick {

std::optional<std::uint32_t> parseAddress(const QString& text) {
  QString digits = text;
  // Only spaces and tabs count as blanks: a pasted line break is not part of an address.
  while (!digits.isEmpty() && (digits.front() == u' ' || digits.front() == u'\t'))
    digits.remove(0, 1);
  while (!digits.isEmpty() && (digits.back() == u' ' || digits.back() == u'\t'))
    digits.chop(1);
  digits = digits.toLower();
  if (digits.startsWith(QLatin1String("0x"))) digits.remove(0, 2);
  if (digits.startsWith(u'+')) digits.remove(0, 1);
  if (digits.isEmpty()) return std::nullopt;
  std::uint64_t value = 0;
  for (QChar c : digits) {
    int digit;
    if (c >= u'0' && c <= u'9')
      digit = c.unicode() - u'0';
    else if (c >= u'a' && c <= u'f')
      digit = c.unicode() - u'a' + 10;
    else
      return std::nullopt;
    value = value * 16 + static_cast<std::uint64_t>(digit);
    if (value > 0xFFFFFFFFu) return std::nullopt;
  }
  return static_cast<std::uint32_t>(value);
}

QIcon invalidMarkIcon() {
  QPixmap pixmap(32, 32);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(failureRed);
  painter.drawEllipse(QRectF(2, 2, 28, 28));
  painter.setBrush(Qt::white);
  painter.drawRoundedRect(QRectF(14, 7, 4, 13), 2, 2);
  painter.drawEllipse(QRectF(13.5, 22, 5, 5));
  return QIcon(pixmap);
}

AddressField::AddressField(QWidget* parent) : QLineEdit(parent) {
  mark_ = addAction(invalidMarkIcon(), QLineEdit::TrailingPosition);
  mark_->setVisible(false);
  setText(QString::fromStdString(formatAddress(address_)));
  connect(this, &QLineEdit::textEdited, this, &AddressField::textTyped);
}

void AddressField::setAddress(std::uint32_t address) {
  address_ = address;
  if (!hasFocus()) restore();
}

void AddressField::textTyped(const QString& text) {
  std::optional<std::uint32_t> value = parseAddress(text);
  bool blank = text.trimmed().isEmpty();
  setMarked(!value && !blank);
  if (value && *value != address_) {
    address_ = *value;
    emit addressEdited(address_);
  }
}

void AddressField::restore() {
  setText(QString::fromStdString(formatAddress(address_)));
  setMarked(false);
}

void AddressField::setMarked(bool invalid) {
  invalid_ = invalid;
  mark_->setVisible(invalid);
  // What the red mark shows, in words: for a screen reader, and as the mark's tooltip.
  const QString problem =
      invalid ? QString::fromStdString(L10n::Accessible::notAValidAddress(text().toStdString()))
              : QString();
  mark_->setToolTip(problem);
  // The mark is a button Qt makes for the action; it shows only while there is a problem.
  if (invalid)
    for (auto* button : findChildren<QToolButton*>(Qt::FindDirectChildrenOnly))
      renameAccessibly(button, problem);
  if (accessibleDescription() != problem) setAccessibleDescription(problem);
}

void AddressField::focusOutEvent(QFocusEvent* event) {
  restore();
  QLineEdit::focusOutEvent(event);
}

void AddressField::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    restore();
    selectAll();
  }
  QLineEdit::keyPressEvent(event);
}

} // namespace tarnwick
