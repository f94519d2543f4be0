#include "Simulator/SimulatedBoard.hpp"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>

#include "FlashCore/AVR.hpp"
#include "Localization/AVRTexts.hpp"
#include "Simulator/DemoFirmware.hpp"
#include "Simulator/SimulatedAVR.hpp"
#include "Simulator/SimulatedESP.hpp"

namespace tarnwick::simulator {

namespace {

struct USBIdentity {
  int vendorID;
  int productID;
  const char* productName;
};

// What boards of each kind usually carry in front of the chip: a CP2102 on Espressif's DevKits,
// a CH340 on NodeMCUs and on the Nano clones that still have the old bootloader, an FT232R on
// the original Nano, and Arduino's own USB chip on the Uno and the Mega.
USBIdentity usbIdentity(const Target& target) {
  constexpr USBIdentity cp2102{0x10C4, 0xEA60, "CP2102 USB to UART Bridge Controller"};
  constexpr USBIdentity ch340{0x1A86, 0x7523, "USB Serial"};
  if (auto chip = target.espChip()) return *chip == ESPChip::esp8266 ? ch340 : cp2102;
  switch (*target.avrBoard()) {
  case AVRBoard::uno: return {0x2341, 0x0043, "Arduino Uno"};
  case AVRBoard::mega2560: return {0x2341, 0x0042, "Arduino Mega 2560"};
  case AVRBoard::nano: return {0x0403, 0x6001, "FT232R USB UART"};
  default: return ch340;
  }
}

} // namespace

std::vector<Target> SimulatedBoard::simulable() {
  std::vector<Target> targets;
  for (ESPChip chip : ESPChips::all)
    targets.push_back(Target::esp(chip));
  for (AVRBoard board : AVRBoards::all)
    if (protocol(board) != AVRProtocol::avr109) targets.push_back(Target::avr(board));
  return targets;
}

bool SimulatedBoard::canSimulate(const Target& target) {
  const auto targets = simulable();
  return std::ranges::find(targets, target) != targets.end();
}

Target SimulatedBoard::suggestedFor(const Target& productTarget) {
  return canSimulate(productTarget) ? productTarget : Target::esp(ESPChip::esp32);
}

std::string SimulatedBoard::shortName(const Target& target) {
  if (auto chip = target.espChip()) return std::string(rawValue(*chip));
  if (auto board = target.avrBoard()) return std::string(rawValue(*board));
  return "esp";
}

std::optional<Target> SimulatedBoard::fromShortName(std::string_view name) {
  for (const Target& target : simulable())
    if (shortName(target) == name) return target;
  return std::nullopt;
}

std::string SimulatedBoard::displayName(const Target& target) {
  if (auto chip = target.espChip()) return std::string(tarnwick::displayName(*chip));
  if (auto board = target.avrBoard()) return L10n::Product::boardName(*board);
  return L10n::Product::anESP();
}

SimulatedBoard::SimulatedBoard(const Target& target, bool paceLine) : target_(target) {
  if (!canSimulate(target)) throw std::invalid_argument("cannot simulate " + target.text());
  if (auto chip = target.espChip()) {
    SimulatedESPOptions options;
    options.chip = *chip;
    options.paceLine = paceLine;
    // Every simulated board its own MAC address, as real boards have, whether several run in one
    // program or each in a tarnwick-simboard of its own: a station showing four boards with one
    // address would look like one board counted four times.
    static std::atomic<std::uint32_t> boardsMade = 0;
    options.macWord0 += (static_cast<std::uint32_t>(getpid()) << 8) + boardsMade++;
    esp_ = std::make_unique<SimulatedESP>(options);
  } else {
    SimulatedAVROptions options;
    options.board = *target.avrBoard();
    options.paceLine = paceLine;
    avr_ = std::make_unique<SimulatedAVR>(options);
  }
}

SimulatedBoard::~SimulatedBoard() = default;

const std::string& SimulatedBoard::path() const { return esp_ ? esp_->path() : avr_->path(); }

SerialPortInfo SimulatedBoard::port() const {
  const USBIdentity identity = usbIdentity(target_);
  return {path(), identity.productName, identity.vendorID, identity.productID};
}

void SimulatedBoard::writeDemo(const Target& target, const std::filesystem::path& directory) {
  if (auto chip = target.espChip())
    writeDemoBuild(*chip, directory);
  else
    writeDemoSketch(directory);
}

void SimulatedBoard::start(BoardStart how) {
  if (esp_) esp_->start(how);
  if (avr_) avr_->start(how);
}

} // namespace tarnwick::simulator
