#pragma once
// Writes one sketch into an Arduino board through the bootloader already on it: STK500v1
// (Optiboot, ATmegaBOOT), STK500v2 (Mega 2560) or AVR109 (Caterina, after the 1200-baud touch).

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "FlashCore/AVR.hpp"
#include "FlashEngine/JobContext.hpp"
#include "FlashSerial/SerialLink.hpp"

namespace tarnwick {

class AVRLoader {
public:
  /// Given the port paths present before the touch and the old path, the path on which the
  /// bootloader appeared. Throws FlashError (bootloaderPortNotFound, cancelled).
  using PortFinder =
      std::function<std::string(const std::set<std::string>& before, const std::string& oldPath)>;

  /// `port` is open at the board's speed; the bootloader's own port (Caterina) is opened with
  /// `linkOptions`.
  AVRLoader(JobContext& context, AVRBoard board, bool verify, std::unique_ptr<SerialLink> port,
            PortFinder findBootloaderPort, SerialLinkOptions linkOptions = {});
  AVRLoader(const AVRLoader&) = delete;
  AVRLoader& operator=(const AVRLoader&) = delete;

  /// Writes (and, when asked, verifies) the sketch; returns the chip's name.
  /// `progress` gets the bytes done (twice the sketch size at the end with verification).
  std::string flash(ByteView sketch, const std::function<void(std::int64_t)>& progress);

  /// The port in use now: after a Caterina run, the bootloader's.
  SerialLink& port() { return *port_; }

  /// Waits up to 8 s for the bootloader's port to appear among the serial devices.
  static std::string waitForBootloaderPort(const std::set<std::string>& before,
                                           const std::string& oldPath, const JobContext& context);

private:
  struct Page {
    std::int64_t address;
    Bytes data;
  };

  void reset();
  void checkSignature(const Bytes& found);
  void reportWritten(const Page& page, const std::function<void(std::int64_t)>& progress);
  void reportVerified(const Page& page, const std::function<void(std::int64_t)>& progress);

  Bytes stk500v1(const Bytes& message, std::size_t dataBytes, double timeout);
  void flashSTK500v1(const std::vector<Page>& pages,
                     const std::function<void(std::int64_t)>& progress);

  Bytes stk500v2(const Bytes& body, double timeout);
  void flashSTK500v2(const std::vector<Page>& pages,
                     const std::function<void(std::int64_t)>& progress);

  void avr109(const Bytes& command, double timeout);
  Bytes avr109Read(const Bytes& command, std::size_t count, double timeout);
  void flashAVR109(const std::vector<Page>& pages,
                   const std::function<void(std::int64_t)>& progress);

  JobContext& context_;
  AVRBoard board_;
  bool verify_;
  std::unique_ptr<SerialLink> port_;
  std::uint8_t sequence_ = 0;
  std::int64_t sketchSize_ = 0;
  PortFinder findBootloaderPort_;
  SerialLinkOptions linkOptions_;
};

} // namespace tarnwick
