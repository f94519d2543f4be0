#include "FlashCore/AVR.hpp"

#include <stdexcept>

namespace tarnwick {

const std::vector<AVRChip>& AVRChip::known() {
  static const std::vector<AVRChip> chips = {
      {"ATmega328P", {0x1E, 0x95, 0x0F}, 32768, 128},
      {"ATmega328", {0x1E, 0x95, 0x14}, 32768, 128},
      {"ATmega328PB", {0x1E, 0x95, 0x16}, 32768, 128},
      {"ATmega168", {0x1E, 0x94, 0x06}, 16384, 128},
      {"ATmega168P", {0x1E, 0x94, 0x0B}, 16384, 128},
      {"ATmega2560", {0x1E, 0x98, 0x01}, 262144, 256},
      {"ATmega1280", {0x1E, 0x97, 0x03}, 131072, 256},
      {"ATmega32U4", {0x1E, 0x95, 0x87}, 32768, 128},
  };
  return chips;
}

const AVRChip& AVRChip::named(std::string_view name) {
  for (const AVRChip& chip : known()) {
    if (chip.name == name) return chip;
  }
  throw std::logic_error("unknown AVR chip " + std::string(name));
}

std::string_view rawValue(AVRProtocol protocol) {
  switch (protocol) {
  case AVRProtocol::stk500v1: return "stk500v1";
  case AVRProtocol::stk500v2: return "stk500v2";
  case AVRProtocol::avr109: return "avr109";
  }
  return "stk500v1";
}

std::optional<AVRProtocol> avrProtocolFromRawValue(std::string_view raw) {
  for (auto protocol : {AVRProtocol::stk500v1, AVRProtocol::stk500v2, AVRProtocol::avr109}) {
    if (rawValue(protocol) == raw) return protocol;
  }
  return std::nullopt;
}

namespace {
struct BoardFacts {
  std::string_view displayName;
  std::string_view chip;
  AVRProtocol protocol;
  std::int64_t baudRate;
  std::int64_t maxSketchSize;
};

const BoardFacts& facts(AVRBoard board) {
  static const BoardFacts table[] = {
      {"Arduino Uno", "ATmega328P", AVRProtocol::stk500v1, 115200, 32256},
      {"Arduino Nano", "ATmega328P", AVRProtocol::stk500v1, 115200, 32256},
      {"Arduino Nano (old bootloader)", "ATmega328P", AVRProtocol::stk500v1, 57600, 30720},
      {"Arduino Mega 2560", "ATmega2560", AVRProtocol::stk500v2, 115200, 253952},
      {"Arduino Leonardo", "ATmega32U4", AVRProtocol::avr109, 57600, 28672},
      {"Arduino Micro", "ATmega32U4", AVRProtocol::avr109, 57600, 28672},
      {"Pro Micro (ATmega32U4)", "ATmega32U4", AVRProtocol::avr109, 57600, 28672},
  };
  return table[static_cast<std::size_t>(board)];
}

void push16(Bytes& out, std::int64_t value) {
  out.push_back(static_cast<std::uint8_t>(value >> 8));
  out.push_back(static_cast<std::uint8_t>(value));
}
} // namespace

std::string_view displayName(AVRBoard board) { return facts(board).displayName; }
const AVRChip& chip(AVRBoard board) { return AVRChip::named(facts(board).chip); }
AVRProtocol protocol(AVRBoard board) { return facts(board).protocol; }
std::int64_t baudRate(AVRBoard board) { return facts(board).baudRate; }
std::int64_t maxSketchSize(AVRBoard board) { return facts(board).maxSketchSize; }

namespace STK500v1 {
Bytes getSync() { return {0x30, endOfPacket}; }
Bytes readSignature() { return {0x75, endOfPacket}; }
Bytes enterProgrammingMode() { return {0x50, endOfPacket}; }
Bytes leaveProgrammingMode() { return {0x51, endOfPacket}; }
Bytes loadAddress(std::int64_t byteAddress) {
  std::int64_t word = byteAddress / 2;
  return {0x55, static_cast<std::uint8_t>(word), static_cast<std::uint8_t>(word >> 8), endOfPacket};
}
Bytes programPage(ByteView data) {
  Bytes out{0x64};
  push16(out, static_cast<std::int64_t>(data.size()));
  out.push_back(0x46);
  out.insert(out.end(), data.begin(), data.end());
  out.push_back(endOfPacket);
  return out;
}
Bytes readPage(std::int64_t length) {
  Bytes out{0x74};
  push16(out, length);
  out.push_back(0x46);
  out.push_back(endOfPacket);
  return out;
}
} // namespace STK500v1

namespace STK500v2 {
Bytes message(ByteView body, std::uint8_t sequence) {
  Bytes out{messageStart, sequence};
  push16(out, static_cast<std::int64_t>(body.size()));
  out.push_back(token);
  out.insert(out.end(), body.begin(), body.end());
  std::uint8_t checksum = 0;
  for (std::uint8_t byte : out)
    checksum ^= byte;
  out.push_back(checksum);
  return out;
}

std::optional<Frame> parse(ByteView bytes) {
  std::size_t start = 0;
  while (start < bytes.size() && bytes[start] != messageStart)
    ++start;
  if (start == bytes.size()) return std::nullopt;
  ByteView frame = bytes.subspan(start);
  if (frame.size() < 6 || frame[4] != token) return std::nullopt;
  std::size_t length = static_cast<std::size_t>(frame[2]) << 8 | frame[3];
  if (frame.size() < length + 6) return std::nullopt;
  std::uint8_t checksum = 0;
  for (std::size_t i = 0; i < length + 5; ++i)
    checksum ^= frame[i];
  if (checksum != frame[length + 5]) return std::nullopt;
  return Frame{frame[1], Bytes(frame.begin() + 5, frame.begin() + 5 + static_cast<long>(length)),
               start + length + 6};
}

Bytes signOn() { return {0x01}; }
Bytes enterProgrammingMode() {
  return {0x10, 0xC8, 0x64, 0x19, 0x20, 0x00, 0x53, 0x03, 0xAC, 0x53, 0x00, 0x00};
}
Bytes leaveProgrammingMode() { return {0x11, 0x01, 0x01}; }
Bytes readSignature(std::uint8_t index) { return {0x1B, 0x04, 0x30, 0x00, index, 0x00}; }
Bytes loadAddress(std::int64_t byteAddress, bool extended) {
  auto word = static_cast<std::uint32_t>(byteAddress / 2);
  if (extended) word |= 0x80000000u;
  return {0x06, static_cast<std::uint8_t>(word >> 24), static_cast<std::uint8_t>(word >> 16),
          static_cast<std::uint8_t>(word >> 8), static_cast<std::uint8_t>(word)};
}
Bytes programFlash(ByteView data) {
  Bytes out{0x13};
  push16(out, static_cast<std::int64_t>(data.size()));
  out.insert(out.end(), {0xC1, 0x0A, 0x40, 0x4C, 0x20, 0x00, 0x00});
  out.insert(out.end(), data.begin(), data.end());
  return out;
}
Bytes readFlash(std::int64_t length) {
  Bytes out{0x14};
  push16(out, length);
  out.push_back(0x20);
  return out;
}
} // namespace STK500v2

namespace AVR109 {
Bytes softwareIdentifier() { return {'S'}; }
Bytes readSignature() { return {'s'}; }
Bytes enterProgrammingMode() { return {'P'}; }
Bytes leaveProgrammingMode() { return {'L'}; }
Bytes exitBootloader() { return {'E'}; }
Bytes setAddress(std::int64_t byteAddress) {
  Bytes out{'A'};
  push16(out, byteAddress / 2);
  return out;
}
Bytes writeBlock(ByteView data) {
  Bytes out{'B'};
  push16(out, static_cast<std::int64_t>(data.size()));
  out.push_back('F');
  out.insert(out.end(), data.begin(), data.end());
  return out;
}
Bytes readBlock(std::int64_t length) {
  Bytes out{'g'};
  push16(out, length);
  out.push_back('F');
  return out;
}
} // namespace AVR109

} // namespace tarnwick
