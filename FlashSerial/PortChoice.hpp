#pragma once
// Which port in a new list is a freshly plugged-in board, and which port to select. Shared by the
// desktop model and the flashing station, which applies it per port while several runs go on.

#include <chrono>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "FlashSerial/PortScanner.hpp"

namespace tarnwick::PortChoice {

/// What to do with a new port list.
struct Decision {
  /// A board that was just plugged in: select it (and flash it when asked to).
  std::optional<std::string> newBoard;
  /// The path to select instead, when the selection is gone; none leaves the selection alone.
  std::optional<std::string> fallback;
  bool operator==(const Decision&) const = default;
};

/// Ports with a USB vendor id whose path was not in `previous`, in list order. Never any on the
/// first list (`previous` absent): what is there at start was not just plugged in.
std::vector<SerialPortInfo> newBoards(const std::vector<SerialPortInfo>& ports,
                                      const std::optional<std::set<std::string>>& previous);

/// The first new board for which `isQuiet` is false becomes `newBoard`. Otherwise, when
/// `selectedPath` is not in a non-empty list, the first port with a USB vendor id is the
/// fallback. A selected port that is still present is never replaced by the fallback.
/// `isQuiet` tells whether a path is still within the quiet time after a run: a board that
/// re-enumerates during or after its own reset is not new.
Decision decide(const std::vector<SerialPortInfo>& ports,
                const std::optional<std::set<std::string>>& previous,
                const std::string& selectedPath,
                const std::function<bool(const std::string& path)>& isQuiet);

/// What is remembered of the board last flashed on a port.
struct FlashedBoard {
  /// Until when the port coming back may be that board restarting.
  std::chrono::steady_clock::time_point quietUntil;
  std::optional<std::string> serialNumber;
  /// Its MAC address, for ESP boards that connected.
  std::optional<std::string> mac;
};

/// What a port that appears on a path where a board was flashed before holds.
enum class Arrival {
  /// Another board: flash it.
  newBoard,
  /// The board just flashed, restarting: leave it.
  sameBoard,
  /// Cannot be told from the port: connect and compare its MAC address with the last one.
  compareMAC,
};

/// Behind a USB-serial chip (or on a test device), a port that comes back is always another
/// board; after the quiet time too. Within the quiet time of a board with its own USB (or an
/// unknown adapter) a different USB serial number is another board, the same one the same
/// board; without serial numbers an ESP board is told by its MAC and an Arduino is taken for
/// the same board.
Arrival judgeArrival(const SerialPortInfo& port, bool testDevice,
                     const std::optional<FlashedBoard>& last, bool esp,
                     std::chrono::steady_clock::time_point now);

/// The paths of `ports`.
std::set<std::string> pathsOf(const std::vector<SerialPortInfo>& ports);

} // namespace tarnwick::PortChoice
