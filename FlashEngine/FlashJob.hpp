#pragma once
// One flashing run, from opening the serial port to restarting the board.

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "FlashCore/Product.hpp"
#include "FlashEngine/AVRLoader.hpp"
#include "FlashEngine/CompressionCache.hpp"
#include "FlashEngine/JobContext.hpp"
#include "FlashSerial/NetworkLink.hpp"

namespace tarnwick {

class FlashJob {
public:
  /// A job for a copy of the product and its files; does no input or output yet.
  FlashJob(Product product, FileBytesMap files, std::string portPath, bool allowsTestDevice,
           JobContext::EventHandler onEvent);
  FlashJob(const FlashJob&) = delete;
  FlashJob& operator=(const FlashJob&) = delete;

  /// In automatic reset mode, try the USB-JTAG sequence first (boards with Espressif's own USB).
  bool usbJTAGFirst = false;
  /// Where a Caterina bootloader appeared; absent: watch the serial devices for up to 8 s.
  AVRLoader::PortFinder findBootloaderPort;
  /// Compressed writes shared with the other jobs of the same product; absent: the job keeps
  /// its own. Hand every job of a series the same cache, and each board after the first is
  /// written without compressing again.
  std::shared_ptr<CompressionCache> compressionCache;

  /// Runs the whole job on the calling thread. Throws FlashError or FlashPortError.
  FlashSummary run();
  /// An ESP board with this MAC address is the board flashed before: once connected, `run`
  /// restarts it into its application and throws SameBoard instead of writing.
  std::optional<std::string> leaveBoardWithMAC;
  struct SameBoard {};
  /// The port's connection, already open: a network port's server takes one client at a time,
  /// so the connection that found the board is the one its run goes through. Used instead of
  /// opening the port (connected anew should its server have closed it meanwhile), and closed
  /// when the run ends. Before `run`.
  void useOpenLink(std::unique_ptr<NetworkLink> link) { openLink_ = std::move(link); }
  /// Asks the run to stop; any thread, returns at once.
  void cancel() { context_.cancel(); }

  const Product& product() const { return product_; }

private:
  FlashSummary runESP(std::optional<ESPChip> expected);
  FlashSummary runAVR(AVRBoard board);
  void hardReset(SerialLink& port);
  // How this job opens its links: the test-device flag, and a network server's notes and
  // cancellation reaching the run.
  SerialLinkOptions linkOptions();
  // The link to the port at `baudRate`: the one handed over, or the port opened now.
  std::unique_ptr<SerialLink> openLink(std::int64_t baudRate);

  Product product_;
  FileBytesMap files_;
  std::string portPath_;
  bool allowsTestDevice_;
  std::unique_ptr<NetworkLink> openLink_;
  JobContext context_;
  std::chrono::steady_clock::time_point start_;
};

/// Six bytes as upper-case hexadecimal pairs joined by ":".
std::string formatMAC(const std::array<std::uint8_t, 6>& mac);

} // namespace tarnwick
