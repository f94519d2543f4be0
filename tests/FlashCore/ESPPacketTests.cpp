#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "FlashCore/ESPPacket.hpp"

using namespace tarnwick;

TEST(SLIP, EncodingAndDecodingEdgeCases) {
  EXPECT_EQ(SLIP::encode({}), (Bytes{0xC0, 0xC0}));
  EXPECT_EQ(SLIP::encode(Bytes{0xC0, 0xDB, 0x01}),
            (Bytes{0xC0, 0xDB, 0xDC, 0xDB, 0xDD, 0x01, 0xC0}));

  SLIP::Decoder decoder;
  EXPECT_EQ(decoder.feed(Bytes{0x55, 0xC0, 0x01, 0x08, 0xC0}), (std::vector<Bytes>{{0x01, 0x08}}));
  // A frame split between the escape byte and its partner.
  EXPECT_TRUE(decoder.feed(Bytes{0xC0, 0x01, 0xDB}).empty());
  EXPECT_EQ(decoder.feed(Bytes{0xDC, 0x02, 0xC0}), (std::vector<Bytes>{{0x01, 0xC0, 0x02}}));
  EXPECT_EQ(decoder.feed(Bytes{0xC0, 0xC0, 0x01, 0xC0}), (std::vector<Bytes>{{0x01}}));
  EXPECT_TRUE(decoder.feed(Bytes{0xC0, 0xC0}).empty());
  EXPECT_TRUE(decoder.inPacket);
  EXPECT_EQ(decoder.feed(Bytes{0xDB, 0x41, 0xC0}), (std::vector<Bytes>{{0x41}}));
  decoder.feed(Bytes{0xC0, 0x01, 0xDB});
  decoder.reset();
  EXPECT_EQ(decoder, SLIP::Decoder{});

  // The size cap: 16384 bytes pass, one more discards the frame up to the next delimiter.
  Bytes limit(SLIP::maximumFrameSize, 0x11);
  Bytes framed = SLIP::encode(limit);
  EXPECT_EQ(decoder.feed(framed), std::vector<Bytes>{limit});
  Bytes over(SLIP::maximumFrameSize + 1, 0x11);
  Bytes stream = SLIP::encode(over);
  stream.pop_back();
  stream.insert(stream.end(), {0x22, 0x33, 0xC0, 0x07, 0xC0});
  EXPECT_EQ(decoder.feed(stream), (std::vector<Bytes>{{0x07}}));
  // Escaped bytes skip the cap, so a full frame still takes one; the next plain byte drops it.
  Bytes full = limit;
  full.insert(full.end(), {0xDB, 0xDC});
  Bytes withEscape = limit;
  withEscape.push_back(0xC0);
  Bytes fullFrame{0xC0};
  fullFrame.insert(fullFrame.end(), full.begin(), full.end());
  fullFrame.push_back(0xC0);
  EXPECT_EQ(decoder.feed(fullFrame), std::vector<Bytes>{withEscape});
  fullFrame.insert(fullFrame.end() - 1, 0x01);
  EXPECT_TRUE(decoder.feed(fullFrame).empty());
  EXPECT_EQ(decoder.feed(Bytes{0x07, 0xC0}), (std::vector<Bytes>{{0x07}}));
}

TEST(SLIP, RandomStreamsWithNoiseDecodeBackExactly) {
  std::mt19937 random(99);
  for (int round = 0; round < 200; ++round) {
    std::vector<Bytes> frames;
    Bytes line;
    bool afterOverLong = false;
    for (int f = 0; f < 8; ++f) {
      // Noise between frames never contains a delimiter, as boot text does not. An over-long
      // frame's closing delimiter opens a frame, so noise right after one would be a frame.
      for (int n = afterOverLong ? 0 : static_cast<int>(random() % 20); n > 0; --n) {
        std::uint8_t noise = static_cast<std::uint8_t>(random());
        if (noise != 0xC0) line.push_back(noise);
      }
      // Now and then a frame too long to keep: it must vanish without taking its neighbours.
      bool overLong = random() % 10 == 0;
      Bytes frame(overLong ? SLIP::maximumFrameSize + 1 + random() % 2000 : 1 + random() % 300);
      for (auto& b : frame)
        b = static_cast<std::uint8_t>(
            overLong ? 0x20 + random() % 0x60
                     : (random() % 4 == 0 ? 0xC0 + random() % 0x1C : random()));
      if (!overLong) frames.push_back(frame);
      afterOverLong = overLong;
      Bytes encoded = SLIP::encode(frame);
      line.insert(line.end(), encoded.begin(), encoded.end());
    }
    SLIP::Decoder decoder;
    std::vector<Bytes> decoded;
    std::size_t at = 0;
    while (at < line.size()) {
      std::size_t piece = std::min<std::size_t>(line.size() - at, 1 + random() % 64);
      for (auto& frame : decoder.feed(ByteView(line).subspan(at, piece)))
        decoded.push_back(frame);
      at += piece;
    }
    ASSERT_EQ(decoded, frames) << round;
  }
}

TEST(ESPPacket, RequestsAreByteExact) {
  EXPECT_EQ(ESPPacket::checksum(Bytes{1, 2, 3}), 0xEF);
  EXPECT_EQ(ESPPacket::checksum({}), 0xEF);
  Bytes sync = ESPPacket::sync();
  ASSERT_EQ(sync.size(), 44u);
  EXPECT_EQ(Bytes(sync.begin(), sync.begin() + 12),
            (Bytes{0x00, 0x08, 0x24, 0x00, 0, 0, 0, 0, 0x07, 0x07, 0x12, 0x20}));
  EXPECT_EQ(sync.back(), 0x55);

  Bytes block(1024);
  for (std::size_t i = 0; i < block.size(); ++i)
    block[i] = static_cast<std::uint8_t>(i);
  Bytes data = ESPPacket::dataPacket(ESPCommand::flashDeflateData, block, 5);
  EXPECT_EQ(Bytes(data.begin(), data.begin() + 24),
            (Bytes{0x00, 0x11, 0x10, 0x04, ESPPacket::checksum(block),
                   0,    0,    0,    0x00, 0x04,
                   0,    0,    5,    0,    0,
                   0,    0,    0,    0,    0,
                   0,    0,    0,    0}));
  EXPECT_EQ(data.size(), 8u + 1040u);

  EXPECT_EQ(
      ESPPacket::beginPacket(ESPCommand::flashDeflateBegin, 1, 2, 0x400, 0x1000, false).size(),
      8u + 16u);
  Bytes begin = ESPPacket::beginPacket(ESPCommand::flashBegin, 0x1000, 3, 0x400, 0x10000, true);
  EXPECT_EQ(begin, (Bytes{0x00, 0x02, 20,   0,    0, 0, 0,    0,    0x00, 0x10, 0, 0, 3, 0,
                          0,    0,    0x00, 0x04, 0, 0, 0x00, 0x00, 0x01, 0x00, 0, 0, 0, 0}));
  EXPECT_EQ(ESPPacket::readRegister(0x40001000),
            (Bytes{0x00, 0x0A, 4, 0, 0, 0, 0, 0, 0x00, 0x10, 0x00, 0x40}));
  EXPECT_EQ(ESPPacket::changeBaudRate(460800),
            (Bytes{0x00, 0x0F, 8, 0, 0, 0, 0, 0, 0x00, 0x08, 0x07, 0x00, 0, 0, 0, 0}));
  Bytes parameters = ESPPacket::spiSetParameters(0x400000);
  EXPECT_EQ(parameters.size(), 8u + 24u);
  EXPECT_EQ(readLE32(ByteView(parameters).subspan(12, 4)), 0x400000u);
  EXPECT_EQ(readLE32(ByteView(parameters).subspan(28, 4)), 0xFFFFu);
  EXPECT_EQ(ESPPacket::spiAttach(), (Bytes{0x00, 0x0D, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(ESPPacket::getSecurityInfo(), (Bytes{0x00, 0x14, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(ESPPacket::spiFlashMD5(0x10000, 0x2000).size(), 8u + 16u);
  EXPECT_THROW(ESPPacket::request(ESPCommand::sync, Bytes(65536)), std::length_error);

  const std::uint8_t opcodes[] = {0x02, 0x03, 0x04, 0x08, 0x09, 0x0A, 0x0B,
                                  0x0D, 0x0F, 0x10, 0x11, 0x12, 0x13, 0x14};
  int known = 0;
  for (int raw = 0; raw < 256; ++raw) {
    auto command = espCommandFromOpcode(static_cast<std::uint8_t>(raw));
    bool listed = std::find(std::begin(opcodes), std::end(opcodes), raw) != std::end(opcodes);
    ASSERT_EQ(command.has_value(), listed) << raw;
    if (command) {
      EXPECT_EQ(opcode(*command), raw);
    }
    known += listed;
  }
  EXPECT_EQ(known, 14);
  EXPECT_EQ(espCommandFromOpcode(0x13), ESPCommand::spiFlashMD5);
  EXPECT_EQ(readLE32(Bytes{0x01, 0x02}), 0x0201u);
  EXPECT_EQ(readLE32(Bytes{0x01, 0x02, 0x03, 0x04, 0x05}), 0x04030201u);
}

TEST(ESPPacket, ResponsesAndStatus) {
  EXPECT_FALSE(ESPPacket::Response::parse(Bytes{0x01, 0x0A, 0, 0, 0, 0, 0}));
  EXPECT_FALSE(ESPPacket::Response::parse(Bytes{0x00, 0x0A, 0, 0, 0, 0, 0, 0}));
  auto response =
      ESPPacket::Response::parse(Bytes{0x01, 0x0A, 0x04, 0x00, 0x83, 0x1D, 0xF0, 0x00, 0, 0, 0, 0});
  ASSERT_TRUE(response);
  EXPECT_EQ(*response, (ESPPacket::Response{0x0A, 0x00F01D83, {0, 0, 0, 0}}));
  EXPECT_EQ(response->status(4), std::make_pair(false, std::uint8_t{0}));
  EXPECT_TRUE(response->body(4).empty());

  auto truncated = ESPPacket::Response::parse(Bytes{0x01, 0x13, 0x40, 0x00, 0, 0, 0, 0, 1, 2, 3});
  EXPECT_EQ(truncated->data, (Bytes{1, 2, 3}));
  ESPPacket::Response failed{0x03, 0, {0x01, 0x05}};
  EXPECT_EQ(failed.status(2), std::make_pair(true, std::uint8_t{0x05}));
  ESPPacket::Response tiny{0x03, 0, {0x00}};
  EXPECT_EQ(tiny.status(2), std::make_pair(true, std::uint8_t{0}));
  ESPPacket::Response md5{0x13, 0, {9, 8, 7, 0, 0, 0, 0}};
  EXPECT_EQ(md5.body(4), (Bytes{9, 8, 7}));
}
