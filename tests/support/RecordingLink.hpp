#pragma once
// A serial link without a device: it records line changes, waits and writes, and can answer
// every ESP request with success, so reset sequences and refusals can be checked exactly.

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "FlashCore/ESPPacket.hpp"
#include "FlashSerial/FlashPortError.hpp"
#include "FlashSerial/SerialLink.hpp"

namespace tarnwick::testing {

class RecordingLink : public SerialLink {
public:
  /// One thing that happened on the link, in order: "DTR=0 RTS=1", "RTS=-" (untouched),
  /// "wait 0.1", "baud 460800", "write 0x08".
  std::vector<std::string> steps;
  /// Answer every request with success (value from `registers` for readRegister).
  bool answerRequests = false;
  std::map<std::uint32_t, std::uint32_t> registers;
  /// The data (status bytes included) of the answer to these opcodes, instead of bare success.
  std::map<std::uint8_t, Bytes> answerData;
  /// setBaudRate fails as an adapter that refuses the rate.
  bool refuseBaudRate = false;
  /// Requests with these opcodes fail to write (writeFailed), after being recorded.
  std::set<std::uint8_t> failWrites;
  /// Every read fails (disconnected) at once.
  bool failReads = false;
  /// Called at the start of every read, before anything else; tests cancel from here to hit
  /// an exact point of the loader's work.
  std::function<void()> onRead;

  const std::string& path() const override { return path_; }
  std::int64_t baudRate() const override { return baud_; }
  void setBaudRate(std::int64_t rate) override;
  void setLines(std::optional<bool> dtr, std::optional<bool> rts) override;
  void write(ByteView bytes) override;
  Bytes read(double timeout) override;
  Bytes read(std::size_t count, double timeout) override;
  void flushInput() override { pending_.clear(); }
  void close() noexcept override {}

  /// Records a wait; hand `[&](double s) { link.recordWait(s); }` to the loader.
  void recordWait(double seconds);
  /// The steps that are line changes or waits only.
  std::vector<std::string> lineSteps() const;

private:
  std::string path_ = "/dev/ttyUSB-recording";
  std::int64_t baud_ = 115200;
  SLIP::Decoder decoder_;
  Bytes pending_;
};

} // namespace tarnwick::testing
