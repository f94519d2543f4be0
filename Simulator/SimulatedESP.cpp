#include "Simulator/SimulatedESP.hpp"

#include <algorithm>
#include <chrono>
#include <poll.h>
#include <unistd.h>
#include <zlib.h>

#include "FlashCore/Digest.hpp"

namespace tarnwick::simulator {

namespace {
std::uint32_t le32(const Bytes& data, std::size_t at) {
  return readLE32(ByteView(data).subspan(at, 4));
}
void put32(Bytes& out, std::uint32_t value) {
  for (int i = 0; i < 4; ++i)
    out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}
} // namespace

// What the current begin request set up: where data goes and, for deflate, the inflater.
struct SimulatedESP::WriteState {
  bool compressed = false;
  std::uint32_t offset = 0;
  std::uint32_t size = 0;
  std::uint32_t blocks = 0;
  std::uint32_t nextSequence = 0;
  std::uint32_t written = 0;
  z_stream stream{};
  bool streamOpen = false;
  ~WriteState() {
    if (streamOpen) inflateEnd(&stream);
  }
};

SimulatedESP::SimulatedESP(SimulatedESPOptions options)
    : options_(std::move(options)), flash_(options_.flashSize, 0xFF), baud_(options_.initialBaud) {
  thread_ = std::thread([this] { serve(); });
}

SimulatedESP::~SimulatedESP() {
  stop_ = true;
  thread_.join();
}

std::vector<std::uint8_t> SimulatedESP::flash() const {
  std::lock_guard lock(mutex_);
  return flash_;
}

std::vector<std::pair<std::uint32_t, std::uint32_t>> SimulatedESP::beginRegions() const {
  std::lock_guard lock(mutex_);
  return regions_;
}

int SimulatedESP::requests(ESPCommand command) const {
  std::lock_guard lock(mutex_);
  auto it = counts_.find(opcode(command));
  return it == counts_.end() ? 0 : it->second;
}

std::vector<std::uint8_t> SimulatedESP::requestLog() const {
  std::lock_guard lock(mutex_);
  return log_;
}

void SimulatedESP::reset() {
  std::lock_guard lock(mutex_);
  std::fill(flash_.begin(), flash_.end(), 0xFF);
  regions_.clear();
  counts_.clear();
  log_.clear();
  write_.reset();
  syncsSeen_ = 0;
  dataBlocks_ = 0;
  requestCount_ = 0;
  bootTextSent_ = false;
  baud_ = options_.initialBaud;
}

void SimulatedESP::start(BoardStart how) {
  if (how == BoardStart::bootloader) restartPending_ = true;
  running_ = how;
}

void SimulatedESP::serve() {
  SLIP::Decoder decoder;
  std::uint8_t chunk[4096];
  while (!stop_ && !gone_) {
    pollfd p{terminal_.controller(), POLLIN, 0};
    if (::poll(&p, 1, 20) <= 0) continue;
    ssize_t n = ::read(terminal_.controller(), chunk, sizeof chunk);
    // The device side is closed between runs; the terminal stays for the next open.
    if (n <= 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      continue;
    }
    bytesReceived_ += static_cast<std::uint64_t>(n);
    pace(static_cast<std::size_t>(n));
    if (restartPending_.exchange(false)) {
      std::lock_guard lock(mutex_);
      decoder.reset();
      write_.reset();
      syncsSeen_ = 0;
      bootTextSent_ = false;
      baud_ = options_.initialBaud;
    }
    // An application (or a chip held in reset) does not speak the ROM's protocol.
    if (running_ != BoardStart::bootloader) continue;
    for (const Bytes& frame : decoder.feed(ByteView(chunk, static_cast<std::size_t>(n)))) {
      handle(frame);
      if (gone_) break;
    }
  }
}

void SimulatedESP::pace(std::size_t bytes) {
  double seconds = static_cast<double>(bytes) * 10.0 / static_cast<double>(baud_.load());
  lineMicroseconds_ += static_cast<std::uint64_t>(seconds * 1e6);
  if (!options_.paceLine) return;
  std::this_thread::sleep_for(std::chrono::duration<double>(static_cast<double>(bytes) * 10.0 /
                                                            static_cast<double>(baud_.load())));
}

void SimulatedESP::sendRaw(const Bytes& bytes) {
  if (gone_) return;
  pace(bytes.size());
  try {
    terminal_.send(bytes);
    bytesSent_ += bytes.size();
  } catch (const std::exception&) {
    // Nobody is listening any more; the program under test notices on its own.
  }
}

void SimulatedESP::answer(std::uint8_t command, std::uint32_t value, Bytes body, bool failed,
                          std::uint8_t code) {
  std::size_t statusBytes = statusByteCount(options_.chip);
  body.push_back(failed ? 1 : 0);
  body.push_back(failed ? code : 0);
  if (statusBytes == 4) body.insert(body.end(), {0, 0});
  Bytes packet{0x01, command, static_cast<std::uint8_t>(body.size()),
               static_cast<std::uint8_t>(body.size() >> 8)};
  put32(packet, value);
  packet.insert(packet.end(), body.begin(), body.end());
  Bytes framed = SLIP::encode(packet);
  if (options_.garbageBetweenFrames) {
    Bytes noise{'\r', '\n', 0x55, 0x00, 0xFF, 'x', 0xDB, 0xDC};
    framed.insert(framed.begin(), noise.begin(), noise.end());
  }
  sendRaw(framed);
}

std::uint32_t SimulatedESP::registerValue(std::uint32_t address) const {
  if (address == ESPChips::magicRegister) {
    if (options_.detectionValue) return *options_.detectionValue;
    static constexpr std::uint32_t c3[] = {0x6921506F, 0x1B31506F, 0x4881606F, 0x4361606F};
    switch (options_.chip) {
    case ESPChip::esp8266: return 0xFFF0C101;
    case ESPChip::esp32: return 0x00F01D83;
    case ESPChip::esp32s2: return 0x000007C6;
    case ESPChip::esp32s3: return 0x00000009;
    case ESPChip::esp32c3: return c3[options_.c3Revision % 4];
    case ESPChip::esp32c6: return 0x2CE0806F;
    }
  }
  if (options_.chip == ESPChip::esp8266) {
    if (address == ESPChips::esp8266MACRegisters[0]) return options_.macWord0;
    if (address == ESPChips::esp8266MACRegisters[1]) return options_.macWord1;
    if (address == ESPChips::esp8266MACRegisters[2]) return options_.esp8266Mac3;
  } else if (auto mac = macRegisters(options_.chip)) {
    if (address == mac->first) return options_.macWord0;
    if (address == mac->second) return options_.macWord1;
  }
  return 0;
}

void SimulatedESP::handle(const Bytes& frame) {
  if (frame.size() < 8 || frame[0] != 0x00) return;
  const std::uint8_t op = frame[1];
  const std::size_t length = frame[2] | frame[3] << 8;
  const std::uint32_t checksum = le32(frame, 4);
  const Bytes payload(frame.begin() + 8,
                      frame.begin() + 8 + static_cast<long>(std::min(length, frame.size() - 8)));

  int nth = 0;
  {
    std::lock_guard lock(mutex_);
    nth = ++counts_[op];
    log_.push_back(op);
    ++requestCount_;
  }
  if (options_.disconnectAfterRequests && requestCount_ > *options_.disconnectAfterRequests) {
    gone_ = true;
    terminal_.closeController();
    return;
  }
  if (options_.silent) return;
  if (op == opcode(ESPCommand::sync) && syncsSeen_++ < options_.ignoredSyncs) return;
  if (!bootTextSent_) {
    bootTextSent_ = true;
    sendRaw(Bytes(options_.bootText.begin(), options_.bootText.end()));
  }
  if (options_.ignoreCommand == op) return;
  if (options_.failCommand == op && (options_.failOnNth == 0 || options_.failOnNth == nth)) {
    answer(op, 0, {}, true, options_.failureCode);
    return;
  }

  const bool family = options_.chip != ESPChip::esp8266;
  switch (op) {
  case opcode(ESPCommand::sync):
    for (int i = 0; i < options_.syncAnswers; ++i)
      answer(op, 0, {});
    return;
  case opcode(ESPCommand::readRegister):
    answer(op, payload.size() >= 4 ? registerValue(le32(payload, 0)) : 0, {});
    return;
  case opcode(ESPCommand::getSecurityInfo): {
    auto id = securityInfoChipID(options_.chip);
    if (!id) {
      answer(op, 0, {}, true, 0x05); // ESP32 and ESP8266 ROMs do not know the request
      return;
    }
    Bytes info(12, 0);
    put32(info, *id);
    put32(info, 0); // eco version
    answer(op, 0, info);
    return;
  }
  case opcode(ESPCommand::spiAttach):
  case opcode(ESPCommand::spiSetParameters):
    if (!family) break;
    answer(op, 0, {});
    return;
  case opcode(ESPCommand::changeBaudRate):
    if (!family || payload.size() < 8) break;
    // The answer still goes out at the old speed.
    answer(op, 0, {});
    baud_ = le32(payload, 0);
    return;
  case opcode(ESPCommand::flashBegin):
  case opcode(ESPCommand::flashDeflateBegin): {
    const bool compressed = op == opcode(ESPCommand::flashDeflateBegin);
    if (payload.size() < 16 || (compressed && !family)) break;
    std::uint32_t size = le32(payload, 0), offset = le32(payload, 12);
    if (std::uint64_t{offset} + (compressed ? size : 0) > flash_.size()) {
      answer(op, 0, {}, true, 0x06);
      return;
    }
    std::lock_guard lock(mutex_);
    write_ = std::make_unique<WriteState>();
    write_->compressed = compressed;
    write_->offset = offset;
    write_->size = size;
    write_->blocks = le32(payload, 4);
    if (compressed) {
      write_->streamOpen = inflateInit(&write_->stream) == Z_OK;
      // The ROM erases the region before taking data.
      std::fill_n(flash_.begin() + offset, size, 0xFF);
    }
    regions_.emplace_back(offset, size);
    answer(op, 0, {});
    return;
  }
  case opcode(ESPCommand::flashData):
  case opcode(ESPCommand::flashDeflateData): {
    const bool compressed = op == opcode(ESPCommand::flashDeflateData);
    std::unique_lock lock(mutex_);
    if (!write_ || write_->compressed != compressed || payload.size() < 16) {
      lock.unlock();
      answer(op, 0, {}, true, 0x07);
      return;
    }
    std::uint32_t blockLength = le32(payload, 0), sequence = le32(payload, 4);
    Bytes block(payload.begin() + 16, payload.end());
    if (block.size() != blockLength || sequence != write_->nextSequence ||
        (checksum & 0xFF) != ESPPacket::checksum(block)) {
      lock.unlock();
      answer(op, 0, {}, true, 0x07);
      return;
    }
    ++write_->nextSequence;
    bool ok = true;
    if (compressed) {
      Bytes out(64 * 1024);
      write_->stream.next_in = block.data();
      write_->stream.avail_in = static_cast<uInt>(block.size());
      while (ok && write_->stream.avail_in > 0) {
        write_->stream.next_out = out.data();
        write_->stream.avail_out = static_cast<uInt>(out.size());
        int result = inflate(&write_->stream, Z_NO_FLUSH);
        std::size_t produced = out.size() - write_->stream.avail_out;
        if (write_->written + produced > write_->size) produced = write_->size - write_->written;
        std::copy_n(out.begin(), produced, flash_.begin() + write_->offset + write_->written);
        write_->written += static_cast<std::uint32_t>(produced);
        if (result == Z_STREAM_END) break;
        ok = result == Z_OK || result == Z_BUF_ERROR;
      }
    } else {
      std::uint64_t at = std::uint64_t{write_->offset} + std::uint64_t{sequence} * 1024;
      ok = at + block.size() <= flash_.size();
      if (ok) std::copy(block.begin(), block.end(), flash_.begin() + static_cast<long>(at));
    }
    ++dataBlocks_;
    lock.unlock();
    if (options_.disconnectAfterDataBlocks && dataBlocks_ >= *options_.disconnectAfterDataBlocks) {
      gone_ = true;
      terminal_.closeController();
      return;
    }
    answer(op, 0, {}, !ok, ok ? 0 : 0x08);
    return;
  }
  case opcode(ESPCommand::spiFlashMD5): {
    if (!family || payload.size() < 8) break;
    std::uint32_t offset = le32(payload, 0), size = le32(payload, 4);
    if (std::uint64_t{offset} + size > flash_.size()) {
      answer(op, 0, {}, true, 0x06);
      return;
    }
    Bytes region;
    {
      std::lock_guard lock(mutex_);
      region.assign(flash_.begin() + offset, flash_.begin() + offset + size);
    }
    if (options_.wrongMD5 && !region.empty()) region[0] ^= 0xFF;
    Bytes body;
    if (options_.rawMD5) {
      body = Digest::md5(region);
    } else {
      for (char c : Digest::md5Hex(region))
        body.push_back(static_cast<std::uint8_t>(std::toupper(c)));
    }
    answer(op, 0, body);
    return;
  }
  default: break;
  }
  // Requests this ROM does not know.
  answer(op, 0, {}, true, 0x05);
}

} // namespace tarnwick::simulator
