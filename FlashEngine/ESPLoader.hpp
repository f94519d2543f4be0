#pragma once
// The client of the Espressif ROM bootloader: reset into it, synchronise, identify the chip,
// then write flash and have the chip check it.

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "FlashCore/ESPChip.hpp"
#include "FlashCore/ESPPacket.hpp"
#include "FlashCore/FlashSettings.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "FlashEngine/JobContext.hpp"
#include "FlashSerial/SerialLink.hpp"

namespace tarnwick {

/// The ESP8266's erase size for a flashBegin at `offset` of `size` bytes: the ROM erases more
/// than it is told at the start of a 64 KiB block, so the size is corrected for that.
std::uint32_t eraseSize(std::uint32_t offset, std::uint32_t size);

class ESPLoader {
public:
  /// Attempts of `connect` before it gives up.
  static constexpr int attemptLimit = 8;
  static constexpr int manualAttemptLimit = 30;
  /// Longest single read, so cancellation and deadlines are noticed (seconds).
  static constexpr double readSliceSeconds = 0.1;

  /// A loader on an open port; it never opens or closes the port.
  ESPLoader(SerialLink& port, JobContext& context);
  ESPLoader(const ESPLoader&) = delete;
  ESPLoader& operator=(const ESPLoader&) = delete;

  /// Replaces the cancellable waits of the reset sequences and of the speed change; tests use it
  /// to record them. The default is the job context's cancellable wait.
  void setWaiter(std::function<void(double seconds)> waiter) { waiter_ = std::move(waiter); }

  /// Resets the chip into its bootloader, synchronises and identifies it.
  ESPChip connect(ResetMode mode, bool usbJTAGFirst);
  /// The detected chip, once connected.
  std::optional<ESPChip> chip() const { return chip_; }

  /// The next response to `command`; others are skipped. Throws noResponse after `timeout`.
  ESPPacket::Response receive(ESPCommand command, double timeout);
  /// Sends a request and returns its response after checking its status bytes.
  ESPPacket::Response execute(ESPCommand command, ByteView request, double timeout);
  /// Forgets everything received so far.
  void discardInput();

  void classicReset();
  void usbJTAGReset();
  /// Up to five sync tries; true when the ROM answered.
  bool syncChip();
  /// Which chip answered: security info first, the magic register second.
  ESPChip detectChip();

  /// The factory MAC address; absent when it cannot be read.
  std::optional<std::array<std::uint8_t, 6>> readMAC();
  /// Attaches the SPI flash and tells the ROM its size (nothing on the ESP8266).
  void attachFlash(std::uint32_t flashSize);
  /// Raises the line speed; false when nothing had to change.
  bool switchBaudRate(std::int64_t rate);

  /// Writes one planned write, compressed on the ESP32 family; `done` and `total` count the
  /// run's bytes for the progress events. `compressed` is the zlib stream of the write's data
  /// when it was made ahead; without it the data is compressed here.
  void writeImage(const FlashWrite& write, std::int64_t done, std::int64_t total,
                  const Bytes* compressed = nullptr);
  /// The chip's MD5 of a flash region as lower-case hex; absent when it cannot tell.
  std::optional<std::string> flashMD5(std::uint32_t offset, std::uint32_t size);

private:
  std::size_t statusBytes() const { return chip_ ? statusByteCount(*chip_) : 4; }
  void send(ByteView request);
  void wait(double seconds) { waiter_(seconds); }
  void writeCompressed(const FlashWrite& write, const Bytes& compressed, std::int64_t done,
                       std::int64_t total);
  void writePlain(const FlashWrite& write, std::int64_t done, std::int64_t total);
  std::optional<std::uint32_t> tryReadRegister(std::uint32_t address);

  SerialLink& port_;
  JobContext& context_;
  SLIP::Decoder decoder_;
  std::deque<Bytes> packets_;
  std::optional<ESPChip> chip_;
  std::function<void(double)> waiter_;
};

} // namespace tarnwick
