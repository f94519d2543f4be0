#pragma once
// The hexadecimal entry of a flash address: stores each valid value as it is typed, marks text
// that is not an address, and shows the stored value again once the user is done.

#include <QLineEdit>
#include <cstdint>
#include <optional>

class QAction;
class QIcon;

namespace tarnwick {

/// Reads an address as typed: blanks at either end and one "0x" are ignored, case does not
/// matter, a "+" may lead the digits; the value must fit in 32 bits. None for anything else,
/// including an empty text.
std::optional<std::uint32_t> parseAddress(const QString& text);

/// The red mark a field shows beside text it cannot take.
QIcon invalidMarkIcon();

class AddressField : public QLineEdit {
  Q_OBJECT
public:
  explicit AddressField(QWidget* parent = nullptr);

  /// The stored value; shown formatted unless the user is typing.
  std::uint32_t address() const { return address_; }
  /// Takes a value from the model. Text being typed is left alone so an update caused by the
  /// user's own keystroke does not move the cursor.
  void setAddress(std::uint32_t address);
  /// Whether the text typed is marked as not being an address.
  bool isMarkedInvalid() const { return invalid_; }

signals:
  /// A valid value different from the stored one was typed.
  void addressEdited(std::uint32_t address);

protected:
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  void textTyped(const QString& text);
  void restore();
  void setMarked(bool invalid);

  std::uint32_t address_ = 0;
  bool invalid_ = false;
  QAction* mark_ = nullptr;
};

} // namespace tarnwick
