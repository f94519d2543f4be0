#include <gtest/gtest.h>

#include "Localization/Language.hpp"
#include "Localization/RunTexts.hpp"

using namespace tarnwick;

TEST(RunTexts, NumbersFollowTheInterfaceLanguage) {
  {
    LanguageOverride english(Language::en);
    EXPECT_EQ(formatSeconds(3.44), "3.4 s");
    EXPECT_EQ(formatSeconds(0), "0.0 s");
    EXPECT_EQ(formatByteCount(0), "0 bytes");
    EXPECT_EQ(formatByteCount(1), "1 byte");
    EXPECT_EQ(formatByteCount(1023), "1023 bytes");
    EXPECT_EQ(formatByteCount(30 * 1024), "30 KB");
    EXPECT_EQ(formatByteCount(30700), "30 KB");
    EXPECT_EQ(formatByteCount(1024 * 1024), "1 MB");
    EXPECT_EQ(formatByteCount(1468006), "1.4 MB");
    // Just under a megabyte must not read "1024 KB".
    EXPECT_EQ(formatByteCount(1024 * 1024 - 10), "1 MB");
  }
  {
    LanguageOverride german(Language::de);
    EXPECT_EQ(formatSeconds(3.44), "3,4 s");
    EXPECT_EQ(formatByteCount(1468006), "1,4 MB");
  }
  LanguageOverride french(Language::fr);
  EXPECT_EQ(formatByteCount(30 * 1024), "30 Ko");
  EXPECT_EQ(formatAddress(0x10000), "0x10000");
  EXPECT_EQ(formatAddress(0), "0x0");
  EXPECT_EQ(formatAddress(0xABCDEF), "0xABCDEF");
}

TEST(RunTexts, EnglishWordingsAndEveryLanguageFilled) {
  {
    LanguageOverride english(Language::en);
    EXPECT_EQ(L10n::Stage::connectingAttempt(3), "Connecting to the bootloader… (attempt 3)");
    EXPECT_EQ(L10n::Stage::writing("app.bin"), "Writing app.bin…");
    EXPECT_EQ(L10n::Log::flashingOn("Sensor", "ttyUSB0"), "Flashing Sensor on ttyUSB0");
    EXPECT_EQ(L10n::Log::chipAndMAC("ESP32", "24:0A:C4:12:34:56"),
              "Chip: ESP32 · MAC 24:0A:C4:12:34:56");
    EXPECT_EQ(L10n::Log::writeTo("app.bin", "0x10000", "1 MB"), "app.bin to 0x10000 (1 MB)");
    EXPECT_EQ(L10n::Log::writtenIn("app.bin", "2.0 s"), "app.bin written in 2.0 s");
    EXPECT_EQ(L10n::Log::speed(460800), "Speed 460800 baud");
    EXPECT_EQ(L10n::Log::filesFrom(4, "esp32dev"), "4 file(s) from esp32dev");
    EXPECT_EQ(L10n::Log::stopped(), "Stopped.");
  }
  for (Language language : allLanguages) {
    LanguageOverride guard(language);
    for (const std::string& text :
         {L10n::State::flash(), L10n::State::ready(), L10n::State::flashing(),
          L10n::State::lastFlashSucceeded(), L10n::State::lastFlashFailed(),
          L10n::Stage::connecting(), L10n::Stage::holdBoot(), L10n::Stage::restarting(),
          L10n::Stage::done(), L10n::Stage::failed(), L10n::Stage::stopped(), L10n::Log::holdBoot(),
          L10n::Log::log(), L10n::Log::stopped()}) {
      EXPECT_FALSE(text.empty()) << code(language);
    }
    // Inserted values must survive every language's sentence.
    EXPECT_NE(L10n::Stage::verifying("boot.bin").find("boot.bin"), std::string::npos);
    EXPECT_NE(L10n::Log::newBoardOn("ttyACM0").find("ttyACM0"), std::string::npos);
    EXPECT_NE(L10n::Log::openedProduct("Lamp").find("Lamp"), std::string::npos);
    EXPECT_NE(L10n::Log::partitionsApplicationIn(5, "factory").find("factory"), std::string::npos);
    EXPECT_NE(L10n::Log::doneIn("1,2 s").find("1,2 s"), std::string::npos);
  }
  LanguageOverride dutch(Language::nl);
  EXPECT_EQ(L10n::Stage::done(), "Klaar");
  EXPECT_EQ(L10n::Log::stopped(), "Gestopt.");
}
