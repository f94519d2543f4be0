#include "support/BuildFolders.hpp"

#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "Simulator/DemoFirmware.hpp"

namespace tarnwick::testing {

using namespace simulator;

namespace {

void putLE32(Bytes& out, std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8)
    out.push_back(static_cast<std::uint8_t>(value >> shift));
}
Bytes text(const std::string& s) { return Bytes(s.begin(), s.end()); }

// Linker output that the importer must pass over: it is neither .bin nor .hex.
Bytes elfFile(std::size_t size, std::uint32_t seed) {
  Bytes elf = randomBytes(size, seed);
  const Bytes magic{0x7F, 'E', 'L', 'F', 0x01, 0x01, 0x01};
  std::copy(magic.begin(), magic.end(), elf.begin());
  return elf;
}

// Places `part` at `offset` in `image`, growing it with 0xFF (erased flash) as needed.
void place(Bytes& image, std::uint32_t offset, const Bytes& part) {
  if (image.size() < offset + part.size()) image.resize(offset + part.size(), 0xFF);
  std::copy(part.begin(), part.end(), image.begin() + offset);
}

std::string hex(std::uint32_t value) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "0x%x", value);
  return buffer;
}

const PartitionRow* find(const std::vector<PartitionRow>& layout, std::uint8_t type,
                         std::uint8_t subtype) {
  for (const auto& row : layout)
    if (row.type == type && row.subtype == subtype) return &row;
  return nullptr;
}

std::uint32_t appOffset(const std::vector<PartitionRow>& layout) {
  if (auto* factory = find(layout, 0, 0x00)) return factory->offset;
  if (auto* ota0 = find(layout, 0, 0x10)) return ota0->offset;
  return 0x10000;
}

std::string csvOf(const std::vector<PartitionRow>& layout) {
  std::string csv = "# Name,   Type, SubType, Offset,  Size, Flags\n";
  for (const auto& row : layout) {
    csv += row.label + ", " + (row.type == 0 ? "app" : "data") + ", " + hex(row.subtype) + ", " +
           hex(row.offset) + ", " + hex(row.size) + ",\n";
  }
  return csv;
}
} // namespace

namespace Layouts {
std::vector<PartitionRow> arduinoDefault() { return arduinoDefaultLayout(); }
std::vector<PartitionRow> arduinoMinimalSPIFFS() {
  return {{"nvs", 1, 0x02, 0x9000, 0x5000},       {"otadata", 1, 0x00, 0xE000, 0x2000},
          {"app0", 0, 0x10, 0x10000, 0x1E0000},   {"app1", 0, 0x11, 0x1F0000, 0x1E0000},
          {"spiffs", 1, 0x82, 0x3D0000, 0x20000}, {"coredump", 1, 0x03, 0x3F0000, 0x10000}};
}
std::vector<PartitionRow> factoryWithoutFileSystem() {
  return {{"nvs", 1, 0x02, 0x9000, 0x6000},
          {"phy_init", 1, 0x01, 0xF000, 0x1000},
          {"coredump", 1, 0x03, 0x10000, 0x10000},
          {"factory", 0, 0x00, 0x20000, 0x3E0000}};
}
std::vector<PartitionRow> idfTwoOTA() {
  return {{"nvs", 1, 0x02, 0x9000, 0x4000},       {"otadata", 1, 0x00, 0xD000, 0x2000},
          {"phy_init", 1, 0x01, 0xF000, 0x1000},  {"factory", 0, 0x00, 0x10000, 0x100000},
          {"ota_0", 0, 0x10, 0x110000, 0x100000}, {"ota_1", 0, 0x11, 0x210000, 0x100000}};
}
std::vector<PartitionRow> otaWithLittleFS() {
  return {{"nvs", 1, 0x02, 0x9000, 0x5000},
          {"otadata", 1, 0x00, 0xF000, 0x2000},
          {"ota_0", 0, 0x10, 0x20000, 0x180000},
          {"ota_1", 0, 0x11, 0x1A0000, 0x180000},
          {"storage", 1, 0x83, 0x320000, 0xE0000}};
}
} // namespace Layouts

Bytes bootApp0() {
  Bytes data(0x2000, 0xFF);
  Bytes entry;
  putLE32(entry, 1);                   // sequence 1 selects app0
  entry.insert(entry.end(), 20, 0xFF); // no label
  putLE32(entry, 0xFFFFFFFF);          // state undefined
  const std::uint32_t crc = static_cast<std::uint32_t>(::crc32(0xFFFFFFFFu, entry.data(), 4));
  putLE32(entry, crc);
  std::copy(entry.begin(), entry.end(), data.begin());
  return data;
}

std::map<std::string, Bytes> FolderTree::firmwareFiles() const {
  std::map<std::string, Bytes> firmware;
  for (const auto& [path, bytes] : files) {
    std::string lower = path;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (lower.ends_with(".bin") || lower.ends_with(".hex")) firmware.emplace(path, bytes);
  }
  return firmware;
}

std::optional<Bytes> FolderTree::flasherArgs() const {
  auto it = files.find("flasher_args.json");
  if (it == files.end()) return std::nullopt;
  return it->second;
}

void FolderTree::writeTo(const std::filesystem::path& directory) const {
  for (const auto& [path, bytes] : files) {
    const auto file = directory / path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    if (!out) throw std::runtime_error("cannot write " + file.string());
  }
}

FolderTree platformIOBuild(const std::string& env, std::uint16_t chipID,
                           const std::vector<PartitionRow>& layout) {
  const std::string dir = ".pio/build/" + env + "/";
  FolderTree tree;
  tree.files["platformio.ini"] = text("[env:" + env + "]\nplatform = espressif32\nboard = " + env +
                                      "\nframework = arduino\nboard_build.filesystem = littlefs\n"
                                      "board_build.partitions = partitions.csv\n");
  tree.files["partitions.csv"] = text(csvOf(layout));
  tree.files["src/main.cpp"] = text("#include <Arduino.h>\nvoid setup() {}\nvoid loop() {}\n");
  tree.files[".pio/build/project.checksum"] = text("4c1d5e0a8b9f2e3d7a6b5c4d3e2f1a0b9c8d7e6f");
  tree.files[dir + "bootloader.bin"] = espBootloader(chipID);
  tree.files[dir + "partitions.bin"] = partitionTable(layout);
  const Bytes firmware = espApplication(chipID, 0xC000, 3);
  tree.files[dir + "firmware.bin"] = firmware;
  tree.files[dir + "firmware.elf"] = elfFile(0x400, 4);
  tree.files[dir + "littlefs.bin"] = littleFSImage(0x10000);
  return tree;
}

FolderTree arduinoESPExport(const std::string& fqbnFolder, std::uint16_t chipID,
                            std::uint32_t bootloaderOffset, const std::vector<PartitionRow>& layout,
                            bool withBootApp0) {
  const std::string dir = "build/" + fqbnFolder + "/";
  const Bytes bootloader = espBootloader(chipID);
  const Bytes table = partitionTable(layout);
  const Bytes app = espApplication(chipID, 0x9000, 5);
  const PartitionRow* otadata = find(layout, 1, 0x00);

  FolderTree tree;
  tree.files["sketch.ino"] = text("void setup() {\n  Serial.begin(115200);\n}\n\nvoid loop() {}\n");
  tree.files["partitions.csv"] = text(csvOf(layout));
  tree.files[dir + "sketch.ino.bin"] = app;
  tree.files[dir + "sketch.ino.bootloader.bin"] = bootloader;
  tree.files[dir + "sketch.ino.partitions.bin"] = table;
  tree.files[dir + "sketch.ino.elf"] = elfFile(0x400, 6);
  tree.files[dir + "sketch.ino.map"] = text("Archive member included to satisfy reference\n");
  Bytes merged;
  place(merged, bootloaderOffset, bootloader);
  place(merged, 0x8000, table);
  if (otadata) place(merged, otadata->offset, bootApp0());
  place(merged, appOffset(layout), app);
  tree.files[dir + "sketch.ino.merged.bin"] = merged;
  if (withBootApp0) tree.files[dir + "boot_app0.bin"] = bootApp0();
  return tree;
}

FolderTree arduinoAVRExport(const std::string& fqbnFolder, const Bytes& sketch,
                            std::uint32_t bootloaderAddress, std::size_t bootloaderSize) {
  const std::string dir = "build/" + fqbnFolder + "/";
  // Boot loaders open by clearing r1 and reading the reset cause.
  Bytes bootloader = randomBytes(bootloaderSize, 21);
  const Bytes prologue{0x11, 0x24, 0x84, 0xB7};
  std::copy(prologue.begin(), prologue.end(), bootloader.begin());

  const std::string sketchHex = intelHexOf(sketch, 0, 16, "\r\n");
  // The IDE joins the two files, dropping the sketch's end-of-file record.
  const std::string withoutEnd = sketchHex.substr(0, sketchHex.size() - 13);
  Bytes combined = sketch;
  place(combined, bootloaderAddress, bootloader);

  FolderTree tree;
  tree.files["sketch.ino"] = text("void setup() {\n  pinMode(LED_BUILTIN, OUTPUT);\n}\n\n"
                                  "void loop() {\n  digitalWrite(LED_BUILTIN, HIGH);\n}\n");
  tree.files[dir + "sketch.ino.hex"] = text(sketchHex);
  tree.files[dir + "sketch.ino.with_bootloader.hex"] =
      text(withoutEnd + intelHexOf(bootloader, bootloaderAddress, 16, "\r\n"));
  tree.files[dir + "sketch.ino.bin"] = sketch;
  tree.files[dir + "sketch.ino.with_bootloader.bin"] = combined;
  tree.files[dir + "sketch.ino.eep"] = text(":00000001FF\r\n");
  tree.files[dir + "sketch.ino.elf"] = elfFile(0x200, 22);
  return tree;
}

FolderTree espIDFBuild(const std::string& project, const std::string& chip, std::uint16_t chipID,
                       std::uint32_t bootloaderOffset, const std::vector<PartitionRow>& layout,
                       const std::string& flashMode, const std::string& flashSize) {
  const PartitionRow* otadata = find(layout, 1, 0x00);
  const std::uint32_t app = appOffset(layout);
  FolderTree tree;
  tree.files["bootloader/bootloader.bin"] = espBootloader(chipID);
  tree.files["bootloader/bootloader.elf"] = elfFile(0x100, 31);
  tree.files["partition_table/partition-table.bin"] = partitionTable(layout);
  tree.files[project + ".bin"] = espApplication(chipID, 0xA000, 9);
  tree.files[project + ".elf"] = elfFile(0x100, 32);
  if (otadata) tree.files["ota_data_initial.bin"] = Bytes(0x2000, 0xFF);

  auto entry = [](const std::string& key, std::uint32_t offset, const std::string& file) {
    return "    \"" + key + "\" : { \"offset\" : \"" + hex(offset) + "\", \"file\" : \"" + file +
           "\", \"encrypted\" : \"false\" },\n";
  };
  std::string json = "{\n    \"write_flash_args\" : [ \"--flash_mode\", \"" + flashMode +
                     "\",\n                           \"--flash_size\", \"" + flashSize +
                     "\",\n                           \"--flash_freq\", \"80m\" ],\n"
                     "    \"flash_settings\" : {\n        \"flash_mode\": \"" +
                     flashMode + "\",\n        \"flash_size\": \"" + flashSize +
                     "\",\n        \"flash_freq\": \"80m\"\n    },\n    \"flash_files\" : {\n";
  json += "        \"" + hex(bootloaderOffset) + "\" : \"bootloader/bootloader.bin\",\n";
  json += "        \"" + hex(app) + "\" : \"" + project + ".bin\",\n";
  json += "        \"0x8000\" : \"partition_table/partition-table.bin\"";
  if (otadata) json += ",\n        \"" + hex(otadata->offset) + "\" : \"ota_data_initial.bin\"";
  json += "\n    },\n";
  json += entry("bootloader", bootloaderOffset, "bootloader/bootloader.bin");
  json += entry("app", app, project + ".bin");
  json += entry("partition-table", 0x8000, "partition_table/partition-table.bin");
  if (otadata) json += entry("otadata", otadata->offset, "ota_data_initial.bin");
  json += "    \"extra_esptool_args\" : {\n        \"after\"  : \"hard_reset\",\n"
          "        \"before\" : \"default_reset\",\n        \"stub\"   : true,\n"
          "        \"chip\"   : \"" +
          chip + "\"\n    }\n}\n";
  tree.files["flasher_args.json"] = text(json);
  tree.files["flash_args"] =
      text("--flash_mode " + flashMode + " --flash_size " + flashSize + " --flash_freq 80m\n" +
           hex(bootloaderOffset) + " bootloader/bootloader.bin\n" + hex(app) + " " + project +
           ".bin\n0x8000 partition_table/partition-table.bin\n");
  return tree;
}

} // namespace tarnwick::testing
