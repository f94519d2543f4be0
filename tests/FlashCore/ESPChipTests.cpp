#include <gtest/gtest.h>

#include "FlashCore/ESPChip.hpp"
#include "FlashCore/FlashSettings.hpp"

using namespace tarnwick;

TEST(ESPChip, LookupsFollowTheChipTable) {
  EXPECT_EQ(espChipFromDetectionValue(0x1B31506F), ESPChip::esp32c3);
  EXPECT_EQ(espChipFromDetectionValue(0x4361606F), ESPChip::esp32c3);
  EXPECT_EQ(espChipFromDetectionValue(0x00F01D83), ESPChip::esp32);
  EXPECT_EQ(espChipFromDetectionValue(0xFFF0C101), ESPChip::esp8266);
  EXPECT_FALSE(espChipFromDetectionValue(0x12345678));
  // Id 0 is the ESP32's; the ESP8266 has no image chip id at all.
  EXPECT_EQ(espChipFromImageChipID(0), ESPChip::esp32);
  EXPECT_EQ(espChipFromImageChipID(13), ESPChip::esp32c6);
  EXPECT_FALSE(espChipFromImageChipID(1));
  EXPECT_EQ(espChipFromSecurityInfoChipID(9), ESPChip::esp32s3);
  EXPECT_FALSE(espChipFromSecurityInfoChipID(0));
  for (ESPChip chip : ESPChips::all) {
    EXPECT_EQ(espChipFromRawValue(rawValue(chip)), chip);
    EXPECT_EQ(statusByteCount(chip), chip == ESPChip::esp8266 ? 2u : 4u);
    EXPECT_EQ(macRegisters(chip).has_value(), chip != ESPChip::esp8266);
    if (auto id = securityInfoChipID(chip)) {
      EXPECT_EQ(espChipFromSecurityInfoChipID(*id), chip);
    }
  }
  EXPECT_EQ(displayName(ESPChip::esp32s3), "ESP32-S3");
  EXPECT_EQ(bootloaderOffset(ESPChip::esp32s2), 0x1000u);
  EXPECT_FALSE(espChipFromRawValue("ESP32"));
}

TEST(FlashSettings, StringsAndHeaderCodes) {
  for (ResetMode m : allResetModes)
    EXPECT_EQ(resetModeFromRawValue(rawValue(m)), m);
  for (FlashMode m : allFlashModes)
    EXPECT_EQ(flashModeFromRawValue(rawValue(m)), m);
  for (FlashSize s : allFlashSizes)
    EXPECT_EQ(flashSizeFromRawValue(rawValue(s)), s);
  EXPECT_EQ(rawValue(ResetMode::auto_), "auto");
  EXPECT_FALSE(flashSizeFromRawValue("4mb"));
  EXPECT_FALSE(flashModeFromRawValue("QIO"));
  EXPECT_EQ(headerValue(FlashMode::dout), 3);
  EXPECT_FALSE(headerValue(FlashMode::keep));
  EXPECT_EQ(sizeCode(FlashSize::mb16, ESPChip::esp8266), 9);
  EXPECT_EQ(sizeCode(FlashSize::mb16, ESPChip::esp32c3), 4);
  EXPECT_EQ(sizeCode(FlashSize::mb1, ESPChip::esp8266), 2);
  EXPECT_EQ(byteCount(FlashSize::mb4), 0x400000u);
  EXPECT_FALSE(sizeCode(FlashSize::keep, ESPChip::esp32));
}
