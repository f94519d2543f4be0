#pragma once
// Build folders as PlatformIO, the Arduino IDE and ESP-IDF leave them, made from scratch: real
// partition tables, ESP images with proper headers, checksums and digests, AVR sketches as HEX.

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "FlashCore/Bytes.hpp"

namespace tarnwick::testing {

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

/// Partition layouts in common use.
namespace Layouts {
/// Arduino's 4 MB default: nvs, otadata 0xE000, app0/app1 0x10000/0x150000, spiffs 0x290000.
std::vector<PartitionRow> arduinoDefault();
/// Arduino's "minimal SPIFFS": two 1.9 MB apps at 0x10000/0x1F0000, spiffs at 0x3D0000.
std::vector<PartitionRow> arduinoMinimalSPIFFS();
/// A factory app at 0x20000 behind a core dump partition, and no file system.
std::vector<PartitionRow> factoryWithoutFileSystem();
/// ESP-IDF's factory app plus two OTA slots: otadata 0xD000, factory 0x10000, ota_0 0x110000.
std::vector<PartitionRow> idfTwoOTA();
/// OTA slots only, the first at 0x20000, otadata at 0xF000, LittleFS at 0x320000.
std::vector<PartitionRow> otaWithLittleFS();
} // namespace Layouts

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
/// The OTA data that the Arduino core flashes at otadata: boot from app0.
Bytes bootApp0();
/// A LittleFS image of `size` bytes with its superblock at the start.
Bytes littleFSImage(std::size_t size);
/// An AVR program of `size` bytes starting with its interrupt vector table.
Bytes avrSketch(std::size_t size, std::uint32_t seed = 1);

/// Files below a folder by relative path with "/" separators.
struct FolderTree {
  std::map<std::string, Bytes> files;

  /// The .bin and .hex files (extension in any case) that the importer is handed.
  std::map<std::string, Bytes> firmwareFiles() const;
  /// The folder's own "flasher_args.json", if any.
  std::optional<Bytes> flasherArgs() const;
  /// Writes every file below `directory`, creating folders as needed.
  void writeTo(const std::filesystem::path& directory) const;
};

/// A PlatformIO project after `pio run` and `pio run -t buildfs`: bootloader.bin, partitions.bin,
/// firmware.bin and littlefs.bin in ".pio/build/<env>/", next to the usual by-products.
FolderTree platformIOBuild(const std::string& env, std::uint16_t chipID,
                           const std::vector<PartitionRow>& layout);

/// A sketch folder after the Arduino IDE's "Export compiled binary" for an ESP32-family board:
/// "build/<fqbn>/sketch.ino.bin", ".ino.bootloader.bin", ".ino.partitions.bin" and
/// ".ino.merged.bin". With `withBootApp0`, boot_app0.bin was copied in beside them.
FolderTree arduinoESPExport(const std::string& fqbnFolder, std::uint16_t chipID,
                            std::uint32_t bootloaderOffset, const std::vector<PartitionRow>& layout,
                            bool withBootApp0 = false);

/// A sketch folder after exporting for an AVR board: "build/<fqbn>/sketch.ino.hex",
/// ".ino.with_bootloader.hex", the .bin twins, ".ino.eep" and ".ino.elf". The bootloader of
/// `bootloaderSize` bytes sits at `bootloaderAddress`.
FolderTree arduinoAVRExport(const std::string& fqbnFolder, const Bytes& sketch,
                            std::uint32_t bootloaderAddress, std::size_t bootloaderSize);

/// An ESP-IDF project's build folder for `chip` ("esp32s3"): bootloader/bootloader.bin,
/// partition_table/partition-table.bin, <project>.bin, and ota_data_initial.bin when the layout
/// has otadata, all listed in flasher_args.json with the flash mode and size given.
FolderTree espIDFBuild(const std::string& project, const std::string& chip, std::uint16_t chipID,
                       std::uint32_t bootloaderOffset, const std::vector<PartitionRow>& layout,
                       const std::string& flashMode = "dio", const std::string& flashSize = "4MB");

} // namespace tarnwick::testing
