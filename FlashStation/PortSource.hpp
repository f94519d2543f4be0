#pragma once
// Where the flashing station learns which ports are present: the port scanner for a headless
// station, or lists handed over by a program that watches the ports itself.

#include <chrono>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "FlashSerial/PortScanner.hpp"

namespace tarnwick::station {

/// A span of seconds as the station's clock counts it.
inline std::chrono::steady_clock::duration seconds(double value) {
  return std::chrono::duration_cast<std::chrono::steady_clock::duration>(
      std::chrono::duration<double>(value));
}

/// The ports as the station sees them. Used on the station's thread only.
class PortSource {
public:
  using Clock = std::chrono::steady_clock;
  virtual ~PortSource() = default;
  /// Begins watching and returns the ports present now.
  virtual std::vector<SerialPortInfo> start() = 0;
  /// Waits until the ports may have changed, `wake` becomes readable or `deadline` passes, and
  /// returns the new list if there is one. Never reads `wake`.
  virtual std::optional<std::vector<SerialPortInfo>> wait(Clock::time_point deadline, int wake) = 0;
};

/// The port scanner as a port source, with the test devices named on the command line (which
/// no scanner lists) present while their device node exists.
class ScannerPortSource : public PortSource {
public:
  explicit ScannerPortSource(
      std::vector<std::string> testDevices = {},
      PortScanner::ChangeSource changes = PortScanner::ChangeSource::automatic);
  /// False when the system gives no notice of ports coming and going.
  bool canWatch() const { return scanner_.descriptor() >= 0; }
  std::vector<SerialPortInfo> start() override;
  std::optional<std::vector<SerialPortInfo>> wait(Clock::time_point deadline, int wake) override;

private:
  std::vector<SerialPortInfo> withTestDevices(std::vector<SerialPortInfo> ports) const;

  PortScanner scanner_;
  std::vector<std::string> testDevices_;
  std::optional<std::vector<SerialPortInfo>> delivered_;
  std::vector<SerialPortInfo> last_;
};

/// Lists handed over from another thread, by a program that watches the ports itself (the
/// desktop's port list) or by tests. The station sees every list in turn, as the scanner
/// delivers one per change: a port that went and came back between two looks has still gone.
class PortFeed : public PortSource {
public:
  PortFeed();
  ~PortFeed() override;
  PortFeed(const PortFeed&) = delete;
  PortFeed& operator=(const PortFeed&) = delete;

  /// The ports present now; from any thread.
  void deliver(std::vector<SerialPortInfo> ports);
  /// The last list delivered; lists delivered before the station started are what it finds.
  std::vector<SerialPortInfo> start() override;
  std::optional<std::vector<SerialPortInfo>> wait(Clock::time_point deadline, int wake) override;

private:
  void notify();

  std::mutex mutex_;
  std::vector<SerialPortInfo> current_;
  /// The lists the station has not seen yet, oldest first.
  std::deque<std::vector<SerialPortInfo>> unseen_;
  int changed_ = -1;
};

} // namespace tarnwick::station
