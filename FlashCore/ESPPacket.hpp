#pragma once
// SLIP framing and the request/response packets of the ESP ROM bootloader.

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "FlashCore/Bytes.hpp"

namespace tarnwick {

/// The 32-bit little-endian number formed by up to four bytes; missing high bytes count as 0.
std::uint32_t readLE32(ByteView bytes);

namespace SLIP {

inline constexpr std::uint8_t end = 0xC0;
inline constexpr std::uint8_t escape = 0xDB;
inline constexpr std::uint8_t escapedEnd = 0xDC;
inline constexpr std::uint8_t escapedEscape = 0xDD;
/// Longest frame kept; a noisy line cannot claim more memory than this.
inline constexpr std::size_t maximumFrameSize = 16384;

/// The bytes framed: a delimiter, the escaped bytes, a delimiter.
Bytes encode(ByteView bytes);

/// Cuts received bytes into frames, keeping its state between calls.
struct Decoder {
  Bytes packet;
  bool inPacket = false;
  bool escaping = false;

  /// The frames that ended within `bytes`, in order.
  std::vector<Bytes> feed(ByteView bytes);
  /// Forgets any frame being collected.
  void reset();

  bool operator==(const Decoder&) const = default;
};

} // namespace SLIP

/// Opcodes of the ROM bootloader.
enum class ESPCommand : std::uint8_t {
  flashBegin = 0x02,
  flashData = 0x03,
  flashEnd = 0x04,
  sync = 0x08,
  writeRegister = 0x09,
  readRegister = 0x0A,
  spiSetParameters = 0x0B,
  spiAttach = 0x0D,
  changeBaudRate = 0x0F,
  flashDeflateBegin = 0x10,
  flashDeflateData = 0x11,
  flashDeflateEnd = 0x12,
  spiFlashMD5 = 0x13,
  getSecurityInfo = 0x14,
};

/// The command with this opcode.
std::optional<ESPCommand> espCommandFromOpcode(std::uint8_t opcode);

/// The opcode of a command.
constexpr std::uint8_t opcode(ESPCommand command) { return static_cast<std::uint8_t>(command); }

namespace ESPPacket {

inline constexpr std::uint8_t checksumSeed = 0xEF;
/// Block size of every flash write.
inline constexpr std::size_t flashBlockSize = 0x400;

/// An unframed request packet. The payload must fit 16 bits.
Bytes request(ESPCommand command, ByteView payload, std::uint32_t checksum = 0);
/// The checksum byte of a data block.
std::uint8_t checksum(ByteView block);

Bytes sync();
Bytes readRegister(std::uint32_t address);
/// flashBegin or flashDeflateBegin: size, blocks, block size, offset, and a fifth word 0 when
/// `encryptWord` is set.
Bytes beginPacket(ESPCommand command, std::uint32_t size, std::uint32_t blocks,
                  std::uint32_t blockSize, std::uint32_t offset, bool encryptWord);
/// flashData or flashDeflateData carrying one block.
Bytes dataPacket(ESPCommand command, ByteView block, std::uint32_t sequence);
Bytes spiAttach();
Bytes spiSetParameters(std::uint32_t totalSize);
Bytes changeBaudRate(std::uint32_t newRate);
Bytes spiFlashMD5(std::uint32_t address, std::uint32_t size);
Bytes getSecurityInfo();

/// A response of the ROM: the echoed opcode, a value and the data with its status bytes.
struct Response {
  std::uint8_t command = 0;
  std::uint32_t value = 0;
  Bytes data;

  /// The response in one decoded frame, or nothing when the frame is not a response.
  static std::optional<Response> parse(ByteView frame);
  /// Whether the status bytes report failure, and the error code.
  std::pair<bool, std::uint8_t> status(std::size_t statusByteCount) const;
  /// The data without its trailing status bytes.
  Bytes body(std::size_t statusByteCount) const;

  bool operator==(const Response&) const = default;
};

} // namespace ESPPacket

} // namespace tarnwick
