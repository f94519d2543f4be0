#pragma once
// A simulated ESP ROM bootloader on a pseudo-terminal, answering from a thread of the test
// process as the real ROM of each chip does, with switches to make it misbehave.

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "FlashCore/ESPChip.hpp"
#include "FlashCore/ESPPacket.hpp"
#include "Simulator/PseudoTerminal.hpp"
#include "Simulator/ResetCircuit.hpp"

namespace tarnwick::simulator {

struct SimulatedESPOptions {
  ESPChip chip = ESPChip::esp32;
  /// Which of the four ESP32-C3 detection values the chip reports.
  int c3Revision = 0;
  /// A detection value to report instead of the chip's own (an unknown chip).
  std::optional<std::uint32_t> detectionValue;
  /// MAC words: word 0 and word 1 of the ESP32 family; mac0, mac1, mac3 of the ESP8266.
  std::uint32_t macWord0 = 0x12345678;
  std::uint32_t macWord1 = 0x0000ABCD;
  std::uint32_t esp8266Mac3 = 0;
  /// How often the ROM answers one sync request.
  int syncAnswers = 8;
  /// Sync requests ignored before the first answer (a board that needs several resets).
  int ignoredSyncs = 0;
  /// Text sent before the first answer, as the ROM prints on boot.
  std::string bootText = "ets Jun  8 2016 00:22:57\r\n\r\nrst:0x1 (POWERON_RESET),boot:0x3 "
                         "(DOWNLOAD_BOOT(UART0/UART1/SDIO_REI_REO_V2))\r\nwaiting for download\r\n";
  /// Never answer anything.
  bool silent = false;
  /// Answer this opcode with a failure status carrying `failureCode`.
  std::optional<std::uint8_t> failCommand;
  std::uint8_t failureCode = 0x05;
  /// Answer the n-th request of `failCommand` only (1-based); 0 fails every one.
  int failOnNth = 0;
  /// Never answer this opcode.
  std::optional<std::uint8_t> ignoreCommand;
  /// Noise sent between frames.
  bool garbageBetweenFrames = false;
  /// Close the terminal after this many requests (as if the board were unplugged).
  std::optional<int> disconnectAfterRequests;
  /// Close the terminal after this many flash data blocks.
  std::optional<int> disconnectAfterDataBlocks;
  /// MD5 answers as 16 raw bytes instead of 32 hexadecimal characters.
  bool rawMD5 = false;
  /// Answers an MD5 of other data (a flash that did not take the write).
  bool wrongMD5 = false;
  /// Flash size in bytes.
  std::size_t flashSize = 16 * 1024 * 1024;
  /// Pace the line: bytes take 10 bit times at the current speed in both directions.
  bool paceLine = false;
  std::int64_t initialBaud = 115200;
};

class SimulatedESP {
public:
  explicit SimulatedESP(SimulatedESPOptions options = {});
  ~SimulatedESP();
  SimulatedESP(const SimulatedESP&) = delete;
  SimulatedESP& operator=(const SimulatedESP&) = delete;

  /// Path the program under test opens.
  const std::string& path() const { return terminal_.path(); }

  /// A copy of the flash contents (erased bytes are 0xFF).
  std::vector<std::uint8_t> flash() const;
  /// Regions written since start, as (offset, length) in the order of their begin requests.
  std::vector<std::pair<std::uint32_t, std::uint32_t>> beginRegions() const;
  /// Count of requests received per opcode.
  int requests(ESPCommand command) const;
  /// Every request received, in order (opcode only).
  std::vector<std::uint8_t> requestLog() const;
  /// Bytes received and sent on the line.
  std::uint64_t bytesReceived() const { return bytesReceived_; }
  std::uint64_t bytesSent() const { return bytesSent_; }
  /// Time the bytes so far take on a real line at the speeds in force when they crossed it.
  double lineSeconds() const { return static_cast<double>(lineMicroseconds_) / 1e6; }
  /// The speed the simulated ROM runs at now.
  std::int64_t baud() const { return baud_; }
  /// Sets every flash byte back to 0xFF and forgets the counters.
  void reset();
  /// Starts the chip as its reset circuit decides. Held in reset or running its application it
  /// answers nothing; started into the ROM bootloader it begins afresh (speed, boot text, write
  /// in progress), its flash kept. Without a circuit the ROM bootloader simply runs.
  void start(BoardStart how);

private:
  struct WriteState;

  void serve();
  void handle(const Bytes& frame);
  void answer(std::uint8_t command, std::uint32_t value, Bytes body, bool failed = false,
              std::uint8_t code = 0);
  void sendRaw(const Bytes& bytes);
  void pace(std::size_t bytes);
  std::uint32_t registerValue(std::uint32_t address) const;

  SimulatedESPOptions options_;
  PseudoTerminal terminal_;
  mutable std::mutex mutex_;
  std::vector<std::uint8_t> flash_;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> regions_;
  std::map<std::uint8_t, int> counts_;
  std::vector<std::uint8_t> log_;
  std::unique_ptr<WriteState> write_;
  std::atomic<std::uint64_t> bytesReceived_ = 0;
  std::atomic<std::uint64_t> bytesSent_ = 0;
  std::atomic<std::uint64_t> lineMicroseconds_ = 0;
  std::atomic<std::int64_t> baud_;
  int syncsSeen_ = 0;
  int dataBlocks_ = 0;
  int requestCount_ = 0;
  bool bootTextSent_ = false;
  bool gone_ = false;
  std::atomic<BoardStart> running_ = BoardStart::bootloader;
  std::atomic<bool> restartPending_ = false;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

} // namespace tarnwick::simulator
