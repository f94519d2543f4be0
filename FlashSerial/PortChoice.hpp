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

/// What is remembered of the board of the last run on a port.
struct FlashedBoard {
  /// Until when the port coming back may be that board restarting.
  std::chrono::steady_clock::time_point quietUntil;
  std::optional<std::string> serialNumber;
  /// Its MAC address, for ESP boards that connected.
  std::optional<std::string> mac;
  /// It came back, was connected to for its MAC address and proved to be itself: that restarted
  /// it once more, and its next return is that restart.
  bool provedSame = false;
};

/// What a port that appears where a run ended a moment ago holds.
enum class Arrival {
  /// Another board: flash it.
  newBoard,
  /// The same USB serial number: the board of that run, restarting. Leave it.
  sameSerialNumber,
  /// Nothing tells the two apart: connect, and flash it only when its MAC address differs
  /// from the last one (else restart it into its firmware and leave it).
  compareMAC,
  /// Nothing tells the two apart and nothing can be compared: taken for the board of that run,
  /// restarting, and left alone.
  cannotTell,
};

/// Behind a USB-serial chip (or on a test device) a port that comes back is always another
/// board, because a board restarting does not take the chip away; after the quiet time too.
/// Within the quiet time of a board with its own USB (or an unknown adapter) a different USB
/// serial number is another board and the same one the same board; without serial numbers an
/// ESP board whose MAC address is known is told by its MAC, and any other is taken for the same
/// board. The return of a board that just proved to be itself is the restart that proof caused:
/// it is not connected to again, and `last` forgets the proof, so the board after it is told
/// by its MAC again. `last` is none where no run ended.
Arrival judgeArrival(const SerialPortInfo& port, bool testDevice, FlashedBoard* last, bool esp,
                     std::chrono::steady_clock::time_point now);

/// Why a board that arrived so is left alone, in the interface language; `sameSerialNumber` or
/// `cannotTell` (a board that proved itself by its MAC address is said by the one who asked).
std::string whyLeftAlone(Arrival arrival);

/// The paths of `ports`.
std::set<std::string> pathsOf(const std::vector<SerialPortInfo>& ports);

} // namespace tarnwick::PortChoice
