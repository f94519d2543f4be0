#pragma once
// The connection settings sheet: line speed and reset for ESP chips, the flash header settings,
// the facts of an Arduino board, and verification and production switches.

#include <QDialog>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;

namespace tarnwick {

class FlasherModel;

class SettingsSheet : public QDialog {
  Q_OBJECT
public:
  explicit SettingsSheet(FlasherModel& model, QWidget* parent = nullptr);

  QGroupBox* connectionSection() const { return connection_; }
  QGroupBox* flashMemorySection() const { return flashMemory_; }
  QGroupBox* boardSection() const { return board_; }

private:
  void refresh();
  template <typename Change> void edit(Change change);

  FlasherModel& model_;
  QGroupBox* connection_;
  QGroupBox* flashMemory_;
  QGroupBox* board_;
  QComboBox* speed_;
  QComboBox* reset_;
  QComboBox* flashMode_;
  QComboBox* flashSize_;
  QCheckBox* clearOTA_;
  QLabel* bootloader_;
  QLabel* boardSpeed_;
  QLabel* room_;
  QCheckBox* verify_;
  QCheckBox* autoFlash_;
  QCheckBox* sounds_;
};

} // namespace tarnwick
