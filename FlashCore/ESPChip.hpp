#pragma once
// The Espressif chip families and everything the program knows about each.

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace tarnwick {

/// An Espressif chip family served through its ROM bootloader.
enum class ESPChip { esp8266, esp32, esp32s2, esp32s3, esp32c3, esp32c6 };

namespace ESPChips {

/// Every chip, in catalogue order.
inline constexpr std::array<ESPChip, 6> all = {ESPChip::esp8266, ESPChip::esp32,
                                               ESPChip::esp32s2, ESPChip::esp32s3,
                                               ESPChip::esp32c3, ESPChip::esp32c6};

/// Register whose contents identify the chip family (the same address on every chip).
inline constexpr std::uint32_t magicRegister = 0x40001000;

/// The ESP8266 keeps its MAC address in these three words instead of a register pair.
inline constexpr std::array<std::uint32_t, 3> esp8266MACRegisters = {0x3FF00050, 0x3FF00054,
                                                                      0x3FF0005C};

} // namespace ESPChips

/// The raw text used in product files ("esp32s3").
std::string_view rawValue(ESPChip chip);
/// The chip whose raw text is exactly `raw`.
std::optional<ESPChip> espChipFromRawValue(std::string_view raw);

/// The name shown to users ("ESP32-S3").
std::string_view displayName(ESPChip chip);
/// Flash address of the second-stage bootloader.
std::uint32_t bootloaderOffset(ESPChip chip);
/// Number of status bytes at the end of every response: 2 on the ESP8266, 4 elsewhere.
std::size_t statusByteCount(ESPChip chip);
/// Chip id in the extended image header; the ESP8266 has none.
std::optional<std::uint16_t> imageChipID(ESPChip chip);
/// Chip id reported by the security-info request; ESP8266 and ESP32 have none.
std::optional<std::uint32_t> securityInfoChipID(ESPChip chip);
/// Addresses of the low and high MAC words; the ESP8266 has none in this form.
std::optional<std::pair<std::uint32_t, std::uint32_t>> macRegisters(ESPChip chip);
/// Whether begin requests carry a fifth (encryption) word.
bool hasEncryptWord(ESPChip chip);

/// The chip identified by the contents of the magic register.
std::optional<ESPChip> espChipFromDetectionValue(std::uint32_t value);
/// The chip identified by the security-info chip id.
std::optional<ESPChip> espChipFromSecurityInfoChipID(std::uint32_t id);
/// The chip identified by the image header's chip id.
std::optional<ESPChip> espChipFromImageChipID(std::uint16_t id);

} // namespace tarnwick
