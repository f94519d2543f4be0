#pragma once
// The building block of the text catalogue: one text in all five languages.

#include <cstdint>
#include <string>
#include <string_view>

#include "Localization/Language.hpp"

namespace tarnwick {

/// One catalogue entry, written out in every interface language.
struct Texts {
  std::string_view en;
  std::string_view nl;
  std::string_view de;
  std::string_view fr;
  std::string_view es;
};

/// The version of `texts` in `language`.
std::string_view pick(const Texts& texts, Language language);

/// The version of `texts` in the current interface language.
inline std::string tr(const Texts& texts) { return std::string(pick(texts, currentLanguage())); }

/// "0x%02X": opcodes and error codes in messages.
std::string hexByte(std::uint8_t value);

} // namespace tarnwick
