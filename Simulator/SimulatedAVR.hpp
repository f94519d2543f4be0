#pragma once
// Simulated Arduino bootloaders on pseudo-terminals: Optiboot/ATmegaBOOT (STK500v1), the Mega's
// STK500v2 bootloader and Caterina (AVR109), each with a flash memory and misbehaviour switches.

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "FlashCore/AVR.hpp"
#include "Simulator/PseudoTerminal.hpp"
#include "Simulator/ResetCircuit.hpp"

namespace tarnwick::simulator {

struct SimulatedAVROptions {
  AVRBoard board = AVRBoard::uno;
  /// A signature to report instead of the board chip's own.
  std::optional<std::array<std::uint8_t, 3>> signature;
  /// Never answer.
  bool silent = false;
  /// Answer every command of this first byte wrongly (STK500v1: NOSYNC; STK500v2: failed status;
  /// AVR109: "?").
  std::optional<std::uint8_t> failCommand;
  /// Noise before every answer.
  bool garbage = false;
  /// Close the terminal after this many pages written.
  std::optional<int> disconnectAfterPages;
  /// Pages read back with one byte changed (a flash that does not hold what was written).
  bool corruptReadBack = false;
  /// Pace the line at the bootloader's speed.
  bool paceLine = false;
  /// How long a bootloader started by its reset circuit waits for the first byte, and after each
  /// byte for the next, before it starts the application (Optiboot's watchdog: about 1 s).
  double bootloaderWindowSeconds = 1.0;
};

class SimulatedAVR {
public:
  explicit SimulatedAVR(SimulatedAVROptions options = {});
  ~SimulatedAVR();
  SimulatedAVR(const SimulatedAVR&) = delete;
  SimulatedAVR& operator=(const SimulatedAVR&) = delete;

  const std::string& path() const { return terminal_.path(); }
  /// The flash contents (erased bytes are 0xFF).
  Bytes flash() const;
  /// Messages received, by their first byte.
  int commands(std::uint8_t first) const;
  /// Every STK500v2 load-address body received.
  std::vector<Bytes> loadAddressBodies() const;
  std::uint64_t bytesReceived() const { return bytesReceived_; }
  std::uint64_t bytesSent() const { return bytesSent_; }
  /// Starts the board as its reset circuit decides: into its bootloader, which answers for its
  /// window, or its application, which answers nothing. Without a circuit the bootloader simply
  /// runs.
  void start(BoardStart how);

private:
  // Whether the bootloader runs now; a byte it gets keeps it running for another window.
  bool bootloaderRunsFor(bool byteArrived);

  void serve();
  // Takes one complete message off the front of `input`; false when more bytes are needed.
  bool handleSTK500v1(Bytes& input);
  bool handleSTK500v2(Bytes& input);
  bool handleAVR109(Bytes& input);
  void reply(Bytes bytes);
  void count(std::uint8_t first);
  void writeFlash(std::uint32_t byteAddress, const Bytes& data);
  Bytes readFlash(std::uint32_t byteAddress, std::size_t length);
  std::array<std::uint8_t, 3> signature() const;

  SimulatedAVROptions options_;
  PseudoTerminal terminal_;
  mutable std::mutex mutex_;
  Bytes flash_;
  std::vector<int> counts_ = std::vector<int>(256, 0);
  std::vector<Bytes> loadAddresses_;
  std::uint32_t wordAddress_ = 0;
  int pagesWritten_ = 0;
  bool gone_ = false;
  std::atomic<std::uint64_t> bytesReceived_ = 0;
  std::atomic<std::uint64_t> bytesSent_ = 0;
  // Steady-clock nanoseconds until the bootloader gives up; -1 while it runs for good.
  std::atomic<std::int64_t> bootloaderUntil_ = -1;
  std::atomic<bool> restartPending_ = false;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

} // namespace tarnwick::simulator
