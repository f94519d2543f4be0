#pragma once
// A pseudo-terminal pair for tests: the program under test opens `path()` like a serial
// device; the test (or a simulated board) talks through the controller side.

#include <string>

#include "FlashCore/Bytes.hpp"

namespace tarnwick::simulator {

class PseudoTerminal {
public:
  /// Opens a new pair; the controller side is non-blocking. Throws std::runtime_error on failure.
  PseudoTerminal();
  ~PseudoTerminal();
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  /// Path of the device side, for example /dev/pts/7.
  const std::string& path() const { return path_; }
  /// Descriptor of the controller side, or -1 after `closeController`.
  int controller() const { return controller_; }

  /// Writes all bytes to the controller side (the device side reads them).
  void send(ByteView bytes);
  /// Reads what the device side wrote, waiting at most `timeoutSeconds` for the first byte.
  Bytes receive(double timeoutSeconds);
  /// Reads until `count` bytes arrived or the time ran out.
  Bytes receive(std::size_t count, double timeoutSeconds);

  /// Closes the controller side: the device side then sees a hang-up, as after unplugging.
  void closeController();

private:
  int controller_ = -1;
  std::string path_;
};

} // namespace tarnwick::simulator
