#include "FlashSerial/PortChoice.hpp"

#include <algorithm>

#include "Localization/StationTexts.hpp"

namespace tarnwick::PortChoice {

std::vector<SerialPortInfo> newBoards(const std::vector<SerialPortInfo>& ports,
                                      const std::optional<std::set<std::string>>& previous) {
  std::vector<SerialPortInfo> result;
  if (!previous) return result;
  for (const auto& port : ports) {
    // A port without a vendor id is a built-in UART or a test device, never a board plugged in.
    if (port.vendorID && !previous->contains(port.path)) result.push_back(port);
  }
  return result;
}

Decision decide(const std::vector<SerialPortInfo>& ports,
                const std::optional<std::set<std::string>>& previous,
                const std::string& selectedPath,
                const std::function<bool(const std::string& path)>& isQuiet) {
  Decision decision;
  for (const auto& board : newBoards(ports, previous)) {
    if (!isQuiet || !isQuiet(board.path)) {
      decision.newBoard = board.path;
      return decision;
    }
  }
  bool selectionPresent = std::ranges::any_of(
      ports, [&](const SerialPortInfo& port) { return port.path == selectedPath; });
  if (!selectionPresent) {
    auto usb =
        std::ranges::find_if(ports, [](const SerialPortInfo& p) { return p.vendorID.has_value(); });
    if (usb != ports.end()) decision.fallback = usb->path;
  }
  return decision;
}

std::set<std::string> pathsOf(const std::vector<SerialPortInfo>& ports) {
  std::set<std::string> paths;
  for (const auto& port : ports)
    paths.insert(port.path);
  return paths;
}

Arrival judgeArrival(const SerialPortInfo& port, bool testDevice, FlashedBoard* last, bool esp,
                     std::chrono::steady_clock::time_point now) {
  if (!last || now >= last->quietUntil || testDevice || portKind(port) == PortKind::adapter)
    return Arrival::newBoard;
  if (port.serialNumber && last->serialNumber)
    return *port.serialNumber == *last->serialNumber ? Arrival::sameSerialNumber
                                                     : Arrival::newBoard;
  if (last->provedSame) {
    last->provedSame = false;
    return Arrival::cannotTell;
  }
  // Without a MAC to compare (a run that failed before the board answered) connecting would
  // fail and restart the board again, and again.
  return esp && last->mac ? Arrival::compareMAC : Arrival::cannotTell;
}

std::string whyLeftAlone(Arrival arrival) {
  return arrival == Arrival::sameSerialNumber ? L10n::Station::sameSerialNumber()
                                              : L10n::Station::cannotTell();
}

} // namespace tarnwick::PortChoice
