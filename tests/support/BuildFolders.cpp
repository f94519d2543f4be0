#include "support/BuildFolders.hpp"

#include <openssl/evp.h>
#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <random>
#include <stdexcept>

#include "support/HexFiles.hpp"

namespace tarnwick::testing {

namespace {

void putLE32(Bytes& out, std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8)
    out.push_back(static_cast<std::uint8_t>(value >> shift));
}
void putLE16(Bytes& out, std::uint16_t value) {
  out.push_back(static_cast<std::uint8_t>(value & 0xFF));
  out.push_back(static_cast<std::uint8_t>(value >> 8));
}

Bytes digest(const EVP_MD* kind, ByteView bytes) {
  unsigned char out[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  if (EVP_Digest(bytes.data(), bytes.size(), out, &length, kind, nullptr) != 1)
    throw std::runtime_error("digest failed");
  return Bytes(out, out + length);
}

Bytes randomBytes(std::size_t count, std::uint32_t seed) {
  std::mt19937 random(seed);
  Bytes bytes(count);
  for (auto& b : bytes)
    b = static_cast<std::uint8_t>(random());
  return bytes;
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

// Load addresses of the memory regions that images use, which differ between chip generations.
struct Regions {
  std::uint32_t dram, iram, drom, irom, bootDram, bootIram, bootEntry;
};

Regions regionsOf(std::optional<std::uint16_t> chipID) {
  if (!chipID)
    return {0x3FFE8000, 0x40100000, 0x3FFE8800, 0x40201010, 0x3FFE8000, 0x4010F000, 0x4010F000};
  switch (*chipID) {
  case ChipIDs::esp32:
    return {0x3FFB0000, 0x40080000, 0x3F400020, 0x400D0020, 0x3FFF0030, 0x40078000, 0x40080658};
  case ChipIDs::esp32s2:
    return {0x3FFBE150, 0x40022000, 0x3F000020, 0x40080020, 0x3FFE6100, 0x4004F000, 0x4004F1D0};
  case ChipIDs::esp32s3:
    return {0x3FC88000, 0x40374000, 0x3C000020, 0x42000020, 0x3FCD7300, 0x403C9700, 0x403C9908};
  case ChipIDs::esp32c6:
    return {0x40800000, 0x40800100, 0x42800020, 0x42000020, 0x4086E610, 0x4086C410, 0x4086C41A};
  default: // the ESP32-C3 and anything unknown
    return {0x3FC8A000, 0x40380000, 0x3C000020, 0x42000020, 0x3FCD5820, 0x403CC710, 0x403CE000};
  }
}

} // namespace

namespace Layouts {
std::vector<PartitionRow> arduinoDefault() {
  return {{"nvs", 1, 0x02, 0x9000, 0x5000},        {"otadata", 1, 0x00, 0xE000, 0x2000},
          {"app0", 0, 0x10, 0x10000, 0x140000},    {"app1", 0, 0x11, 0x150000, 0x140000},
          {"spiffs", 1, 0x82, 0x290000, 0x160000}, {"coredump", 1, 0x03, 0x3F0000, 0x10000}};
}
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

Bytes partitionTable(const std::vector<PartitionRow>& rows, bool withMD5) {
  Bytes table;
  for (const auto& row : rows) {
    table.insert(table.end(), {0xAA, 0x50, row.type, row.subtype});
    putLE32(table, row.offset);
    putLE32(table, row.size);
    Bytes label(16, 0x00);
    std::copy_n(row.label.begin(), std::min<std::size_t>(row.label.size(), 16), label.begin());
    table.insert(table.end(), label.begin(), label.end());
    putLE32(table, row.flags);
  }
  if (withMD5) {
    const Bytes md5 = digest(EVP_md5(), table);
    table.insert(table.end(), {0xEB, 0xEB});
    table.insert(table.end(), 14, 0xFF);
    table.insert(table.end(), md5.begin(), md5.end());
  }
  table.resize(0xC00, 0xFF);
  return table;
}

Bytes espImage(const ESPImageParts& parts) {
  Bytes image{0xE9, static_cast<std::uint8_t>(parts.segments.size()), parts.flashMode,
              parts.flashSizeAndFrequency};
  putLE32(image, parts.entryAddress);
  const bool extended = parts.chipID.has_value();
  if (extended) {
    image.insert(image.end(), {0xEE, 0x00, 0x00, 0x00}); // no WP pin, default drive strengths
    putLE16(image, *parts.chipID);
    image.push_back(0x00); // minimum chip revision (old field)
    putLE16(image, 0);     // minimum full revision
    putLE16(image, 399);   // maximum full revision, v3.99
    image.insert(image.end(), 4, 0x00);
    image.push_back(parts.hashAppended ? 1 : 0);
  }
  std::uint8_t checksum = 0xEF;
  for (const auto& segment : parts.segments) {
    putLE32(image, segment.loadAddress);
    putLE32(image, static_cast<std::uint32_t>(segment.data.size()));
    image.insert(image.end(), segment.data.begin(), segment.data.end());
    for (std::uint8_t b : segment.data)
      checksum ^= b;
  }
  const std::size_t end = image.size() - image.size() % 16 + 16;
  image.resize(end, 0x00);
  image.back() = checksum;
  if (extended && parts.hashAppended) {
    const Bytes sha = digest(EVP_sha256(), image);
    image.insert(image.end(), sha.begin(), sha.end());
  }
  return image;
}

Bytes espBootloader(std::optional<std::uint16_t> chipID) {
  const Regions r = regionsOf(chipID);
  ESPImageParts parts;
  parts.chipID = chipID;
  parts.flashSizeAndFrequency = chipID ? 0x2F : 0x40; // 4 MB, 80 MHz; the ESP8266 codes 4 MB as 4
  parts.entryAddress = r.bootEntry;
  parts.segments = {{r.bootDram, randomBytes(0x1128, 11)},
                    {r.bootIram, randomBytes(0x3C24, 12)},
                    {r.bootIram + 0x8000, randomBytes(0x0E30, 13)}};
  return espImage(parts);
}

Bytes espApplication(std::optional<std::uint16_t> chipID, std::size_t codeSize,
                     std::uint32_t seed) {
  const Regions r = regionsOf(chipID);
  const std::size_t quarter = std::max<std::size_t>(codeSize / 4, 64) & ~std::size_t{3};
  ESPImageParts parts;
  parts.chipID = chipID;
  parts.flashSizeAndFrequency = chipID ? 0x2F : 0x40;
  parts.entryAddress = r.iram + 0x1C4;
  parts.segments = {{r.drom, randomBytes(quarter, seed * 4)},
                    {r.dram, randomBytes(quarter / 8, seed * 4 + 1)},
                    {r.iram, randomBytes(quarter, seed * 4 + 2)},
                    {r.irom, randomBytes(quarter * 2, seed * 4 + 3)}};
  return espImage(parts);
}

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

Bytes littleFSImage(std::size_t size) {
  Bytes image(std::max<std::size_t>(size, 0x2000), 0xFF);
  // Two copies of the superblock, one per metadata block, each naming the format.
  for (std::size_t block : {std::size_t{0}, std::size_t{0x1000}}) {
    const Bytes head{0x01, 0x00, 0x00, 0x00, 0xF0, 0x0F, 0xFF, 0xF7, 'l',  'i',  't',  't',
                     'l',  'e',  'f',  's',  0x2F, 0xE0, 0x00, 0x10, 0x00, 0x00, 0x02, 0x00};
    std::copy(head.begin(), head.end(), image.begin() + block);
  }
  return image;
}

Bytes avrSketch(std::size_t size, std::uint32_t seed) {
  Bytes sketch = randomBytes(std::max<std::size_t>(size, 104) & ~std::size_t{1}, seed);
  // 26 vectors of "jmp": reset to the code after the table, the others to the catch-all handler.
  for (int vector = 0; vector < 26; ++vector) {
    const std::uint8_t target = vector == 0 ? 0x34 : 0x51;
    const Bytes jmp{0x0C, 0x94, target, 0x00};
    std::copy(jmp.begin(), jmp.end(), sketch.begin() + vector * 4);
  }
  return sketch;
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
