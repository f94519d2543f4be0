#pragma once
// Build folders as PlatformIO, the Arduino IDE and ESP-IDF leave them, made from scratch.

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "FlashCore/Bytes.hpp"
#include "Simulator/DemoFirmware.hpp"

namespace tarnwick::testing {

// The image generators live with the simulated boards, which write demo builds from them.
using simulator::avrSketch;
using simulator::espApplication;
using simulator::espBootloader;
using simulator::espImage;
using simulator::ESPImageParts;
using simulator::ImageSegment;
using simulator::littleFSImage;
using simulator::PartitionRow;
using simulator::partitionTable;
namespace ChipIDs = simulator::ChipIDs;

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

/// The OTA data that the Arduino core flashes at otadata: boot from app0.
Bytes bootApp0();

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
