#include "FlashCore/ESPPacket.hpp"

#include <stdexcept>

namespace tarnwick {

namespace {
void appendLE32(Bytes& out, std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8)
    out.push_back(static_cast<std::uint8_t>(value >> shift));
}

Bytes words(std::initializer_list<std::uint32_t> values) {
  Bytes out;
  for (auto value : values)
    appendLE32(out, value);
  return out;
}
} // namespace

std::uint32_t readLE32(ByteView bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < bytes.size() && i < 4; ++i)
    value |= static_cast<std::uint32_t>(bytes[i]) << (8 * i);
  return value;
}

Bytes SLIP::encode(ByteView bytes) {
  Bytes out;
  out.reserve(bytes.size() + 8);
  out.push_back(end);
  for (std::uint8_t byte : bytes) {
    if (byte == escape) {
      out.push_back(escape);
      out.push_back(escapedEscape);
    } else if (byte == end) {
      out.push_back(escape);
      out.push_back(escapedEnd);
    } else {
      out.push_back(byte);
    }
  }
  out.push_back(end);
  return out;
}

std::vector<Bytes> SLIP::Decoder::feed(ByteView bytes) {
  std::vector<Bytes> frames;
  for (std::uint8_t byte : bytes) {
    if (!inPacket) {
      // Bytes between frames (boot messages, noise) are dropped.
      if (byte == end) {
        inPacket = true;
        packet.clear();
      }
    } else if (escaping) {
      escaping = false;
      packet.push_back(byte == escapedEnd ? end : byte == escapedEscape ? escape : byte);
    } else if (byte == escape) {
      escaping = true;
    } else if (byte == end) {
      // Two delimiters in a row open a single frame.
      if (!packet.empty()) {
        frames.push_back(std::move(packet));
        packet.clear();
        inPacket = false;
      }
    } else if (packet.size() >= maximumFrameSize) {
      packet.clear();
      inPacket = false;
    } else {
      packet.push_back(byte);
    }
  }
  return frames;
}

void SLIP::Decoder::reset() {
  packet.clear();
  inPacket = false;
  escaping = false;
}

std::optional<ESPCommand> espCommandFromOpcode(std::uint8_t code) {
  switch (code) {
  case 0x02:
  case 0x03:
  case 0x04:
  case 0x08:
  case 0x09:
  case 0x0A:
  case 0x0B:
  case 0x0D:
  case 0x0F:
  case 0x10:
  case 0x11:
  case 0x12:
  case 0x13:
  case 0x14: return static_cast<ESPCommand>(code);
  default: return std::nullopt;
  }
}

namespace ESPPacket {

Bytes request(ESPCommand command, ByteView payload, std::uint32_t checksumWord) {
  if (payload.size() > 0xFFFF) throw std::length_error("ESP request payload over 65535 bytes");
  Bytes out;
  out.reserve(8 + payload.size());
  out.push_back(0x00);
  out.push_back(opcode(command));
  out.push_back(static_cast<std::uint8_t>(payload.size()));
  out.push_back(static_cast<std::uint8_t>(payload.size() >> 8));
  appendLE32(out, checksumWord);
  out.insert(out.end(), payload.begin(), payload.end());
  return out;
}

std::uint8_t checksum(ByteView block) {
  std::uint8_t value = checksumSeed;
  for (std::uint8_t byte : block)
    value ^= byte;
  return value;
}

Bytes sync() {
  Bytes payload{0x07, 0x07, 0x12, 0x20};
  payload.insert(payload.end(), 32, 0x55);
  return request(ESPCommand::sync, payload);
}

Bytes readRegister(std::uint32_t address) {
  return request(ESPCommand::readRegister, words({address}));
}

Bytes beginPacket(ESPCommand command, std::uint32_t size, std::uint32_t blocks,
                  std::uint32_t blockSize, std::uint32_t offset, bool encryptWord) {
  Bytes payload = words({size, blocks, blockSize, offset});
  if (encryptWord) appendLE32(payload, 0);
  return request(command, payload);
}

Bytes dataPacket(ESPCommand command, ByteView block, std::uint32_t sequence) {
  Bytes payload = words({static_cast<std::uint32_t>(block.size()), sequence, 0, 0});
  payload.insert(payload.end(), block.begin(), block.end());
  return request(command, payload, checksum(block));
}

Bytes spiAttach() { return request(ESPCommand::spiAttach, Bytes(8, 0)); }

Bytes spiSetParameters(std::uint32_t totalSize) {
  return request(ESPCommand::spiSetParameters,
                 words({0, totalSize, 0x10000, 0x1000, 0x100, 0xFFFF}));
}

Bytes changeBaudRate(std::uint32_t newRate) {
  return request(ESPCommand::changeBaudRate, words({newRate, 0}));
}

Bytes spiFlashMD5(std::uint32_t address, std::uint32_t size) {
  return request(ESPCommand::spiFlashMD5, words({address, size, 0, 0}));
}

Bytes getSecurityInfo() { return request(ESPCommand::getSecurityInfo, {}); }

std::optional<Response> Response::parse(ByteView frame) {
  if (frame.size() < 8 || frame[0] != 0x01) return std::nullopt;
  Response response;
  response.command = frame[1];
  std::size_t size = frame[2] | frame[3] << 8;
  response.value = readLE32(frame.subspan(4, 4));
  auto data = frame.subspan(8);
  response.data.assign(data.begin(),
                       data.begin() + static_cast<std::ptrdiff_t>(std::min(size, data.size())));
  return response;
}

std::pair<bool, std::uint8_t> Response::status(std::size_t n) const {
  if (data.size() < n || n < 2) return {true, 0};
  return {data[data.size() - n] != 0, data[data.size() - n + 1]};
}

Bytes Response::body(std::size_t n) const {
  if (data.size() <= n) return {};
  return Bytes(data.begin(), data.end() - static_cast<std::ptrdiff_t>(n));
}

} // namespace ESPPacket

} // namespace tarnwick
