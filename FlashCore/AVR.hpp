#pragma once
// AVR chips, the Arduino boards built on them, and the messages of their three bootloaders.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "FlashCore/AVRBoard.hpp"
#include "FlashCore/Bytes.hpp"

namespace tarnwick {

/// An AVR microcontroller as its bootloader sees it.
struct AVRChip {
  std::string name;
  std::array<std::uint8_t, 3> signature{};
  std::int64_t flashSize = 0;
  std::int64_t pageSize = 0;

  /// Every chip the program knows, in catalogue order.
  static const std::vector<AVRChip>& known();
  /// The known chip with exactly this name.
  static const AVRChip& named(std::string_view name);

  bool operator==(const AVRChip&) const = default;
};

/// The message format a board's bootloader speaks.
enum class AVRProtocol { stk500v1, stk500v2, avr109 };

std::string_view rawValue(AVRProtocol protocol);
std::optional<AVRProtocol> avrProtocolFromRawValue(std::string_view raw);

/// The English board name used in events and errors ("Arduino Uno").
std::string_view displayName(AVRBoard board);
const AVRChip& chip(AVRBoard board);
AVRProtocol protocol(AVRBoard board);
/// Speed of the board's bootloader in bits per second.
std::int64_t baudRate(AVRBoard board);
/// Flash left to a sketch beside the bootloader, in bytes.
std::int64_t maxSketchSize(AVRBoard board);

/// Optiboot and ATmegaBOOT.
namespace STK500v1 {
inline constexpr std::uint8_t endOfPacket = 0x20;
inline constexpr std::uint8_t inSync = 0x14;
inline constexpr std::uint8_t ok = 0x10;
Bytes getSync();
Bytes readSignature();
Bytes enterProgrammingMode();
Bytes leaveProgrammingMode();
Bytes loadAddress(std::int64_t byteAddress);
Bytes programPage(ByteView data);
Bytes readPage(std::int64_t length);
} // namespace STK500v1

/// The Mega 2560's bootloader.
namespace STK500v2 {
inline constexpr std::uint8_t messageStart = 0x1B;
inline constexpr std::uint8_t token = 0x0E;
inline constexpr std::uint8_t statusOK = 0x00;

/// The body framed with start byte, sequence number, length, token and checksum.
Bytes message(ByteView body, std::uint8_t sequence);

/// The first frame found in received bytes.
struct Frame {
  std::uint8_t sequence = 0;
  Bytes body;
  /// Bytes up to and including the frame.
  std::size_t consumed = 0;
  bool operator==(const Frame&) const = default;
};
std::optional<Frame> parse(ByteView bytes);

Bytes signOn();
Bytes enterProgrammingMode();
Bytes leaveProgrammingMode();
Bytes readSignature(std::uint8_t index);
Bytes loadAddress(std::int64_t byteAddress, bool extended);
Bytes programFlash(ByteView data);
Bytes readFlash(std::int64_t length);
} // namespace STK500v2

/// Caterina, the ATmega32U4's bootloader.
namespace AVR109 {
inline constexpr std::uint8_t ok = 0x0D;
Bytes softwareIdentifier();
Bytes readSignature();
Bytes enterProgrammingMode();
Bytes leaveProgrammingMode();
Bytes exitBootloader();
Bytes setAddress(std::int64_t byteAddress);
Bytes writeBlock(ByteView data);
Bytes readBlock(std::int64_t length);
} // namespace AVR109

} // namespace tarnwick
