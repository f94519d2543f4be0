#include "FlashCore/ESPChip.hpp"

namespace tarnwick {

namespace {

struct ChipFacts {
  std::string_view raw;
  std::string_view display;
  std::uint32_t bootloaderOffset;
  std::size_t statusBytes;
  std::optional<std::uint16_t> imageID;
  std::optional<std::uint32_t> securityID;
  std::optional<std::pair<std::uint32_t, std::uint32_t>> mac;
  bool encryptWord;
};

const ChipFacts& facts(ESPChip chip) {
  static const ChipFacts table[] = {
      {"esp8266", "ESP8266", 0x0, 2, std::nullopt, std::nullopt, std::nullopt, false},
      {"esp32", "ESP32", 0x1000, 4, 0x0000, std::nullopt, std::pair{0x3FF5A004u, 0x3FF5A008u},
       false},
      {"esp32s2", "ESP32-S2", 0x1000, 4, 0x0002, 2, std::pair{0x3F41A044u, 0x3F41A048u}, true},
      {"esp32s3", "ESP32-S3", 0x0, 4, 0x0009, 9, std::pair{0x60007044u, 0x60007048u}, true},
      {"esp32c3", "ESP32-C3", 0x0, 4, 0x0005, 5, std::pair{0x60008844u, 0x60008848u}, true},
      {"esp32c6", "ESP32-C6", 0x0, 4, 0x000D, 13, std::pair{0x600B0844u, 0x600B0848u}, true},
  };
  return table[static_cast<std::size_t>(chip)];
}

// Detection values in the order they are compared; the C3 has one per silicon revision.
constexpr std::pair<std::uint32_t, ESPChip> detectionValues[] = {
    {0xFFF0C101, ESPChip::esp8266}, {0x00F01D83, ESPChip::esp32},   {0x000007C6, ESPChip::esp32s2},
    {0x00000009, ESPChip::esp32s3}, {0x6921506F, ESPChip::esp32c3}, {0x1B31506F, ESPChip::esp32c3},
    {0x4881606F, ESPChip::esp32c3}, {0x4361606F, ESPChip::esp32c3}, {0x2CE0806F, ESPChip::esp32c6},
};

} // namespace

std::string_view rawValue(ESPChip chip) { return facts(chip).raw; }

std::optional<ESPChip> espChipFromRawValue(std::string_view raw) {
  for (ESPChip chip : ESPChips::all) {
    if (facts(chip).raw == raw) return chip;
  }
  return std::nullopt;
}

std::string_view displayName(ESPChip chip) { return facts(chip).display; }
std::uint32_t bootloaderOffset(ESPChip chip) { return facts(chip).bootloaderOffset; }
std::size_t statusByteCount(ESPChip chip) { return facts(chip).statusBytes; }
std::optional<std::uint16_t> imageChipID(ESPChip chip) { return facts(chip).imageID; }
std::optional<std::uint32_t> securityInfoChipID(ESPChip chip) { return facts(chip).securityID; }
std::optional<std::pair<std::uint32_t, std::uint32_t>> macRegisters(ESPChip chip) {
  return facts(chip).mac;
}
bool hasEncryptWord(ESPChip chip) { return facts(chip).encryptWord; }

std::optional<ESPChip> espChipFromDetectionValue(std::uint32_t value) {
  for (auto [candidate, chip] : detectionValues) {
    if (candidate == value) return chip;
  }
  return std::nullopt;
}

std::optional<ESPChip> espChipFromSecurityInfoChipID(std::uint32_t id) {
  switch (id) {
  case 2: return ESPChip::esp32s2;
  case 5: return ESPChip::esp32c3;
  case 9: return ESPChip::esp32s3;
  case 13: return ESPChip::esp32c6;
  default: return std::nullopt;
  }
}

std::optional<ESPChip> espChipFromImageChipID(std::uint16_t id) {
  for (ESPChip chip : ESPChips::all) {
    if (facts(chip).imageID == id) return chip;
  }
  return std::nullopt;
}

} // namespace tarnwick
