#include <gtest/gtest.h>

#include <random>

#include "FlashCore/AVR.hpp"

using namespace tarnwick;

TEST(AVRCatalogue, BoardsAndChips) {
  ASSERT_EQ(AVRChip::known().size(), 8u);
  EXPECT_EQ(AVRChip::named("ATmega2560").signature,
            (std::array<std::uint8_t, 3>{0x1E, 0x98, 0x01}));
  EXPECT_THROW(AVRChip::named("ATtiny85"), std::logic_error);
  EXPECT_EQ(chip(AVRBoard::leonardo).name, "ATmega32U4");
  EXPECT_EQ(protocol(AVRBoard::mega2560), AVRProtocol::stk500v2);
  EXPECT_EQ(baudRate(AVRBoard::nanoOldBootloader), 57600);
  for (AVRBoard board : AVRBoards::all) {
    // The sketch room is the chip's flash less the bootloader.
    std::int64_t bootloader = chip(board).flashSize - maxSketchSize(board);
    EXPECT_TRUE(bootloader == 512 || bootloader == 2048 || bootloader == 4096 || bootloader == 8192)
        << rawValue(board);
    EXPECT_EQ(avrBoardFromRawValue(rawValue(board)), board);
  }
  EXPECT_EQ(avrBoardFromRawValue("mega2560"), AVRBoard::mega2560);
  EXPECT_FALSE(avrBoardFromRawValue("Mega2560"));
  EXPECT_EQ(avrProtocolFromRawValue("avr109"), AVRProtocol::avr109);
  EXPECT_FALSE(avrProtocolFromRawValue("stk500"));
  EXPECT_EQ(displayName(AVRBoard::proMicro), "Pro Micro (ATmega32U4)");
}

TEST(AVRMessages, ByteExactBuilders) {
  EXPECT_EQ(STK500v1::loadAddress(0x1F80), (Bytes{0x55, 0xC0, 0x0F, 0x20}));
  EXPECT_EQ(STK500v1::readPage(128), (Bytes{0x74, 0x00, 0x80, 0x46, 0x20}));
  Bytes page(128, 0xAB);
  Bytes program = STK500v1::programPage(page);
  EXPECT_EQ(Bytes(program.begin(), program.begin() + 4), (Bytes{0x64, 0x00, 0x80, 0x46}));
  EXPECT_EQ(program.size(), 4u + 128u + 1u);
  EXPECT_EQ(program.back(), 0x20);
  EXPECT_EQ(STK500v1::getSync(), (Bytes{0x30, 0x20}));

  EXPECT_EQ(STK500v2::loadAddress(0x3E000, true), (Bytes{0x06, 0x80, 0x01, 0xF0, 0x00}));
  EXPECT_EQ(STK500v2::loadAddress(0x3E000, false), (Bytes{0x06, 0x00, 0x01, 0xF0, 0x00}));
  EXPECT_EQ(STK500v2::readSignature(2), (Bytes{0x1B, 0x04, 0x30, 0x00, 0x02, 0x00}));
  Bytes flash = STK500v2::programFlash(Bytes(256, 1));
  EXPECT_EQ(Bytes(flash.begin(), flash.begin() + 10),
            (Bytes{0x13, 0x01, 0x00, 0xC1, 0x0A, 0x40, 0x4C, 0x20, 0x00, 0x00}));
  EXPECT_EQ(STK500v2::readFlash(256), (Bytes{0x14, 0x01, 0x00, 0x20}));

  EXPECT_EQ(AVR109::setAddress(0x0100), (Bytes{0x41, 0x00, 0x80}));
  Bytes block = AVR109::writeBlock(Bytes(128, 0));
  EXPECT_EQ(Bytes(block.begin(), block.begin() + 4), (Bytes{0x42, 0x00, 0x80, 0x46}));
  EXPECT_EQ(AVR109::readBlock(128), (Bytes{0x67, 0x00, 0x80, 0x46}));
}

TEST(AVRMessages, STK500v2FramesParseOnlyWhenWhole) {
  Bytes frame = STK500v2::message(Bytes{0x01}, 1);
  EXPECT_EQ(frame, (Bytes{0x1B, 0x01, 0x00, 0x01, 0x0E, 0x01, 0x14}));
  EXPECT_EQ(STK500v2::parse(frame), (STK500v2::Frame{1, {0x01}, 7}));
  EXPECT_FALSE(STK500v2::parse(ByteView(frame).first(6)));
  Bytes damaged = frame;
  damaged.back() ^= 1;
  EXPECT_FALSE(STK500v2::parse(damaged));
  Bytes noisy{0x00, 0x7F};
  noisy.insert(noisy.end(), frame.begin(), frame.end());
  EXPECT_EQ(STK500v2::parse(noisy)->consumed, 9u);
  noisy[1] = 0x1B; // a stray start byte is the only one tried
  EXPECT_FALSE(STK500v2::parse(noisy));
  Bytes wrongToken = frame;
  wrongToken[4] = 0x0F;
  EXPECT_FALSE(STK500v2::parse(wrongToken));

  std::mt19937 random(5);
  for (int round = 0; round < 200; ++round) {
    Bytes body(random() % 400);
    for (auto& b : body)
      b = static_cast<std::uint8_t>(random());
    auto sequence = static_cast<std::uint8_t>(random());
    Bytes message = STK500v2::message(body, sequence);
    message.push_back(0x42); // the next frame's first byte is not consumed
    auto parsed = STK500v2::parse(message);
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->body, body);
    EXPECT_EQ(parsed->sequence, sequence);
    EXPECT_EQ(parsed->consumed, message.size() - 1);
  }
}
