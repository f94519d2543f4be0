#include <gtest/gtest.h>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ESPImage.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "Localization/Language.hpp"
#include "support/BuildFolders.hpp"

using namespace tarnwick;
using namespace tarnwick::testing;
using Role = FirmwareImage::Role;
using Issue = ProductIssue;

namespace {

struct Builder {
  Product product;
  FileBytesMap files;

  // Adds an entry; `bytes` absent leaves its file missing.
  const FirmwareImage& add(Role role, std::uint32_t offset, std::optional<Bytes> bytes,
                           std::string name, std::int64_t size = -1) {
    FirmwareImage image;
    image.id = UUID::random();
    image.role = role;
    image.offset = offset;
    image.fileName = std::move(name);
    image.size = size >= 0 ? size : bytes ? static_cast<std::int64_t>(bytes->size()) : 0x1000;
    if (bytes) {
      image.sha256 = Digest::sha256Hex(*bytes);
      files[image.id] = *bytes;
    }
    product.images.push_back(image);
    return product.images.back();
  }
  std::vector<Issue> check() const { return ProductCheck::check(product, files); }
};

Issue err(Issue::Kind kind, std::optional<UUID> id = std::nullopt) {
  return {Issue::Severity::error, kind, id};
}
Issue warn(Issue::Kind kind, std::optional<UUID> id) {
  return {Issue::Severity::warning, kind, id};
}

} // namespace

TEST(ProductCheck, NothingEnabledAndArduinoRules) {
  Builder b;
  b.add(Role::application, 0x10000, Bytes(16), "a.bin");
  b.product.images.back().enabled = false;
  EXPECT_EQ(b.check(), std::vector<Issue>{err(Issue::NoImages{})});

  Builder avr;
  avr.product.target = Target::avr(AVRBoard::uno);
  auto big = avr.add(Role::application, 0, Bytes(32257), "big.hex").id;
  EXPECT_EQ(avr.check(), std::vector<Issue>{err(Issue::SketchTooLarge{32256}, big)});
  auto missing = avr.add(Role::application, 0, std::nullopt, "second.hex", 10).id;
  EXPECT_EQ(avr.check(),
            (std::vector<Issue>{err(Issue::MissingFile{}, missing), err(Issue::OneSketchOnly{}),
                                err(Issue::SketchTooLarge{32256}, big)}));
  LanguageOverride english(Language::en);
  EXPECT_EQ(avr.check()[2].message(), "Too large for this board (at most 32256 bytes).");
}

TEST(ProductCheck, CombinedESPRulesComeInTheDocumentedOrder) {
  Builder b;
  b.product.target = Target::esp(ESPChip::esp32);
  Bytes table = partitionTable(Layouts::arduinoDefault()); // app0 0x10000 1.25 MB, spiffs 0x290000
  Bytes bootloader = espBootloader(ChipIDs::esp32);
  auto boot = b.add(Role::bootloader, 0x0, bootloader, "boot.bin").id; // belongs at 0x1000
  auto parts = b.add(Role::partitionTable, 0x8000, table, "parts.bin").id;
  Bytes s3App = espApplication(ChipIDs::esp32s3, 0x2000, 1);
  auto app = b.add(Role::application, 0x10000, s3App, "app.bin", 0x150000).id;
  auto over = b.add(Role::other, 0x10800, std::nullopt, "over.bin", 0x100).id;
  auto fs = b.add(Role::fileSystem, 0x300000, Bytes(0x1000, 0xFF), "fs.bin").id;
  auto raw = b.add(Role::application, 0x3F0000, Bytes{1, 2, 3, 4}, "raw.bin").id;

  std::vector<Issue> expected = {
      err(Issue::MissingFile{}, over),
      // overlap/alignment pass, image by image in address order
      err(Issue::Overlap{"over.bin"}, app),
      err(Issue::NotAligned{}, over),
      // contents pass
      warn(Issue::BootloaderOffset{0x1000}, boot),
      err(Issue::ChipMismatch{ESPChip::esp32s3, ESPChip::esp32}, app),
      err(Issue::LargerThanPartition{"app0", 0x140000}, app),
      warn(Issue::NotInPartition{}, fs),
      err(Issue::NotAnImage{}, raw),
  };
  EXPECT_EQ(b.check(), expected);
  (void)parts;

  LanguageOverride english(Language::en);
  auto issues = b.check();
  EXPECT_EQ(issues[3].message(), "The bootloader belongs at 0x1000.");
  EXPECT_EQ(issues[4].message(), "Built for ESP32-S3, not for ESP32.");
  EXPECT_EQ(issues[5].message(), "Larger than partition app0 (1280 KB).");
  EXPECT_EQ(ProductCheck::firstError(issues), issues[0]);
  for (Language language : allLanguages) {
    LanguageOverride guard(language);
    for (const auto& issue : issues)
      EXPECT_FALSE(issue.message().empty());
  }
}

TEST(ProductCheck, OverlapsTouchingRangesAndAutomaticChip) {
  Builder b;
  auto first = b.add(Role::other, 0x11000, Bytes(0x5000), "first").id;
  b.add(Role::other, 0x16000, Bytes(0x10), "second");
  EXPECT_TRUE(b.check().empty());
  b.product.images[0].size = 0x5001;
  EXPECT_EQ(b.check(), std::vector<Issue>{err(Issue::Overlap{"second"}, first)});
  b.product.images[1].offset = 0x12000;
  b.product.images[1].size = 0x2000;
  b.add(Role::other, 0x13000, Bytes(0x10), "third");
  auto issues = b.check();
  ASSERT_EQ(issues.size(), 3u);
  EXPECT_EQ(issues[0].imageID, first);
  EXPECT_EQ(issues[1].imageID, first);
  EXPECT_EQ(issues[2].imageID, b.product.images[1].id);

  // Automatic chip: the bootloader's own chip id decides where it belongs.
  Builder automatic;
  auto s3 = automatic.add(Role::bootloader, 0x1000, espBootloader(ChipIDs::esp32s3), "b").id;
  EXPECT_EQ(automatic.check(), std::vector<Issue>{warn(Issue::BootloaderOffset{0x0}, s3)});
  Builder unknownID;
  unknownID.add(Role::bootloader, 0x1000, espBootloader(std::uint16_t{3}), "b");
  EXPECT_TRUE(unknownID.check().empty());

  // The ESP8266 reads short headers, so an S3 image is not checked against it.
  Builder esp8266;
  esp8266.product.target = Target::esp(ESPChip::esp8266);
  esp8266.add(Role::application, 0x10000, espApplication(ChipIDs::esp32s3, 0x100, 2), "a");
  EXPECT_TRUE(esp8266.check().empty());
}

TEST(ProductCheck, HostileBoundsAndDataWithoutHeaderAtTheBootloader) {
  Bytes hugeOTA =
      partitionTable({{"otadata", 1, 0, 0xE000, 0xF0000000}, {"app0", 0, 0x10, 0x10000, 0x1000}});
  Bytes sketch = avrSketch(0x2000);
  Bytes merged(0x2000, 0xFF);
  merged[0x1000] = 0xE9;
  struct Case {
    Target target;
    std::uint32_t offset;
    Bytes bytes;
    Role role;
    std::int64_t baud;
    std::vector<Issue::Kind> expected;
  };
  const std::vector<Case> cases = {
      {Target::esp(ESPChip::esp32),
       0x8000,
       hugeOTA,
       Role::partitionTable,
       460800,
       {Issue::PartitionBeyondFlash{"otadata"}, Issue::OTADataTooLarge{}}},
      {Target::esp(ESPChip::esp32),
       0xFFFFF000,
       Bytes(0x2000),
       Role::other,
       460800,
       {Issue::BeyondFlash{}}},
      {Target::esp(ESPChip::esp32), 0x10000, Bytes(16), Role::other, 1, {Issue::BaudOutOfRange{}}},
      {Target::esp(ESPChip::esp32),
       0x10000,
       Bytes(16),
       Role::other,
       3'000'001,
       {Issue::BaudOutOfRange{}}},
      {Target::esp(ESPChip::esp32), 0x0, sketch, Role::other, 9600, {Issue::NoImageHeader{0x1000}}},
      {Target::esp(ESPChip::esp32c3), 0x0, sketch, Role::other, 9600, {Issue::NoImageHeader{0x0}}},
      {Target::esp(), 0x0, sketch, Role::other, 460800, {Issue::NoImageHeader{0x0}}},
      {Target::esp(ESPChip::esp32), 0x0, merged, Role::other, 460800, {}},
      {Target::esp(), 0x0, merged, Role::other, 460800, {}},
      {Target::esp(ESPChip::esp32c3),
       0x0,
       merged,
       Role::other,
       460800,
       {Issue::NoImageHeader{0x0}}},
      {Target::avr(AVRBoard::uno), 0x0, sketch, Role::application, 1, {}},
  };
  for (const auto& c : cases) {
    Builder b;
    b.product.target = c.target;
    b.product.flashBaud = c.baud;
    b.add(c.role, c.offset, c.bytes, "x");
    std::vector<Issue::Kind> kinds;
    for (const auto& issue : b.check()) {
      kinds.push_back(issue.kind);
      EXPECT_EQ(issue.isError(), !std::holds_alternative<Issue::NoImageHeader>(issue.kind));
    }
    EXPECT_EQ(kinds, c.expected) << c.target.text() << " at " << c.offset;
    // The plan never erases what a hostile table claims.
    if (c.target.isESP()) {
      for (const auto& write : FlashPlan::writes(b.product, b.files, ESPChip::esp32))
        EXPECT_LE(write.data.size(), 0x10000u);
    }
  }
}

TEST(FlashPlan, PatchesPadsErasesOTADataAndSorts) {
  Builder b;
  b.product.flashMode = FlashMode::dout;
  b.product.flashSize = FlashSize::keep;
  Bytes table = partitionTable(Layouts::arduinoDefault()); // otadata at 0xE000, 0x2000 bytes
  Bytes bootloader = espBootloader(ChipIDs::esp32);
  b.add(Role::application, 0x10000, Bytes(1001, 0x11), "app.bin");
  b.add(Role::partitionTable, 0x8000, table, "parts.bin");
  b.add(Role::bootloader, 0x1000, bootloader, "boot.bin");
  b.add(Role::other, 0x0, Bytes{0xE9, 0, 0, 0x20, 0, 0, 0, 0}, "at-zero.bin");
  b.add(Role::other, 0x20000, std::nullopt, "missing.bin");

  auto writes = FlashPlan::writes(b.product, b.files, ESPChip::esp32);
  std::vector<std::pair<std::string, std::uint32_t>> order;
  for (const auto& w : writes)
    order.emplace_back(w.name, w.offset);
  EXPECT_EQ(order, (std::vector<std::pair<std::string, std::uint32_t>>{{"at-zero.bin", 0x0},
                                                                       {"boot.bin", 0x1000},
                                                                       {"parts.bin", 0x8000},
                                                                       {"otadata", 0xE000},
                                                                       {"app.bin", 0x10000}}));
  EXPECT_EQ(writes[0].data, (Bytes{0xE9, 0, 0, 0x20, 0, 0, 0, 0})); // not at the ESP32's address
  EXPECT_EQ(
      writes[1].data,
      ESPImage::padded(
          ESPImage::patchHeader(bootloader, ESPChip::esp32, FlashMode::dout, FlashSize::keep), 4));
  EXPECT_EQ(writes[1].data[2], 3);
  EXPECT_EQ(writes[3].data, Bytes(0x2000, 0xFF));
  EXPECT_FALSE(writes[3].imageID);
  EXPECT_EQ(writes[4].data.size(), 1004u);
  EXPECT_EQ(Bytes(writes[4].data.end() - 3, writes[4].data.end()), Bytes(3, 0xFF));

  // On a chip whose bootloader sits at 0x0 the entry there is patched whatever its role.
  auto c3 = FlashPlan::writes(b.product, b.files, ESPChip::esp32c3);
  EXPECT_EQ(c3[0].data[2], 3);

  // A user's own OTA data file at 0xE000 means no erase; so does clearOTAData off.
  b.add(Role::otaData, 0xE000, Bytes(0x2000, 0), "boot_app0.bin");
  auto withOwn = FlashPlan::writes(b.product, b.files, ESPChip::esp32);
  EXPECT_EQ(
      std::count_if(withOwn.begin(), withOwn.end(), [](auto& w) { return w.name == "otadata"; }),
      0);
  b.product.images.pop_back();
  b.product.clearOTAData = false;
  EXPECT_EQ(FlashPlan::writes(b.product, b.files, ESPChip::esp32).size(), 4u);

  // Keep and keep: the bootloader goes out byte for byte.
  b.product.flashMode = FlashMode::keep;
  EXPECT_EQ(FlashPlan::writes(b.product, b.files, ESPChip::esp32)[1].data,
            ESPImage::padded(bootloader, 4));
}

TEST(FlashPlan, FlashSizeFollowsTheHighestWrite) {
  Product product;
  auto at = [](std::uint32_t offset, std::size_t size) {
    return FlashWrite{std::nullopt, "x", offset, Bytes(size)};
  };
  EXPECT_EQ(FlashPlan::flashSize({}, product), 0x400000u);
  EXPECT_EQ(FlashPlan::flashSize({at(0x3E0000, 0x10000)}, product), 0x400000u);
  EXPECT_EQ(FlashPlan::flashSize({at(0x400000, 1)}, product), 0x800000u);
  EXPECT_EQ(FlashPlan::flashSize({at(0xFFFFFFF0, 0x100)}, product), 0x8000000u);
  product.flashSize = FlashSize::mb2;
  EXPECT_EQ(FlashPlan::flashSize({at(0x400000, 1)}, product), 0x200000u);
}
