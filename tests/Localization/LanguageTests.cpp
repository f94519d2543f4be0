#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

#include "Localization/Language.hpp"
#include "Localization/Text.hpp"

using namespace tarnwick;

TEST(LanguageChoice, FirstSupportedCodeWinsAndRegionIsIgnored) {
  EXPECT_EQ(chooseLanguage({"it-IT", "de-CH", "en-GB"}), Language::de);
  EXPECT_EQ(chooseLanguage({"nl_BE.UTF-8", "fr"}), Language::nl);
  EXPECT_EQ(chooseLanguage({"es@euro"}), Language::es);
  EXPECT_EQ(chooseLanguage({"FR-ca"}), Language::fr);
  EXPECT_EQ(chooseLanguage({"pt-BR"}), Language::en);
  EXPECT_EQ(chooseLanguage({}), Language::en);
  EXPECT_EQ(chooseLanguage({"C", "POSIX", "", "de"}), Language::de);
  // "dex" is not German: the whole language code must match.
  EXPECT_EQ(chooseLanguage({"dex-DE", "fr"}), Language::fr);
}

TEST(LanguageChoice, EnvironmentListsLanguageEntriesBeforeLocaleVariables) {
  ::setenv("LANGUAGE", "it:fr_FR::de", 1);
  ::setenv("LC_ALL", "", 1);
  ::setenv("LC_MESSAGES", "es_ES.UTF-8", 1);
  ::setenv("LANG", "nl_NL.UTF-8", 1);
  EXPECT_EQ(preferredLanguagesFromEnvironment(),
            (std::vector<std::string>{"it", "fr_FR", "de", "es_ES.UTF-8", "nl_NL.UTF-8"}));
  ::unsetenv("LANGUAGE");
  ::unsetenv("LC_ALL");
  ::unsetenv("LC_MESSAGES");
  ::setenv("LANG", "C.UTF-8", 1);
  EXPECT_EQ(chooseLanguage(preferredLanguagesFromEnvironment()), Language::en);
}

TEST(LanguageChoice, CodesRoundTripAndOverrideIsPerThread) {
  for (Language language : allLanguages) EXPECT_EQ(languageFromCode(code(language)), language);
  EXPECT_FALSE(languageFromCode("it"));

  const Texts ready{"Ready", "Gereed", "Bereit", "Prêt", "Listo"};
  Language before = currentLanguage();
  {
    LanguageOverride german(Language::de);
    EXPECT_EQ(tr(ready), "Bereit");
    {
      LanguageOverride french(Language::fr);
      EXPECT_EQ(tr(ready), "Prêt");
    }
    EXPECT_EQ(tr(ready), "Bereit");
    Language seenElsewhere = Language::de;
    std::thread([&] { seenElsewhere = currentLanguage(); }).join();
    EXPECT_EQ(seenElsewhere, before);
  }
  EXPECT_EQ(currentLanguage(), before);
  EXPECT_EQ(hexByte(0x0A), "0x0A");
  EXPECT_EQ(hexByte(0xFF), "0xFF");
}
