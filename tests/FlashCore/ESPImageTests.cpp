#include <gtest/gtest.h>

#include <random>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ESPImage.hpp"

using namespace tarnwick;

namespace {

// An extended-header image with the given segment lengths, checksum padding and an appended
// SHA-256 when `hashed`.
Bytes makeImage(std::vector<std::uint32_t> segments, bool hashed, std::uint8_t sizeByte = 0x2F) {
  Bytes image(24, 0);
  image[0] = 0xE9;
  image[1] = static_cast<std::uint8_t>(segments.size());
  image[2] = 0x00;
  image[3] = sizeByte;
  image[12] = 0x09; // ESP32-S3
  image[23] = hashed ? 1 : 0;
  std::uint8_t fill = 1;
  for (std::uint32_t length : segments) {
    for (int i = 0; i < 4; ++i)
      image.push_back(0x40);
    for (int i = 0; i < 4; ++i)
      image.push_back(static_cast<std::uint8_t>(length >> (8 * i)));
    image.insert(image.end(), length, fill++);
  }
  std::size_t padded = image.size() - image.size() % 16 + 16;
  image.resize(padded, 0);
  image.back() = 0xAB; // checksum byte
  if (hashed) {
    Bytes digest = Digest::sha256(image);
    image.insert(image.end(), digest.begin(), digest.end());
  }
  return image;
}

Bytes partitionEntry(const char* label, std::uint8_t type, std::uint8_t subtype,
                     std::uint32_t offset, std::uint32_t size) {
  Bytes entry(32, 0);
  entry[0] = 0xAA;
  entry[1] = 0x50;
  entry[2] = type;
  entry[3] = subtype;
  for (int i = 0; i < 4; ++i) {
    entry[4 + i] = static_cast<std::uint8_t>(offset >> (8 * i));
    entry[8 + i] = static_cast<std::uint8_t>(size >> (8 * i));
  }
  for (std::size_t i = 0; label[i] && i < 16; ++i)
    entry[12 + i] = static_cast<std::uint8_t>(label[i]);
  return entry;
}

} // namespace

TEST(ESPImage, HeaderFieldsAndLength) {
  Bytes seven{0xE9, 1, 2, 3, 4, 5, 6};
  EXPECT_FALSE(ESPImage::readHeader(seven, true));
  seven.push_back(7);
  auto shortHeader = ESPImage::readHeader(seven, true);
  ASSERT_TRUE(shortHeader);
  EXPECT_FALSE(shortHeader->chipID);
  EXPECT_FALSE(shortHeader->hashAppended);
  seven[0] = 0xEA;
  EXPECT_FALSE(ESPImage::readHeader(seven, true));

  Bytes image = makeImage({0x10, 0x20}, true);
  auto header = ESPImage::readHeader(image, true);
  ASSERT_TRUE(header);
  EXPECT_EQ(*header, (ESPImageHeader{2, 0x00, 0x2F, 0x0009, true}));
  EXPECT_FALSE(ESPImage::readHeader(image, false)->chipID);
  image[23] = 2;
  EXPECT_FALSE(ESPImage::readHeader(image, true)->hashAppended);
  // 24 + 8 + 0x10 + 8 + 0x20 = 0x58 -> 0x60.
  EXPECT_EQ(ESPImage::imageLength(image, 2), 0x60u);
  EXPECT_FALSE(ESPImage::imageLength(ByteView(image).first(0x5F), 2));
  EXPECT_FALSE(ESPImage::imageLength(image, 200));
  // Segment data ending on a 16-byte boundary still gets a whole block for the checksum.
  EXPECT_EQ(ESPImage::imageLength(makeImage({0x10}, false), 1), 0x40u);
  EXPECT_EQ(ESPImage::padded({1, 2, 3, 4, 5}, 4), (Bytes{1, 2, 3, 4, 5, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(ESPImage::padded({1, 2, 3, 4}, 4), (Bytes{1, 2, 3, 4}));
}

TEST(ESPImage, PatchingRepairsTheAppendedDigestAndTouchesNothingElse) {
  Bytes image = makeImage({0x10}, true); // image length 0x40... segment ends at p = 0x30
  Bytes patched = ESPImage::patchHeader(image, ESPChip::esp32s3, FlashMode::dio, FlashSize::mb4);
  EXPECT_EQ(patched[2], 0x02);
  EXPECT_EQ(patched[3], 0x2F);
  std::size_t length = *ESPImage::imageLength(patched, 1);
  EXPECT_EQ(Bytes(patched.begin() + static_cast<long>(length), patched.end()),
            Digest::sha256(ByteView(patched).first(length)));
  for (std::size_t i = 0; i < length; ++i) {
    if (i != 2 && i != 3) {
      EXPECT_EQ(patched[i], image[i]) << i;
    }
  }

  Bytes sized = ESPImage::patchHeader(image, ESPChip::esp32, FlashMode::keep, FlashSize::mb16);
  EXPECT_EQ(sized[3], 0x4F);
  EXPECT_EQ(ESPImage::patchHeader(image, ESPChip::esp32, FlashMode::keep, FlashSize::keep), image);
  // Values already in place: the buffer stays identical, digest included.
  EXPECT_EQ(ESPImage::patchHeader(image, ESPChip::esp32, FlashMode::qio, FlashSize::mb4), image);

  // The ESP8266 has its own size codes and no appended digest.
  Bytes old = image;
  Bytes esp8266 = ESPImage::patchHeader(old, ESPChip::esp8266, FlashMode::dio, FlashSize::mb4);
  EXPECT_EQ(esp8266[2], 0x02);
  EXPECT_EQ(esp8266[3], 0x4F);
  EXPECT_TRUE(std::equal(esp8266.begin() + 4, esp8266.end(), old.begin() + 4));

  // Without room for the whole digest only the header changes.
  Bytes cut(image.begin(), image.end() - 1);
  Bytes cutPatched = ESPImage::patchHeader(cut, ESPChip::esp32, FlashMode::dout, FlashSize::keep);
  EXPECT_EQ(cutPatched[2], 0x03);
  EXPECT_TRUE(std::equal(cutPatched.begin() + 3, cutPatched.end(), cut.begin() + 3));
  EXPECT_EQ(ESPImage::patchHeader({0x00, 1, 2, 3, 4, 5, 6, 7}, ESPChip::esp32, FlashMode::dio,
                                  FlashSize::mb4),
            (Bytes{0x00, 1, 2, 3, 4, 5, 6, 7}));
}

TEST(Partition, TablesKindsAndChoices) {
  Bytes table;
  for (const Bytes& entry : {partitionEntry("nvs", 1, 0x02, 0x9000, 0x5000),
                             partitionEntry("otadata", 1, 0x00, 0xE000, 0x2000),
                             partitionEntry("ota_0", 0, 0x10, 0x10000, 0x200000),
                             partitionEntry("factory", 0, 0x00, 0x210000, 0x100000),
                             partitionEntry("0123456789abcdef", 1, 0x83, 0x310000, 0xF0000)}) {
    table.insert(table.end(), entry.begin(), entry.end());
  }
  Bytes md5(32, 0xEB);
  table.insert(table.end(), md5.begin(), md5.end());
  table.insert(table.end(), 64, 0xFF);
  auto parsed = Partition::parseTable(table);
  ASSERT_TRUE(parsed);
  ASSERT_EQ(parsed->size(), 5u);
  EXPECT_EQ((*parsed)[4].label, "0123456789abcdef");
  EXPECT_EQ(Partition::appPartition(*parsed)->label, "factory");
  EXPECT_EQ(Partition::fileSystemPartition(*parsed)->label, "0123456789abcdef");
  EXPECT_EQ((*parsed)[2].kind(), Partition::Kind(Partition::OTAApp{0}));
  EXPECT_EQ((Partition{"x", 0, 0x15, 0, 0}).kind(), Partition::Kind(Partition::OTAApp{5}));
  EXPECT_EQ((Partition{"x", 1, 0x04, 0, 0}).kind(), Partition::Kind(Partition::Other{1, 4}));
  EXPECT_EQ((Partition{"x", 0x40, 0, 0, 0}).kind(), Partition::Kind(Partition::Other{0x40, 0}));
  EXPECT_EQ((Partition{"x", 1, 0x82, 0, 0}).kind(), Partition::Kind(Partition::SPIFFS{}));

  std::vector<Partition> noFactory = {(*parsed)[0], (*parsed)[2]};
  EXPECT_EQ(Partition::appPartition(noFactory)->label, "ota_0");
  EXPECT_FALSE(Partition::appPartition({(*parsed)[0]}));
  EXPECT_FALSE(Partition::fileSystemPartition(noFactory));

  EXPECT_FALSE(Partition::parseTable(Bytes(64, 0xFF)));
  EXPECT_FALSE(Partition::parseTable(Bytes(31, 0xAA)));
  // Labels with broken UTF-8 come out valid.
  Bytes broken = partitionEntry("ab", 0, 0, 0, 0);
  broken[14] = 0xC3;
  broken[15] = 0x28;
  EXPECT_EQ(Partition::parseTable(broken)->front().label, "ab\xEF\xBF\xBD(");
}

TEST(ESPImage, RandomAndTruncatedInputNeverReadsOutOfBounds) {
  std::mt19937 random(1234);
  Bytes valid = makeImage({0x30, 0x100, 0x7}, true);
  for (int round = 0; round < 3000; ++round) {
    Bytes bytes;
    switch (round % 3) {
    case 0:
      bytes.resize(random() % 200);
      for (auto& b : bytes)
        b = static_cast<std::uint8_t>(random());
      break;
    case 1:
      bytes.assign(valid.begin(), valid.begin() + static_cast<long>(random() % valid.size()));
      break;
    default:
      bytes = valid;
      for (int k = 0; k < 4; ++k)
        bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
    }
    if (!bytes.empty()) bytes[0] = round % 2 ? 0xE9 : bytes[0];
    auto header = ESPImage::readHeader(bytes, true);
    if (header) (void)ESPImage::imageLength(bytes, header->segmentCount);
    Bytes patched = ESPImage::patchHeader(bytes, ESPChip::esp32c3, FlashMode::dio, FlashSize::mb8);
    EXPECT_EQ(patched.size(), bytes.size());
    if (bytes.size() > 1) {
      bytes[0] = 0xAA;
      bytes[1] = 0x50;
    }
    if (auto table = Partition::parseTable(bytes)) {
      EXPECT_LE(table->size() * 32, bytes.size());
    }
  }
}

TEST(Digest, KnownAnswers) {
  Bytes abc{'a', 'b', 'c'};
  EXPECT_EQ(Digest::sha256Hex(abc),
            "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(Digest::md5Hex(abc), "900150983cd24fb0d6963f7d28e17f72");
  EXPECT_EQ(Digest::md5Hex({}), "d41d8cd98f00b204e9800998ecf8427e");
}
