#pragma once
// One serial device, opened for exclusive use in raw 8-bit mode: the only way the flashing
// engine reaches a board.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "FlashCore/Bytes.hpp"
#include "FlashSerial/FlashPortError.hpp"
#include "FlashSerial/SerialDevice.hpp"
#include "FlashSerial/SerialLink.hpp"

namespace tarnwick {

/// A serial port. Operations that fail throw `FlashPortError`. Used by one thread at a time.
class FlashPort final : public SerialLink {
public:
  /// Most data one `read` hands back.
  static constexpr std::size_t bufferSize = 4096;
  /// Longest time one write waits for the driver to take more output, in milliseconds.
  static constexpr int writeWaitMilliseconds = 2000;

  /// A closed port; nothing is opened yet. `allowsTestDevice` also accepts devices that are no
  /// serial adapters (pseudo-terminals): no path check, and refused exclusive use or line speed
  /// are let pass.
  FlashPort(std::string path, std::int64_t baudRate, bool allowsTestDevice = false);
  /// Closes the port if it is open.
  ~FlashPort() override;
  FlashPort(const FlashPort&) = delete;
  FlashPort& operator=(const FlashPort&) = delete;

  /// Whether `path` names a serial adapter: "/dev/cu.*", "/dev/tty.*" and the Linux families
  /// ttyUSB, ttyACM, ttyS, ttyAMA, ttyTHS and rfcomm, with no further "/" nor "..", and a name
  /// under 128 characters. Pseudo-terminals, consoles and /dev/tty never pass.
  static bool isValidPath(std::string_view path);

  /// Opens the device for exclusive use, raw 8N1 at `baudRate`; nothing when already open.
  void open();
  bool isOpen() const { return fd_ >= 0; }

  const std::string& path() const override { return path_; }
  std::int64_t baudRate() const override { return baudRate_; }
  bool allowsTestDevice() const { return allowsTestDevice_; }

  void setBaudRate(std::int64_t rate) override;
  void setLines(std::optional<bool> dtr, std::optional<bool> rts) override;
  void write(ByteView bytes) override;
  Bytes read(double timeout) override;
  Bytes read(std::size_t count, double timeout) override;
  void flushInput() override;
  void close() noexcept override;

private:
  // Undoes a partly done open: settings back (once they were read), exclusive use released.
  void abandon(int fd, bool attributesRead) noexcept;

  std::string path_;
  std::int64_t baudRate_;
  bool allowsTestDevice_;
  int fd_ = -1;
  device::TerminalAttributes originalAttributes_{};
  Bytes buffer_ = Bytes(bufferSize, 0);
  Bytes pending_;
};

/// Whether a driver asked for `requested` bits per second and reporting `actual` honours the
/// request: at most 3 % off.
bool lineSpeedHonoured(std::int64_t requested, std::int64_t actual);

/// A timeout in seconds as the whole milliseconds a device wait takes: rounded up, 0 for negative
/// or NaN, and at most the largest wait a signed 32-bit count holds (about 24 days).
int waitMilliseconds(double seconds);

} // namespace tarnwick
