#pragma once
// Port discovery: the serial ports present, with the USB facts that tell a board from a phantom
// UART, and notice of boards being plugged in and out.
//
// The scanner owns no thread and no event loop. Its owner watches `descriptor()` for input and
// calls `handleReadable()`, and calls `handleTimers()` once `nextDeadline()` has passed; every
// `onChange` call therefore happens on the owner's thread. The desktop drives it from Qt's event
// loop, tarnwick-cli from poll(2).

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

/// One discovered port.
struct SerialPortInfo {
  /// The device node, for example /dev/ttyUSB0; also the port's identity.
  std::string path;
  /// The USB product string, trimmed; none for non-USB devices or when the device has none.
  std::optional<std::string> productName;
  /// USB `idVendor`; none for non-USB devices.
  std::optional<int> vendorID;
  /// USB `idProduct`; none for non-USB devices.
  std::optional<int> productID;
  /// The USB device's serial number (its `serial` attribute), trimmed; none when it has none.
  /// Tells two boards of the same kind apart on one port.
  std::optional<std::string> serialNumber = std::nullopt;

  bool operator==(const SerialPortInfo&) const = default;
};

class PortScanner {
public:
  using Clock = std::chrono::steady_clock;
  using ChangeHandler = std::function<void(const std::vector<SerialPortInfo>&)>;

  /// How long after a change the second, complete delivery follows, in seconds.
  static constexpr double secondDeliveryDelay = 0.5;

  /// Where notice of ports coming and going comes from.
  enum class ChangeSource {
    /// The udev monitor where a udev daemon runs, else the device directory.
    automatic,
    /// Events of the udev daemon for the tty subsystem.
    udevMonitor,
    /// Entries created and removed in the device directory (containers, systems without udev).
    deviceDirectory,
  };

  /// An idle scanner: no callback, watching nothing. `deviceDirectory` is the directory watched
  /// when changes are noticed there.
  explicit PortScanner(ChangeSource source = ChangeSource::automatic,
                       std::string deviceDirectory = "/dev");
  /// Stops watching; a delivery still pending is never made.
  ~PortScanner();
  PortScanner(const PortScanner&) = delete;
  PortScanner& operator=(const PortScanner&) = delete;

  /// Receives every new list; set before `start`, replaced freely.
  ChangeHandler onChange;

  /// Begins watching and delivers a first scan to `onChange`. Does nothing when already started;
  /// when no change source can be set up the scanner stays silent.
  void start();

  /// One synchronous scan, sorted: USB ports first, each group in the natural order of a file
  /// browser. A failed scan is an empty list.
  std::vector<SerialPortInfo> scan() const;

  /// The name shown for the port in the picker, the log and messages.
  static std::string displayName(const SerialPortInfo& port);

  /// The descriptor to watch for input; -1 while idle.
  int descriptor() const;
  /// Reads the pending change notices and delivers a fresh list at once, scheduling the second
  /// delivery.
  void handleReadable();
  /// When the next delayed delivery is due; none when nothing is pending.
  std::optional<Clock::time_point> nextDeadline() const;
  /// Makes the deliveries that are due by now.
  void handleTimers();
  /// For owners without an event loop: waits with poll(2) until notices arrive, `wake` (unless
  /// -1) becomes readable, a delivery falls due or `deadline` passes, then handles what came. A
  /// signal cuts the wait short. False when poll itself fails.
  bool wait(Clock::time_point deadline, int wake = -1);

private:
  struct Watch;
  std::unique_ptr<Watch> watch_;
};

/// Espressif's own USB interface (USB-JTAG/serial) on the S3, C3 and C6.
inline constexpr int espressifVendorID = 0x303A;

/// How a port reaches its board, which decides what a port that goes and comes back means.
enum class PortKind {
  /// A USB-serial chip in front of the board (CP210x, CH340, FTDI, an Uno's USB chip): a board
  /// restarting does not make the port go away, so a port that comes back is another board.
  adapter,
  /// The board's own USB (Espressif's USB-JTAG, Leonardo, Micro, Pro Micro), which goes away and
  /// comes back whenever the board restarts.
  nativeUSB,
  unknown,
};
PortKind portKind(const SerialPortInfo& port);

/// The family of the board behind a port, known only from exact USB ids (an Arduino Uno's
/// USB chip, Espressif's USB-JTAG); none for adapters that serve either.
enum class BoardFamily { esp, avr };
std::optional<BoardFamily> boardFamily(const SerialPortInfo& port);

/// Boards with Espressif's own USB answer the USB-JTAG reset; trying it first saves a round.
bool prefersUSBJTAGReset(const std::optional<SerialPortInfo>& port);

/// The device's name without its directory, as lines and messages show it ("ttyUSB0").
std::string deviceName(const std::string& path);

/// Sorts ports as the scanner does: ports with a USB vendor id first; within each group by path,
/// case-insensitively, with digit runs compared by value (ttyACM2 before ttyACM10). Stable.
void sortPorts(std::vector<SerialPortInfo>& ports);

} // namespace tarnwick

template <> struct std::hash<tarnwick::SerialPortInfo> {
  std::size_t operator()(const tarnwick::SerialPortInfo& port) const noexcept;
};
