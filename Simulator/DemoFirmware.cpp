#include "Simulator/DemoFirmware.hpp"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <random>

#include "FlashCore/Digest.hpp"

namespace tarnwick::simulator {

namespace {

void putLE32(Bytes& out, std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8)
    out.push_back(static_cast<std::uint8_t>(value >> shift));
}
void putLE16(Bytes& out, std::uint16_t value) {
  out.push_back(static_cast<std::uint8_t>(value & 0xFF));
  out.push_back(static_cast<std::uint8_t>(value >> 8));
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

std::vector<PartitionRow> arduinoDefaultLayout() {
  return {{"nvs", 1, 0x02, 0x9000, 0x5000},        {"otadata", 1, 0x00, 0xE000, 0x2000},
          {"app0", 0, 0x10, 0x10000, 0x140000},    {"app1", 0, 0x11, 0x150000, 0x140000},
          {"spiffs", 1, 0x82, 0x290000, 0x160000}, {"coredump", 1, 0x03, 0x3F0000, 0x10000}};
}

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
    const Bytes md5 = Digest::md5(table);
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
    const Bytes sha = Digest::sha256(image);
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

Bytes randomBytes(std::size_t count, std::uint32_t seed) {
  std::mt19937 random(seed);
  Bytes bytes(count);
  for (auto& b : bytes)
    b = static_cast<std::uint8_t>(random());
  return bytes;
}

std::string hexRecord(std::uint8_t type, std::uint16_t address, ByteView data) {
  Bytes bytes{static_cast<std::uint8_t>(data.size()), static_cast<std::uint8_t>(address >> 8),
              static_cast<std::uint8_t>(address & 0xFF), type};
  bytes.insert(bytes.end(), data.begin(), data.end());
  unsigned sum = 0;
  for (std::uint8_t b : bytes)
    sum += b;
  bytes.push_back(static_cast<std::uint8_t>(-sum & 0xFF));
  std::string text = ":";
  char pair[3];
  for (std::uint8_t b : bytes) {
    std::snprintf(pair, sizeof pair, "%02X", b);
    text += pair;
  }
  return text;
}

std::string intelHexOf(ByteView image, std::uint32_t start, std::size_t perLine,
                       const std::string& eol) {
  std::string text;
  text.reserve(image.size() / perLine * (perLine * 2 + 11 + eol.size()) + 64);
  // Reading starts in segment 0, so like linkers the writer announces only later segments.
  std::int64_t segment = 0;
  std::size_t done = 0;
  while (done < image.size()) {
    const std::uint32_t address = start + static_cast<std::uint32_t>(done);
    if (static_cast<std::int64_t>(address >> 16) != segment) {
      segment = address >> 16;
      const std::uint8_t upper[] = {static_cast<std::uint8_t>(segment >> 8),
                                    static_cast<std::uint8_t>(segment & 0xFF)};
      text += hexRecord(0x04, 0, upper) + eol;
    }
    // A record stays inside its segment, as linkers write them.
    const std::size_t room = 0x10000 - (address & 0xFFFF);
    const std::size_t count = std::min({perLine, image.size() - done, room});
    text +=
        hexRecord(0x00, static_cast<std::uint16_t>(address & 0xFFFF), image.subspan(done, count)) +
        eol;
    done += count;
  }
  return text + hexRecord(0x01, 0) + eol;
}

namespace {
std::string hexAddress(std::uint32_t value) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "0x%x", value);
  return buffer;
}

void writeFile(const std::filesystem::path& file, ByteView bytes) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out)
    throw std::filesystem::filesystem_error("write", file,
                                            std::make_error_code(std::errc::io_error));
}

void writeText(const std::filesystem::path& file, const std::string& text) {
  writeFile(file, ByteView(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}
} // namespace

void writeDemoBuild(ESPChip chip, const std::filesystem::path& directory) {
  const std::optional<std::uint16_t> id = imageChipID(chip);
  const std::uint32_t bootloader = bootloaderOffset(chip);
  const auto layout = arduinoDefaultLayout();
  struct File {
    std::string key, path;
    std::uint32_t offset;
    Bytes bytes;
  };
  // The ESP8266 RTOS SDK builds with the same tools and leaves the same folder as ESP-IDF.
  const std::vector<File> files = {
      {"bootloader", "bootloader/bootloader.bin", bootloader, espBootloader(id)},
      {"partition-table", "partition_table/partition-table.bin", 0x8000, partitionTable(layout)},
      {"otadata", "ota_data_initial.bin", 0xE000, Bytes(0x2000, 0xFF)},
      {"app", "demo.bin", 0x10000, espApplication(id, 0xC000, 3)},
  };
  std::string flashFiles, entries;
  for (const File& file : files) {
    writeFile(directory / file.path, file.bytes);
    flashFiles += std::string(flashFiles.empty() ? "" : ",\n") + "        \"" +
                  hexAddress(file.offset) + "\" : \"" + file.path + "\"";
    entries += "    \"" + file.key + "\" : { \"offset\" : \"" + hexAddress(file.offset) +
               "\", \"file\" : \"" + file.path + "\", \"encrypted\" : \"false\" },\n";
  }
  writeText(directory / "flasher_args.json",
            "{\n    \"write_flash_args\" : [ \"--flash_mode\", \"dio\", \"--flash_size\", "
            "\"4MB\", \"--flash_freq\", \"40m\" ],\n    \"flash_settings\" : {\n"
            "        \"flash_mode\": \"dio\",\n        \"flash_size\": \"4MB\",\n"
            "        \"flash_freq\": \"40m\"\n    },\n    \"flash_files\" : {\n" +
                flashFiles + "\n    },\n" + entries +
                "    \"extra_esptool_args\" : {\n        \"after\"  : \"hard_reset\",\n"
                "        \"before\" : \"default_reset\",\n        \"stub\"   : true,\n"
                "        \"chip\"   : \"" +
                std::string(rawValue(chip)) + "\"\n    }\n}\n");
}

void writeDemoSketch(const std::filesystem::path& directory) {
  std::filesystem::create_directories(directory);
  writeText(directory / "Blink.ino.hex", intelHexOf(avrSketch(2000, 5)));
}

} // namespace tarnwick::simulator
