#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

#include "Localization/Language.hpp"
#include "Localization/RunTexts.hpp"

using namespace tarnwick;

TEST(RunTexts, NumbersFollowTheNumericLocaleNotTheInterfaceLanguage) {
  {
    LanguageOverride english(Language::en);
    NumericLocaleOverride c("C");
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
    {
      // An English interface in a German locale writes a decimal comma...
      NumericLocaleOverride germany("de_DE.UTF-8");
      EXPECT_EQ(formatSeconds(3.44), "3,4 s");
      EXPECT_EQ(formatByteCount(1468006), "1,4 MB");
    }
  }
  {
    // ...and a German interface in an American locale a point.
    LanguageOverride german(Language::de);
    NumericLocaleOverride america("en_US.UTF-8");
    EXPECT_EQ(formatSeconds(3.44), "3.4 s");
  }
  LanguageOverride french(Language::fr);
  NumericLocaleOverride france("fr_FR.UTF-8");
  EXPECT_EQ(formatByteCount(30 * 1024), "30 Ko");
  EXPECT_EQ(formatByteCount(1468006), "1,4 Mo");
  EXPECT_EQ(formatAddress(0x10000), "0x10000");
  EXPECT_EQ(formatAddress(0), "0x0");
  EXPECT_EQ(formatAddress(0xABCDEF), "0xABCDEF");
}

TEST(RunTexts, DecimalSeparatorOfALocale) {
  const std::pair<const char*, char> cases[] = {
      {"C", '.'},           {"POSIX", '.'},       {"C.UTF-8", '.'},     {"", '.'},
      {"en_US.UTF-8", '.'}, {"en_GB", '.'},       {"ja_JP.UTF-8", '.'}, {"de_DE.UTF-8", ','},
      {"de_AT", ','},       {"de_CH.UTF-8", '.'}, {"nl_NL.UTF-8", ','}, {"nl_BE@euro", ','},
      {"fr_FR.UTF-8", ','}, {"fr_CA.UTF-8", ','}, {"es_ES.UTF-8", ','}, {"es_MX.UTF-8", '.'},
      {"es_AR.UTF-8", ','}, {"it_CH.UTF-8", '.'}, {"pt_BR.UTF-8", ','}, {"ru_RU.UTF-8", ','},
      {"de", ','},          {"xx_YY.UTF-8", '.'},
  };
  for (auto [name, separator] : cases)
    EXPECT_EQ(decimalSeparatorOf(name), separator) << name;
}

TEST(RunTexts, NumericLocaleIsTakenInPosixOrder) {
  struct Case {
    const char *all, *numeric, *lang, *expected;
  };
  const Case cases[] = {
      {"de_DE.UTF-8", "en_US.UTF-8", "fr_FR.UTF-8", "de_DE.UTF-8"},
      {"", "nl_NL.UTF-8", "en_US.UTF-8", "nl_NL.UTF-8"},
      {nullptr, nullptr, "es_ES.UTF-8", "es_ES.UTF-8"},
      {nullptr, "", "", "C"},
  };
  const char* names[] = {"LC_ALL", "LC_NUMERIC", "LANG"};
  std::optional<std::string> saved[3];
  for (int i = 0; i < 3; ++i) {
    if (const char* value = std::getenv(names[i])) saved[i] = value;
  }
  for (const Case& c : cases) {
    const char* values[] = {c.all, c.numeric, c.lang};
    for (int i = 0; i < 3; ++i) {
      if (values[i])
        ::setenv(names[i], values[i], 1);
      else
        ::unsetenv(names[i]);
    }
    EXPECT_EQ(numericLocale(), c.expected);
  }
  for (int i = 0; i < 3; ++i) {
    if (saved[i])
      ::setenv(names[i], saved[i]->c_str(), 1);
    else
      ::unsetenv(names[i]);
  }
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
    EXPECT_EQ(L10n::Log::filesFrom(4, "esp32dev"), "4 files from esp32dev");
    EXPECT_EQ(L10n::Log::filesFrom(1, "esp32dev"), "1 file from esp32dev");
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
