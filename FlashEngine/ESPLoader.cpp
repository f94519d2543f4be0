#include "FlashEngine/ESPLoader.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "FlashCore/ESPImage.hpp"
#include "FlashCore/Zlib.hpp"
#include "FlashSerial/FlashPortError.hpp"

namespace tarnwick {

namespace {

using Clock = std::chrono::steady_clock;

Clock::time_point deadlineAfter(double seconds) {
  return Clock::now() +
         std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

double secondsUntil(Clock::time_point deadline) {
  return std::chrono::duration<double>(deadline - Clock::now()).count();
}

// Begin requests erase the region first, which takes about 30 s per MiB.
double beginTimeout(std::size_t size) {
  return std::max(3.0, static_cast<double>(size) * 30.0 / 1048576.0);
}

} // namespace

std::uint32_t eraseSize(std::uint32_t offset, std::uint32_t size) {
  constexpr std::uint32_t sector = 4096;
  std::uint32_t sectors = (size + sector - 1) / sector;
  std::uint32_t head = std::min(16 - (offset / sector) % 16, sectors);
  if (sectors < 2 * head) return (sectors + 1) / 2 * sector;
  return (sectors - head) * sector;
}

ESPLoader::ESPLoader(SerialLink& port, JobContext& context)
    : port_(port), context_(context), waiter_([this](double s) { context_.wait(s); }) {}

void ESPLoader::send(ByteView request) { port_.write(SLIP::encode(request)); }

void ESPLoader::discardInput() {
  port_.flushInput();
  decoder_.reset();
  packets_.clear();
}

ESPPacket::Response ESPLoader::receive(ESPCommand command, double timeout) {
  auto deadline = deadlineAfter(timeout);
  for (;;) {
    while (!packets_.empty()) {
      Bytes frame = std::move(packets_.front());
      packets_.pop_front();
      auto response = ESPPacket::Response::parse(frame);
      if (response && response->command == opcode(command)) return *response;
    }
    context_.checkCancelled();
    double left = secondsUntil(deadline);
    if (left <= 0) throw FlashError::noResponse(opcode(command));
    Bytes bytes = port_.read(std::min(left, readSliceSeconds));
    for (auto& frame : decoder_.feed(bytes))
      packets_.push_back(std::move(frame));
  }
}

ESPPacket::Response ESPLoader::execute(ESPCommand command, ByteView request, double timeout) {
  send(request);
  auto response = receive(command, timeout);
  auto [failed, code] = response.status(statusBytes());
  if (failed) throw FlashError::commandFailed(opcode(command), code);
  return response;
}

void ESPLoader::classicReset() {
  port_.setLines(false, true);
  wait(0.1);
  port_.setLines(true, false);
  wait(0.05);
  port_.setLines(false, std::nullopt);
}

void ESPLoader::usbJTAGReset() {
  port_.setLines(false, false);
  wait(0.1);
  port_.setLines(true, false);
  wait(0.1);
  port_.setLines(false, true);
  wait(0.1);
  port_.setLines(false, false);
}

bool ESPLoader::syncChip() {
  discardInput();
  const Bytes sync = ESPPacket::sync();
  for (int attempt = 0; attempt < 5; ++attempt) {
    context_.checkCancelled();
    send(sync);
    try {
      receive(ESPCommand::sync, readSliceSeconds);
    } catch (const FlashError& error) {
      if (error.isCancelled()) throw;
      continue;
    } catch (const FlashPortError&) {
      // A line that hiccups while the chip is still resetting is an unanswered try, not the end.
      continue;
    }
    // The ROM answers one sync request several times; let the rest arrive and drop it.
    auto deadline = deadlineAfter(0.1);
    for (double left = 0.1; left > 0; left = secondsUntil(deadline))
      port_.read(left);
    discardInput();
    return true;
  }
  return false;
}

ESPChip ESPLoader::detectChip() {
  try {
    send(ESPPacket::getSecurityInfo());
    auto response = receive(ESPCommand::getSecurityInfo, 0.5);
    // A refusal may carry bytes of its own; only a successful answer holds a chip id.
    if (!response.status(statusBytes()).first && response.data.size() >= 24) {
      auto id = readLE32(ByteView(response.data).subspan(12, 4));
      if (auto chip = espChipFromSecurityInfoChipID(id)) return *chip;
    }
  } catch (const FlashError& error) {
    if (error.isCancelled()) throw;
  } catch (const FlashPortError&) {
    // Older ROMs do not know the request; the magic register tells them apart.
  }
  send(ESPPacket::readRegister(ESPChips::magicRegister));
  auto response = receive(ESPCommand::readRegister, 1.0);
  if (auto chip = espChipFromDetectionValue(response.value)) return *chip;
  throw FlashError::noSync();
}

ESPChip ESPLoader::connect(ResetMode mode, bool usbJTAGFirst) {
  const bool manual = mode == ResetMode::manual;
  const int limit = manual ? manualAttemptLimit : attemptLimit;
  context_.checkCancelled();
  for (int attempt = 1;; ++attempt) {
    context_.emit(FlashEvents::Connecting{attempt, manual});
    switch (mode) {
    case ResetMode::classic: classicReset(); break;
    case ResetMode::usbJTAG: usbJTAGReset(); break;
    case ResetMode::auto_:
      if ((attempt % 2 == 1) == usbJTAGFirst) {
        usbJTAGReset();
      } else {
        classicReset();
      }
      break;
    case ResetMode::manual: wait(0.4); break;
    }
    if (syncChip()) {
      chip_ = detectChip();
      return *chip_;
    }
    if (attempt >= limit) throw FlashError::noSync();
    context_.checkCancelled();
  }
}

std::optional<std::uint32_t> ESPLoader::tryReadRegister(std::uint32_t address) {
  try {
    return execute(ESPCommand::readRegister, ESPPacket::readRegister(address), 1.0).value;
  } catch (const FlashError& error) {
    if (error.isCancelled()) throw;
  } catch (const FlashPortError&) {
  }
  return std::nullopt;
}

std::optional<std::array<std::uint8_t, 6>> ESPLoader::readMAC() {
  if (!chip_) return std::nullopt;
  auto byte = [](std::uint32_t word, int shift) {
    return static_cast<std::uint8_t>(word >> shift);
  };
  if (*chip_ == ESPChip::esp8266) {
    auto mac0 = tryReadRegister(ESPChips::esp8266MACRegisters[0]);
    auto mac1 = tryReadRegister(ESPChips::esp8266MACRegisters[1]);
    auto mac3 = tryReadRegister(ESPChips::esp8266MACRegisters[2]);
    if (!mac0 || !mac1 || !mac3) return std::nullopt;
    std::array<std::uint8_t, 3> prefix;
    if (*mac3 != 0) {
      prefix = {byte(*mac3, 16), byte(*mac3, 8), byte(*mac3, 0)};
    } else if (byte(*mac1, 16) == 0) {
      prefix = {0x18, 0xFE, 0x34};
    } else if (byte(*mac1, 16) == 1) {
      prefix = {0xAC, 0xD0, 0x74};
    } else {
      return std::nullopt;
    }
    return std::array<std::uint8_t, 6>{prefix[0],      prefix[1],      prefix[2],
                                       byte(*mac1, 8), byte(*mac1, 0), byte(*mac0, 24)};
  }
  auto registers = macRegisters(*chip_);
  if (!registers) return std::nullopt;
  auto word0 = tryReadRegister(registers->first);
  if (!word0) return std::nullopt;
  auto word1 = tryReadRegister(registers->second);
  if (!word1) return std::nullopt;
  return std::array<std::uint8_t, 6>{byte(*word1, 8),  byte(*word1, 0), byte(*word0, 24),
                                     byte(*word0, 16), byte(*word0, 8), byte(*word0, 0)};
}

void ESPLoader::attachFlash(std::uint32_t flashSize) {
  if (!chip_ || *chip_ == ESPChip::esp8266) return;
  execute(ESPCommand::spiAttach, ESPPacket::spiAttach(), 3.0);
  execute(ESPCommand::spiSetParameters, ESPPacket::spiSetParameters(flashSize), 3.0);
}

bool ESPLoader::switchBaudRate(std::int64_t rate) {
  if (!chip_ || *chip_ == ESPChip::esp8266 || rate == port_.baudRate()) return false;
  execute(ESPCommand::changeBaudRate, ESPPacket::changeBaudRate(static_cast<std::uint32_t>(rate)),
          1.0);
  port_.setBaudRate(rate);
  wait(0.05);
  discardInput();
  return true;
}

void ESPLoader::writeImage(const FlashWrite& write, std::int64_t done, std::int64_t total) {
  if (!chip_) throw FlashError::noSync();
  if (*chip_ == ESPChip::esp8266) {
    writePlain(write, done, total);
  } else {
    writeCompressed(write, done, total);
  }
}

void ESPLoader::writeCompressed(const FlashWrite& write, std::int64_t done, std::int64_t total) {
  const std::size_t size = write.data.size();
  const Bytes compressed = Zlib::compress(write.data);
  const std::size_t length = compressed.size();
  const std::size_t blocks = (length + ESPPacket::flashBlockSize - 1) / ESPPacket::flashBlockSize;
  execute(ESPCommand::flashDeflateBegin,
          ESPPacket::beginPacket(ESPCommand::flashDeflateBegin, static_cast<std::uint32_t>(size),
                                 static_cast<std::uint32_t>(blocks),
                                 static_cast<std::uint32_t>(ESPPacket::flashBlockSize),
                                 write.offset, hasEncryptWord(*chip_)),
          beginTimeout(size));
  for (std::size_t seq = 0; seq < blocks; ++seq) {
    context_.checkCancelled();
    std::size_t start = seq * ESPPacket::flashBlockSize;
    std::size_t end = std::min(start + ESPPacket::flashBlockSize, length);
    send(ESPPacket::dataPacket(ESPCommand::flashDeflateData,
                               ByteView(compressed).subspan(start, end - start),
                               static_cast<std::uint32_t>(seq)));
    auto response = receive(ESPCommand::flashDeflateData, 10.0);
    auto [failed, code] = response.status(4);
    if (failed) throw FlashError::commandFailed(opcode(ESPCommand::flashDeflateData), code);
    // Progress counts uncompressed bytes, scaled from the compressed bytes sent.
    auto scaled = static_cast<std::int64_t>(static_cast<double>(end) * static_cast<double>(size) /
                                            static_cast<double>(length));
    context_.emit(FlashEvents::Progress{done + scaled, total});
  }
}

void ESPLoader::writePlain(const FlashWrite& write, std::int64_t done, std::int64_t total) {
  const std::size_t size = write.data.size();
  const std::size_t blocks = (size + ESPPacket::flashBlockSize - 1) / ESPPacket::flashBlockSize;
  execute(ESPCommand::flashBegin,
          ESPPacket::beginPacket(
              ESPCommand::flashBegin, eraseSize(write.offset, static_cast<std::uint32_t>(size)),
              static_cast<std::uint32_t>(blocks),
              static_cast<std::uint32_t>(ESPPacket::flashBlockSize), write.offset, false),
          beginTimeout(size));
  Bytes block;
  for (std::size_t seq = 0; seq < blocks; ++seq) {
    context_.checkCancelled();
    std::size_t start = seq * ESPPacket::flashBlockSize;
    std::size_t end = std::min(start + ESPPacket::flashBlockSize, size);
    block.assign(write.data.begin() + static_cast<std::ptrdiff_t>(start),
                 write.data.begin() + static_cast<std::ptrdiff_t>(end));
    block.resize(ESPPacket::flashBlockSize, 0xFF);
    send(ESPPacket::dataPacket(ESPCommand::flashData, block, static_cast<std::uint32_t>(seq)));
    auto response = receive(ESPCommand::flashData, 5.0);
    auto [failed, code] = response.status(2);
    if (failed) throw FlashError::commandFailed(opcode(ESPCommand::flashData), code);
    context_.emit(FlashEvents::Progress{done + static_cast<std::int64_t>(end), total});
  }
}

std::optional<std::string> ESPLoader::flashMD5(std::uint32_t offset, std::uint32_t size) {
  if (!chip_ || *chip_ == ESPChip::esp8266) return std::nullopt;
  double timeout = std::max(3.0, static_cast<double>(size) * 8.0 / 1048576.0);
  auto response = execute(ESPCommand::spiFlashMD5, ESPPacket::spiFlashMD5(offset, size), timeout);
  Bytes body = response.body(4);
  std::string text;
  if (body.size() >= 32) {
    // The ROM answers in ASCII hexadecimal.
    for (std::size_t i = 0; i < 32; ++i) {
      char c = static_cast<char>(body[i]);
      text += (c >= 'A' && c <= 'F') ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return validUTF8(text);
  }
  if (body.size() >= 16) {
    char pair[3];
    for (std::size_t i = 0; i < 16; ++i) {
      std::snprintf(pair, sizeof pair, "%02x", body[i]);
      text += pair;
    }
    return text;
  }
  return std::nullopt;
}

} // namespace tarnwick
