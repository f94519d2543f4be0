#pragma once
// Firmware that looks like what the toolchains build: partition tables, ESP images with proper
// headers, checksums and digests, file system images and AVR sketches as Intel HEX. The simulated
// boards write it as a demo build; the tests build their folders from it.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "FlashCore/Bytes.hpp"
#include "FlashCore/ESPChip.hpp"

namespace tarnwick::simulator {

/// Chip ids of the extended image header.
namespace ChipIDs {
inline constexpr std::uint16_t esp32 = 0;
inline constexpr std::uint16_t esp32s2 = 2;
inline constexpr std::uint16_t esp32c3 = 5;
inline constexpr std::uint16_t esp32s3 = 9;
inline constexpr std::uint16_t esp32c6 = 13;
} // namespace ChipIDs

/// One line of a partition CSV.
struct PartitionRow {
  std::string label;
  std::uint8_t type;
  std::uint8_t subtype;
  std::uint32_t offset;
  std::uint32_t size;
  std::uint32_t flags = 0;
};

/// Arduino's 4 MB default: nvs, otadata 0xE000, app0/app1 0x10000/0x150000, spiffs 0x290000.
std::vector<PartitionRow> arduinoDefaultLayout();

/// The binary table: 32-byte entries, the MD5 entry over them, 0xFF up to 0xC00 bytes.
Bytes partitionTable(const std::vector<PartitionRow>& rows, bool withMD5 = true);

struct ImageSegment {
  std::uint32_t loadAddress;
  Bytes data;
};

/// An ESP image: header, segments, checksum byte at the end of a 16-byte block, then the SHA-256
/// when `hashAppended`. Without a chip id it has the ESP8266's short header and no digest.
struct ESPImageParts {
  std::optional<std::uint16_t> chipID;
  std::uint8_t flashMode = 2;                // DIO
  std::uint8_t flashSizeAndFrequency = 0x20; // 4 MB at 40 MHz on the ESP32 family
  std::uint32_t entryAddress = 0x40080000;
  std::vector<ImageSegment> segments;
  bool hashAppended = true;
};
Bytes espImage(const ESPImageParts& parts);

/// A second-stage bootloader of about 20 KB for the chip with `chipID` (none: ESP8266).
Bytes espBootloader(std::optional<std::uint16_t> chipID);
/// An application of roughly `codeSize` bytes; `seed` makes different builds differ.
Bytes espApplication(std::optional<std::uint16_t> chipID, std::size_t codeSize,
                     std::uint32_t seed = 1);
/// A LittleFS image of `size` bytes with its superblock at the start.
Bytes littleFSImage(std::size_t size);
/// An AVR program of `size` bytes starting with its interrupt vector table.
Bytes avrSketch(std::size_t size, std::uint32_t seed = 1);
/// `count` bytes that do not compress, the same for the same `seed`.
Bytes randomBytes(std::size_t count, std::uint32_t seed);

/// One Intel HEX record, ":LLAAAATT…CC" in upper case, with its checksum.
std::string hexRecord(std::uint8_t type, std::uint16_t address, ByteView data = {});
/// `image` placed at `start` in records of `perLine` bytes, an extended linear address record
/// before every 64 KB segment above the first that the data enters, then the end-of-file record.
std::string intelHexOf(ByteView image, std::uint32_t start = 0, std::size_t perLine = 16,
                       const std::string& eol = "\n");

/// Writes a small build for `chip` into `directory` as ESP-IDF (or the ESP8266 RTOS SDK) leaves
/// it: bootloader, partition table, application and OTA data, listed in flasher_args.json.
/// Throws std::filesystem::filesystem_error when the folder cannot be written.
void writeDemoBuild(ESPChip chip, const std::filesystem::path& directory);
/// Writes a Blink sketch as "Blink.ino.hex" into `directory`.
void writeDemoSketch(const std::filesystem::path& directory);

} // namespace tarnwick::simulator
