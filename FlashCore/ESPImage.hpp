#pragma once
// ESP firmware images and partition tables: the few fields the program reads and patches.

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "FlashCore/Bytes.hpp"
#include "FlashCore/ESPChip.hpp"
#include "FlashCore/FlashSettings.hpp"

namespace tarnwick {

/// The header fields of an ESP image that the program uses.
struct ESPImageHeader {
  std::int64_t segmentCount = 0;
  std::uint8_t flashMode = 0;
  std::uint8_t flashSizeAndFrequency = 0;
  std::optional<std::uint16_t> chipID;
  bool hashAppended = false;
  bool operator==(const ESPImageHeader&) const = default;
};

namespace ESPImage {

inline constexpr std::uint8_t magic = 0xE9;

/// The header, when the bytes start with one. `extended`: the image has the 24-byte header of
/// the ESP32 family (true for every chip but the ESP8266, and when the chip is unknown).
std::optional<ESPImageHeader> readHeader(ByteView bytes, bool extended);
/// Length of an extended-header image up to and including its checksum byte; absent when the
/// segments run past the end of the bytes.
std::optional<std::size_t> imageLength(ByteView bytes, std::int64_t segmentCount);
/// The 4-bit flash size code of the header; absent for `keep`.
std::optional<std::uint8_t> sizeCode(ESPChip chip, FlashSize size);
/// The image with flash mode and size set in its header, and an appended SHA-256 repaired.
Bytes patchHeader(Bytes bytes, ESPChip chip, FlashMode mode, FlashSize size);
/// The bytes, extended with 0xFF up to a multiple of `alignment`.
Bytes padded(Bytes bytes, std::size_t alignment);

} // namespace ESPImage

/// One entry of an ESP-IDF partition table.
struct Partition {
  struct OTAApp {
    int slot;
    bool operator==(const OTAApp&) const = default;
  };
  struct Other {
    std::uint8_t type;
    std::uint8_t subtype;
    bool operator==(const Other&) const = default;
  };
  // Kinds without payload share one small type each so the variant keeps the documented order.
  template <int N> struct Simple { bool operator==(const Simple&) const = default; };
  using FactoryApp = Simple<0>;
  using TestApp = Simple<1>;
  using OTAData = Simple<2>;
  using NVS = Simple<3>;
  using PHY = Simple<4>;
  using CoreDump = Simple<5>;
  using FAT = Simple<6>;
  using SPIFFS = Simple<7>;
  using LittleFS = Simple<8>;
  /// What a partition is, derived from type and subtype.
  using Kind = std::variant<OTAApp, Other, FactoryApp, TestApp, OTAData, NVS, PHY, CoreDump, FAT,
                            SPIFFS, LittleFS>;

  std::string label;
  std::uint8_t type = 0;
  std::uint8_t subtype = 0;
  std::uint32_t offset = 0;
  std::uint32_t size = 0;

  Kind kind() const;
  bool isApp() const { return type == 0; }
  bool isFileSystem() const { return type == 1 && subtype >= 0x81 && subtype <= 0x83; }
  std::uint32_t end() const { return offset + size; }

  /// The entries of a binary partition table; absent when it holds none.
  static std::optional<std::vector<Partition>> parseTable(ByteView bytes);
  /// Where the application goes: factory, else OTA slot 0, else the first app partition.
  static std::optional<Partition> appPartition(const std::vector<Partition>& partitions);
  /// The first FAT, SPIFFS or LittleFS partition.
  static std::optional<Partition> fileSystemPartition(const std::vector<Partition>& partitions);

  bool operator==(const Partition&) const = default;
};

/// `text` as valid UTF-8, each invalid sequence replaced by U+FFFD.
std::string validUTF8(std::string_view text);

} // namespace tarnwick
