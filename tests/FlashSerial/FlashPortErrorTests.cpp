#include <gtest/gtest.h>

#include <cerrno>
#include <vector>

#include "FlashSerial/FlashPortError.hpp"
#include "Localization/Language.hpp"

using namespace tarnwick;

namespace {

std::vector<FlashPortError> everyCase() {
  return {FlashPortError::invalidPath("/dev/pts/4"),
          FlashPortError::openFailed("/dev/ttyUSB0", ENOENT),
          FlashPortError::busy("/dev/ttyUSB0"),
          FlashPortError::configurationFailed(EINVAL),
          FlashPortError::unsupportedBaudRate(250000),
          FlashPortError::writeFailed(ETIMEDOUT),
          FlashPortError::notOpen(),
          FlashPortError::disconnected(),
          FlashPortError::hostNotFound("rack3.lab"),
          FlashPortError::connectionRefused("rack3.lab:2000"),
          FlashPortError::noAnswer("rack3.lab:2000"),
          FlashPortError::notRFC2217("rack3.lab:2000"),
          FlashPortError::noBoard("rack3.lab:2000"),
          FlashPortError::portInUse("rack3.lab:2000")};
}

} // namespace

TEST(FlashPortError, CasesCompareByCaseAndPayload) {
  const auto cases = everyCase();
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(static_cast<std::size_t>(cases[i].kind()), i);
    for (std::size_t j = 0; j < cases.size(); ++j)
      EXPECT_EQ(cases[i] == cases[j], i == j);
  }
  EXPECT_EQ(FlashPortError::busy("/dev/ttyACM0"), FlashPortError::busy("/dev/ttyACM0"));
  EXPECT_NE(FlashPortError::busy("/dev/ttyACM0"), FlashPortError::busy("/dev/ttyACM1"));
  EXPECT_NE(FlashPortError::openFailed("/dev/ttyS0", EACCES),
            FlashPortError::openFailed("/dev/ttyS0", ENOENT));
  EXPECT_NE(FlashPortError::openFailed("/dev/ttyS0", EACCES),
            FlashPortError::openFailed("/dev/ttyS1", EACCES));
  EXPECT_NE(FlashPortError::unsupportedBaudRate(1), FlashPortError::unsupportedBaudRate(2));
  // Same payload, different case.
  EXPECT_NE(FlashPortError::busy("/dev/ttyS0"), FlashPortError::invalidPath("/dev/ttyS0"));
  EXPECT_NE(FlashPortError::writeFailed(EIO), FlashPortError::configurationFailed(EIO));
}

TEST(FlashPortError, EnglishAndDutchWordings) {
  const std::string noSuchFile = systemErrorText(ENOENT);
  const std::string timedOut = systemErrorText(ETIMEDOUT);
  EXPECT_EQ(noSuchFile, "No such file or directory");
  EXPECT_EQ(timedOut, "Connection timed out");
  {
    LanguageOverride english(Language::en);
    EXPECT_EQ(FlashPortError::invalidPath("/dev/pts/4").message(),
              "'/dev/pts/4' is not a valid serial port.");
    EXPECT_EQ(FlashPortError::openFailed("/dev/ttyUSB0", ENOENT).message(),
              "Cannot open /dev/ttyUSB0: No such file or directory.");
    EXPECT_EQ(FlashPortError::busy("/dev/ttyUSB0").message(),
              "/dev/ttyUSB0 is already in use by another program. Close that program and try "
              "again.");
    EXPECT_EQ(FlashPortError::configurationFailed(EINVAL).message(),
              "Configuring the serial port failed: " + systemErrorText(EINVAL) + ".");
    EXPECT_EQ(FlashPortError::unsupportedBaudRate(250000).message(),
              "Baud rate 250000 is not supported by this adapter.");
    EXPECT_EQ(FlashPortError::writeFailed(ETIMEDOUT).message(),
              "Sending failed: Connection timed out.");
    EXPECT_EQ(FlashPortError::notOpen().message(), "The serial port is not open.");
    EXPECT_EQ(FlashPortError::disconnected().message(), "The adapter was disconnected.");
    EXPECT_EQ(FlashPortError::disconnected("pi:2000").message(),
              "The connection to pi:2000 was lost.");
    EXPECT_EQ(FlashPortError::portInUse("pi:2000").message(),
              "pi:2000 is already in use by another client. Close that connection and try "
              "again.");
  }
  LanguageOverride dutch(Language::nl);
  EXPECT_EQ(FlashPortError::invalidPath("/dev/pts/4").message(),
            "'/dev/pts/4' is geen geldige seriële poort.");
  EXPECT_EQ(FlashPortError::openFailed("/dev/ttyUSB0", ENOENT).message(),
            "Kan /dev/ttyUSB0 niet openen: " + noSuchFile + ".");
  EXPECT_EQ(FlashPortError::busy("/dev/ttyUSB0").message(),
            "/dev/ttyUSB0 is al in gebruik door een ander programma. Sluit dat programma en "
            "probeer opnieuw.");
  EXPECT_EQ(FlashPortError::configurationFailed(EINVAL).message(),
            "Instellen van de seriële poort mislukt: " + systemErrorText(EINVAL) + ".");
  EXPECT_EQ(FlashPortError::unsupportedBaudRate(250000).message(),
            "Baudrate 250000 wordt niet ondersteund door deze adapter.");
  EXPECT_EQ(FlashPortError::writeFailed(ETIMEDOUT).message(),
            "Verzenden mislukt: " + timedOut + ".");
  EXPECT_EQ(FlashPortError::notOpen().message(), "De seriële poort is niet geopend.");
  EXPECT_EQ(FlashPortError::disconnected().message(), "De adapter is losgekoppeld.");
}

TEST(FlashPortError, EveryMessageInEveryLanguage) {
  std::vector<std::string> english;
  {
    LanguageOverride guard(Language::en);
    for (const auto& error : everyCase())
      english.push_back(error.message());
  }
  for (Language language : allLanguages) {
    LanguageOverride guard(language);
    const auto cases = everyCase();
    for (std::size_t i = 0; i < cases.size(); ++i) {
      const std::string text = cases[i].message();
      EXPECT_FALSE(text.empty()) << code(language) << " case " << i;
      if (language != Language::en) {
        EXPECT_NE(text, english[i]) << code(language) << " case " << i;
      }
    }
    // The pieces a user needs must survive every sentence.
    EXPECT_NE(cases[0].message().find("/dev/pts/4"), std::string::npos) << code(language);
    EXPECT_NE(cases[1].message().find("/dev/ttyUSB0"), std::string::npos) << code(language);
    EXPECT_NE(cases[1].message().find(systemErrorText(ENOENT)), std::string::npos);
    EXPECT_NE(cases[2].message().find("/dev/ttyUSB0"), std::string::npos) << code(language);
    EXPECT_NE(cases[3].message().find(systemErrorText(EINVAL)), std::string::npos);
    EXPECT_NE(cases[4].message().find("250000"), std::string::npos) << code(language);
    EXPECT_NE(cases[5].message().find(systemErrorText(ETIMEDOUT)), std::string::npos);
    EXPECT_NE(cases[8].message().find("rack3.lab"), std::string::npos) << code(language);
    for (std::size_t i = 9; i < cases.size(); ++i)
      EXPECT_NE(cases[i].message().find("rack3.lab:2000"), std::string::npos) << code(language);
    // A lost connection is an unplugged board to everything that asks, in its own words.
    const FlashPortError lost = FlashPortError::disconnected("[::1]:2000");
    EXPECT_EQ(lost.kind(), FlashPortError::Kind::disconnected);
    EXPECT_NE(lost.message(), FlashPortError::disconnected().message());
    EXPECT_NE(lost.message().find("[::1]:2000"), std::string::npos) << code(language);
  }
  LanguageOverride german(Language::de);
  EXPECT_EQ(FlashPortError::unsupportedBaudRate(1500000).message(),
            "Baudrate 1500000 wird von diesem Adapter nicht unterstützt.");
}

TEST(FlashPortError, UnknownErrorNumbersStillHaveAReason) {
  EXPECT_FALSE(systemErrorText(99999).empty());
  EXPECT_FALSE(systemErrorText(0).empty());
}
