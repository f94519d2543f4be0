#include "FlashCore/VisibleText.hpp"

#include <cstdio>

#include "FlashCore/ESPImage.hpp"

namespace tarnwick {

namespace {

void escape(std::string& shown, const char* format, unsigned value) {
  char escaped[8];
  std::snprintf(escaped, sizeof escaped, format, value);
  shown += escaped;
}

// U+202A…U+202E and U+2066…U+2069, encoded as E2 80 AA…AE and E2 81 A6…A9.
bool isBidiControl(std::string_view text, std::size_t at) {
  if (at + 2 >= text.size() || static_cast<unsigned char>(text[at]) != 0xE2) return false;
  const auto second = static_cast<unsigned char>(text[at + 1]);
  const auto third = static_cast<unsigned char>(text[at + 2]);
  return (second == 0x80 && third >= 0xAA && third <= 0xAE) ||
         (second == 0x81 && third >= 0xA6 && third <= 0xA9);
}

} // namespace

std::string visible(std::string_view text) {
  std::string shown;
  const std::string valid = validUTF8(text);
  shown.reserve(valid.size());
  for (std::size_t i = 0; i < valid.size(); ++i) {
    const auto c = static_cast<unsigned char>(valid[i]);
    if (c < 0x20 || c == 0x7F) {
      escape(shown, "\\x%02X", c);
    } else if (c == 0xC2 && i + 1 < valid.size() &&
               static_cast<unsigned char>(valid[i + 1]) <= 0x9F) {
      escape(shown, "\\u%04X", static_cast<unsigned char>(valid[++i]));
    } else if (isBidiControl(valid, i)) {
      const unsigned code = 0x2000u | ((static_cast<unsigned char>(valid[i + 1]) & 0x3Fu) << 6) |
                            (static_cast<unsigned char>(valid[i + 2]) & 0x3Fu);
      escape(shown, "\\u%04X", code);
      i += 2;
    } else {
      shown += static_cast<char>(c);
    }
  }
  return shown;
}

std::string visibleLines(std::string_view text) {
  std::string shown;
  for (std::size_t start = 0; start <= text.size();) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    shown += visible(text.substr(start, end - start));
    if (end < text.size()) shown += '\n';
    start = end + 1;
  }
  return shown;
}

} // namespace tarnwick
