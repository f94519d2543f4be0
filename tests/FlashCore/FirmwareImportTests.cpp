#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>

#include "FlashCore/Digest.hpp"
#include "FlashCore/FirmwareImport.hpp"
#include "Localization/Language.hpp"
#include "support/BuildFolders.hpp"
#include "support/HexFiles.hpp"

using namespace tarnwick;
using namespace tarnwick::testing;
using FirmwareImport::BuildFolder;
using FirmwareImport::Imported;
using FirmwareImport::ImportError;
using Role = FirmwareImage::Role;

namespace {

const Target autoESP = Target::esp(std::nullopt);
const Target esp32 = Target::esp(ESPChip::esp32);
const Target esp32c3 = Target::esp(ESPChip::esp32c3);
const Target esp32s3 = Target::esp(ESPChip::esp32s3);
const Target uno = Target::avr(AVRBoard::uno);

std::string sha256Of(ByteView bytes) { return Digest::sha256Hex(bytes); }

Bytes text(std::string_view s) { return Bytes(s.begin(), s.end()); }

Bytes withPrefix(std::initializer_list<std::uint8_t> prefix, std::size_t size = 64) {
  Bytes bytes(size, 0x5C);
  std::copy(prefix.begin(), prefix.end(), bytes.begin());
  return bytes;
}

// An entry as `makeImage` would build it, for use as *existing*.
Imported entry(Role role, Bytes bytes, std::uint32_t offset = 0) {
  Imported imported;
  imported.image.role = role;
  imported.image.offset = offset;
  imported.image.size = static_cast<std::int64_t>(bytes.size());
  imported.bytes = std::move(bytes);
  return imported;
}

ImportError importErrorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const ImportError& error) {
    return error;
  }
  ADD_FAILURE() << "no ImportError";
  return {};
}

// What a test expects of one entry of a folder: the file below `dir`, its role and its address.
struct Expected {
  std::string path;
  Role role;
  std::uint32_t offset;
};

void expectEntries(const BuildFolder& folder, const FolderTree& tree, const std::string& dir,
                   const std::vector<Expected>& expected) {
  ASSERT_EQ(folder.images.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const Imported& got = folder.images[i];
    const std::string& path = expected[i].path;
    SCOPED_TRACE(path);
    EXPECT_EQ(got.image.fileName, path.substr(path.rfind('/') + 1));
    EXPECT_EQ(got.image.role, expected[i].role);
    EXPECT_EQ(got.image.offset, expected[i].offset);
    EXPECT_TRUE(got.image.enabled);
    EXPECT_EQ(got.bytes, tree.files.at(dir + path));
    EXPECT_EQ(got.image.size, static_cast<std::int64_t>(got.bytes.size()));
    EXPECT_EQ(got.image.sha256, sha256Of(got.bytes));
    for (std::size_t j = 0; j < i; ++j)
      EXPECT_NE(got.image.id, folder.images[j].image.id);
  }
}

} // namespace

TEST(FirmwareImport, ContentConvertsHexAndRefusesEmptyOrDamagedFiles) {
  EXPECT_EQ(importErrorOf([] { FirmwareImport::content("app.bin", {}); }),
            ImportError{ImportError::empty{"app.bin"}});
  EXPECT_EQ(importErrorOf([] { FirmwareImport::content("Sketch.HEX", {}); }),
            ImportError{ImportError::empty{"Sketch.HEX"}});

  const Bytes sketch = avrSketch(300);
  EXPECT_EQ(FirmwareImport::content("Sketch.Ino.HEX", text(intelHexOf(sketch))), sketch);
  // Only the name decides: HEX text in a .bin file stays text, a .hexdump is no HEX file.
  const Bytes hexText = text(intelHexOf(sketch));
  EXPECT_EQ(FirmwareImport::content("sketch.bin", hexText), hexText);
  EXPECT_EQ(FirmwareImport::content("sketch.hexdump", hexText), hexText);

  std::string damaged = intelHexOf(sketch);
  damaged[damaged.find('\n') + 12] ^= 1; // a data digit on line 2
  EXPECT_EQ(importErrorOf([&] { FirmwareImport::content("s.hex", text(damaged)); }),
            (ImportError{ImportError::hex{"s.hex", {IntelHex::ParseError::checksum{2}}}}));
  // Bytes that are not UTF-8 spoil their line and nothing else.
  Bytes latin = text(":0100000041BE\n");
  latin.insert(latin.end(), {0xE9, 0x80, 0x41, '\n'});
  EXPECT_EQ(importErrorOf([&] { FirmwareImport::content("s.hex", latin); }),
            (ImportError{ImportError::hex{"s.hex", {IntelHex::ParseError::invalidLine{2}}}}));
  Bytes brokenBreak = text(":0100000041BE");
  brokenBreak.insert(brokenBreak.end(), {0xE2, 0x80});
  // A cut-off line separator is no line break: it spoils the line it ends.
  EXPECT_EQ(importErrorOf([&] { FirmwareImport::content("s.hex", brokenBreak); }),
            (ImportError{ImportError::hex{"s.hex", {IntelHex::ParseError::invalidLine{1}}}}));

  // A sketch up to 4 MB converts; one byte more does not.
  EXPECT_EQ(FirmwareImport::content("big.hex", text(":02000004003FBB\n:01FFFF0042BF\n")).size(),
            0x400000u);
  EXPECT_EQ(importErrorOf([] {
              FirmwareImport::content("big.hex", text(":020000040040BA\n:0100000042BD\n"));
            }),
            (ImportError{ImportError::hex{"big.hex", {IntelHex::ParseError::tooLarge{}}}}));
}

TEST(FirmwareImport, RoleFollowsTargetContentThenName) {
  const Bytes espImage = withPrefix({0xE9, 0x03});
  const Bytes tableBytes = withPrefix({0xAA, 0x50});
  const Bytes plain = withPrefix({0x00});
  struct Case {
    const char* name;
    Bytes bytes;
    Role role;
  };
  const Case cases[] = {
      // The name rule comes before the content rule, and the table's magic before any name.
      {"Partitions.BIN", espImage, Role::partitionTable},
      {"data.bin", tableBytes, Role::partitionTable},
      {"bootloader.bin", tableBytes, Role::partitionTable},
      {"sketch.ino.partitions.bin", plain, Role::partitionTable},
      {"boot_app0.bin", espImage, Role::otaData},
      {"OTAData.bin", plain, Role::otaData},
      // ESP-IDF calls its OTA data "ota_data_initial.bin", which no name rule knows.
      {"ota_data_initial.bin", Bytes(64, 0xFF), Role::other},
      {"sketch.ino.merged.bin", espImage, Role::other},
      {"merged-bootloader.bin", espImage, Role::other},
      {"factory_reset_bootloader.bin", espImage, Role::other},
      {"sketch.ino.bootloader.bin", espImage, Role::bootloader},
      {"BOOTLOADER.bin", plain, Role::bootloader},
      {"littlefs.bin", espImage, Role::fileSystem},
      {"data_SPIFFS.bin", plain, Role::fileSystem},
      {"fatfs.img", plain, Role::fileSystem},
      {"my_filesystem.bin", plain, Role::fileSystem},
      {"firmware.bin", espImage, Role::application},
      {"anything", espImage, Role::application},
      {"firmware.bin", plain, Role::other},
      {"firmware.bin", {}, Role::other},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FirmwareImport::role(c.name, c.bytes, esp32), c.role) << c.name;
    EXPECT_EQ(FirmwareImport::role(c.name, c.bytes, autoESP), c.role) << c.name;
    // An Arduino board takes only a sketch.
    EXPECT_EQ(FirmwareImport::role(c.name, c.bytes, uno), Role::application) << c.name;
  }
}

TEST(FirmwareImport, AddressFollowsChipAndPartitionTable) {
  const Bytes app = espApplication(ChipIDs::esp32, 0x400);
  using FirmwareImport::address;
  // Without anything else the defaults apply.
  EXPECT_EQ(address(Role::application, app, esp32, {}), 0x10000u);
  EXPECT_EQ(address(Role::partitionTable, {}, esp32, {}), 0x8000u);
  EXPECT_EQ(address(Role::otaData, {}, esp32, {}), 0xE000u);
  EXPECT_EQ(address(Role::fileSystem, {}, esp32, {}), 0x290000u);
  EXPECT_EQ(address(Role::other, app, esp32, {}), 0x0u);
  for (Role role : {Role::bootloader, Role::partitionTable, Role::application, Role::fileSystem})
    EXPECT_EQ(address(role, app, uno, {}), 0x0u);

  // The bootloader's place depends on the chip: the target's, else the file's, else an entry's.
  const Bytes s3Boot = espBootloader(ChipIDs::esp32s3);
  const Bytes unknownBoot = espImage({.chipID = 0x77, .segments = {{0x40000000, Bytes(16, 1)}}});
  EXPECT_EQ(address(Role::bootloader, s3Boot, esp32c3, {}), 0x0u);
  EXPECT_EQ(address(Role::bootloader, s3Boot, esp32, {}), 0x1000u);
  EXPECT_EQ(address(Role::bootloader, s3Boot, Target::esp(ESPChip::esp32s2), {}), 0x1000u);
  EXPECT_EQ(address(Role::bootloader, s3Boot, Target::esp(ESPChip::esp8266), {}), 0x0u);
  EXPECT_EQ(address(Role::bootloader, s3Boot, autoESP, {}), 0x0u);
  EXPECT_EQ(address(Role::bootloader, unknownBoot, autoESP, {}), 0x1000u);
  EXPECT_EQ(address(Role::bootloader, Bytes(64, 0xFF), autoESP, {}), 0x1000u);
  // A header too short for the extended part names no chip.
  EXPECT_EQ(address(Role::bootloader, Bytes(s3Boot.begin(), s3Boot.begin() + 20), autoESP, {}),
            0x1000u);
  const std::vector<Imported> withC3App = {
      entry(Role::other, Bytes(64, 0xFF)), entry(Role::other, unknownBoot),
      entry(Role::application, espApplication(ChipIDs::esp32c3, 0x400)),
      entry(Role::application, espApplication(ChipIDs::esp32, 0x400))};
  EXPECT_EQ(address(Role::bootloader, Bytes(64, 0xFF), autoESP, withC3App), 0x0u);
  EXPECT_EQ(address(Role::bootloader, espBootloader(ChipIDs::esp32), autoESP, withC3App), 0x1000u);

  // With a partition table among the entries, its partitions decide.
  const auto withTable = [](const std::vector<PartitionRow>& layout) {
    return std::vector<Imported>{entry(Role::application, Bytes(16, 0xE9)),
                                 entry(Role::partitionTable, partitionTable(layout), 0x8000)};
  };
  const std::vector<PartitionRow> factoryAt20000 = {{"nvs", 1, 0x02, 0x9000, 0x6000},
                                                    {"factory", 0, 0x00, 0x20000, 0x100000}};
  EXPECT_EQ(address(Role::application, app, esp32, withTable(factoryAt20000)), 0x20000u);
  EXPECT_EQ(address(Role::otaData, {}, esp32, withTable(factoryAt20000)), 0xE000u);
  EXPECT_EQ(address(Role::fileSystem, {}, esp32, withTable(factoryAt20000)), 0x290000u);
  const auto twoOTA = withTable(Layouts::idfTwoOTA());
  EXPECT_EQ(address(Role::application, app, esp32, twoOTA), 0x10000u);
  EXPECT_EQ(address(Role::otaData, {}, esp32, twoOTA), 0xD000u);
  const auto littleFS = withTable(Layouts::otaWithLittleFS());
  EXPECT_EQ(address(Role::application, app, esp32, littleFS), 0x20000u);
  EXPECT_EQ(address(Role::otaData, {}, esp32, littleFS), 0xF000u);
  EXPECT_EQ(address(Role::fileSystem, {}, esp32, littleFS), 0x320000u);
  EXPECT_EQ(address(Role::fileSystem, {}, esp32, withTable(Layouts::arduinoMinimalSPIFFS())),
            0x3D0000u);
  // Neither factory nor ota_0: the first app partition; a FAT partition is a file system too.
  const std::vector<PartitionRow> odd = {{"test", 0, 0x20, 0x30000, 0x10000},
                                         {"ota_3", 0, 0x13, 0x40000, 0x10000},
                                         {"fat", 1, 0x81, 0x50000, 0x10000}};
  EXPECT_EQ(address(Role::application, app, esp32, withTable(odd)), 0x30000u);
  EXPECT_EQ(address(Role::fileSystem, app, esp32, withTable(odd)), 0x50000u);
  // Only the first partition table entry counts, even when it cannot be read.
  std::vector<Imported> unreadableFirst = {
      entry(Role::partitionTable, Bytes(0xC00, 0xFF)),
      entry(Role::partitionTable, partitionTable(factoryAt20000))};
  EXPECT_EQ(address(Role::application, app, esp32, unreadableFirst), 0x10000u);
  std::swap(unreadableFirst[0], unreadableFirst[1]);
  EXPECT_EQ(address(Role::application, app, esp32, unreadableFirst), 0x20000u);
}

TEST(FirmwareImport, MakeImageBuildsAFreshEntry) {
  const Bytes app = espApplication(ChipIDs::esp32, 0x800);
  Imported first = FirmwareImport::makeImage("sketch.ino.bin", app, esp32, {});
  EXPECT_EQ(first.image.role, Role::application);
  EXPECT_EQ(first.image.offset, 0x10000u);
  EXPECT_TRUE(first.image.enabled);
  EXPECT_EQ(first.image.fileName, "sketch.ino.bin");
  EXPECT_EQ(first.image.size, static_cast<std::int64_t>(app.size()));
  EXPECT_EQ(first.image.sha256, sha256Of(app));
  EXPECT_EQ(first.bytes, app);

  const std::vector<PartitionRow> factoryAt20000 = {{"nvs", 1, 0x02, 0x9000, 0x6000},
                                                    {"factory", 0, 0x00, 0x20000, 0x100000}};
  Imported table =
      FirmwareImport::makeImage("partitions.bin", partitionTable(factoryAt20000), esp32, {first});
  EXPECT_EQ(table.image.role, Role::partitionTable);
  EXPECT_EQ(table.image.offset, 0x8000u);
  Imported second = FirmwareImport::makeImage("sketch.ino.bin", app, esp32, {first, table});
  EXPECT_EQ(second.image.offset, 0x20000u);
  EXPECT_NE(second.image.id, first.image.id);

  // For a sketch the entry describes the converted binary, not the HEX text.
  const Bytes sketch = avrSketch(500);
  const Bytes hexText = text(intelHexOf(sketch));
  Imported avr = FirmwareImport::makeImage(
      "Blink.ino.hex", FirmwareImport::content("Blink.ino.hex", hexText), uno, {first});
  EXPECT_EQ(avr.image.role, Role::application);
  EXPECT_EQ(avr.image.offset, 0x0u);
  EXPECT_EQ(avr.image.fileName, "Blink.ino.hex");
  EXPECT_EQ(avr.bytes, sketch);
  EXPECT_EQ(avr.image.size, 500);
  EXPECT_EQ(avr.image.sha256, sha256Of(sketch));

  EXPECT_EQ(FirmwareImport::makeImage("sketch.ino.merged.bin", app, esp32, {}).image.offset, 0u);
  EXPECT_EQ(FirmwareImport::makeImage("boot_app0.bin", bootApp0(), esp32, {}).image.offset,
            0xE000u);
}

// Every language is checked by the catalogue test; a HEX error speaks for itself.
TEST(FirmwareImport, ErrorMessages) {
  const IntelHex::ParseError parseError{IntelHex::ParseError::checksum{4}};
  const ImportError hex{ImportError::hex{"a.hex", parseError}};
  LanguageOverride english(Language::en);
  EXPECT_EQ(ImportError{ImportError::empty{"a.bin"}}.message(), "the file is empty.");
  EXPECT_EQ(ImportError{ImportError::nothingFound{}}.message(),
            "no firmware files found (.bin or .hex, or ESP-IDF's flasher_args.json).");
  EXPECT_EQ(hex.message(), parseError.message());
  EXPECT_NE(hex, (ImportError{ImportError::hex{"a.hex", {IntelHex::ParseError::checksum{5}}}}));
}

// PlatformIO builds and the Arduino IDE's ESP exports: each file lands at its partition, the
// merged image is passed over, and the build's chip is reported whatever the product's target.
TEST(FirmwareImport, ESPBuildFoldersLandAtTheirPartitions) {
  FolderTree twoEnvironments =
      platformIOBuild("esp32dev", ChipIDs::esp32, Layouts::arduinoDefault());
  const FolderTree c3 = platformIOBuild("esp32-c3", ChipIDs::esp32c3, Layouts::arduinoDefault());
  twoEnvironments.files.insert(c3.files.begin(), c3.files.end());
  const std::string pio = ".pio/build/esp32dev/", s3 = ".pio/build/esp32-s3-devkitc-1/";
  const std::string ide = "build/esp32.esp32.esp32/", ideS3 = "build/esp32.esp32.esp32s3/";
  struct Case {
    const char* what;
    FolderTree tree;
    Target target;
    std::string dir;
    std::vector<Expected> entries;
    ESPChip chip;
  };
  const Case cases[] = {
      {"minimal SPIFFS",
       platformIOBuild("esp32dev", ChipIDs::esp32, Layouts::arduinoMinimalSPIFFS()),
       autoESP,
       pio,
       {{"bootloader.bin", Role::bootloader, 0x1000},
        {"partitions.bin", Role::partitionTable, 0x8000},
        {"firmware.bin", Role::application, 0x10000},
        {"littlefs.bin", Role::fileSystem, 0x3D0000}},
       ESPChip::esp32},
      // No file-system partition: the file system goes to its usual place.
      {"no file system",
       platformIOBuild("esp32dev", ChipIDs::esp32, Layouts::factoryWithoutFileSystem()),
       esp32,
       pio,
       {{"bootloader.bin", Role::bootloader, 0x1000},
        {"partitions.bin", Role::partitionTable, 0x8000},
        {"firmware.bin", Role::application, 0x20000},
        {"littlefs.bin", Role::fileSystem, 0x290000}},
       ESPChip::esp32},
      {"ESP32-S3 with OTA",
       platformIOBuild("esp32-s3-devkitc-1", ChipIDs::esp32s3, Layouts::otaWithLittleFS()),
       autoESP,
       s3,
       {{"bootloader.bin", Role::bootloader, 0x0},
        {"partitions.bin", Role::partitionTable, 0x8000},
        {"firmware.bin", Role::application, 0x20000},
        {"littlefs.bin", Role::fileSystem, 0x320000}},
       ESPChip::esp32s3},
      // The product's chip decides the bootloader's place; the build still reports its own chip.
      {"ESP32-S3 build for an ESP32",
       platformIOBuild("esp32-s3-devkitc-1", ChipIDs::esp32s3, Layouts::otaWithLittleFS()),
       esp32,
       s3,
       {{"bootloader.bin", Role::bootloader, 0x1000},
        {"partitions.bin", Role::partitionTable, 0x8000},
        {"firmware.bin", Role::application, 0x20000},
        {"littlefs.bin", Role::fileSystem, 0x320000}},
       ESPChip::esp32s3},
      // Two environments: each kind of file comes from the first in path order.
      {"two environments",
       twoEnvironments,
       autoESP,
       ".pio/build/esp32-c3/",
       {{"bootloader.bin", Role::bootloader, 0x0},
        {"partitions.bin", Role::partitionTable, 0x8000},
        {"firmware.bin", Role::application, 0x10000},
        {"littlefs.bin", Role::fileSystem, 0x290000}},
       ESPChip::esp32c3},
      {"Arduino IDE",
       arduinoESPExport("esp32.esp32.esp32", ChipIDs::esp32, 0x1000, Layouts::arduinoDefault()),
       autoESP,
       ide,
       {{"sketch.ino.bootloader.bin", Role::bootloader, 0x1000},
        {"sketch.ino.partitions.bin", Role::partitionTable, 0x8000},
        {"sketch.ino.bin", Role::application, 0x10000}},
       ESPChip::esp32},
      // boot_app0.bin copied in, and a custom table with otadata at 0xD000 and a factory app.
      {"Arduino IDE with boot_app0",
       arduinoESPExport("esp32.esp32.esp32", ChipIDs::esp32, 0x1000, Layouts::idfTwoOTA(), true),
       esp32,
       ide,
       {{"sketch.ino.bootloader.bin", Role::bootloader, 0x1000},
        {"sketch.ino.partitions.bin", Role::partitionTable, 0x8000},
        {"boot_app0.bin", Role::otaData, 0xD000},
        {"sketch.ino.bin", Role::application, 0x10000}},
       ESPChip::esp32},
      {"Arduino IDE, ESP32-S3",
       arduinoESPExport("esp32.esp32.esp32s3", ChipIDs::esp32s3, 0x0,
                        Layouts::arduinoMinimalSPIFFS()),
       autoESP,
       ideS3,
       {{"sketch.ino.bootloader.bin", Role::bootloader, 0x0},
        {"sketch.ino.partitions.bin", Role::partitionTable, 0x8000},
        {"sketch.ino.bin", Role::application, 0x10000}},
       ESPChip::esp32s3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const BuildFolder folder =
        FirmwareImport::scanFolder(c.tree.firmwareFiles(), c.tree.flasherArgs(), c.target);
    expectEntries(folder, c.tree, c.dir, c.entries);
    EXPECT_EQ(folder.chip, c.chip);
    EXPECT_FALSE(folder.flashMode);
    EXPECT_FALSE(folder.flashSize);
  }
  // Added on its own, the merged image is flashed whole from address 0.
  const Bytes merged = cases[7].tree.files.at(ideS3 + "sketch.ino.merged.bin");
  const Imported whole = FirmwareImport::makeImage("sketch.ino.merged.bin", merged, autoESP, {});
  EXPECT_EQ(whole.image.role, Role::other);
  EXPECT_EQ(whole.image.offset, 0x0u);
}

TEST(FirmwareImport, ArduinoAVRExportsGiveTheSketchWithoutBootloader) {
  {
    const Bytes sketch = avrSketch(924);
    const FolderTree tree = arduinoAVRExport("arduino.avr.uno", sketch, 0x7E00, 512);
    const BuildFolder folder = FirmwareImport::scanFolder(tree.firmwareFiles(), std::nullopt, uno);
    ASSERT_EQ(folder.images.size(), 1u);
    const Imported& only = folder.images.front();
    EXPECT_EQ(only.image.fileName, "sketch.ino.hex");
    EXPECT_EQ(only.image.role, Role::application);
    EXPECT_EQ(only.image.offset, 0x0u);
    EXPECT_EQ(only.bytes, sketch);
    EXPECT_EQ(only.image.size, 924);
    EXPECT_EQ(only.image.sha256, sha256Of(sketch));
    EXPECT_FALSE(folder.chip);
    EXPECT_FALSE(folder.flashMode);
    EXPECT_FALSE(folder.flashSize);
  }
  {
    // A Mega sketch beyond 64 KB, in a folder whose names are in capitals.
    const Bytes sketch = avrSketch(70000, 5);
    const FolderTree export_ = arduinoAVRExport("arduino.avr.mega", sketch, 0x3E000, 8192);
    FirmwareImport::Files files;
    for (const auto& [path, bytes] : export_.firmwareFiles()) {
      std::string upper = path;
      upper.replace(upper.rfind("sketch"), 6, "BLINK");
      files[upper] = bytes;
    }
    const BuildFolder folder =
        FirmwareImport::scanFolder(files, std::nullopt, Target::avr(AVRBoard::mega2560));
    ASSERT_EQ(folder.images.size(), 1u);
    EXPECT_EQ(folder.images[0].image.fileName, "BLINK.ino.hex");
    EXPECT_EQ(folder.images[0].bytes, sketch);
  }
  const Bytes sketch = avrSketch(200);
  const FolderTree tree = arduinoAVRExport("arduino.avr.nano", sketch, 0x7E00, 512);
  const std::string dir = "build/arduino.avr.nano/";
  {
    // Only binaries: the first in path order, which is the sketch without bootloader.
    FirmwareImport::Files files = tree.firmwareFiles();
    std::erase_if(files, [](const auto& file) { return file.first.ends_with(".hex"); });
    const BuildFolder folder = FirmwareImport::scanFolder(files, std::nullopt, uno);
    ASSERT_EQ(folder.images.size(), 1u);
    EXPECT_EQ(folder.images[0].image.fileName, "sketch.ino.bin");
    EXPECT_EQ(folder.images[0].bytes, sketch);
  }
  {
    // Only the sketch with its bootloader: HEX files of that name are never chosen.
    FirmwareImport::Files files = {{dir + "sketch.ino.with_bootloader.hex",
                                    tree.files.at(dir + "sketch.ino.with_bootloader.hex")}};
    EXPECT_EQ(importErrorOf([&] { FirmwareImport::scanFolder(files, std::nullopt, uno); }),
              ImportError{ImportError::nothingFound{}});
    EXPECT_EQ(importErrorOf([&] { FirmwareImport::scanFolder({}, std::nullopt, uno); }),
              ImportError{ImportError::nothingFound{}});
  }
  {
    // The chosen file's faults are reported under its name in lower case.
    FirmwareImport::Files files = {{dir + "Sketch.ino.HEX", {}}};
    EXPECT_EQ(importErrorOf([&] { FirmwareImport::scanFolder(files, std::nullopt, uno); }),
              ImportError{ImportError::empty{"sketch.ino.hex"}});
    files[dir + "Sketch.ino.HEX"] = text(":0100000041BF\n");
    EXPECT_EQ(
        importErrorOf([&] { FirmwareImport::scanFolder(files, std::nullopt, uno); }),
        (ImportError{ImportError::hex{"sketch.ino.hex", {IntelHex::ParseError::checksum{1}}}}));
  }
}

TEST(FirmwareImport, ESPIDFBuildsFollowFlasherArgs) {
  {
    const FolderTree tree =
        espIDFBuild("hello_world", "esp32c3", ChipIDs::esp32c3, 0x0, Layouts::idfTwoOTA());
    const BuildFolder folder =
        FirmwareImport::scanFolder(tree.firmwareFiles(), tree.flasherArgs(), autoESP);
    // ESP-IDF's OTA data has a name of its own, so it is flashed as an "other" file.
    expectEntries(folder, tree, "",
                  {{"bootloader/bootloader.bin", Role::bootloader, 0x0},
                   {"partition_table/partition-table.bin", Role::partitionTable, 0x8000},
                   {"ota_data_initial.bin", Role::other, 0xD000},
                   {"hello_world.bin", Role::application, 0x10000}});
    EXPECT_EQ(folder.chip, ESPChip::esp32c3);
    EXPECT_EQ(folder.flashMode, FlashMode::dio);
    EXPECT_EQ(folder.flashSize, FlashSize::mb4);
  }
  // Exactly the listed addresses, even where the chip's rules would say otherwise.
  FolderTree tree = espIDFBuild("app", "esp32s3", ChipIDs::esp32s3, 0x0,
                                Layouts::factoryWithoutFileSystem(), "qio", "8MB");
  const std::string listing = R"({
    "flash_settings": {"flash_mode": "dio", "flash_size": "4MB", "flash_freq": "80m"},
    "flash_files": {
        "0x1000": "bootloader/bootloader.bin",
        "0x8000": "partition_table/partition-table.bin",
        "0x10000": "app.bin"
    },
    "extra_esptool_args": {"after": "hard_reset", "before": "default_reset", "stub": true, "chip": "esp32s3"}
  })";
  {
    const BuildFolder folder =
        FirmwareImport::scanFolder(tree.firmwareFiles(), text(listing), autoESP);
    expectEntries(folder, tree, "",
                  {{"bootloader/bootloader.bin", Role::bootloader, 0x1000},
                   {"partition_table/partition-table.bin", Role::partitionTable, 0x8000},
                   {"app.bin", Role::application, 0x10000}});
    EXPECT_EQ(folder.chip, ESPChip::esp32s3);
    EXPECT_EQ(folder.flashMode, FlashMode::dio);
    EXPECT_EQ(folder.flashSize, FlashSize::mb4);
    // readFlasherArgs gives the same on its own.
    const auto direct = FirmwareImport::readFlasherArgs(text(listing), tree.firmwareFiles());
    ASSERT_TRUE(direct);
    EXPECT_EQ(direct->images.size(), 3u);
  }
  {
    // None of the listed files is there: nothing found, although other .bin files are.
    FirmwareImport::Files files = {{"firmware.bin", espApplication(ChipIDs::esp32, 0x400)},
                                   {"build/app.bin", tree.files.at("app.bin")}};
    EXPECT_EQ(importErrorOf([&] { FirmwareImport::scanFolder(files, text(listing), autoESP); }),
              ImportError{ImportError::nothingFound{}});
  }
  {
    // Odd address spellings, unknown chip and settings that name no mode or size.
    const std::string odd = R"({
      "flash_settings": {"flash_mode": "QIO", "flash_size": "detect"},
      "flash_files": {"0X1000": "bootloader/bootloader.bin", "0x0x8000": "partition_table/partition-table.bin",
                      "zz": "app.bin", "0x100000000": "app.bin", "": "app.bin", "20000": "app.bin"},
      "extra_esptool_args": {"chip": "esp32p4"}
    })";
    const BuildFolder folder = FirmwareImport::scanFolder(tree.firmwareFiles(), text(odd), esp32s3);
    expectEntries(folder, tree, "",
                  {{"bootloader/bootloader.bin", Role::bootloader, 0x1000},
                   {"partition_table/partition-table.bin", Role::partitionTable, 0x8000},
                   {"app.bin", Role::application, 0x20000}});
    EXPECT_FALSE(folder.chip);
    EXPECT_FALSE(folder.flashMode);
    EXPECT_FALSE(folder.flashSize);
    // Settings that are not all text are ignored as a whole; so is a chip that is not text.
    const std::string mixed = R"({"flash_files": {"0x10000": "app.bin"},
      "flash_settings": {"flash_mode": "dio", "flash_size": 4},
      "extra_esptool_args": {"chip": 9}})";
    const auto folderMixed = FirmwareImport::readFlasherArgs(text(mixed), tree.firmwareFiles());
    ASSERT_TRUE(folderMixed);
    EXPECT_FALSE(folderMixed->flashMode);
    EXPECT_FALSE(folderMixed->chip);
  }
  // A flasher_args.json that cannot be used is passed over: the folder is scanned by name, which
  // finds only the bootloader of an ESP-IDF build.
  for (const char* unusable : {"", "not json", "[1, 2]", R"({"flash_files": ["app.bin"]})",
                               R"({"flash_files": {"0x10000": 1}})", R"({"chip": "esp32"})",
                               "{\"flash_files\": {\"0x0\": \"bootloader/bootloader.bin\""}) {
    SCOPED_TRACE(unusable);
    EXPECT_FALSE(FirmwareImport::readFlasherArgs(text(unusable), tree.firmwareFiles()));
    const BuildFolder folder =
        FirmwareImport::scanFolder(tree.firmwareFiles(), text(unusable), autoESP);
    expectEntries(folder, tree, "", {{"bootloader/bootloader.bin", Role::bootloader, 0x0}});
    EXPECT_EQ(folder.chip, ESPChip::esp32s3);
  }
}

TEST(FirmwareImport, FoldersWithoutKnownNamesYieldNothing) {
  const FirmwareImport::Files files = {
      {"build/app.bin", espApplication(ChipIDs::esp32, 0x400)},
      {"build/partition-table.bin", partitionTable(Layouts::arduinoDefault())},
      {"firmware.bin.bak", Bytes(16, 1)},
      {"notes/firmware.txt.hex", text(":0100000041BE\n")}};
  EXPECT_EQ(importErrorOf([&] { FirmwareImport::scanFolder(files, std::nullopt, autoESP); }),
            ImportError{ImportError::nothingFound{}});
  // Names match case-insensitively and anywhere below the folder.
  const FirmwareImport::Files one = {{"Out/FIRMWARE.BIN", espApplication(ChipIDs::esp32c6, 0x400)}};
  const BuildFolder folder = FirmwareImport::scanFolder(one, std::nullopt, autoESP);
  ASSERT_EQ(folder.images.size(), 1u);
  EXPECT_EQ(folder.images[0].image.fileName, "FIRMWARE.BIN");
  EXPECT_EQ(folder.images[0].image.offset, 0x10000u);
  EXPECT_EQ(folder.chip, ESPChip::esp32c6);
}

TEST(FirmwareImport, FoldersWrittenToDiskHoldTheSameFirmware) {
  const FolderTree tree =
      arduinoESPExport("esp32.esp32.esp32", ChipIDs::esp32, 0x1000, Layouts::arduinoDefault());
  const auto root = std::filesystem::temp_directory_path() /
                    ("tarnwick-import-" + std::to_string(std::random_device{}()));
  tree.writeTo(root);
  FirmwareImport::Files found;
  for (const auto& item : std::filesystem::recursive_directory_iterator(root)) {
    const std::string ext = item.path().extension().string();
    if (!item.is_regular_file() || (ext != ".bin" && ext != ".hex")) continue;
    std::ifstream in(item.path(), std::ios::binary);
    found[std::filesystem::relative(item.path(), root).generic_string()] =
        Bytes(std::istreambuf_iterator<char>(in), {});
  }
  std::filesystem::remove_all(root);
  EXPECT_EQ(found, tree.firmwareFiles());
}

TEST(FirmwareImport, DamagedAndRandomInputNeverCrashes) {
  std::mt19937 random(99);
  const std::vector<FolderTree> trees = {
      platformIOBuild("esp32dev", ChipIDs::esp32, Layouts::arduinoDefault()),
      arduinoESPExport("esp32.esp32.esp32c3", ChipIDs::esp32c3, 0x0, Layouts::idfTwoOTA(), true),
      arduinoAVRExport("arduino.avr.uno", avrSketch(600), 0x7E00, 512),
      espIDFBuild("blink", "esp32", ChipIDs::esp32, 0x1000, Layouts::otaWithLittleFS())};
  const Target targets[] = {autoESP, esp32, Target::esp(ESPChip::esp8266), uno};
  int results = 0;
  for (int round = 0; round < 300; ++round) {
    const FolderTree& tree = trees[round % trees.size()];
    FirmwareImport::Files files = tree.firmwareFiles();
    std::optional<Bytes> args = tree.flasherArgs();
    // Cut or scramble some files, the JSON included.
    for (auto& [path, bytes] : files) {
      const int what = static_cast<int>(random() % 4);
      if (what == 0 && !bytes.empty()) bytes.resize(random() % bytes.size());
      if (what == 1) {
        for (int k = 0; k < 8 && !bytes.empty(); ++k)
          bytes[random() % bytes.size()] = random();
      }
    }
    if (args && random() % 2 && !args->empty()) args->resize(random() % args->size());
    if (args && random() % 3 == 0)
      (*args)[random() % args->size()] = static_cast<std::uint8_t>(random());
    for (const Target& target : targets) {
      try {
        const BuildFolder folder = FirmwareImport::scanFolder(files, args, target);
        ++results;
        EXPECT_FALSE(folder.images.empty());
        EXPECT_TRUE(std::is_sorted(
            folder.images.begin(), folder.images.end(),
            [](const Imported& a, const Imported& b) { return a.image.offset < b.image.offset; }));
        for (const Imported& imported : folder.images)
          EXPECT_EQ(imported.image.size, static_cast<std::int64_t>(imported.bytes.size()));
      } catch (const ImportError& error) {
        EXPECT_FALSE(error.message().empty());
      }
    }
  }
  EXPECT_GT(results, 300);

  // Random bytes and truncated images as single files, against truncated partition tables.
  const Bytes table = partitionTable(Layouts::idfTwoOTA());
  const Bytes boot = espBootloader(ChipIDs::esp32s3);
  for (std::size_t cut = 0; cut <= 200; ++cut) {
    const std::vector<Imported> existing = {
        entry(Role::partitionTable, Bytes(table.begin(), table.begin() + cut)),
        entry(Role::bootloader, Bytes(boot.begin(), boot.begin() + cut / 4))};
    Bytes noise(cut);
    for (auto& b : noise)
      b = static_cast<std::uint8_t>(random());
    for (const char* name :
         {"x.bin", "x.hex", "bootloader.bin", "partitions.bin", "boot_app0.bin"}) {
      try {
        Bytes prepared = FirmwareImport::content(name, noise);
        const Imported made = FirmwareImport::makeImage(name, prepared, autoESP, existing);
        EXPECT_EQ(made.bytes, prepared);
      } catch (const ImportError& error) {
        EXPECT_FALSE(error.message().empty());
      }
    }
  }
}
