#include "Tarnwick/Views/SettingsSheet.hpp"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "FlashCore/AVR.hpp"
#include "Localization/AVRTexts.hpp"
#include "Localization/GeneralTexts.hpp"
#include "Localization/MainWindowTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/SettingsTexts.hpp"
#include "Localization/WindowTexts.hpp"
#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Views/ViewSupport.hpp"

namespace tarnwick {

namespace {
namespace W = L10n::Window;

/// Line speeds offered for ESP flashing; the ROM starts at the first.
constexpr int explanationWidth = 460;

constexpr std::int64_t flashSpeeds[] = {115200, 230400, 460800, 921600, 1500000, 2000000};

QLabel* explanation(const std::string& text) {
  auto* label = new QLabel(qt(text));
  label->setWordWrap(true);
  // A wrapped label only gets the height it needs once its width is known.
  label->setFixedWidth(explanationWidth);
  label->setForegroundRole(QPalette::PlaceholderText);
  QFont small = label->font();
  small.setPointSizeF(small.pointSizeF() * 0.9);
  label->setFont(small);
  // The height follows the font just set; a form layout would otherwise squeeze the lines.
  label->setFixedHeight(label->heightForWidth(explanationWidth));
  return label;
}
} // namespace

template <typename Change> void SettingsSheet::edit(Change change) {
  Product product = model_.product();
  change(product);
  model_.setProduct(product);
}

SettingsSheet::SettingsSheet(FlasherModel& model, QWidget* parent)
    : QDialog(parent), model_(model) {
  setObjectName("settingsSheet");
  setWindowTitle(qt(L10n::Settings::connection()));
  auto* layout = new QVBoxLayout(this);

  connection_ = new QGroupBox(qt(L10n::Settings::connection()));
  auto* connectionForm = new QFormLayout(connection_);
  speed_ = new QComboBox;
  for (std::int64_t speed : flashSpeeds)
    speed_->addItem(qt(L10n::Board::baud(speed)), qint64(speed));
  connectionForm->addRow(qt(L10n::Settings::speedWhileFlashing()), speed_);
  connectionForm->addRow(explanation(L10n::Settings::speedExplanation()));
  reset_ = new QComboBox;
  for (ResetMode mode : allResetModes)
    reset_->addItem(qt(L10n::Settings::resetModeName(mode)), static_cast<int>(mode));
  connectionForm->addRow(qt(L10n::Settings::resetIntoBootloader()), reset_);
  connectionForm->addRow(explanation(L10n::Settings::resetExplanation()));
  layout->addWidget(connection_);

  flashMemory_ = new QGroupBox(qt(L10n::Settings::flashMemory()));
  auto* memoryForm = new QFormLayout(flashMemory_);
  flashMode_ = new QComboBox;
  for (FlashMode mode : allFlashModes)
    flashMode_->addItem(qt(L10n::Settings::flashModeName(mode)), static_cast<int>(mode));
  memoryForm->addRow(qt(L10n::Settings::flashModeLabel()), flashMode_);
  memoryForm->addRow(explanation(L10n::Settings::flashModeExplanation()));
  flashSize_ = new QComboBox;
  for (FlashSize size : allFlashSizes)
    flashSize_->addItem(qt(L10n::Settings::flashSizeName(size)), static_cast<int>(size));
  memoryForm->addRow(qt(L10n::Settings::flashSizeLabel()), flashSize_);
  memoryForm->addRow(explanation(L10n::Settings::flashSizeExplanation()));
  clearOTA_ = new QCheckBox(qt(L10n::Settings::clearOTASelection()));
  memoryForm->addRow(clearOTA_);
  memoryForm->addRow(explanation(L10n::Settings::clearOTAExplanation()));
  layout->addWidget(flashMemory_);

  board_ = new QGroupBox(qt(L10n::Settings::bootloader()));
  auto* boardForm = new QFormLayout(board_);
  bootloader_ = new QLabel;
  boardSpeed_ = new QLabel;
  room_ = new QLabel;
  boardForm->addRow(qt(L10n::Settings::bootloader()), bootloader_);
  boardForm->addRow(qt(L10n::Settings::speed()), boardSpeed_);
  boardForm->addRow(qt(L10n::Settings::roomForSketch()), room_);
  layout->addWidget(board_);

  auto* production = new QGroupBox(qt(L10n::Settings::verificationAndProduction()));
  auto* productionForm = new QFormLayout(production);
  verify_ = new QCheckBox(qt(L10n::Settings::verifyAfterWriting()));
  productionForm->addRow(verify_);
  productionForm->addRow(explanation(L10n::Settings::verifyExplanation()));
  autoFlash_ = new QCheckBox(withoutMnemonic(L10n::Settings::flashAutomatically()));
  productionForm->addRow(autoFlash_);
  productionForm->addRow(explanation(L10n::Settings::flashAutomaticallyExplanation()));
  sounds_ = new QCheckBox(qt(L10n::Settings::soundWhenDone()));
  productionForm->addRow(sounds_);
  layout->addWidget(production);

  auto* buttons = new QDialogButtonBox;
  buttons->addButton(qt(W::close()), QDialogButtonBox::AcceptRole);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  layout->addWidget(buttons);

  connect(speed_, qOverload<int>(&QComboBox::activated), this, [this](int index) {
    qint64 speed = speed_->itemData(index).toLongLong();
    edit([speed](Product& product) { product.flashBaud = speed; });
  });
  connect(reset_, qOverload<int>(&QComboBox::activated), this, [this](int index) {
    auto mode = static_cast<ResetMode>(reset_->itemData(index).toInt());
    edit([mode](Product& product) { product.resetMode = mode; });
  });
  connect(flashMode_, qOverload<int>(&QComboBox::activated), this, [this](int index) {
    auto mode = static_cast<FlashMode>(flashMode_->itemData(index).toInt());
    edit([mode](Product& product) { product.flashMode = mode; });
  });
  connect(flashSize_, qOverload<int>(&QComboBox::activated), this, [this](int index) {
    auto size = static_cast<FlashSize>(flashSize_->itemData(index).toInt());
    edit([size](Product& product) { product.flashSize = size; });
  });
  connect(clearOTA_, &QCheckBox::clicked, this,
          [this](bool on) { edit([on](Product& product) { product.clearOTAData = on; }); });
  connect(verify_, &QCheckBox::clicked, this,
          [this](bool on) { edit([on](Product& product) { product.verify = on; }); });
  connect(autoFlash_, &QCheckBox::clicked, &model_, &FlasherModel::setAutoFlash);
  connect(sounds_, &QCheckBox::clicked, &model_, &FlasherModel::setPlaySounds);

  connect(&model_, &FlasherModel::productChanged, this, &SettingsSheet::refresh);
  connect(&model_, &FlasherModel::autoFlashChanged, this, &SettingsSheet::refresh);
  connect(&model_, &FlasherModel::playSoundsChanged, this, &SettingsSheet::refresh);
  refresh();
}

void SettingsSheet::refresh() {
  const Product& product = model_.product();
  bool esp = product.target.isESP();
  connection_->setVisible(esp);
  flashMemory_->setVisible(esp);
  board_->setVisible(!esp);
  // A speed typed into a product file by hand still shows, as an extra entry.
  int speedIndex = speed_->findData(qint64(product.flashBaud));
  if (speedIndex < 0) {
    speed_->addItem(qt(L10n::Board::baud(product.flashBaud)), qint64(product.flashBaud));
    speedIndex = speed_->count() - 1;
  }
  speed_->setCurrentIndex(speedIndex);
  reset_->setCurrentIndex(reset_->findData(static_cast<int>(product.resetMode)));
  flashMode_->setCurrentIndex(flashMode_->findData(static_cast<int>(product.flashMode)));
  flashSize_->setCurrentIndex(flashSize_->findData(static_cast<int>(product.flashSize)));
  clearOTA_->setChecked(product.clearOTAData);
  verify_->setChecked(product.verify);
  autoFlash_->setChecked(model_.autoFlash());
  sounds_->setChecked(model_.playSounds());
  if (auto board = product.target.avrBoard()) {
    bootloader_->setText(qt(L10n::Settings::bootloaderName(*board)));
    boardSpeed_->setText(qt(L10n::Board::baud(baudRate(*board))));
    room_->setText(qt(formatByteCount(maxSketchSize(*board))));
  }
  adjustSize();
}

} // namespace tarnwick
