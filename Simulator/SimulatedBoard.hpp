#pragma once
// One simulated board of either family, as a person picks it: by target, with the USB facts a real
// board of its kind shows and a demo build to flash onto it. tarnwick-simboard serves one; the
// desktop program plugs in as many as asked for.

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "FlashCore/Product.hpp"
#include "FlashSerial/PortScanner.hpp"
#include "Simulator/ResetCircuit.hpp"

namespace tarnwick::simulator {

class SimulatedAVR;
class SimulatedESP;

/// A board answering on its pseudo-terminal from a thread of its own until it is destroyed, which
/// is pulling it out: the program on the other side then sees a hang-up.
class SimulatedBoard {
public:
  /// Every ESP chip, then the Arduino boards whose bootloader stays on its port. Caterina boards
  /// restart theirs on a new port, which a pseudo-terminal cannot imitate.
  static std::vector<Target> simulable();
  static bool canSimulate(const Target& target);
  /// The board to offer for a product: its own target when that can be simulated, otherwise an
  /// ESP32 (the most common board, and what "detect automatically" finds most often).
  static Target suggestedFor(const Target& productTarget);
  /// The short name used on command lines ("esp32", "nanoOldBootloader").
  static std::string shortName(const Target& target);
  /// The simulable board with that short name.
  static std::optional<Target> fromShortName(std::string_view name);
  /// The board's name for people: the chip ("ESP32-S3") or the Arduino board, in the interface
  /// language.
  static std::string displayName(const Target& target);
  /// Writes a build for the board into `directory`: ESP-IDF's folder for an ESP chip, a Blink
  /// sketch for an Arduino. Throws std::filesystem::filesystem_error.
  static void writeDemo(const Target& target, const std::filesystem::path& directory);

  /// Starts serving `target`, which must be simulable. `paceLine` lets bytes take as long as on a
  /// real serial line. Throws std::invalid_argument for a target that cannot be simulated and
  /// std::runtime_error when no pseudo-terminal can be opened.
  explicit SimulatedBoard(const Target& target, bool paceLine = false);
  ~SimulatedBoard();
  SimulatedBoard(const SimulatedBoard&) = delete;
  SimulatedBoard& operator=(const SimulatedBoard&) = delete;

  const Target& target() const { return target_; }
  /// The pseudo-terminal the program under test opens, for example /dev/pts/5.
  const std::string& path() const;
  /// The port as the scanner would list a real board of this kind behind its usual USB-serial
  /// chip: a port that comes back after a run is another board, and the USB ids never name the
  /// other family.
  SerialPortInfo port() const;
  /// What the board's reset circuit made of the lines: held in reset, its bootloader or its
  /// application (which leaves the bootloader silent).
  void start(BoardStart how);

private:
  Target target_;
  std::unique_ptr<SimulatedESP> esp_;
  std::unique_ptr<SimulatedAVR> avr_;
};

} // namespace tarnwick::simulator
