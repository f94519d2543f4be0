#include "Localization/Text.hpp"

#include <cstdio>

namespace tarnwick {

std::string_view pick(const Texts& texts, Language language) {
  switch (language) {
  case Language::en: return texts.en;
  case Language::nl: return texts.nl;
  case Language::de: return texts.de;
  case Language::fr: return texts.fr;
  case Language::es: return texts.es;
  }
  return texts.en;
}

std::string hexByte(std::uint8_t value) {
  char text[8];
  std::snprintf(text, sizeof text, "0x%02X", value);
  return text;
}

} // namespace tarnwick
